// veld convert: multi-byte encodings, what comes over and what is told of the rest.
#include <gtest/gtest.h>

#include "apps/program.h"

namespace test {
namespace {

// More than two blocks of the program.
constexpr size_t many = 50021;

TEST(VeldMultiByte, UnicodeAndBack) {
  const std::string aHiraganaB = bytes("61 E3 81 82 62");
  expectWhole(convert("utf-8", "shift-jis", aHiraganaB), "61 82 A0 62");
  expectWhole(convert("utf-8", "euc-jp", aHiraganaB), "61 A4 A2 62");
  expectWhole(convert("utf-8", "ibm-939", aHiraganaB), "81 0E 44 81 0F 82");
  expectWhole(convert("utf-8", "iso2022jp", aHiraganaB), "61 1B 24 42 24 22 1B 28 4A 62");
  expectWhole(convert("shift-jis", "utf-8", bytes("61 82 A0 62")), hex(aHiraganaB));
  expectWhole(convert("ibm-939", "utf-16be", bytes("81 0E 44 81 0F 82")), "00 61 30 42 00 62");
  expectWhole(convert("utf-32be", "gb18030", bytes("00 00 4E 2D 00 00 00 61")), "D6 D0 61");
}

TEST(VeldMultiByte, OneMultiByteEncodingToAnother) {
  expectWhole(convert("shift-jis", "euc-jp", bytes("61 82 A0 62")), "61 A4 A2 62");
  expectWhole(convert("ibm-939", "euc-jp", bytes("81 0E 44 81 0F 82")), "61 A4 A2 62");
  expectWhole(convert("euc-jp", "ibm-939", bytes("61 A4 A2 62")), "81 0E 44 81 0F 82");
  expectWhole(convert("euc-cn", "gb18030", bytes("D6 D0")), "D6 D0");
}

// The library's direct way would keep the invariant characters and the euro alone.
TEST(VeldMultiByte, SingleBytePagesGoThroughUtf16) {
  expectWhole(convert("wcyrillic", "shift-jis", bytes("C6")), "84 47");
  expectWhole(convert("shift-jis", "wcyrillic", bytes("84 47 61")), "C6 61");
  expectWhole(convert("ibm-939", "ebcdic1047", bytes("81 82")), "81 82");
  expectWhole(convert("us-ascii", "iso2022jp", "ab"), "61 62");
}

TEST(VeldMultiByte, KindredPairsComeOver) {
  expectWhole(convert("ms-932", "shift-jis", bytes("61 82 A0")), "61 82 A0");
  expectWhole(convert("shift-jis", "shift-jis", bytes("61 82 A0")), "61 82 A0");
  expectLoss(convert("ms-932", "shift-jis", bytes("61 82 20 62")), "61 81 40 62", "offset 1, line 1, column 2",
             "82 20 is malformed in ms-932");
}

TEST(VeldMultiByte, Gb18030HasItsFourByteCodes) {
  expectWhole(convert("utf-8", "gb18030", bytes("C2 80")), "81 30 81 30");
  expectWhole(convert("gb18030", "utf-8", bytes("81 30 81 30")), "C2 80");
  expectWhole(convert("wlatin1", "gb18030", bytes("FF")), "81 30 8B 37");
}

TEST(VeldMultiByte, WildCardsTakeTextAsItIs) {
  expectWhole(convert("any", "shift-jis", bytes("81 FF 20")), "81 FF 20");
  expectWhole(convert("iso2022jp", "any", bytes("1B 24 42")), "1B 24 42");
  expectWhole(convert("ebcdic-any", "ibm-939", bytes("0E 41")), "0E 41");
}

// Each of the library's calls ends in single-byte mode; the text has the shifts that it would have in one call.
TEST(VeldMultiByte, ShiftedTextDoesntDependOnItsBlocks) {
  const std::string text = "a" + times(many, bytes("E3 81 82")) + "b";
  const Outcome host = convert("utf-8", "ibm-939", text);
  EXPECT_EQ(host.exitCode, 0) << host.errors;
  EXPECT_EQ(host.output, bytes("81 0E") + times(many, bytes("44 81")) + bytes("0F 82"));
  const Outcome jis = convert("utf-8", "iso2022jp", text);
  EXPECT_EQ(jis.output, bytes("61 1B 24 42") + times(many, bytes("24 22")) + bytes("1B 28 4A 62"));
  const Outcome back = convert("ibm-939", "utf-8", host.output);
  EXPECT_EQ(back.exitCode, 0) << back.errors;
  EXPECT_EQ(back.output, text);
}

TEST(VeldMultiByte, PiecesMakeTheSameText) {
  const std::string text = bytes("61 E3 81 82 E3 81 84 62 E3 81 82 0A E3 81 86");
  for (const char* encoding :
       {"shift-jis", "euc-jp", "ibm-939", "hitachi-jp", "iso2022jp", "jis-7", "gb18030", "ibm-933"}) {
    SCOPED_TRACE(encoding);
    const Outcome there = convert("utf-8", encoding, text);
    EXPECT_EQ(there.exitCode, 0) << there.errors;
    EXPECT_EQ(hex(convertInPieces("utf-8", encoding, text).output), hex(there.output));
    expectWhole(convertInPieces(encoding, "utf-8", there.output), hex(text));
  }
}

TEST(VeldMultiByte, ALossIsToldWithItsPlaceItsBytesAndItsReason) {
  expectLoss(convert("shift-jis", "utf-8", bytes("61 0A 82 A0 82 20 62")), "61 0A E3 81 82 E3 80 80 62",
             "offset 4, line 2, column 2", "82 20 is malformed in shift-jis");
  expectLoss(convert("shift-jis", "utf-8", bytes("61 85 A0 62")), "61 E3 80 80 62", "offset 1, line 1, column 2",
             "85 A0 stands for no character in shift-jis");
  expectLoss(convert("shift-jis", "wlatin1", bytes("61 82 A0 62")), "61 1A 62", "offset 1, line 1, column 2",
             "82 A0 (U+3042) has no place in wlatin1");
  expectLoss(convert("utf-8", "shift-jis", bytes("61 0D 0A EA B0 80 62")), "61 0D 0A 81 40 62",
             "offset 3, line 2, column 1", "EA B0 80 (U+AC00) has no place in shift-jis");
  expectLoss(convert("euc-kr", "shift-jis", bytes("61 B0 A1 62")), "61 81 40 62", "offset 1, line 1, column 2",
             "B0 A1 (U+AC00) has no place in shift-jis");
}

TEST(VeldMultiByte, ALossInShiftedTextIsLocatedBehindItsShift) {
  expectLoss(convert("ibm-939", "utf-8", bytes("81 0E 44 81 FE FE 0F 82")), "61 E3 81 82 E3 80 80 62",
             "offset 4, line 1, column 3", "FE FE stands for no character in ibm-939");
  expectLoss(convert("ibm-939", "utf-8", bytes("81 15 0E FE FE 0F 82")), "61 0A E3 80 80 62",
             "offset 3, line 2, column 1", "FE FE stands for no character");
  expectLoss(convert("ibm-939", "utf-8", bytes("81 0E 44 81 44 30 0F 82")), "61 E3 81 82 E3 80 80 62",
             "offset 4, line 1, column 3", "44 30 is malformed in ibm-939");
  expectLoss(convert("ibm-939", "wlatin1", bytes("0E 44 81 0F 82")), "1A 62", "offset 1, line 1, column 1",
             "44 81 (U+3042) has no place in wlatin1");
}

TEST(VeldMultiByte, TheOffsetHoldsInEveryBlock) {
  for (const size_t pairs : {size_t{32766}, size_t{32767}, size_t{32768}, size_t{65535}}) {
    SCOPED_TRACE(pairs);
    const std::string ahead = "a" + times(pairs, bytes("82 A0"));
    const Outcome lead = convert("shift-jis", "utf-8", ahead + bytes("82 20 62"));
    EXPECT_TRUE(contains(lead.errors, "offset " + std::to_string(ahead.size()) + ", line 1, column " +
                                          std::to_string(pairs + 2) + ": 82 20 is malformed"))
        << lead.errors;
    const std::string shifted = bytes("81 0E") + times(pairs, bytes("44 81"));
    const Outcome host = convert("ibm-939", "utf-8", shifted + bytes("FE FE 0F"));
    EXPECT_TRUE(contains(host.errors, "offset " + std::to_string(shifted.size()) + ", line 1, column " +
                                          std::to_string(pairs + 2) + ": FE FE stands for no character"))
        << host.errors;
  }
}

TEST(VeldMultiByte, AnEndInsideACharacterCountsAsCut) {
  expectLoss(convert("shift-jis", "utf-8", bytes("61 82")), "61", "offset 1, line 1, column 2",
             "82: the file ends inside this character");
  expectLoss(convert("ibm-939", "utf-8", bytes("81 0E 44 81 44")), "61 E3 81 82", "offset 4, line 1, column 3",
             "44: the file ends inside");
  expectLoss(convert("gb18030", "utf-8", bytes("61 81 30 81")), "61", "offset 1, line 1, column 2",
             "81 30 81: the file ends inside");
  expectWhole(convert("ibm-939", "utf-8", bytes("81 0E 44 81")), "61 E3 81 82");
}

// The library reads these as blanks, or as Latin, and says nothing.
TEST(VeldMultiByte, SingleBytesWithoutAMeaningCountAsSubstituted) {
  expectLoss(convert("shift-jis", "utf-8", bytes("61 FF 62")), "61 20 62", "offset 1, line 1, column 2", "FF ");
  expectLoss(convert("ibm-930", "utf-8", bytes("C1 57")), "41 20", "offset 1, line 1, column 2", "57 ");
  const Outcome sevenBit = convert("iso2022jp", "utf-8", bytes("61 C1"));
  expectLoss(sevenBit, hex(sevenBit.output), "offset 1, line 1, column 2", "C1 is malformed in iso2022jp");
}

// A first byte of a shift sequence takes the next byte with it, whatever that is.
TEST(VeldMultiByte, ShiftSequencesThatAreNoneCountAsMalformed) {
  const Outcome outcome = convert("hitachi-jp", "utf-8", bytes("81 0A 99 B0 A1"));
  expectLoss(outcome, hex(outcome.output), "offset 1, line 1, column 2", "0A 99 is malformed in hitachi-jp");
  const Outcome escape = convert("iso2022jp", "utf-8", bytes("61 1B 28 42 62"));
  expectLoss(escape, "61 1B 28 42 62", "offset 1, line 1, column 2", "1B stands for no character in iso2022jp");
}

// What the library writes without a word and reads as something else.
TEST(VeldMultiByte, CharactersThatDontComeBackCountAsSubstituted) {
  const auto expectNoPlace = [](const char* from, const char* to, std::string_view input, std::string_view place) {
    const Outcome outcome = convert(from, to, bytes(input));
    expectLoss(outcome, hex(outcome.output), place, std::string(" has no place in ") + to);
  };
  expectNoPlace("utf-8", "shift-jis", "61 C2 85 62", "offset 1, line 1, column 2");
  expectNoPlace("utf-16le", "shift-jis", "61 00 85 00 62 00", "offset 2, line 1, column 2");
  expectNoPlace("utf-16be", "shift-jis", "00 61 00 85", "offset 2, line 1, column 2");
  expectNoPlace("utf-32le", "shift-jis", "61 00 00 00 85 00 00 00", "offset 4, line 1, column 2");
  expectNoPlace("ibm-939", "shift-jis", "81 25", "offset 1, line 1, column 2");
  expectNoPlace("ebcdic1047", "euc-jp", "81 04", "offset 1, line 1, column 2");
  expectNoPlace("utf-8", "ibm-939", "61 0E 62", "offset 1, line 1, column 2");
  expectNoPlace("utf-8", "iso2022jp", "61 1B 24 42", "offset 1, line 1, column 2");
  expectNoPlace("utf-8", "ibm-930", "41 61", "offset 1, line 1, column 2");
  expectNoPlace("utf-8", "iso2022kr", "61 C2 85", "offset 1, line 1, column 2");
  expectWhole(convert("utf-8", "ibm-939", bytes("C2 85 0A")), "25 15");
}

// Best fits, and codes that a page writes and reads as something else or not at all.
TEST(VeldMultiByte, BestFitsCountAsSubstituted) {
  const auto expectNoPlace = [](const char* from, const char* to, std::string_view input, std::string_view words) {
    SCOPED_TRACE(std::string(from) + " to " + to);
    const Outcome outcome = convert(from, to, bytes(input));
    expectLoss(outcome, hex(outcome.output), "offset 1, line 1, column 2",
               std::string(words) + " has no place in " + to + ", the first loss in this file");
  };
  expectNoPlace("utf-8", "ms-936", "61 C3 80 62", "C3 80 (U+00C0)");
  expectNoPlace("utf-8", "fujitsu-jp", "61 EF BD B1 62", "EF BD B1 (U+FF71)");
  expectNoPlace("utf-8", "iso2022jp", "61 E2 91 A0", "E2 91 A0 (U+2460)");
  expectNoPlace("utf-8", "euc-jp", "61 E3 80 9C", "E3 80 9C (U+301C)");
  expectNoPlace("utf-8", "wvietnamese", "61 CD 80 62", "CD 80 (U+0340)");
  expectNoPlace("wlatin1", "ms-936", "61 C0 62", "C0 (U+00C0)");
  expectNoPlace("shift-jis", "nec-jp", "61 B1 62", "B1 (U+FF71)");
  expectNoPlace("shift-jis", "iso2022jp", "61 87 40 62", "87 40 (U+2460)");
  // Places in code units and behind shifts.
  EXPECT_TRUE(contains(convert("utf-16be", "ms-936", bytes("00 61 00 C0 00 62")).errors, "offset 2, line 1, column 2"));
  EXPECT_TRUE(contains(convert("utf-32le", "ms-936", bytes("0A 00 00 00 C0 00 00 00")).errors,
                       "offset 4, line 2, column 1: C0 00 00 00 (U+00C0) has no place in ms-936"));
  EXPECT_TRUE(contains(convert("gb18030", "ms-936", bytes("61 81 30 86 38 62")).errors,
                       "offset 1, line 1, column 2: 81 30 86 38 (U+00C0) has no place in ms-936"));
  EXPECT_TRUE(contains(convert("ibm-939", "euc-jp", bytes("0E 44 81 43 A1 0F")).errors,
                       "offset 3, line 1, column 2: 43 A1 (U+301C) has no place in euc-jp"));
  const std::string host = convert("utf-8", "utf-e", bytes("61 C3 80")).output;
  EXPECT_TRUE(contains(convert("utf-e", "ms-936", host).errors, "offset 1, line 1, column 2: 8A 41 (U+00C0) has no"));
}

// What comes back as itself is no loss.
TEST(VeldMultiByte, CharactersThatComeBackAreWhole) {
  expectWhole(convert("utf-8", "ms-936", bytes("C3 A0 E4 B8 AD")), "A8 A4 D6 D0");
  expectWhole(convert("utf-8", "shift-jis", bytes("EF BD 9E EF BD B1")), "81 60 B1");
}

TEST(VeldMultiByte, BestFitsAreLocatedInEveryBlock) {
  for (size_t ahead = 65530; ahead <= 65540; ++ahead) {
    SCOPED_TRACE(ahead);
    const Outcome outcome = convert("utf-8", "euc-jp", times(ahead, "a") + bytes("E3 80 9C 62"));
    EXPECT_TRUE(contains(outcome.errors, "offset " + std::to_string(ahead) + ", line 1, column " +
                                             std::to_string(ahead + 1) + ": E3 80 9C (U+301C) has no place"))
        << outcome.errors;
    const Outcome stopped = convert("utf-8", "euc-jp", times(ahead, "a") + bytes("E3 80 9C 62"), {"--on-loss", "fail"});
    EXPECT_EQ(stopped.output.size(), ahead);
  }
}

// Only the low 16 bits of a character are looked up.
TEST(VeldMultiByte, CharactersBeyondFfffToGb18030CountAsSubstituted) {
  for (const auto& [from, text] : {std::pair<const char*, const char*>{"utf-8", "61 F0 9E 80 80"},
                                   {"utf-16le", "61 00 38 D8 00 DC"},
                                   {"utf-32be", "00 00 00 61 00 01 E0 00"}}) {
    SCOPED_TRACE(from);
    const Outcome outcome = convert(from, "gb18030", bytes(text));
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_TRUE(contains(outcome.errors, "(U+1E000) has no place in gb18030")) << outcome.errors;
  }
}

// The stages between Unicode forms leave out bits that count here.
TEST(VeldMultiByte, UtfEbcdicIsReadInFull) {
  const Outcome outcome = convert("utf-e", "shift-jis", convert("utf-8", "utf-e", bytes("CE B1 E3 81 82")).output);
  EXPECT_EQ(hex(outcome.output), "83 BF 82 A0");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_TRUE(contains(outcome.errors, "warning: the library reads malformed utf-e")) << outcome.errors;
  const Outcome control = convert("utf-e", "shift-jis", convert("utf-8", "utf-e", bytes("61 C2 85")).output);
  EXPECT_TRUE(contains(control.errors, "offset 1, line 1, column 2: 25 (U+0085) has no place in shift-jis"))
      << control.errors;
}

TEST(VeldMultiByte, OnLossFailStopsAheadOfTheCharacter) {
  const std::vector<std::string> fail{"--on-loss", "fail"};
  expectLoss(convert("shift-jis", "utf-8", bytes("61 82 A0 82 20 62"), fail), "61 E3 81 82",
             "offset 3, line 1, column 3", "82 20 is malformed in shift-jis; the conversion stopped ahead of it");
  expectLoss(convert("utf-8", "ibm-939", bytes("E3 81 82 EA B0 80"), fail), "0E 44 81 0F", "offset 3, line 1, column 2",
             "(U+AC00) has no place");
}

TEST(VeldMultiByte, EncodingsOfSingleBytesAloneGetAWarning) {
  for (const char* encoding : {"ibm-1381", "fujitsu-cn", "hitquo-cn"}) {
    const Outcome outcome = convert("utf-8", encoding, "a");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_TRUE(contains(outcome.errors, "no table of the double-byte characters of " + std::string(encoding)))
        << outcome.errors;
  }
}

}  // namespace
}  // namespace test
