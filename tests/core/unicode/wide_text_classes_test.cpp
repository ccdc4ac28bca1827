#include <gtest/gtest.h>

#include "core/wide_text.h"
#include "unicode_data.h"

using namespace veldnls;
using test::RangeFact;

namespace {

using ClassTest = bool (*)(char16_t);

struct ClassCase {
  const char* name;
  ClassTest belongs;
  size_t rows;
};

constexpr ClassCase classCases[] = {
    {"digit", isWideDigit, 22},  {"lower", isWideLower, 411}, {"upper", isWideUpper, 405},
    {"alpha", isWideAlpha, 428}, {"space", isWideSpace, 10},  {"printable", isWidePrintable, 357},
};

// Membership of every unit; rows above U+FFFF have no place in it.
std::vector<bool> membership(const std::vector<RangeFact>& rows) {
  std::vector<bool> members(0x10000);
  for (const RangeFact& row : rows) {
    for (uint32_t code = row.first; code <= row.last && code < members.size(); ++code) members[code] = true;
  }
  return members;
}

void expectMembers(const std::vector<bool>& members, ClassTest belongs, const std::string& name) {
  for (size_t unit = 0; unit < members.size(); ++unit) {
    ASSERT_EQ(belongs(static_cast<char16_t>(unit)), members[unit]) << name << " " << std::hex << unit;
  }
}

TEST(WideClasses, EveryUnitIsAsTheDataSays) {
  const auto classes = test::readClasses();
  ASSERT_EQ(classes.size(), std::size(classCases));
  for (const ClassCase& tested : classCases) {
    const auto& rows = classes.at(tested.name);
    EXPECT_EQ(rows.size(), tested.rows) << tested.name;
    expectMembers(membership(rows), tested.belongs, tested.name);
  }
}

TEST(WideClasses, AlphaNumericIsAlphaOrDigit) {
  const auto classes = test::readClasses();
  std::vector<RangeFact> rows = classes.at("alpha");
  rows.insert(rows.end(), classes.at("digit").begin(), classes.at("digit").end());
  expectMembers(membership(rows), isWideAlphaNumeric, "alphanumeric");
}

TEST(WideClasses, FirstAndLastRows) {
  const auto classes = test::readClasses();
  const auto expectRows = [&](const char* name, size_t at, std::initializer_list<RangeFact> expected) {
    for (const RangeFact& row : expected) {
      EXPECT_EQ(classes.at(name).at(at).first, row.first) << name;
      EXPECT_EQ(classes.at(name).at(at).last, row.last) << name;
      ++at;
    }
  };
  expectRows("digit", 0, {{0x30, 0x39}, {0xB2, 0xB3}, {0x660, 0x669}, {0x6F0, 0x6F9}, {0x966, 0x96F}});
  expectRows("lower", 0,
             {{0x61, 0x7A}, {0xAA, 0xAA}, {0xB5, 0xB5}, {0xBA, 0xBA}, {0xDF, 0xF6}, {0xF8, 0xFF}, {0x101, 0x101}});
  expectRows("upper", 0, {{0x41, 0x5A}, {0xC0, 0xD6}, {0xD8, 0xDE}, {0x100, 0x100}, {0x102, 0x102}});
  expectRows("alpha", 0,
             {{0x41, 0x5A},
              {0x61, 0x7A},
              {0xAA, 0xAA},
              {0xB5, 0xB5},
              {0xBA, 0xBA},
              {0xC0, 0xD6},
              {0xD8, 0xF6},
              {0xF8, 0x1BA}});
  expectRows("space", 0,
             {{0x9, 0xD},
              {0x20, 0x20},
              {0x85, 0x85},
              {0xA0, 0xA0},
              {0x1680, 0x1680},
              {0x2000, 0x200A},
              {0x2028, 0x2028},
              {0x2029, 0x2029},
              {0x202F, 0x202F},
              {0x3000, 0x3000}});
  expectRows("printable", 0, {{0x20, 0x7E}, {0xA0, 0x21F}, {0x222, 0x233}, {0x250, 0x2AD}, {0x2B0, 0x2EE}});
  expectRows("printable", 354, {{0xFFE0, 0xFFE6}, {0xFFE8, 0xFFEE}, {0xFFFC, 0xFFFD}});
}

TEST(WideClasses, TellingPoints) {
  EXPECT_TRUE(isWideDigit(0xB2));
  EXPECT_TRUE(isWideDigit(0xB3));
  EXPECT_FALSE(isWideDigit(0xB9));
  EXPECT_TRUE(isWideDigit(0x1369));
  EXPECT_TRUE(isWideDigit(0x1371));
  EXPECT_TRUE(isWideDigit(0x1810));
  EXPECT_TRUE(isWideDigit(0xFF10));
  EXPECT_FALSE(isWideDigit(0x1946));
  EXPECT_TRUE(isWideAlpha(0x4E2D));
  EXPECT_FALSE(isWideAlpha(u'1'));
  EXPECT_TRUE(isWideAlphaNumeric(u'1'));
  EXPECT_FALSE(isWidePrintable(0x220));
  EXPECT_FALSE(isWideSpace(0x200B));
}

TEST(WideClasses, SurrogatesHaveNoClass) {
  for (uint32_t unit = 0xD800; unit <= 0xDFFF; ++unit) {
    for (const ClassCase& tested : classCases) {
      ASSERT_FALSE(tested.belongs(static_cast<char16_t>(unit))) << tested.name << " " << std::hex << unit;
    }
  }
}

// The mathematical digits are a row of the class, but their low 16 bits must not be taken for digits.
TEST(WideClasses, RowsAboveTheUnitsMatchNothing) {
  const auto rows = test::readClasses().at("digit");
  EXPECT_EQ(rows.back().first, 0x1D7CEu);
  EXPECT_EQ(rows.back().last, 0x1D7FFu);
  EXPECT_FALSE(isWideDigit(0xD7CE));
}

}  // namespace
