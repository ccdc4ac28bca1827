// A reader of data/unicode of its own, for comparing the built tables with the text that they were made from.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace test {

struct CharacterFacts {
  uint32_t code;
  std::string category;
  std::string bidiClass;
  uint32_t combiningClass;
  uint32_t upper;  // 0 if none, as in the three below
  uint32_t lower;
  uint32_t base;
  uint32_t mark;
};

struct CaseFacts {
  std::map<uint32_t, uint32_t> toLower;
  std::map<uint32_t, uint32_t> toUpper;
};

struct RangeFact {
  uint32_t first;
  uint32_t last;
};

std::vector<CharacterFacts> readCharacters();
CaseFacts readCasePairs();
std::map<std::string, std::vector<RangeFact>> readClasses();

}  // namespace test
