// Every code of every multi-byte encoding, in each of its modes, to every Unicode form and to single bytes, through
// pipelines.
#include "reference/checked_route.h"
#include "reference/multi_byte_text.h"

namespace transcode_test {

namespace {

constexpr uint32_t byteCount = 0x100;

Bytes joined(std::initializer_list<Span> parts) {
  Bytes bytes;
  for (const Span part : parts) bytes.insert(bytes.end(), part.begin(), part.end());
  return bytes;
}

// All codes of a first byte.
Bytes codesOf(uint32_t first) {
  Bytes bytes;
  for (uint32_t second = 0; second < byteCount; ++second) {
    bytes.push_back(static_cast<uint8_t>(first));
    bytes.push_back(static_cast<uint8_t>(second));
  }
  return bytes;
}

Bytes codeOf(uint32_t first, uint32_t second) { return {static_cast<uint8_t>(first), static_cast<uint8_t>(second)}; }

class MultiByteCodes : public testing::TestWithParam<CEI> {
 protected:
  static const EncodingText& row() { return encodingText(GetParam()); }
  static bool isShifted() { return row().shiftLength() != 0; }

  test::DbcsLanguage language_{host(), u"UNKNOWN"};
};

TEST_P(MultiByteCodes, EverySingleByte) {
  for (const TextForm& form : textForms) {
    const CheckedRoute route(GetParam(), form.cei);
    for (uint32_t byte = 0; byte < byteCount; ++byte) {
      const Bytes text{static_cast<uint8_t>(byte)};
      ASSERT_NO_FATAL_FAILURE(route.check(text));
      ASSERT_NO_FATAL_FAILURE(route.check(text, isShifted()));
      ASSERT_NO_FATAL_FAILURE(route.check(joined({row().shiftOut, row().shiftIn, text})));
    }
  }
}

TEST_P(MultiByteCodes, EveryTwoBytesToUtf16) {
  const CheckedRoute route(GetParam(), U_L_UNICODE_CE);
  for (uint32_t first = 0; first < byteCount; ++first) {
    for (uint32_t second = 0; second < byteCount; ++second) {
      ASSERT_NO_FATAL_FAILURE(route.checkResumable(joined({row().shiftOut, codeOf(first, second), row().shiftIn})));
    }
  }
}

TEST_P(MultiByteCodes, EveryTwoBytesInEveryModeToEveryForm) {
  for (const TextForm& form : textForms) {
    const CheckedRoute route(GetParam(), form.cei);
    for (uint32_t first = 0; first < byteCount; ++first) {
      const Bytes codes = codesOf(first);
      ASSERT_NO_FATAL_FAILURE(route.checkResumable(joined({row().shiftOut, codes, row().shiftIn, codes})));
      if (form.cei != U_L_UNICODE_CE) continue;
      ASSERT_NO_FATAL_FAILURE(route.check(codes));
      ASSERT_NO_FATAL_FAILURE(route.checkResumable(codes, isShifted()));
    }
  }
}

// To pages of either family, with and without a euro.
TEST_P(MultiByteCodes, EveryTwoBytesToSingleBytes) {
  for (const CEI page : {U_WLATIN1_CE, U_LATIN9_CE, U_CYRILLIC_CE, U_LATIN2_CE, U_EBCDIC1047_CE}) {
    const CheckedRoute route(GetParam(), page);
    for (uint32_t first = 0; first < byteCount; ++first) {
      const Bytes codes = codesOf(first);
      ASSERT_NO_FATAL_FAILURE(route.check(codes));
      ASSERT_NO_FATAL_FAILURE(route.check(joined({row().shiftOut, codes, row().shiftIn})));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Rows, MultiByteCodes, testing::ValuesIn(multiByteCeis()));

// What a row writes in double-byte mode can't be taken for the start of a shift, at either byte.
TEST_P(MultiByteCodes, NoneHoldsAByteAtWhichAShiftBegins) {
  if (!isShifted()) return;
  // Of sets in eight bits ISO-2022 text keeps the codes with both bytes above A0.
  const bool isSevenBit = row().doubleBlank[0] == 0x21;
  const bool isCut = isSevenBit && row().doubleBlank[1] == 0x20;
  const auto begins = [](uint32_t byte) { return byte == row().shiftOut[0] || byte == row().shiftIn[0]; };
  for (const std::optional<uint16_t>& code : doubleByteText(row().doubleByteSet).codes) {
    if (!code || *code < 0x100) continue;
    if (isCut && (*code >> 8 <= 0xA0 || (*code & 0xFF) <= 0xA0)) continue;
    const Code written = isSevenBit ? *code & 0x7F7Fu : *code;
    EXPECT_FALSE(begins(written >> 8) || begins(written & 0xFF)) << std::hex << *code;
  }
  EXPECT_FALSE(begins(row().doubleBlank[0]) || begins(row().doubleBlank[1]));
}

// Nor can what a row with shifts of one byte reads there, in eight bits: inner loops look codes up without a look at
// shifts.
TEST_P(MultiByteCodes, NoneIsReadFromAByteThatIsAShift) {
  const bool isSevenBit = row().doubleBlank[0] == 0x21;
  if (row().shiftLength() != 1 || isSevenBit) return;
  const auto isShift = [](uint32_t byte) { return byte == row().shiftOut[0] || byte == row().shiftIn[0]; };
  const std::vector<uint16_t>& units = doubleByteText(row().doubleByteSet).units;
  for (Code code = 0; code < units.size(); ++code) {
    if (units[code] == 0) continue;
    EXPECT_FALSE(isShift(code >> 8) || isShift(code & 0xFF)) << std::hex << code;
  }
}

// Those that a lead byte and a digit begin, whatever stands behind them.
TEST(Gb18030Codes, EveryFourBytes) {
  const CheckedRoute route(U_GB18030_CE, U_L_UNICODE_CE);
  for (uint32_t first = 0x81; first <= 0xFE; ++first) {
    for (uint32_t second = 0x30; second <= 0x39; ++second) {
      for (uint32_t third = 0x81; third <= 0xFE; ++third) {
        Bytes text;
        for (uint32_t fourth = 0x30; fourth <= 0x39; ++fourth) {
          const Bytes code = joined({codeOf(first, second), codeOf(third, fourth)});
          text.insert(text.end(), code.begin(), code.end());
        }
        ASSERT_NO_FATAL_FAILURE(route.check(text));
      }
    }
  }
}

TEST(Gb18030Codes, FourBytesWithAnyEnd) {
  for (const TextForm& form : textForms) {
    const CheckedRoute route(U_GB18030_CE, form.cei);
    for (const uint32_t second : {0x00, 0x2F, 0x30, 0x39, 0x3A}) {
      for (uint32_t third = 0; third < byteCount; ++third) {
        Bytes text;
        for (uint32_t fourth = 0; fourth < byteCount; ++fourth) {
          const Bytes code = joined({codeOf(0x81, second), codeOf(third, fourth)});
          text.insert(text.end(), code.begin(), code.end());
        }
        ASSERT_NO_FATAL_FAILURE(route.check(text));
      }
    }
  }
}

}  // namespace

}  // namespace transcode_test
