// Reads the text files of data/ for comparison with the tables; knows nothing of the generators.
#pragma once

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace test {

// The rows of a file under data/, split at tabs; empty lines and lines that begin with "#" are left out.
inline std::vector<std::vector<std::string>> readTsv(const std::string& name) {
  std::ifstream file(std::string(VELDNLS_SOURCE_DIR "/data/") + name);
  std::vector<std::vector<std::string>> rows;
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') continue;
    std::vector<std::string> fields(1);
    for (const char c : line) {
      if (c == '\t') {
        fields.emplace_back();
      } else {
        fields.back() += c;
      }
    }
    rows.push_back(fields);
  }
  return rows;
}

inline std::vector<int> numbers(const std::string& text) {
  std::istringstream stream(text);
  std::vector<int> values;
  for (int value = 0; stream >> value;) values.push_back(value);
  return values;
}

inline std::u16string widen(const std::string& text) { return {text.begin(), text.end()}; }

inline std::string narrow(const char16_t* text, int length) {
  std::string result;
  for (int i = 0; i < length; ++i) result += static_cast<char>(text[i]);
  return result;
}

}  // namespace test
