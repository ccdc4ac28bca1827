#include "encoding_data.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace test {

namespace {

void readRows(EncodingFacts& facts) {
  std::ifstream file(std::string(VELDNLS_SOURCE_DIR) + "/data/encodings/rows.tsv");
  std::string line;
  std::getline(file, line);
  std::vector<std::string> names;
  std::istringstream header(line.substr(2));
  for (std::string name; std::getline(header, name, '\t');) names.push_back(name);
  for (const Fields& fields : readEncodingFile("rows.tsv")) {
    if (fields.size() != names.size()) throw std::runtime_error("rows.tsv: fields and header differ");
    auto& row = facts.rows.emplace_back();
    for (size_t i = 0; i < names.size(); ++i) row[names[i]] = fields[i];
  }
}

void readProfiles(EncodingFacts& facts) {
  for (const Fields& fields : readEncodingFile("profiles.tsv")) {
    std::istringstream list(fields.at(0));
    for (int cei = 0; list >> cei;) facts.profiles[cei] = fields;
  }
}

void readKeys(EncodingFacts& facts) {
  std::set<std::string> leftOut;
  for (const Fields& fields : readEncodingFile("keys-left-out.txt")) leftOut.insert(fields.at(0));
  for (size_t cei = facts.rows.size(); cei-- > 0;) {
    for (const auto& [column, kind] : nameColumns()) {
      const std::string& text = facts.rows[cei].at(column);
      if (text.empty() || text == "    " || leftOut.contains(upperAscii(text))) continue;
      facts.keys[upperAscii(text)] = static_cast<int>(cei);
    }
  }
  for (const char* file : {"keys-shared.tsv", "keys-extra.tsv", "keys-groups.tsv"}) {
    for (const Fields& fields : readEncodingFile(file)) facts.keys[fields.at(1)] = std::stoi(fields.at(0));
  }
}

}  // namespace

std::vector<Fields> readEncodingFile(const std::string& name) {
  std::ifstream file(std::string(VELDNLS_SOURCE_DIR) + "/data/encodings/" + name);
  if (!file) throw std::runtime_error("no data/encodings/" + name);
  std::vector<Fields> lines;
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') continue;
    Fields& fields = lines.emplace_back(1);
    for (const char c : line) {
      if (c == '\t') {
        fields.emplace_back();
      } else {
        fields.back() += c;
      }
    }
  }
  return lines;
}

int EncodingFacts::number(int cei, const std::string& column) const {
  return static_cast<int>(std::stoll(text(cei, column), nullptr, 0));
}

const EncodingFacts& encodingFacts() {
  static const EncodingFacts facts = [] {
    EncodingFacts made;
    readRows(made);
    readProfiles(made);
    readKeys(made);
    return made;
  }();
  return facts;
}

std::string upperAscii(std::string text) {
  for (char& c : text) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 32);
  }
  return text;
}

std::u16string widen(const std::string& text) { return {text.begin(), text.end()}; }

const std::vector<std::pair<std::string, int>>& nameColumns() {
  static const std::vector<std::pair<std::string, int>> columns = {
      {"shortName", 1}, {"name", 2},  {"description", 3}, {"longDescription", 4}, {"identifier", 5},
      {"ianaName", 6},  {"ccsid", 7}, {"codePage", 8},    {"javaName", 9},        {"preferredName", 10},
  };
  return columns;
}

}  // namespace test
