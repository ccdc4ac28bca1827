#include "core/text/blanks.h"

#include <gtest/gtest.h>

#include "support/guard.h"
#include "veldnls/status.h"

namespace test {
namespace {

bool allBlank(std::string_view text, veldnls::Blank blank) {
  GuardedBuffer bytes(fromHex(text));
  return veldnls::isAllBlank(bytes.data(), bytes.size(), blank);
}

TEST(Blanks, PermissionOfEitherRecord) {
  constexpr TranscodeOptions none{};
  constexpr TranscodeOptions given{{NLS_ALLOW_BLANK_TRUNCATION, 0, 0, 0}};
  constexpr TranscodeOptions others{{~NLS_ALLOW_BLANK_TRUNCATION, 1, 1, 1}};
  EXPECT_FALSE(veldnls::mayDropBlanks(none, nullptr));
  EXPECT_FALSE(veldnls::mayDropBlanks(none, &none));
  EXPECT_FALSE(veldnls::mayDropBlanks(others, &others));
  EXPECT_TRUE(veldnls::mayDropBlanks(given, nullptr));
  EXPECT_TRUE(veldnls::mayDropBlanks(given, &none));
  EXPECT_TRUE(veldnls::mayDropBlanks(none, &given));
}

TEST(Blanks, OfEachWidth) {
  EXPECT_TRUE(allBlank("20 20 20", veldnls::utf8Blank));
  EXPECT_TRUE(allBlank("40", veldnls::utfEbcdicBlank));
  EXPECT_TRUE(allBlank("20 00 20 00", veldnls::utf16Blank));
  EXPECT_TRUE(allBlank("00 20", veldnls::utf16BigEndianBlank));
  EXPECT_TRUE(allBlank("20 00 00 00", veldnls::utf32Blank));
  EXPECT_TRUE(allBlank("00 00 00 20 00 00 00 20", veldnls::utf32BigEndianBlank));
}

TEST(Blanks, OneOtherByteAnywhereCounts) {
  EXPECT_FALSE(allBlank("21 20 20", veldnls::utf8Blank));
  EXPECT_FALSE(allBlank("20 20 00", veldnls::utf8Blank));
  EXPECT_FALSE(allBlank("20", veldnls::utfEbcdicBlank));
  EXPECT_FALSE(allBlank("20 00 20 01", veldnls::utf16Blank));
  EXPECT_FALSE(allBlank("00 20", veldnls::utf16Blank));
  EXPECT_FALSE(allBlank("20 00 00 01", veldnls::utf32Blank));
  EXPECT_FALSE(allBlank("20 00 00 00", veldnls::utf32BigEndianBlank));
}

TEST(Blanks, PartOfAUnitIsNoBlank) {
  EXPECT_FALSE(allBlank("20", veldnls::utf16Blank));
  EXPECT_FALSE(allBlank("20 00 20", veldnls::utf16Blank));
  EXPECT_FALSE(allBlank("20 00 00 00 20 00 00", veldnls::utf32Blank));
}

TEST(Blanks, StatusOfRest) {
  const uint8_t blanks[] = {0x20, 0x20};
  const uint8_t text[] = {0x20, 'x'};
  EXPECT_EQ(veldnls::statusOfRest(false, nullptr, 0, veldnls::utf8Blank), 0u);
  EXPECT_EQ(veldnls::statusOfRest(true, nullptr, 0, veldnls::utf8Blank), 0u);
  EXPECT_EQ(veldnls::statusOfRest(false, blanks, 2, veldnls::utf8Blank), nlsOutputTruncated);
  EXPECT_EQ(veldnls::statusOfRest(true, blanks, 2, veldnls::utf8Blank), 0u);
  EXPECT_EQ(veldnls::statusOfRest(true, text, 2, veldnls::utf8Blank), nlsOutputTruncated);
}

}  // namespace
}  // namespace test
