#include "unicode_data.h"

#include "support/tsv.h"

namespace test {
namespace {

uint32_t fromHexadecimal(const std::string& text) {
  return text == "-" ? 0 : static_cast<uint32_t>(std::stoul(text, nullptr, 16));
}

RangeFact readRange(const std::string& text) {
  const uint32_t first = fromHexadecimal(text);  // stops at the dots
  return {first, text.find("..") == std::string::npos ? first : fromHexadecimal(text.substr(text.rfind('.') + 1))};
}

}  // namespace

std::vector<CharacterFacts> readCharacters() {
  std::vector<CharacterFacts> characters;
  for (const Fields& row : readTsv("unicode/character_records.tsv")) {
    const RangeFact range = readRange(row.at(0));
    for (uint32_t code = range.first; code <= range.last; ++code) {
      characters.push_back({code, row.at(1), row.at(2), static_cast<uint32_t>(std::stoul(row.at(3))),
                            fromHexadecimal(row.at(4)), fromHexadecimal(row.at(5)), fromHexadecimal(row.at(6)),
                            fromHexadecimal(row.at(7))});
    }
  }
  return characters;
}

CaseFacts readCasePairs() {
  CaseFacts facts;
  for (const Fields& row : readTsv("unicode/case_pairs.tsv")) {
    const uint32_t upper = fromHexadecimal(row.at(0));
    const uint32_t lower = fromHexadecimal(row.at(2));
    if (row.at(1).find('>') != std::string::npos) facts.toLower[upper] = lower;
    if (row.at(1).find('<') != std::string::npos) facts.toUpper[lower] = upper;
  }
  return facts;
}

std::map<std::string, std::vector<RangeFact>> readClasses() {
  std::map<std::string, std::vector<RangeFact>> classes;
  for (const Fields& row : readTsv("unicode/class_ranges.tsv")) classes[row.at(0)].push_back(readRange(row.at(1)));
  return classes;
}

}  // namespace test
