// veld convert: what comes over, through standard input and output.
#include <gtest/gtest.h>

#include "apps/program.h"

namespace test {
namespace {

// More than two blocks of the program, and of a size that no character's length divides.
constexpr size_t many = 50021;

// Pieces of a text give what the whole gives.
void expectSameInPieces(const std::string& from, const std::string& to, std::string_view text) {
  SCOPED_TRACE(from + " to " + to);
  const Outcome whole = convert(from, to, text);
  const Outcome pieces = convertInPieces(from, to, text);
  EXPECT_EQ(hex(pieces.output), hex(whole.output));
  EXPECT_EQ(pieces.errors, whole.errors);
  EXPECT_EQ(pieces.exitCode, whole.exitCode);
}

TEST(VeldConvert, CodePagesComeOver) {
  expectWhole(convert("wlatin1", "utf-8", bytes("80 E9 41")), "E2 82 AC C3 A9 41");
  expectWhole(convert("utf-8", "pcoem850", bytes("C3 A9 41")), "82 41");
  expectWhole(convert("latin2", "utf-16be", bytes("A1")), "01 04");
  expectWhole(convert("utf-32le", "ebcdic1047", bytes("41 00 00 00 0A 00 00 00")), "C1 25");
  expectWhole(convert("wlatin1", "aroman", bytes("E9 41")), "8E 41");
}

TEST(VeldConvert, UnicodeFormsComeOver) {
  const std::string smile = bytes("F0 9F 98 80");
  expectWhole(convert("utf-8", "utf-16le", smile), "3D D8 00 DE");
  expectWhole(convert("utf-8", "utf-16be", smile), "D8 3D DE 00");
  expectWhole(convert("utf-8", "utf-32le", smile), "00 F6 01 00");
  expectWhole(convert("utf-8", "utf-32be", smile), "00 01 F6 00");
  expectWhole(convert("utf-32be", "utf-8", bytes("00 01 F6 00")), "F0 9F 98 80");
  expectWhole(convert("utf-8", "utf-e", "A"), "C1");
  expectWhole(convert("utf-8", "utf-8", smile), "F0 9F 98 80");
}

TEST(VeldConvert, AnyNameIsTaken) {
  for (const char* name : {"WLATIN1", "Cp1252", "windows-1252", "U_WLATIN1_CE", "1252", "Western (Windows)"}) {
    SCOPED_TRACE(name);
    expectWhole(convert(name, "UTF8", bytes("80")), "E2 82 AC");
  }
}

TEST(VeldConvert, EmptyInputIsWhole) {
  expectWhole(convert("utf-8", "wlatin1", ""), "");
  expectWhole(convert("utf-16", "utf-8", ""), "");
}

TEST(VeldConvert, Utf16ReadsTheByteOrderMark) {
  expectWhole(convert("utf-16", "utf-8", bytes("FF FE E9 00")), "C3 A9");
  expectWhole(convert("utf-16", "utf-8", bytes("FE FF 00 E9")), "C3 A9");
  expectWhole(convert("UTF-16", "utf-8", bytes("E9 00")), "C3 A9");
  expectWhole(convert("utf-16", "utf-8", bytes("FF FE")), "");
}

TEST(VeldConvert, OnlyUtf16ReadsTheByteOrderMark) {
  expectWhole(convert("utf-16le", "utf-8", bytes("FF FE E9 00")), "EF BB BF C3 A9");
}

TEST(VeldConvert, NoByteOrderMarkIsWritten) {
  expectWhole(convert("utf-8", "utf-16", bytes("C3 A9")), "E9 00");
  expectWhole(convert("utf-16", "utf-16", bytes("FE FF 00 E9")), "E9 00");
}

TEST(VeldConvert, SurrogatePairsOfUtf16beComeOver) {
  const std::string pair = bytes("D8 3D DE 00");
  expectWhole(convert("utf-16be", "utf-8", pair), "F0 9F 98 80");
  expectWhole(convert("utf-16be", "utf-32be", pair), "00 01 F6 00");
  expectWhole(convert("utf-16be", "utf-16le", pair), "3D D8 00 DE");
  expectWhole(convert("utf-16be", "utf-16be", pair), "D8 3D DE 00");
}

TEST(VeldConvert, PlainAndOpenEbcdicExchangeTheLineEnds) {
  expectWhole(convert("ebcdic1047", "open_ed-1047", bytes("15 25 C1")), "25 15 C1");
  expectWhole(convert("open_ed-037", "ebcdic037", bytes("15 25 C1")), "25 15 C1");
}

TEST(VeldConvert, WildCardsTakeTextAsItIs) {
  expectWhole(convert("wlatin1", "any", bytes("81 E9")), "81 E9");
  expectWhole(convert("ebcdic037", "ebcdic-any", bytes("15 BA")), "15 BA");
}

TEST(VeldConvert, Utf16leToItselfKeepsEveryUnit) {
  expectWhole(convert("utf-16le", "utf-16le", bytes("41 00 D8 00")), "41 00 D8 00");
}

TEST(VeldConvert, BlocksAreCutBetweenCharacters) {
  const Outcome outcome = convert("utf-8", "utf-16le", "a" + times(many, bytes("E2 82 AC")));
  EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
  EXPECT_EQ(outcome.output, bytes("61 00") + times(many, bytes("AC 20")));
}

TEST(VeldConvert, SurrogatePairsAreNotCut) {
  const std::string text = bytes("61 00") + times(many, bytes("3D D8 00 DE"));
  const Outcome toBytes = convert("utf-16le", "wlatin1", text);
  EXPECT_EQ(toBytes.exitCode, 1);
  EXPECT_EQ(toBytes.output, "a" + times(many, bytes("1A")));
  const Outcome toUtf8 = convert("utf-16le", "utf-8", text);
  EXPECT_EQ(toUtf8.exitCode, 0) << toUtf8.errors;
  EXPECT_EQ(toUtf8.output, "a" + times(many, bytes("F0 9F 98 80")));
}

TEST(VeldConvert, SurrogatePairsOfUtf16beAreNotCut) {
  const std::string text = bytes("00 61") + times(many, bytes("D8 3D DE 00"));
  const Outcome outcome = convert("utf-16be", "utf-8", text);
  EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
  EXPECT_EQ(outcome.output, "a" + times(many, bytes("F0 9F 98 80")));
}

TEST(VeldConvert, PiecesMakeTheSameText) {
  const std::string text = bytes("61 E2 82 AC F0 9F 98 80 C3 A9 7A");
  for (const char* target : {"utf-16le", "utf-32be", "utf-8", "utf-e", "wlatin1"}) {
    expectSameInPieces("utf-8", target, text);
  }
}

TEST(VeldConvert, PiecesOfUtf16MakeTheSameText) {
  const std::string text = bytes("FE FF 00 61 D8 3D DE 00 20 AC");
  for (const char* target : {"utf-8", "utf-16le", "utf-32le", "wlatin1"}) {
    expectSameInPieces("utf-16", target, text);
  }
}

TEST(VeldConvert, SessionEncodingComesFromOptionEnvironmentOrHost) {
  const std::vector<std::string> arguments{"convert", "-f", "session", "-t", "utf-8"};
  std::vector<std::string> withOption = arguments;
  withOption.insert(withOption.end(), {"--session-encoding", "latin2"});
  expectWhole(runVeld({.arguments = withOption, .input = bytes("A1")}), "C4 84");
  expectWhole(runVeld({.arguments = arguments,
                       .input = bytes("A1"),
                       .environment = {"LC_ALL=C", "VELD_SESSION_ENCODING=cyrillic"}}),
              "D0 81");
  expectWhole(runVeld({.arguments = arguments, .input = bytes("80")}), "E2 82 AC");
}

}  // namespace
}  // namespace test
