#include "core/characters.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "support/guard.h"
#include "unicode_data.h"

using namespace veldnls;
using test::CharacterFacts;

namespace {

const std::map<std::string, uint32_t> categoryMasks = {
    {"Lu", 0x1},       {"Ll", 0x2},       {"Lt", 0x4},       {"Mn", 0x8},        {"Mc", 0x10},      {"Me", 0x20},
    {"Nd", 0x40},      {"Nl", 0x80},      {"No", 0x100},     {"Zs", 0x200},      {"Zl", 0x400},     {"Zp", 0x800},
    {"Cc", 0x1000},    {"Cf", 0x2000},    {"Cs", 0x4000},    {"Co", 0x8000},     {"Lm", 0x20000},   {"Lo", 0x40000},
    {"Pc", 0x80000},   {"Pd", 0x100000},  {"Ps", 0x200000},  {"Pe", 0x400000},   {"Pi", 0x800000},  {"Pf", 0x1000000},
    {"Po", 0x2000000}, {"Sm", 0x4000000}, {"Sc", 0x8000000}, {"Sk", 0x10000000}, {"So", 0x20000000}};

const std::map<std::string, uint32_t> bidiNumbers = {{"L", 0},   {"LRE", 1}, {"LRO", 2}, {"R", 3},    {"AL", 4},
                                                     {"RLE", 5}, {"RLO", 6}, {"PDF", 7}, {"EN", 8},   {"ES", 9},
                                                     {"ET", 10}, {"AN", 11}, {"CS", 12}, {"NSM", 13}, {"BN", 14},
                                                     {"B", 15},  {"S", 16},  {"WS", 17}, {"ON", 18}};

void expectRecord(const CharacterRecord& record, const CharacterFacts& facts) {
  ASSERT_EQ(record.code, facts.code);
  EXPECT_EQ(record.category, categoryMasks.at(facts.category)) << std::hex << facts.code;
  EXPECT_EQ(record.bidiClass, bidiNumbers.at(facts.bidiClass)) << std::hex << facts.code;
  EXPECT_EQ(record.combiningClass, facts.combiningClass) << std::hex << facts.code;
  EXPECT_EQ(record.upper, facts.upper) << std::hex << facts.code;
  EXPECT_EQ(record.lower, facts.lower) << std::hex << facts.code;
  EXPECT_EQ(record.decompositionBase, facts.base) << std::hex << facts.code;
  EXPECT_EQ(record.decompositionMark, facts.mark) << std::hex << facts.code;
}

void expectPlainRecord(uint32_t code, uint32_t recordCode, uint32_t category) {
  CharacterRecord record;
  ASSERT_EQ(getCharacterRecord(code, &record), 0u);
  EXPECT_EQ(record.code, recordCode) << std::hex << code;
  EXPECT_EQ(record.category, category) << std::hex << code;
  EXPECT_EQ(record.bidiClass | record.combiningClass | record.upper | record.lower | record.decompositionBase |
                record.decompositionMark,
            0u)
      << std::hex << code;
}

TEST(Characters, TableHoldsTheData) {
  const std::vector<CharacterFacts> facts = test::readCharacters();
  ASSERT_EQ(facts.size(), static_cast<size_t>(characterRecordCount));
  for (size_t i = 0; i < facts.size(); ++i) expectRecord(characterRecords[i], facts[i]);
}

TEST(Characters, Figures) {
  int above = 0;
  int runs = 1;
  for (int32_t i = 1; i < characterRecordCount; ++i) {
    ASSERT_GT(characterRecords[i].code, characterRecords[i - 1].code);
    above += characterRecords[i].code > 0xFFFF;
    runs += characterRecords[i].code != characterRecords[i - 1].code + 1;
  }
  EXPECT_EQ(above, 4298);
  EXPECT_EQ(runs, 426);
  EXPECT_EQ(characterRecords[characterRecordCount - 1].code, 0xE01EFu);
  for (uint32_t code = 0; code < 880; ++code) EXPECT_EQ(characterRecords[code].code, code);
}

TEST(Characters, EveryUnitThroughGetCharacterRecord) {
  std::map<uint32_t, CharacterFacts> facts;
  for (const CharacterFacts& fact : test::readCharacters()) facts.emplace(fact.code, fact);
  for (uint32_t code = 0; code <= 0xFFFF; ++code) {
    CharacterRecord record;
    ASSERT_EQ(getCharacterRecord(code, &record), 0u);
    if (const auto found = facts.find(code); found != facts.end()) {
      expectRecord(record, found->second);
    } else if (code >= 0x3400 && code <= 0x4DB5) {
      expectPlainRecord(code, 0x3400, NLS_CATEGORY_LO);
    } else if (code >= 0x4E00 && code <= 0x9FA5) {
      expectPlainRecord(code, 0x4E00, NLS_CATEGORY_LO);
    } else if (code >= 0xAC00 && code <= 0xD7A3) {
      expectPlainRecord(code, 0xAC00, NLS_CATEGORY_LO);
    } else if (code >= 0xD800 && code <= 0xDFFF) {
      expectPlainRecord(code, 0xD800, NLS_CATEGORY_CS);
    } else if (code >= 0xE000 && code <= 0xF8FF) {
      expectPlainRecord(code, 0xE000, NLS_CATEGORY_CO);
    } else {
      expectPlainRecord(code, 0xFFFF, NLS_CATEGORY_CO);
    }
  }
}

TEST(Characters, SharedRecordsAtTheirEdges) {
  expectPlainRecord(0x4E2D, 0x4E00, NLS_CATEGORY_LO);
  expectPlainRecord(0xD900, 0xD800, NLS_CATEGORY_CS);
  expectPlainRecord(0x0378, 0xFFFF, NLS_CATEGORY_CO);
  expectPlainRecord(0x4DB5, 0x3400, NLS_CATEGORY_LO);
  expectPlainRecord(0x4DB6, 0xFFFF, NLS_CATEGORY_CO);
  expectPlainRecord(0x9FA5, 0x4E00, NLS_CATEGORY_LO);
  expectPlainRecord(0x9FA6, 0xFFFF, NLS_CATEGORY_CO);
  expectPlainRecord(0x9FBB, 0xFFFF, NLS_CATEGORY_CO);
  expectPlainRecord(0xD7A4, 0xFFFF, NLS_CATEGORY_CO);
  expectPlainRecord(0xFFFF, 0xFFFF, NLS_CATEGORY_CO);
}

TEST(Characters, OnlyTheLow16BitsCount) {
  for (const uint32_t code : {0x10041u, 0xFFFF0041u, 0xE0041u}) {
    CharacterRecord record;
    EXPECT_EQ(getCharacterRecord(code, &record), 0u);
    EXPECT_EQ(record.code, 0x41u);
    EXPECT_EQ(toLowerCharacter(code, 0), u'a');
    EXPECT_EQ(toUpperCharacter(code | 0x20, 1), u'A');
  }
  // A Deseret letter has a record of its own, but it is out of reach.
  CharacterRecord record;
  EXPECT_EQ(getCharacterRecord(0x10428, &record), 0u);
  EXPECT_EQ(record.code, 0x428u);
}

TEST(Characters, RecordIsWrittenWithinItsSize) {
  test::GuardedBuffer buffer(sizeof(CharacterRecord));
  auto* record = reinterpret_cast<CharacterRecord*>(buffer.data());
  EXPECT_EQ(getCharacterRecord(0xE9, record), 0u);
  EXPECT_EQ(record->decompositionBase, 0x65u);
  EXPECT_EQ(record->decompositionMark, 0x301u);
}

// What tells this version of the character database from others.
TEST(Characters, TellingRecords) {
  EXPECT_EQ(characterRecords[0xAA].category, NLS_CATEGORY_LL);
  EXPECT_EQ(characterRecords[0xA7].category, NLS_CATEGORY_SO);
  EXPECT_EQ(characterRecords[0xB6].category, NLS_CATEGORY_SO);
  CharacterRecord angstrom;
  getCharacterRecord(0x212B, &angstrom);
  EXPECT_EQ(angstrom.decompositionBase, 0xC5u);
  EXPECT_EQ(angstrom.decompositionMark, 0u);
  // A compatibility decomposition isn't kept.
  EXPECT_EQ(characterRecords[0xA0].decompositionBase, 0u);
  for (const int embedding : {NLS_BIDI_LRE, NLS_BIDI_LRO, NLS_BIDI_RLE, NLS_BIDI_RLO, NLS_BIDI_PDF}) {
    int records = 0;
    for (const CharacterRecord& record : characterRecords)
      records += record.bidiClass == static_cast<uint32_t>(embedding);
    EXPECT_EQ(records, 1) << embedding;
  }
}

TEST(Characters, CaseBelow0100NeedsNoFlag) {
  for (const uint32_t flags : {0u, 1u, 2u, 0xFFFFFFFFu}) {
    EXPECT_EQ(toUpperCharacter(u'a', flags), u'A');
    EXPECT_EQ(toLowerCharacter(u'A', flags), u'a');
    EXPECT_EQ(toUpperCharacter(0xFF, flags), 0x178);
    EXPECT_EQ(toUpperCharacter(0xB5, flags), 0x39C);
    EXPECT_EQ(toUpperCharacter(0xDF, flags), 0xDF);
    EXPECT_EQ(toLowerCharacter(u'1', flags), u'1');
    EXPECT_EQ(toLowerCharacter(0, flags), 0);
  }
}

TEST(Characters, CaseFrom0100NeedsBit0) {
  EXPECT_EQ(toLowerCharacter(0x100, 0), 0x100);
  EXPECT_EQ(toLowerCharacter(0x100, 1), 0x101);
  EXPECT_EQ(toLowerCharacter(0x100, 2), 0x100);
  EXPECT_EQ(toLowerCharacter(0x100, 0xFFFFFFFE), 0x100);
  EXPECT_EQ(toLowerCharacter(0x100, 3), 0x101);
  EXPECT_EQ(toUpperCharacter(0x101, 0), 0x101);
  EXPECT_EQ(toUpperCharacter(0x101, 1), 0x100);
  EXPECT_EQ(toUpperCharacter(0x4E2D, 1), 0x4E2D);
  EXPECT_EQ(toLowerCharacter(0xD800, 1), 0xD800);
  EXPECT_EQ(toLowerCharacter(0x378, 1), 0x378);
}

TEST(Characters, CaseOfEveryUnit) {
  std::map<uint32_t, CharacterFacts> facts;
  for (const CharacterFacts& fact : test::readCharacters()) facts.emplace(fact.code, fact);
  for (uint32_t code = 0; code <= 0xFFFF; ++code) {
    const auto found = facts.find(code);
    const uint32_t upper = found != facts.end() && found->second.upper != 0 ? found->second.upper : code;
    const uint32_t lower = found != facts.end() && found->second.lower != 0 ? found->second.lower : code;
    ASSERT_EQ(toUpperCharacter(code, 1), upper) << std::hex << code;
    ASSERT_EQ(toLowerCharacter(code, 1), lower) << std::hex << code;
    ASSERT_EQ(toUpperCharacter(code, 0), code < 0x100 ? upper : code) << std::hex << code;
    ASSERT_EQ(toLowerCharacter(code, 0), code < 0x100 ? lower : code) << std::hex << code;
  }
}

}  // namespace
