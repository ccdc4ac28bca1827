// veld convert: malformed bytes, at the end of a file too, with their places and bytes.
#include <gtest/gtest.h>

#include "apps/program.h"

namespace test {
namespace {

void expectFault(std::string_view input, std::string_view expectedHex, std::string_view told,
                 const char* from = "utf-8") {
  const Outcome outcome = convert(from, "wlatin1", bytes(input));
  EXPECT_EQ(hex(outcome.output), expectedHex);
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(lineCount(outcome.errors), 1u) << outcome.errors;
  EXPECT_TRUE(contains(outcome.errors, "standard input: " + std::string(told))) << outcome.errors;
}

// The library waits for six bytes behind FF.
TEST(VeldEnd, SoundTextBehindAMalformedByteComesOver) {
  expectFault("FF 61 62 63", "1A 61 62 63", "offset 0, line 1, column 1: FF is malformed");
  expectFault("E3 61", "1A 61", "offset 0, line 1, column 1: E3 is malformed");
  expectFault("61 FF FF 62", "61 1A 1A 62", "offset 1, line 1, column 2: FF is malformed");
  expectFault("F0 80", "1A", "offset 0, line 1, column 1: F0 80 is malformed");
  expectFault("81 20 61", "20 20 61", "offset 0, line 1, column 1: 81 is malformed", "gb18030");
  expectFault("81 30", "", "offset 0, line 1, column 1: 81 30: the file ends inside", "gb18030");
  expectFault("F0 9F 98", "", "offset 0, line 1, column 1: F0 9F 98: the file ends inside");
  EXPECT_EQ(hex(convert("utf-8", "ibm-939", bytes("FF 61 62")).output), "0E 40 40 0F 81 82");
  EXPECT_EQ(hex(convert("utf-8", "utf-16le", bytes("FF 61 E2 82")).output), "FD FF 61 00");
}

TEST(VeldEnd, AStopAheadOfAMalformedEndLeavesIt) {
  const Outcome outcome = convert("utf-8", "wlatin1", bytes("61 FF 62"), {"--on-loss", "fail"});
  EXPECT_EQ(outcome.output, "a");
  EXPECT_EQ(outcome.exitCode, 1);
}

TEST(VeldEnd, ThePlaceIsThatOfTheFirstByte) {
  expectFault("68 E2 82 AC FF 0A", "68 80 1A 0A", "offset 4, line 1, column 3: ");
  expectFault("61 FF 0A 62 0A", "61 1A 0A 62 0A", "offset 1, line 1, column 2: ");
}

TEST(VeldEnd, OnlyReplacedBytesAreTold) {
  expectFault("78 FF E6 97 A5 E6 97 A5", "78 1A 1A 1A", "offset 1, line 1, column 2: FF is malformed");
  expectFault("E3 0A 62", "1A 0A 62", "offset 0, line 1, column 1: E3 is malformed");
  expectFault("E3 81 61 62", "1A 61 62", "offset 0, line 1, column 1: E3 81 is malformed");
}

// Two sentences: the first loss, and the character that the file's end cuts.
TEST(VeldEnd, ThePlaceOfACutCountsTheFaultsAheadOfIt) {
  const auto cut = [](const char* from, std::string_view input, const std::string& told) {
    const Outcome outcome = convert(from, "utf-8", bytes(input));
    EXPECT_EQ(lineCount(outcome.errors), 2u) << outcome.errors;
    EXPECT_TRUE(contains(outcome.errors, "standard input: " + told + ": the file ends inside")) << outcome.errors;
  };
  cut("utf-8", "F4 F4", "offset 1, line 1, column 2: F4");
  cut("utf-8", "F4 F4 F4 F4 F4", "offset 4, line 1, column 5: F4");
  cut("utf-16le", "00 D8 00 D8 00 D8 00 D8", "offset 6, line 1, column 4: 00 D8");
  cut("utf-16be", "D8 00 D8 00 D8 00 D8 00", "offset 6, line 1, column 4: D8 00");
  cut("dec-jp", "8E B1", "offset 1, line 1, column 2: B1");
}

TEST(VeldEnd, PiecesMakeTheSameEnd) {
  for (const char* text : {"FF 61 62 63", "68 E2 82 AC FF 0A", "61 FF 0A 62 0A", "FF FF 80 61 E2"}) {
    SCOPED_TRACE(text);
    const Outcome whole = convert("utf-8", "utf-16le", bytes(text));
    const Outcome pieces =
        runVeld({.arguments = {"convert", "-f", "utf-8", "-t", "utf-16le"}, .input = bytes(text), .pieceSize = 1});
    EXPECT_EQ(hex(pieces.output), hex(whole.output));
    EXPECT_EQ(pieces.errors, whole.errors);
  }
}

TEST(VeldEnd, TheEuroOfHostKatakanaIsSound) {
  const Outcome host = convert("utf-8", "ibm-939", bytes("E2 82 AC"));
  EXPECT_EQ(hex(host.output), "E1");
  EXPECT_EQ(runVeld({.arguments = {"validate", "-f", "ibm-939"}, .input = host.output}).exitCode, 0);
  const Outcome onwards = convert("ibm-939", "ebcdic277", host.output);
  EXPECT_EQ(onwards.exitCode, 1);
  EXPECT_TRUE(contains(onwards.errors, "E1 (U+20AC) has no place in ebcdic277")) << onwards.errors;
}

}  // namespace
}  // namespace test
