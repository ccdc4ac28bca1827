#include <gtest/gtest.h>

#include "core/wide_text.h"
#include "unicode_data.h"

using namespace veldnls;

namespace {

constexpr uint32_t unitCount = 0x10000;

uint32_t mapped(const std::map<uint32_t, uint32_t>& pairs, uint32_t unit) {
  const auto found = pairs.find(unit);
  return found != pairs.end() ? found->second : unit;
}

TEST(WideCase, EveryUnitFoldsAsTheDataSays) {
  const test::CaseFacts facts = test::readCasePairs();
  ASSERT_EQ(facts.toLower.size(), 706u);
  ASSERT_EQ(facts.toUpper.size(), 671u);
  for (uint32_t unit = 0; unit < unitCount; ++unit) {
    ASSERT_EQ(foldToLower(static_cast<char16_t>(unit)), mapped(facts.toLower, unit)) << std::hex << unit;
    ASSERT_EQ(foldToUpper(static_cast<char16_t>(unit)), mapped(facts.toUpper, unit)) << std::hex << unit;
  }
}

TEST(WideCase, PairsFurtherApartThanADeltaReaches) {
  constexpr char16_t pairs[][2] = {{0x181, 0x253}, {0x186, 0x254}, {0x18A, 0x257},   {0x18E, 0x258},  {0x18F, 0x259},
                                   {0x190, 0x25B}, {0x193, 0x260}, {0x194, 0x263},   {0x196, 0x269},  {0x197, 0x268},
                                   {0x19C, 0x26F}, {0x19D, 0x272}, {0x1A9, 0x283},   {0x1AE, 0x288},  {0x1B1, 0x28A},
                                   {0x1B2, 0x28B}, {0x1B7, 0x292}, {0x1FF8, 0x1F78}, {0x1FF9, 0x1F79}};
  for (const auto& [upper, lower] : pairs) {
    EXPECT_EQ(foldToLower(upper), lower);
    EXPECT_EQ(foldToUpper(lower), upper);
  }
  EXPECT_EQ(foldToUpper(0x17F), u'S');
  EXPECT_EQ(foldToLower(0x17F), 0x17F);

  int lowerExceptions = 0;
  int upperExceptions = 0;
  for (uint32_t unit = 0; unit < unitCount; ++unit) {
    const int code = static_cast<int>(unit);
    lowerExceptions += std::abs(foldToLower(static_cast<char16_t>(unit)) - code) > 127;
    upperExceptions += std::abs(foldToUpper(static_cast<char16_t>(unit)) - code) > 127;
  }
  EXPECT_EQ(lowerExceptions, 19);
  EXPECT_EQ(upperExceptions, 20);
}

TEST(WideCase, TellingPoints) {
  EXPECT_EQ(foldToUpper(0xFF), 0x178);
  EXPECT_EQ(foldToLower(0x178), 0xFF);
  for (const char16_t unit : {u'\u00DF', u'\u00B5', u'\u0130', u'\u0131', u'\u03C2'}) {
    EXPECT_EQ(foldToLower(unit), unit);
    EXPECT_EQ(foldToUpper(unit), unit);
  }
  EXPECT_EQ(foldToLower(0x10A0), 0x10D0);
  EXPECT_EQ(foldToUpper(0x10D0), 0x10D0);
  // Title-case digraphs fold both ways.
  EXPECT_EQ(foldToLower(0x1C5), 0x1C6);
  EXPECT_EQ(foldToUpper(0x1C5), 0x1C4);
  // Greek symbols have an upper-case form, and archaic letters only a lower-case one.
  EXPECT_EQ(foldToUpper(0x3D0), 0x392);
  EXPECT_EQ(foldToLower(0x3DA), 0x3DB);
  EXPECT_EQ(foldToUpper(0x3DB), 0x3DB);
}

TEST(WideCase, NineteenBlocksHaveLetters) {
  std::map<uint32_t, int> blocks;
  for (uint32_t unit = 0; unit < unitCount; ++unit) {
    const auto value = static_cast<char16_t>(unit);
    if (foldToLower(value) != value || foldToUpper(value) != value) ++blocks[unit / 128];
  }
  EXPECT_EQ(blocks.size(), 19u);
}

}  // namespace
