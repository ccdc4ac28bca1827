// Scanners: what they step over, how long a character is, and that they read nothing outside of the bytes remaining.
#include "modules/qznlsmb/scanners.h"

#include "modules/qznlsmb/rows.h"

namespace transcode_test {
namespace {

using veldnls::Scanner;

struct Scanned {
  size_t skipped;
  uint32_t length;
  bool inDouble;

  bool operator==(const Scanned&) const = default;
};

void PrintTo(const Scanned& scanned, std::ostream* stream) {
  *stream << "skipped " << scanned.skipped << ", length " << scanned.length << (scanned.inDouble ? ", double" : "");
}

// The bytes end at a guard page.
Scanned scan(Scanner* scanner, CEI cei, Span text, bool inDouble = false) {
  PipelineSide side{};
  side.cei = cei;
  side.sourceProfile = &row(cei).profile;
  test::GuardedBuffer buffer(text);
  auto length = static_cast<uint32_t>(text.size());
  NlsBool8 mode = inDouble ? 1 : 0;
  const uint8_t* at = scanner(&side, buffer.data(), &length, &mode);
  return {static_cast<size_t>(at - buffer.data()), length, mode != 0};
}

Scanned scan(Scanner* scanner, CEI cei, std::string_view text, bool inDouble = false) {
  return scan(scanner, cei, Span(hex(text)), inDouble);
}

TEST(Scanners, RulesOfRows) {
  using veldnls::CharacterRule;
  using veldnls::characterRuleOf;
  for (const CEI cei : {158, 167, 168, 169, 172}) EXPECT_EQ(characterRuleOf(row(cei)), CharacterRule::iso2022);
  EXPECT_EQ(characterRuleOf(row(U_EUCJP_CE)), CharacterRule::highBit);
  EXPECT_EQ(characterRuleOf(row(U_GB18030_CE)), CharacterRule::gb18030);
  for (const CEI cei : {117, 129, 157, 147, 2, 23}) EXPECT_EQ(characterRuleOf(row(cei)), CharacterRule::shifted);
  for (const CEI cei : {118, 133, 138, 140, 162, 7}) EXPECT_EQ(characterRuleOf(row(cei)), CharacterRule::leadByte);
}

TEST(Scanners, LeadByte) {
  const auto at = [](std::string_view text) { return scan(veldnls::scanLeadByte, U_SHIFTJIS_CE, text, true); };
  EXPECT_EQ(at("41 81"), (Scanned{0, 1, false}));
  EXPECT_EQ(at("A1 81"), (Scanned{0, 1, false}));
  EXPECT_EQ(at("FD 40"), (Scanned{0, 1, false}));
  EXPECT_EQ(at("81 40 41"), (Scanned{0, 2, true}));
  EXPECT_EQ(at("9F 00"), (Scanned{0, 2, true}));
  EXPECT_EQ(at("E0 FF"), (Scanned{0, 2, true}));
  EXPECT_EQ(at("FC 0A"), (Scanned{0, 2, true}));
  EXPECT_EQ(at("81"), (Scanned{0, 0, true}));
  // A second range.
  EXPECT_EQ(scan(veldnls::scanLeadByte, U_DECJP_CE, "85 41"), (Scanned{0, 2, true}));
  EXPECT_EQ(scan(veldnls::scanLeadByte, U_DECJP_CE, "86 41"), (Scanned{0, 1, false}));
}

TEST(Scanners, HighBit) {
  const auto at = [](std::string_view text) { return scan(veldnls::scanHighBit, U_EUCJP_CE, text, true); };
  EXPECT_EQ(at("7F"), (Scanned{0, 1, false}));
  EXPECT_EQ(at("80 41"), (Scanned{0, 2, true}));
  EXPECT_EQ(at("8F A1 A1"), (Scanned{0, 2, true}));
  EXPECT_EQ(at("FF"), (Scanned{0, 0, true}));
}

TEST(Scanners, ShiftedByOneByte) {
  const auto at = [](std::string_view text, bool inDouble) {
    return scan(veldnls::scanShifted, U_IBM939_CE, text, inDouble);
  };
  EXPECT_EQ(at("81", false), (Scanned{0, 1, false}));
  EXPECT_EQ(at("44 81", true), (Scanned{0, 2, true}));
  EXPECT_EQ(at("44", true), (Scanned{0, 0, true}));
  EXPECT_EQ(at("0E 44 81", false), (Scanned{1, 2, true}));
  EXPECT_EQ(at("0E 44", false), (Scanned{1, 0, true}));
  EXPECT_EQ(at("0E", false), (Scanned{1, 0, true}));
  EXPECT_EQ(at("0F 81", true), (Scanned{1, 1, false}));
  // Both are known in either mode, and as many as there are.
  EXPECT_EQ(at("0E 0E 0E 44 81", true), (Scanned{3, 2, true}));
  EXPECT_EQ(at("0F 0F 0F 81", false), (Scanned{3, 1, false}));
  EXPECT_EQ(at("0E 0F 0E 0F 81", false), (Scanned{4, 1, false}));
  // The end of a text: nothing is left, which the caller sees.
  EXPECT_EQ(at("0F", true), (Scanned{1, 1, false}));
  EXPECT_EQ(at("0E 0F", false), (Scanned{2, 1, false}));
}

TEST(Scanners, ShiftedByTwoBytes) {
  const auto at = [](std::string_view text, bool inDouble) {
    return scan(veldnls::scanShifted, U_HITACHIJP_CE, text, inDouble);
  };
  EXPECT_EQ(at("0A 42 B0 A1", false), (Scanned{2, 2, true}));
  EXPECT_EQ(at("0A 41 81", true), (Scanned{2, 1, false}));
  // A first byte by itself takes the byte behind it with it and shifts out.
  EXPECT_EQ(at("0A 0A B0 A1", false), (Scanned{2, 2, true}));
  EXPECT_EQ(at("0A C1 B0", false), (Scanned{2, 0, true}));
  // With too few bytes the state stays.
  EXPECT_EQ(at("0A", false), (Scanned{0, 0, false}));
  EXPECT_EQ(at("0A", true), (Scanned{0, 0, true}));
  EXPECT_EQ(at("0A 42 0A", false), (Scanned{2, 0, true}));
}

TEST(Scanners, Iso2022WithDesignators) {
  for (auto* scanner : {veldnls::scanIso2022, veldnls::scanIso2022Piece}) {
    const auto at = [scanner](std::string_view text, bool inDouble) {
      return scan(scanner, U_ISO2022KR_CE, text, inDouble);
    };
    EXPECT_EQ(at("41", false), (Scanned{0, 1, false}));
    EXPECT_EQ(at("30 21", true), (Scanned{0, 2, true}));
    EXPECT_EQ(at("1B 24 29 43 41", false), (Scanned{4, 1, false}));
    EXPECT_EQ(at("1B 24 29 43 0E 30 21", false), (Scanned{5, 2, true}));
    EXPECT_EQ(at("0E 1B 24 29 43 30 21", false), (Scanned{5, 2, true}));
    EXPECT_EQ(at("1B 24 29 43 30 21", true), (Scanned{4, 2, true}));
    EXPECT_EQ(at("0F 1B 24 29 43 0E 30 21", true), (Scanned{6, 2, true}));
    EXPECT_EQ(at("1B 00 00 00 1B 00 00 00 41 41", false), (Scanned{8, 1, false}));
    // Only what ends the mode is a shift.
    EXPECT_EQ(at("0F 41", false), (Scanned{0, 1, false}));
    EXPECT_EQ(at("0E 21", true), (Scanned{0, 2, true}));
    EXPECT_EQ(at("0E 0F 41", false), (Scanned{2, 1, false}));
    // A designator without its end.
    EXPECT_EQ(at("1B 24 29", false), (Scanned{0, 0, false}));
    EXPECT_EQ(at("1B", true), (Scanned{0, 0, true}));
    EXPECT_EQ(at("0E 1B 24", false), (Scanned{1, 0, true}));
    EXPECT_EQ(at("0F 1B 24", true), (Scanned{1, 0, false}));
    EXPECT_EQ(at("0E", false), (Scanned{1, 0, true}));
    EXPECT_EQ(at("0F", true), (Scanned{1, 1, false}));
    EXPECT_EQ(at("1B 24 29 43", false), (Scanned{4, 1, false}));
  }
}

TEST(Scanners, Iso2022WithoutDesignators) {
  for (const CEI cei : {U_ISO2022JP_CE, U_JIS7_CE}) {
    for (auto* scanner : {veldnls::scanIso2022, veldnls::scanIso2022Piece}) {
      const auto at = [cei, scanner](std::string_view text, bool inDouble) {
        return scan(scanner, cei, text, inDouble);
      };
      EXPECT_EQ(at("1B 24 42 25 22", false), (Scanned{3, 2, true}));
      EXPECT_EQ(at("1B 28 4A 41", true), (Scanned{3, 1, false}));
      // Other escape sequences are data.
      EXPECT_EQ(at("1B 24 40 25 22", false), (Scanned{0, 1, false}));
      EXPECT_EQ(at("1B 28 42 41", true), (Scanned{0, 2, true}));
      EXPECT_EQ(at("1B 28 4A 41", false), (Scanned{0, 1, false}));
      EXPECT_EQ(at("1B 24 42 1B 24 42 25 22", false), (Scanned{3, 2, true}));
      EXPECT_EQ(at("1B 24", false), (Scanned{0, 0, false}));
      EXPECT_EQ(at("1B 28", true), (Scanned{0, 0, true}));
      EXPECT_EQ(at("1B 24 42 1B 28 4A 41 42 43", false), (Scanned{6, 1, false}));
    }
  }
}

// Behind a sequence the next one counts only while twice its length remains; in a piece it always does.
TEST(Scanners, Iso2022NearTheEnd) {
  EXPECT_EQ(scan(veldnls::scanIso2022, U_ISO2022KR_CE, "0E 0F"), (Scanned{1, 0, true}));
  EXPECT_EQ(scan(veldnls::scanIso2022Piece, U_ISO2022KR_CE, "0E 0F"), (Scanned{2, 1, false}));
  EXPECT_EQ(scan(veldnls::scanIso2022, U_ISO2022KR_CE, "0F 1B", true), (Scanned{1, 1, false}));
  EXPECT_EQ(scan(veldnls::scanIso2022Piece, U_ISO2022KR_CE, "0F 1B", true), (Scanned{1, 0, false}));
  EXPECT_EQ(scan(veldnls::scanIso2022, U_ISO2022JP_CE, "1B 24 42 1B 28 4A 41 42"), (Scanned{3, 2, true}));
  EXPECT_EQ(scan(veldnls::scanIso2022Piece, U_ISO2022JP_CE, "1B 24 42 1B 28 4A 41 42"), (Scanned{6, 1, false}));
  EXPECT_EQ(scan(veldnls::scanIso2022, U_ISO2022JP_CE, "1B 24 42 1B"), (Scanned{3, 0, true}));
  EXPECT_EQ(scan(veldnls::scanIso2022Piece, U_ISO2022JP_CE, "1B 24 42 1B 28"), (Scanned{3, 0, true}));
}

TEST(Scanners, Gb18030) {
  const auto at = [](std::string_view text) { return scan(veldnls::scanGb18030, U_GB18030_CE, text, true); };
  EXPECT_EQ(at("80 81"), (Scanned{0, 1, false}));
  EXPECT_EQ(at("81"), (Scanned{0, 0, true}));
  EXPECT_EQ(at("81 3A"), (Scanned{0, 2, true}));
  EXPECT_EQ(at("FF FF"), (Scanned{0, 2, true}));
  EXPECT_EQ(at("81 39 81"), (Scanned{0, 0, true}));
  EXPECT_EQ(at("81 00 00 00"), (Scanned{0, 4, true}));
  EXPECT_EQ(at("81 30 81 30 81"), (Scanned{0, 4, true}));
}

TEST(Scanners, UtfEbcdic) {
  // I8 bytes 41, 9F, A0, C5, E1, F1, F9, FA in UTF-EBCDIC.
  const Bytes text = run(Pipeline(U_UTF8_CE, U_UTFE_CE), utf8(U"A\u00A0\u0400\u4000\U00040000"), 64).bytes;
  ASSERT_EQ(text.size(), 1u + 2 + 3 + 4 + 5);
  size_t start = 0;
  for (uint32_t length = 1; length <= 5; ++length) {
    for (uint32_t left = 1; left <= length; ++left) {
      EXPECT_EQ(scan(veldnls::scanUtfe, U_UTFE_CE, Span(text).subspan(start, left)),
                (Scanned{0, left == length ? length : 0, false}));
    }
    // A trailing byte begins nothing.
    if (length > 1) {
      EXPECT_EQ(scan(veldnls::scanUtfe, U_UTFE_CE, Span(text).subspan(start + 1, 1)), (Scanned{0, 1, false}));
    }
    start += length;
  }
}

// Hostile bytes: within the input, and each step gets on.
TEST(Scanners, StayWithinTheInput) {
  constexpr uint8_t alphabet[] = {0x0A, 0x0E, 0x0F, 0x1B, 0x24, 0x28, 0x30, 0x41, 0x42, 0x4A, 0x81, 0xA1};
  std::mt19937 random(7);
  for (const CEI cei : multiByteRows()) {
    const veldnls::CharacterRule rule = veldnls::characterRuleOf(row(cei));
    for (int i = 0; i < 400; ++i) {
      Bytes text(random() % 12);
      for (uint8_t& byte : text) byte = alphabet[random() % std::size(alphabet)];
      bool inDouble = random() % 2 != 0;
      Span rest = text;
      while (!rest.empty()) {
        const Scanned next = scan(veldnls::scannerOf(rule), cei, rest, inDouble);
        ASSERT_LE(next.skipped + next.length, rest.size() + (next.skipped == rest.size() ? 1 : 0)) << cei;
        inDouble = next.inDouble;
        if (next.length == 0 || next.skipped == rest.size()) break;
        rest = rest.subspan(next.skipped + next.length);
      }
    }
  }
}

TEST(Scanners, ATextWithoutBytes) {
  for (const CEI cei : multiByteRows()) {
    const veldnls::CharacterRule rule = veldnls::characterRuleOf(row(cei));
    EXPECT_EQ(scan(veldnls::scannerOf(rule), cei, Span()), (Scanned{0, 1, false})) << cei;
  }
}

}  // namespace
}  // namespace transcode_test
