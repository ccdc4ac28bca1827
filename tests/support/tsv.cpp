#include "support/tsv.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace test {

namespace {

std::ifstream open(const std::string& path) {
  std::ifstream file(std::filesystem::path(VELDNLS_SOURCE_DIR "/data") / path);
  if (!file) throw std::runtime_error(path + " can't be read");
  return file;
}

Fields split(const std::string& line) {
  Fields fields(1);
  for (const char c : line) {
    if (c == '\t') {
      fields.emplace_back();
    } else {
      fields.back() += c;
    }
  }
  return fields;
}

}  // namespace

std::vector<Fields> readTsv(const std::string& path) {
  std::ifstream file = open(path);
  std::vector<Fields> lines;
  for (std::string line; std::getline(file, line);) {
    if (!line.empty() && line[0] != '#') lines.push_back(split(line));
  }
  return lines;
}

std::vector<std::map<std::string, std::string>> readNamedTsv(const std::string& path) {
  std::ifstream file = open(path);
  std::string header;
  std::getline(file, header);
  if (!header.starts_with("# ")) throw std::runtime_error(path + " doesn't name its fields");
  const Fields names = split(header.substr(2));
  std::vector<std::map<std::string, std::string>> lines;
  for (const Fields& fields : readTsv(path)) {
    if (fields.size() != names.size()) throw std::runtime_error(path + ": a line has other fields than the first");
    auto& line = lines.emplace_back();
    for (size_t i = 0; i < names.size(); ++i) line[names[i]] = fields[i];
  }
  return lines;
}

std::vector<int> numbers(const std::string& text) {
  std::istringstream stream(text);
  std::vector<int> values;
  for (int value = 0; stream >> value;) values.push_back(value);
  return values;
}

}  // namespace test
