// The slot validateEncodedText: every rule, every map of valid bytes against the text that it was made from, and random
// text against a second reading of the rules. Texts end at guard pages.
#include <sys/mman.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <random>

#include "transcode/harness.h"
#include "transcode/valid_bytes.h"
#include "transcode/validity.h"

namespace transcode_test {

namespace {

struct Verdict {
  NlsStatus status;
  int32_t offset;
  bool operator==(const Verdict&) const = default;
};

void PrintTo(const Verdict& verdict, std::ostream* stream) {
  *stream << std::hex << "status " << verdict.status << std::dec << ", offset " << verdict.offset;
}

bool inRanges(const uint8_t* pair, const MultiByteProfile& profile) {
  const auto isIn = [](uint8_t byte, const NlsByteRange(&ranges)[4]) {
    return std::any_of(std::begin(ranges), std::end(ranges),
                       [&](const NlsByteRange& range) { return byte >= range.low && byte <= range.high; });
  };
  return isIn(pair[0], profile.leadRanges) && isIn(pair[1], profile.trailRanges);
}

constexpr Verdict valid{0, -1};
constexpr Verdict refused{nlsUnknownEncoding, -1};
constexpr Verdict faultAt(int64_t offset) { return {nlsInvalidCharacter, static_cast<int32_t>(offset)}; }

Verdict verdictOf(CEI cei, Span text) {
  constexpr size_t areaSize = 1 << 13;
  static test::GuardedBuffer area(areaSize);
  uint8_t* bytes = area.data() + areaSize - text.size();
  std::copy(text.begin(), text.end(), bytes);
  Verdict verdict{0xDEADBEEF, 99};
  verdict.status =
      nls()->validateEncodedText(nls(), bytes, static_cast<uint32_t>(text.size()), cei, nullptr, &verdict.offset);
  EXPECT_EQ(nls()->validateEncodedText(nls(), bytes, static_cast<uint32_t>(text.size()), cei, &area, nullptr),
            verdict.status)
      << "without an offset";
  return verdict;
}

Verdict verdictOf(CEI cei, std::string_view text) { return verdictOf(cei, hex(text)); }

const EncodingDescriptor& row(CEI cei) {
  const EncodingDescriptor* found = nullptr;
  EXPECT_EQ(nls()->getEncodingDescriptor(nls(), cei, &found), 0u);
  return *found;
}

// Those that can't be validated, but for the numbers outside of the table.
bool isRefused(CEI cei) {
  const std::set<CEI> rows = {31,  32,  41,  69,  70,  71,  72,  73,  74,  75,  76,  77,  79,  80,  81,
                              82,  83,  84,  85,  86,  87,  88,  92,  94,  101, 102, 107, 114, 115, 116,
                              161, 162, 163, 170, 171, 174, 175, 176, 177, 178, 179, 180, 181, 182};
  return rows.contains(cei) || (cei < 24 && cei != 20);
}

TEST(Validate, WorkedExamples) {
  EXPECT_EQ(verdictOf(U_WLATIN1_CE, "41 42 43 81 44"), faultAt(3));
  EXPECT_EQ(verdictOf(U_UTF8_CE, "61 C3"), faultAt(1));
  EXPECT_EQ(verdictOf(U_UTF8_CE, "E2 82 AC"), valid);
  EXPECT_EQ(verdictOf(U_UTF8_CE, "F4 90 80 80"), valid);
  EXPECT_EQ(verdictOf(U_L_UNICODE_CE, "41 00 42"), faultAt(2));
  EXPECT_EQ(verdictOf(U_L_UCS4_CE, "90 01 01 00"), faultAt(0));
  EXPECT_EQ(verdictOf(U_L_UCS4_CE, "8F 01 01 00"), valid);
  EXPECT_EQ(verdictOf(U_UTFE_CE, "41"), refused);
  EXPECT_EQ(verdictOf(U_EBCDICANY_CE, "00 41 FF"), valid);
  EXPECT_EQ(verdictOf(U_IBM939_CE, "0E 41 41 0F"), valid);
  EXPECT_EQ(verdictOf(U_IBM939_CE, "0E 41"), faultAt(1));
}

TEST(Validate, EmptyTexts) {
  for (CEI cei = 0; cei < NLS_CEI_COUNT; ++cei) {
    const Verdict wanted = isRefused(cei) ? refused : valid;
    EXPECT_EQ(verdictOf(cei, ""), wanted) << cei;
    int32_t offset = 99;
    EXPECT_EQ(nls()->validateEncodedText(nls(), nullptr, 0, cei, nullptr, &offset), wanted.status) << cei;
    EXPECT_EQ(offset, -1);
  }
}

TEST(Validate, RefusedEncodings) {
  for (const CEI cei : {INT_MIN, -1, 0, 1, 19, 23, 230, 231, 1000, INT_MAX}) EXPECT_EQ(verdictOf(cei, "41"), refused);
  for (CEI cei = 0; cei < NLS_CEI_COUNT; ++cei) {
    if (isRefused(cei)) {
      EXPECT_EQ(verdictOf(cei, "41 FF"), refused) << cei;
    }
  }
}

// utf-e and ucsu have no rule of their own; 0 and the aliases aren't resolved.
TEST(Validate, EncodingsWithoutARule) {
  EXPECT_EQ(verdictOf(U_UTFE_CE, ""), refused);
  EXPECT_EQ(verdictOf(U_UCSU_CE, "41"), refused);
  EXPECT_EQ(verdictOf(U_UNICODE_CE, "41 00"), refused);
  EXPECT_EQ(verdictOf(0, "41"), refused);
}

TEST(Validate, AnyTextIsOneOfAnyEncoding) {
  Bytes all(256);
  for (size_t i = 0; i < all.size(); ++i) all[i] = static_cast<uint8_t>(i);
  EXPECT_EQ(verdictOf(U_ANY_CE, all), valid);
  EXPECT_EQ(verdictOf(U_EBCDICANY_CE, all), valid);
}

TEST(ValidByteMaps, AreThoseOfTheText) {
  int count = 0;
  for (CEI cei = 0; cei < NLS_CEI_COUNT; ++cei) {
    const auto defined = definedBytes(cei);
    const uint8_t* map = veldnls::validByteMaps[cei];
    ASSERT_EQ(map != nullptr, defined.has_value()) << cei;
    if (map == nullptr) continue;
    ++count;
    for (int byte = 0; byte < 256; ++byte) EXPECT_EQ(map[byte] != 0, defined->contains(byte)) << cei << " " << byte;
  }
  EXPECT_EQ(count, 156);
}

TEST(ValidByteMaps, StandForTheRowsThatAreNotRefused) {
  for (CEI cei = 0; cei < NLS_CEI_COUNT; ++cei) {
    const int32_t encodingClass = row(cei).encodingClass;
    const bool byMap = encodingClass == NLS_CLASS_SINGLE_BYTE || encodingClass >= NLS_CLASS_SHIFTED;
    const bool takesAny = cei == U_ANY_CE || cei == U_EBCDICANY_CE;
    EXPECT_EQ(veldnls::validByteMaps[cei] != nullptr, byMap && !takesAny && !isRefused(cei)) << cei;
  }
}

TEST(ValidByteMaps, KeepKnownFacts) {
  const auto undefined = [](CEI cei) {
    Bytes bytes;
    for (int byte = 0; byte < 256; ++byte) {
      if (veldnls::validByteMaps[cei][byte] == 0) bytes.push_back(static_cast<uint8_t>(byte));
    }
    return bytes;
  };
  EXPECT_EQ(undefined(U_WLATIN1_CE), hex("81 8D 8F 90 9D"));
  Bytes upper(128);
  for (size_t i = 0; i < upper.size(); ++i) upper[i] = static_cast<uint8_t>(0x80 + i);
  EXPECT_EQ(undefined(U_ASCII_CE), upper);
  EXPECT_EQ(undefined(U_EUCKR_CE), upper);
  struct Half {
    CEI cei;
    size_t defined;
  };
  for (const Half& half :
       {Half{U_IBM939_CE, 229}, {U_IBM930_CE, 229}, {U_IBM933_CE, 219}, {U_IBM935_CE, 168}, {U_IBM937_CE, 166}}) {
    EXPECT_EQ(256 - undefined(half.cei).size(), half.defined) << half.cei;
  }
}

TEST(Validate, EveryByteOfEverySingleByteRow) {
  for (CEI cei = 24; cei < NLS_CEI_COUNT; ++cei) {
    if (row(cei).encodingClass != NLS_CLASS_SINGLE_BYTE || isRefused(cei) || cei == U_ANY_CE || cei == U_EBCDICANY_CE) {
      continue;
    }
    const auto defined = definedBytes(cei);
    for (int byte = 0; byte < 256; ++byte) {
      const bool known = defined->contains(byte);
      Bytes text(7, static_cast<uint8_t>(row(cei).padChar));
      text[3] = static_cast<uint8_t>(byte);
      EXPECT_EQ(verdictOf(cei, text), known ? valid : faultAt(3)) << cei << " " << byte;
      EXPECT_EQ(verdictOf(cei, Span(text).subspan(3, 1)), known ? valid : faultAt(0)) << cei << " " << byte;
    }
  }
}

// The page of us-ascii has the C1 controls; a valid text has none.
TEST(Validate, AsciiHasNoUpperControls) {
  EXPECT_EQ(verdictOf(U_ASCII_CE, "41 7F"), valid);
  EXPECT_EQ(verdictOf(U_ASCII_CE, "41 80"), faultAt(1));
  EXPECT_EQ(verdictOf(U_ASCII_CE, "9F"), faultAt(0));
}

// Behind a lead that the kernel leaves alone, the rule alone decides.
TEST(Validate, Utf8Leads) {
  for (const char* ahead : {"", "F7 BF BF BF"}) {
    const Bytes front = hex(ahead);
    for (int lead = 0x7F; lead < 256; ++lead) {
      for (int second = 0; second < 256; ++second) {
        for (const int third : {0x41, 0x80}) {
          Bytes text = front;
          for (const int byte : {lead, second, third, 0xBF, 0x41}) text.push_back(static_cast<uint8_t>(byte));
          for (size_t length = front.size() + 1; length <= text.size(); ++length) {
            const Span part = Span(text).first(length);
            const int64_t fault = firstFault(row(U_UTF8_CE), part);
            ASSERT_EQ(verdictOf(U_UTF8_CE, part), fault == wellFormed ? valid : faultAt(fault)) << test::toHex(part);
          }
        }
      }
    }
  }
}

// A fault is where the character begins, not at the byte that breaks it.
TEST(Validate, Utf8FaultsAreAtTheLead) {
  EXPECT_EQ(verdictOf(U_UTF8_CE, "61 F0 9F 98 41"), faultAt(1));
  EXPECT_EQ(verdictOf(U_UTF8_CE, "61 E2 82"), faultAt(1));
  EXPECT_EQ(verdictOf(U_UTF8_CE, "61 80"), faultAt(1));
  EXPECT_EQ(verdictOf(U_UTF8_CE, "C1 81"), faultAt(0));
  EXPECT_EQ(verdictOf(U_UTF8_CE, "E0 9F BF"), faultAt(0));
  EXPECT_EQ(verdictOf(U_UTF8_CE, "ED A0 80"), faultAt(0));
  EXPECT_EQ(verdictOf(U_UTF8_CE, "F0 8F BF BF"), faultAt(0));
  EXPECT_EQ(verdictOf(U_UTF8_CE, "F8 88 80 80 80"), faultAt(0));
  EXPECT_EQ(verdictOf(U_UTF8_CE, "FF"), faultAt(0));
}

// Conversion refuses leads above F4 and, to UTF-16, values above U+10FFFF.
TEST(Validate, Utf8HasNoUpperBound) {
  for (const char* text : {"F4 90 80 80", "F4 BF BF BF", "F5 80 80 80", "F7 BF BF BF"}) {
    EXPECT_EQ(verdictOf(U_UTF8_CE, text), valid) << text;
  }
  // The kernel stops at such a lead; the loop goes on behind it.
  Bytes text(100, 'a');
  const Bytes high = hex("F7 BF BF BF");
  text.insert(text.begin() + 40, high.begin(), high.end());
  EXPECT_EQ(verdictOf(U_UTF8_CE, text), valid);
  text.push_back(0xF7);
  EXPECT_EQ(verdictOf(U_UTF8_CE, text), faultAt(104));
}

TEST(Validate, Utf16Surrogates) {
  struct Case {
    const char* big;
    Verdict wanted;
  };
  for (const Case& each : {Case{"D8 3D DE 00", valid},
                           {"DB FF DF FF", valid},
                           {"00 41 D8 3D", faultAt(2)},
                           {"00 41 D8 3D 00 41", faultAt(2)},
                           {"00 41 D8 3D D8 3D DE 00", faultAt(2)},
                           {"00 41 DE 00", faultAt(2)},
                           {"D8 3D DE", faultAt(0)},
                           {"00 41 D8 3D DE", faultAt(2)},
                           {"D8 3D DE 00 41", faultAt(4)},
                           {"00 41 00", faultAt(2)},
                           {"41", faultAt(0)},
                           {"DC", faultAt(0)},
                           {"FF FE FF FF", valid}}) {
    Bytes text = hex(each.big);
    EXPECT_EQ(verdictOf(U_B_UNICODE_CE, text), each.wanted) << each.big;
    for (size_t i = 0; i + 1 < text.size(); i += 2) std::swap(text[i], text[i + 1]);
    EXPECT_EQ(verdictOf(U_L_UNICODE_CE, text), each.wanted) << each.big;
  }
}

// All that lies above U+1018F is refused, though it converts.
TEST(Validate, Utf32EndsAtALowLimit) {
  EXPECT_EQ(verdictOf(U_B_UCS4_CE, "00 01 01 8F"), valid);
  EXPECT_EQ(verdictOf(U_B_UCS4_CE, "00 00 00 41 00 01 01 90"), faultAt(4));
  EXPECT_EQ(verdictOf(U_L_UCS4_CE, "00 F6 01 00"), faultAt(0));
  EXPECT_EQ(verdictOf(U_B_UCS4_CE, "80 00 00 41"), faultAt(0));
  for (size_t length = 1; length < 4; ++length) {
    EXPECT_EQ(verdictOf(U_B_UCS4_CE, Bytes(4 + length)), faultAt(4)) << length;
  }
}

TEST(Validate, Utf32TakesSurrogates) {
  EXPECT_EQ(verdictOf(U_B_UCS4_CE, "00 00 D8 00"), valid);
  EXPECT_EQ(verdictOf(U_L_UCS4_CE, "FF DF 00 00"), valid);
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

TEST(Validate, EveryByteInSingleByteMode) {
  for (CEI cei = 24; cei < NLS_CEI_COUNT; ++cei) {
    if (row(cei).encodingClass != NLS_CLASS_SHIFTED) continue;
    const MultiByteProfile& profile = row(cei).profile;
    const auto defined = definedBytes(cei);
    for (int byte = 0; byte < 256; ++byte) {
      const bool shift = profile.shiftLength == 1 && (byte == profile.shiftOut[0] || byte == profile.shiftIn[0]);
      const Bytes text = {static_cast<uint8_t>(byte)};
      EXPECT_EQ(verdictOf(cei, text), shift || defined->contains(byte) ? valid : faultAt(0)) << cei << " " << byte;
    }
  }
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

// Text that meets the rules often enough to get somewhere, and breaks each of them.
Bytes hostileText(const EncodingDescriptor& encoding, std::mt19937& random) {
  const MultiByteProfile& profile = encoding.profile;
  Bytes text;
  const size_t pieces = random() % 12;
  for (size_t i = 0; i < pieces; ++i) {
    const auto add = [&](const uint8_t* bytes, size_t count) { text.insert(text.end(), bytes, bytes + count); };
    const auto any = [&] { return static_cast<uint8_t>(random()); };
    switch (random() % 8) {
      case 0:
        add(profile.shiftOut, profile.shiftLength);
        break;
      case 1:
        add(profile.shiftIn, profile.shiftLength);
        break;
      case 2:
      case 3: {
        const auto& lead = profile.leadRanges[random() % 4];
        const auto& trail = profile.trailRanges[random() % 4];
        const uint8_t pair[] = {random() % 2 == 0 ? lead.low : lead.high, random() % 2 == 0 ? trail.low : trail.high};
        add(pair, sizeof pair);
        break;
      }
      case 4: {
        const uint8_t four[] = {static_cast<uint8_t>(0xA1 + random() % 96), static_cast<uint8_t>(0x2F + random() % 12),
                                static_cast<uint8_t>(0x80 + random() % 64), static_cast<uint8_t>(0x2F + random() % 12)};
        add(four, sizeof four);
        break;
      }
      case 5: {
        constexpr uint8_t leads[] = {0x8E, 0x8F, 0xC2, 0xE0, 0xED, 0xF0, 0xF4, 0xF7, 0xD8, 0xDC};
        const uint8_t three[] = {leads[random() % sizeof leads], any(), any()};
        add(three, sizeof three);
        break;
      }
      case 6: {
        constexpr uint8_t quad[] = {0x8F, 0x01, 0x01, 0x00, 0x01, 0x01, 0x8F};
        add(quad + (random() % 2 == 0 ? 0 : 3), 4);
        break;
      }
      default: {
        const uint8_t one[] = {static_cast<uint8_t>(random() % 2 == 0 ? 0x20 + random() % 0x60 : random())};
        add(one, sizeof one);
      }
    }
  }
  return text;
}

TEST(Validate, RandomTextOfEveryRow) {
  std::mt19937 random(4);
  for (CEI cei = 20; cei < NLS_CEI_COUNT; ++cei) {
    if (isRefused(cei)) continue;
    int faults = 0;
    for (int round = 0; round < 300; ++round) {
      const Bytes text = hostileText(row(cei), random);
      const int64_t fault = firstFault(row(cei), text);
      if (fault != wellFormed) ++faults;
      ASSERT_EQ(verdictOf(cei, text), fault == wellFormed ? valid : faultAt(fault)) << cei << " " << test::toHex(text);
    }
    EXPECT_LT(faults, 300) << cei;
  }
}

// Offsets are 32-bit numbers with a sign: one beyond their range is given as their largest.
TEST(Validate, OffsetsBeyondTwoGigabytes) {
  constexpr uint32_t length = 0x80000000u + 4096;
  void* area = mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (area == MAP_FAILED) GTEST_SKIP() << "no address space";
  auto* text = static_cast<uint8_t*>(area);
  int32_t offset = 99;
  text[length - 2] = 0xFF;
  EXPECT_EQ(nls()->validateEncodedText(nls(), text, length, U_UTF8_CE, nullptr, &offset), nlsInvalidCharacter);
  EXPECT_EQ(offset, INT_MAX);
  text[length - 2] = 'a';
  EXPECT_EQ(nls()->validateEncodedText(nls(), text, length, U_UTF8_CE, nullptr, &offset), 0u);
  EXPECT_EQ(offset, -1);
  munmap(area, length);
}

}  // namespace

}  // namespace transcode_test
