// The slot validateEncodedText: texts of the Unicode forms.
#include <algorithm>

#include "transcode/validity.h"
#include "transcode/verdicts.h"

namespace transcode_test {

namespace {

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

}  // namespace

}  // namespace transcode_test
