// The tables of the multi-byte modules: that each look-up answers what its pairs hold, and the facts that select among
// published tables.
#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <map>

#include "modules/qznlsgb/tables.h"
#include "modules/qznlsmb/tables.h"

namespace {

using namespace veldnls;

constexpr uint32_t codeCount = 0x10000;
constexpr char16_t euro = 0x20AC;
constexpr char16_t ideographicSpace = 0x3000;

// A code with its bytes in memory as they are written.
constexpr uint16_t written(uint32_t first, uint32_t second) { return static_cast<uint16_t>(second << 8 | first); }

char16_t unitOf(int set, uint32_t code) { return toUnicodeSets[set].lookUp(code >> 8, code & 0xFF); }

// Values by key, having seen that keys ascend.
std::map<uint32_t, uint32_t> pairsOf(const NlsPairTable& table) {
  std::map<uint32_t, uint32_t> pairs;
  for (uint32_t i = 0; i < table.count; ++i) {
    EXPECT_TRUE(i == 0 || table.pairs[i - 1].key < table.pairs[i].key);
    pairs[table.pairs[i].key] = table.pairs[i].value;
  }
  return pairs;
}

uint32_t valueOf(const std::map<uint32_t, uint32_t>& pairs, uint32_t key, uint32_t none) {
  const auto found = pairs.find(key);
  return found == pairs.end() ? none : found->second;
}

class SetTables : public testing::TestWithParam<int> {};

TEST_P(SetTables, LookUpToUnicodeAnswersThePairs) {
  const ToUnicodeSet& set = toUnicodeSets[GetParam()];
  const auto pairs = pairsOf(set.table);
  for (uint32_t code = 0; code < codeCount; ++code) {
    ASSERT_EQ(unitOf(GetParam(), code), valueOf(pairs, code, 0)) << std::hex << code;
  }
  EXPECT_EQ(static_cast<const void*>(&set), &set.table);
}

TEST_P(SetTables, LookUpFromUnicodeAnswersThePairs) {
  const FromUnicodeSet& set = fromUnicodeSets[GetParam()];
  const auto pairs = pairsOf(set.table);
  for (uint32_t unit = 0; unit < codeCount; ++unit) {
    ASSERT_EQ(set.lookUp(static_cast<char16_t>(unit)), valueOf(pairs, unit, 0)) << std::hex << unit;
  }
  EXPECT_EQ(static_cast<const void*>(&set), &set.table);
}

// What lets loops over codes write units unseen, and those over units look surrogates up like any other.
TEST_P(SetTables, HoldNoSurrogates) {
  const auto isSurrogate = [](uint32_t unit) { return unit >= 0xD800 && unit <= 0xDFFF; };
  for (const auto& [code, unit] : pairsOf(toUnicodeSets[GetParam()].table)) EXPECT_FALSE(isSurrogate(unit)) << code;
  for (const auto& [unit, code] : pairsOf(fromUnicodeSets[GetParam()].table)) EXPECT_FALSE(isSurrogate(unit)) << code;
}

INSTANTIATE_TEST_SUITE_P(All, SetTables, testing::Range(0, doubleByteSetCount));

TEST(SetFacts, SetsWithoutATable) {
  for (const int set : {0, 10, 11, 12}) {
    EXPECT_EQ(toUnicodeSets[set].table.count, 0u) << set;
    EXPECT_EQ(fromUnicodeSets[set].table.count, 0u) << set;
  }
}

TEST(SetFacts, SetsThatShareATable) {
  for (const auto& [set, other] : {std::pair{7, 8}, std::pair{13, 14}, std::pair{18, 20}}) {
    EXPECT_EQ(toUnicodeSets[set].table.pairs, toUnicodeSets[other].table.pairs);
    EXPECT_EQ(fromUnicodeSets[set].table.pairs, fromUnicodeSets[other].table.pairs);
    EXPECT_EQ(toUnicodeSets[set].codes.units, toUnicodeSets[other].codes.units);
    EXPECT_EQ(fromUnicodeSets[set].codes.values, fromUnicodeSets[other].codes.values);
  }
}

TEST(SetFacts, HalfWidthKatakanaOfEucJpAreTwoBytes) {
  for (uint32_t i = 0; i < halfWidthKatakanaCount; ++i) {
    EXPECT_EQ(unitOf(2, 0x8EA1 + i), firstHalfWidthKatakana + i);
    EXPECT_EQ(eucHalfWidthKatakana[i], written(0x8E, 0xA1 + i));
  }
}

TEST(SetFacts, JisWritesRow13WithoutReadingIt) {
  EXPECT_EQ(fromUnicodeSets[4].lookUp(0x2460), written(0x2D, 0x21));
  EXPECT_EQ(unitOf(4, 0x2D21), 0);
  EXPECT_EQ(fromUnicodeSets[4].lookUp(0x2014), written(0x21, 0x3D));
  EXPECT_EQ(unitOf(4, 0x213D), 0x2015);
}

TEST(SetFacts, EuroSigns) {
  for (const int set : {1, 5, 9, 15}) EXPECT_EQ(fromUnicodeSets[set].lookUp(euro), written(0, 0xE1)) << set;
  EXPECT_EQ(fromUnicodeSets[7].lookUp(euro), written(0xA2, 0xE6));
  EXPECT_EQ(fromUnicodeSets[13].lookUp(euro), written(0xA2, 0xE3));
  EXPECT_EQ(fromUnicodeSets[17].lookUp(euro), written(0xA3, 0xE1));
  EXPECT_EQ(unitOf(9, 0x45EB), euro);
  EXPECT_EQ(unitOf(13, 0xA2E3), euro);
}

TEST(SetFacts, IdeographicSpaceHasARowInSomeSetsOnly) {
  for (int set = 0; set < doubleByteSetCount; ++set) {
    const auto pairs = pairsOf(toUnicodeSets[set].table);
    const bool has =
        std::any_of(pairs.begin(), pairs.end(), [](const auto& p) { return p.second == ideographicSpace; });
    EXPECT_EQ(has, set == 1 || set == 5 || set == 7 || set == 8) << set;
  }
}

TEST(SetFacts, HongKongCharactersAreReadAsTheyAreWritten) {
  EXPECT_EQ(fromUnicodeSets[17].lookUp(0x344C), written(0x89, 0xD5));
  EXPECT_EQ(unitOf(17, 0x89D5), 0x344C);
  EXPECT_EQ(fromUnicodeSets[17].lookUp(0xF413), written(0x89, 0xD5)) << "the private character of the Windows page";
  EXPECT_EQ(fromUnicodeSets[17].lookUp(0x256D), written(0xA2, 0x7E)) << "where both pages have it, the Windows page's";
}

TEST(SetFacts, TwoSignsOfIbm937AreSingleBytes) {
  EXPECT_EQ(fromUnicodeSets[15].lookUp(0x00A2), written(0, 0x4A));
  EXPECT_EQ(fromUnicodeSets[15].lookUp(0x00A6), written(0, 0x6A));
  EXPECT_EQ(fromUnicodeSets[15].lookUp(0x00AC), 0);
  EXPECT_EQ(singleToUnicode[2][0x4A], 0x00A2);
  EXPECT_EQ(singleToUnicode[2][0x6A], 0x00A6);
}

// Single bytes.

TEST(SingleSets, AsciiPages) {
  for (uint32_t byte = 0; byte < 0x100; ++byte) {
    const bool isKatakana = byte >= 0xA1 && byte <= 0xDF;
    const uint32_t plain = byte <= 0xDF ? byte : 0x20;
    for (const int set : {0, 1}) EXPECT_EQ(singleToUnicode[set][byte], plain);
    EXPECT_EQ(singleToUnicode[3][byte], isKatakana ? byte - 0xA1 + firstHalfWidthKatakana : plain);
  }
  for (const int set : {0, 1, 3}) {
    for (uint32_t unit = 0; unit < 0x9F; ++unit) EXPECT_EQ(singleFromUnicode[set][unit], unit);
  }
}

TEST(SingleSets, HostPageIsAPermutationInItsOpenForm) {
  for (const int set : {2, 6}) {
    for (uint32_t unit = 0; unit < 0x9F; ++unit) EXPECT_EQ(singleToUnicode[set][singleFromUnicode[set][unit]], unit);
    EXPECT_EQ(singleToUnicode[set][0x40], 0x20);
    EXPECT_EQ(singleToUnicode[set][0x15], u'\n');
    EXPECT_EQ(singleToUnicode[set][0x81], u'a');
  }
}

TEST(SingleSets, Ibm939eDiffersFromTheHostPageAtTheCircumflex) {
  for (uint32_t unit = 0; unit < 0x9F; ++unit) {
    EXPECT_EQ(singleFromUnicode[4][unit], unit == 0x5E ? 0xB0 : singleFromUnicode[2][unit]) << std::hex << unit;
    EXPECT_EQ(singleToUnicode[4][singleFromUnicode[4][unit]], unit);
  }
  EXPECT_EQ(singleToUnicode[4][0x42], firstHalfWidthKatakana);
}

TEST(SingleSets, KatakanaPageIsWrittenAsTheHostPage) {
  for (uint32_t unit = 0; unit < 0x9F; ++unit) EXPECT_EQ(singleFromUnicode[5][unit], singleFromUnicode[2][unit]);
  EXPECT_EQ(singleFromUnicode[5][u'a'], 0x81);
  EXPECT_EQ(singleToUnicode[5][0x81], 0xFF71);
  EXPECT_EQ(std::count(singleToUnicode[5], singleToUnicode[5] + 256, u' '), 61);
}

TEST(SingleSets, KatakanaBySet) {
  for (const int set : {0, 1}) EXPECT_EQ(halfWidthKatakana[set][0], written(0x21, 0x23));
  EXPECT_EQ(halfWidthKatakana[2][0], written(0x43, 0x41));
  for (uint32_t i = 0; i < halfWidthKatakanaCount; ++i) {
    const char16_t unit = static_cast<char16_t>(firstHalfWidthKatakana + i);
    EXPECT_EQ(halfWidthKatakana[3][i], written(0, 0xA1 + i));
    EXPECT_EQ(halfWidthKatakana[6][i], written(0, 0x40));
    for (const int set : {3, 4, 5}) {
      EXPECT_EQ(halfWidthKatakana[set][i] & 0xFF, 0);
      EXPECT_EQ(singleToUnicode[set][halfWidthKatakana[set][i] >> 8], unit);
    }
  }
  EXPECT_EQ(halfWidthKatakana[4][0], written(0, 0x42));
  EXPECT_EQ(halfWidthKatakana[5][0], written(0, 0x41));
}

TEST(SingleSets, MapsOfBytes) {
  for (uint32_t byte = 0; byte < 0x100; ++byte) {
    const bool isAscii = byte < 0x80;
    EXPECT_EQ(identity[byte], byte);
    EXPECT_EQ(asciiPassthrough[byte], isAscii ? byte : 0x20);
    EXPECT_EQ(asciiToEbcdic[byte], isAscii ? singleFromUnicode[2][byte] : 0x40);
    const char16_t unit = singleToUnicode[2][byte];
    EXPECT_EQ(ebcdicToAscii[byte], unit < 0x80 ? unit : 0x20);
  }
}

// GB18030.

TEST(Gb18030Tables, LookUpsAnswerTheRows) {
  std::map<uint32_t, uint32_t> codes;
  std::map<uint32_t, uint32_t> units;
  for (int i = 0; i < gbRowCount; ++i) {
    codes[gbFromUnicodeTable[i].unit] = gbFromUnicodeTable[i].code;
    units[gbToUnicodeTable[i].code] = gbToUnicodeTable[i].unit;
    EXPECT_TRUE(i == 0 || gbFromUnicodeTable[i - 1].unit < gbFromUnicodeTable[i].unit);
    EXPECT_TRUE(i == 0 || gbToUnicodeTable[i - 1].code < gbToUnicodeTable[i].code);
  }
  for (uint32_t unit = 0; unit < codeCount; ++unit) {
    ASSERT_EQ(gbFromUnicodeIndex.lookUp(static_cast<char16_t>(unit)), valueOf(codes, unit, gbNotFound)) << unit;
  }
  for (uint32_t code = 0; code < codeCount; ++code) {
    ASSERT_EQ(gbToUnicodeIndex.lookUp(code), valueOf(units, code, gbNotFound)) << std::hex << code;
  }
  for (uint32_t lead = 0x80; lead <= 0x86; ++lead) {
    for (uint32_t second = 0x2F; second <= 0x3A; ++second) {
      for (uint32_t low = 0; low < codeCount; ++low) {
        const uint32_t code = lead << 24 | second << 16 | low;
        ASSERT_EQ(gbToUnicodeIndex.lookUp(code), valueOf(units, code, gbNotFound)) << std::hex << code;
      }
    }
  }
}

TEST(Gb18030Tables, CodesThatAreNone) {
  for (const uint32_t code : {0x10000u, 0x308130u, 0x00308130u, 0x81408130u, 0x81FF8130u, 0xFE308130u, 0xFFFFFFFFu}) {
    EXPECT_EQ(gbToUnicodeIndex.lookUp(code), gbNotFound) << std::hex << code;
  }
}

TEST(Gb18030Tables, FormOf2000) {
  EXPECT_EQ(gbFromUnicodeIndex.lookUp(0x0080), 0x81308130u);
  EXPECT_EQ(gbFromUnicodeIndex.lookUp(euro), 0xA2E3u);
  EXPECT_EQ(gbFromUnicodeIndex.lookUp(0xE000), 0xAAA1u);
  EXPECT_EQ(gbFromUnicodeIndex.lookUp(0xE7C7), 0xA8BCu);
  for (const char16_t unit : {u'\x0452', u'\x1E3F', u'\xF600'}) {
    EXPECT_EQ(gbFromUnicodeIndex.lookUp(unit), gbNotFound);
  }
  EXPECT_EQ(gbToUnicodeTable[gbRowCount - 1].code, 0x8431A233u);
}

}  // namespace
