#include "encoding_data.h"

namespace test {

namespace {

void readProfiles(EncodingFacts& facts) {
  for (const Fields& fields : readTsv("encodings/profiles.tsv")) {
    for (const int cei : numbers(fields.at(0))) facts.profiles[cei] = fields;
  }
}

void readKeys(EncodingFacts& facts) {
  std::set<std::string> leftOut;
  for (const Fields& fields : readTsv("encodings/keys-left-out.txt")) leftOut.insert(fields.at(0));
  for (size_t cei = facts.rows.size(); cei-- > 0;) {
    for (const auto& [column, kind] : nameColumns()) {
      const std::string& text = facts.rows[cei].at(column);
      if (text.empty() || text == "    " || leftOut.contains(upperAscii(text))) continue;
      facts.keys[upperAscii(text)] = static_cast<int>(cei);
    }
  }
  for (const char* file : {"keys-shared.tsv", "keys-extra.tsv", "keys-groups.tsv"}) {
    for (const Fields& fields : readTsv(std::string("encodings/") + file))
      facts.keys[fields.at(1)] = std::stoi(fields.at(0));
  }
}

}  // namespace

int EncodingFacts::number(int cei, const std::string& column) const {
  return static_cast<int>(std::stoll(text(cei, column), nullptr, 0));
}

const EncodingFacts& encodingFacts() {
  static const EncodingFacts facts = [] {
    EncodingFacts made;
    made.rows = readNamedTsv("encodings/rows.tsv");
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

const std::vector<std::pair<std::string, int>>& nameColumns() {
  static const std::vector<std::pair<std::string, int>> columns = {
      {"shortName", 1}, {"name", 2},  {"description", 3}, {"longDescription", 4}, {"identifier", 5},
      {"ianaName", 6},  {"ccsid", 7}, {"codePage", 8},    {"javaName", 9},        {"preferredName", 10},
  };
  return columns;
}

}  // namespace test
