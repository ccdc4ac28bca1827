// The slot validateEncodedText: multi-byte texts, with shifts and without.
#include <algorithm>
#include <iterator>
#include <set>

#include "transcode/verdicts.h"

namespace transcode_test {

namespace {

// Whether a pair has a lead byte and a trailing byte of the row.
bool inRanges(const uint8_t* pair, const MultiByteProfile& profile) {
  const auto isIn = [](uint8_t byte, const NlsByteRange(&ranges)[4]) {
    return std::any_of(std::begin(ranges), std::end(ranges),
                       [&](const NlsByteRange& range) { return byte >= range.low && byte <= range.high; });
  };
  return isIn(pair[0], profile.leadRanges) && isIn(pair[1], profile.trailRanges);
}

TEST(Validate, ShiftedText) {
  struct Case {
    CEI cei;
    const char* text;
    Verdict wanted;
  };
  for (const Case& each : {
           Case{U_IBM939_CE, "81 0E 44 81 0F 82", valid},
           {U_IBM939_CE, "0E 0E 0F 0F 0E 0F", valid},  // redundant shifts
           {U_IBM939_CE, "0E", valid},                 // a text may end in double-byte mode
           {U_IBM939_CE, "81 41", faultAt(1)},         // 41 is undefined in the single-byte half
           {U_IBM939_CE, "0E 3F 41", faultAt(1)},      // no lead byte
           {U_IBM939_CE, "0E 41 3F", faultAt(2)},      // no trailing byte
           {U_IBM939_CE, "0E 41 0F 41", faultAt(2)},   // a shift in a trailing byte's place is none
           {U_IBM939_CE, "0E 41 41 41", faultAt(3)},   // half a character
           {U_HITACHIJP_CE, "81 0A 42 A4 A2 0A 41 82", valid},
           {U_HITACHIJP_CE, "0A 81", valid},  // 0A alone is a byte of the page
           {U_HITACHIJP_CE, "81 0A", valid},
           {U_HITACHIJP_CE, "0A 42 0A 81", faultAt(2)},  // but no lead byte
           {U_HITACHIJP_CE, "0A 42 A4 A2 0A", faultAt(4)},
           {U_FUJITSUJP_CE, "28 A4 A2 29 81", valid},
           {U_NECJP_CE, "3F 75 A4 A2 3F 76 81", valid},
           {U_ISO2022JP_CE, "61 1B 24 42 24 22 1B 28 4A 62", valid},
           {U_ISO2022JP_CE, "1B 24 42 24 22 1B 28 42", faultAt(5)},  // ESC ( B is no shift here
           {U_ISO2022JP_CE, "1B 24 40 24 22", valid},                // nor ESC $ @, in single-byte mode five characters
           {U_ISO2022JP_CE, "80", faultAt(0)},
           {U_PCJIS_CE, "61 0E 24 22 0F 62", valid},
       }) {
    EXPECT_EQ(verdictOf(each.cei, each.text), each.wanted) << each.cei << ": " << each.text;
  }
}

// Conversion skips designators and gives these rows the blank 21 20; both are faults in double-byte mode.
TEST(Validate, DesignatorsAreUnknown) {
  EXPECT_EQ(verdictOf(U_ISO2022KR_CE, "1B 24 29 43 0E 21 21 0F"), valid);
  EXPECT_EQ(verdictOf(U_ISO2022KR_CE, "0E 1B 24 29 43 21 21 0F"), faultAt(1));
  EXPECT_EQ(verdictOf(U_ISO2022KR_CE, "0E 21 20 0F"), faultAt(2));
}

// What conversion writes for one character is valid text of a row with shifts, but for C1 controls where bytes are
// ASCII, and for pairs outside of the row's ranges: its blank, and characters of a set that it shares with other rows.
TEST(Validate, WhatConversionWritesIsValid) {
  std::set<CEI> narrow;
  for (CEI cei = 24; cei < NLS_CEI_COUNT; ++cei) {
    if (row(cei).encodingClass != NLS_CLASS_SHIFTED) continue;
    const MultiByteProfile& profile = row(cei).profile;
    const bool host = (row(cei).flags & NLS_ENCODING_EBCDIC) != 0;
    const Pipeline pipeline(U_L_UNICODE_CE, cei);
    ASSERT_NE(pipeline, nullptr) << cei;
    for (uint32_t unit = 0; unit < 0x10000; ++unit) {
      const uint8_t text[] = {static_cast<uint8_t>(unit), static_cast<uint8_t>(unit >> 8)};
      uint8_t out[16];
      uint32_t length = 0;
      if (pipeline->transcode(pipeline, text, sizeof text, out, sizeof out, &length, nullptr) != 0) continue;
      if (nls()->validateEncodedText(nls(), out, length, cei, nullptr, nullptr) == 0) continue;
      const bool pair = length == 2u * profile.shiftLength + 2 && !inRanges(out + profile.shiftLength, profile);
      const bool control = !host && length == 1 && unit >= 0x80 && unit < 0x9F;
      ASSERT_TRUE(pair || control) << cei << " " << std::hex << unit << ": " << test::toHex(Span(out).first(length));
      if (pair) narrow.insert(cei);
    }
  }
  EXPECT_EQ(narrow, (std::set<CEI>{131, 132, 145, 146, 148, 149, 151, 152, 153, 154, 155, 165, 166, 168, 169, 172}));
}

TEST(Validate, ShiftJis) {
  for (const CEI cei : {U_SHIFTJIS_CE, U_MS932_CE}) {
    EXPECT_EQ(verdictOf(cei, "61 B1 82 A0 E0 40"), valid);
    EXPECT_EQ(verdictOf(cei, "61 82"), faultAt(1));
    EXPECT_EQ(verdictOf(cei, "61 82 7F"), faultAt(1));
    EXPECT_EQ(verdictOf(cei, "A0"), faultAt(0));
    EXPECT_EQ(verdictOf(cei, "80"), faultAt(0));
    EXPECT_EQ(verdictOf(cei, "FD"), faultAt(0));
  }
}

// Single-byte katakana are known in two of the rows that hold them.
TEST(Validate, KatakanaOfOtherShiftJisRows) {
  for (const CEI cei : {U_MACOS1_CE, U_IBM942_CE}) {
    EXPECT_EQ(verdictOf(cei, "61 82 A0"), valid);
    EXPECT_EQ(verdictOf(cei, "61 B1"), faultAt(1));
  }
}

TEST(Validate, EucJp) {
  EXPECT_EQ(verdictOf(U_EUCJP_CE, "61 A4 A2 8E B1 8F B0 A1 62"), valid);
  EXPECT_EQ(verdictOf(U_EUCJP_CE, "61 A4"), faultAt(1));
  EXPECT_EQ(verdictOf(U_EUCJP_CE, "61 A4 41"), faultAt(1));
  EXPECT_EQ(verdictOf(U_EUCJP_CE, "8E E0"), faultAt(0));
  EXPECT_EQ(verdictOf(U_EUCJP_CE, "8F B0"), faultAt(0));
  EXPECT_EQ(verdictOf(U_EUCJP_CE, "8F B0 41"), faultAt(0));
  EXPECT_EQ(verdictOf(U_EUCJP_CE, "80 A1"), faultAt(0));
  EXPECT_EQ(verdictOf(U_EUCJP_CE, "FF A1"), faultAt(0));
}

TEST(Validate, EucTw) {
  EXPECT_EQ(verdictOf(U_EUCTW_CE, "61 A4 A2 8E A2 A1 A1 8E AD FE FE 62"), valid);
  EXPECT_EQ(verdictOf(U_EUCTW_CE, "8E A1 A1 A1"), faultAt(0));
  EXPECT_EQ(verdictOf(U_EUCTW_CE, "8E AE A1 A1"), faultAt(0));
  EXPECT_EQ(verdictOf(U_EUCTW_CE, "61 8E A2 A1"), faultAt(1));
  EXPECT_EQ(verdictOf(U_EUCTW_CE, "A4"), faultAt(0));
  EXPECT_EQ(verdictOf(U_EUCTW_CE, "A4 21"), faultAt(0));
}

// The third byte decides between two bytes and four.
TEST(Validate, Gb18030LooksAtTheThirdByte) {
  EXPECT_EQ(verdictOf(U_GB18030_CE, "B0 A1 B0 A1 A1"), faultAt(4)) << "one byte is no character";
  EXPECT_EQ(verdictOf(U_GB18030_CE, "B0 41 B0 30 81 30"), valid) << "whatever the second byte is";
  EXPECT_EQ(verdictOf(U_GB18030_CE, "B0 A1"), faultAt(0)) << "nothing behind it";
  EXPECT_EQ(verdictOf(U_GB18030_CE, "B0 A1 61"), faultAt(0)) << "ASCII behind it";
  EXPECT_EQ(verdictOf(U_GB18030_CE, "B0 30 81 30 61"), valid);
  EXPECT_EQ(verdictOf(U_GB18030_CE, "B0 30 81"), faultAt(0));
  EXPECT_EQ(verdictOf(U_GB18030_CE, "B0 30"), faultAt(0));
  EXPECT_EQ(verdictOf(U_GB18030_CE, "B0"), faultAt(0));
  EXPECT_EQ(verdictOf(U_GB18030_CE, "B0 30 80 30"), faultAt(0));
  EXPECT_EQ(verdictOf(U_GB18030_CE, "B0 3A 81 30"), faultAt(0));
  EXPECT_EQ(verdictOf(U_GB18030_CE, "B0 30 81 3A"), faultAt(0));
}

// The four-byte codes that convert begin with 81 to 84, which are no leads here.
TEST(Validate, Gb18030LeadsBeginAtA1) {
  EXPECT_EQ(verdictOf(U_GB18030_CE, "81 30 81 30"), faultAt(0));
  EXPECT_EQ(verdictOf(U_GB18030_CE, "A0 40 B0 A1"), faultAt(0));
  EXPECT_EQ(verdictOf(U_GB18030_CE, "FF 30 81 30"), faultAt(0));
}

TEST(Validate, OtherRowsGoByTheirRanges) {
  EXPECT_EQ(verdictOf(U_MS936_CE, "61 81 40 FE FE"), valid);
  EXPECT_EQ(verdictOf(U_MS936_CE, "61 80"), faultAt(1));
  EXPECT_EQ(verdictOf(U_MS936_CE, "61 81 7F"), faultAt(1));
  EXPECT_EQ(verdictOf(U_BIG5_CE, "A4 40 41"), valid);
  EXPECT_EQ(verdictOf(U_BIG5_CE, "A4 80"), faultAt(0));
  EXPECT_EQ(verdictOf(U_EUCKR_CE, "B0 A1 61"), valid);
  EXPECT_EQ(verdictOf(U_EUCKR_CE, "B0 5B"), faultAt(0));
  EXPECT_EQ(verdictOf(U_DECJP_CE, "80 A1 A4 22"), valid);
  EXPECT_EQ(verdictOf(U_DECTW_CE, "8E A2 A1 A1"), faultAt(0));
}

}  // namespace

}  // namespace transcode_test
