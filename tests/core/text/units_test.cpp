#include "core/text/units.h"

#include <gtest/gtest.h>

#include "support/guard.h"

namespace test {
namespace {

using std::endian;

TEST(Units, LoadsOfBothOrders) {
  GuardedBuffer text(fromHex("12 34 56 F8"));
  const uint8_t* bytes = text.data();
  EXPECT_EQ(veldnls::load16<endian::little>(bytes + 2), 0xF856u);
  EXPECT_EQ(veldnls::load16<endian::big>(bytes + 2), 0x56F8u);
  EXPECT_EQ(veldnls::load32<endian::little>(bytes), 0xF8563412u);
  EXPECT_EQ(veldnls::load32<endian::big>(bytes), 0x123456F8u);
  EXPECT_EQ(veldnls::load16<endian::little>(bytes + 1), 0x5634u) << "an odd address";
}

TEST(Units, StoresAreLittleEndianAndCutToTheUnit) {
  GuardedBuffer text(7);
  veldnls::store16(text.data() + 5, 0xAB1234);
  veldnls::store32(text.data() + 1, 0x89ABCDEF);
  EXPECT_EQ(toHex(text.bytes()), "CD EF CD AB 89 34 12");
}

TEST(Units, SurrogatesAndNothingElse) {
  for (uint32_t value = 0; value < 0x120000; ++value) {
    const bool high = value >= 0xD800 && value <= 0xDBFF;
    const bool low = value >= 0xDC00 && value <= 0xDFFF;
    ASSERT_EQ(veldnls::isHighSurrogate(value), high) << value;
    ASSERT_EQ(veldnls::isLowSurrogate(value), low) << value;
    ASSERT_EQ(veldnls::isSurrogate(value), high || low) << value;
  }
  EXPECT_FALSE(veldnls::isSurrogate(0x8000D800));
}

TEST(Units, PairsOfEverySupplementaryCharacter) {
  for (uint32_t value = veldnls::firstSupplementary; value <= veldnls::lastCodePoint; ++value) {
    uint8_t pair[4];
    veldnls::storePair(pair, value);
    const uint32_t high = veldnls::load16<endian::little>(pair);
    const uint32_t low = veldnls::load16<endian::little>(pair + 2);
    ASSERT_EQ(high, 0xD7C0 + value / 0x400) << value;
    ASSERT_EQ(low, 0xDC00 + value % 0x400) << value;
    ASSERT_EQ(veldnls::pairValue(high, low), value);
  }
  EXPECT_EQ(veldnls::pairValue(0xD83D, 0x0041), 0x1F441u) << "neither unit is tested";
}

}  // namespace
}  // namespace test
