// veld convert: what doesn't come over is reported, with its place, and shows in the exit status.
#include <gtest/gtest.h>

#include "apps/program.h"

namespace test {
namespace {

void expectLoss(const Outcome& outcome, std::string_view expectedHex, size_t offset) {
  test::expectLoss(outcome, expectedHex, "offset " + std::to_string(offset));
}

std::string behindPlace(const std::string& sentence) {
  return sentence.substr(sentence.find(": ", sentence.find("column ")));
}

// A text of one loss, cut at each of its places by the end of a block, is converted and told as alone.
void expectSameAtEveryCut(const char* from, const char* to, std::string_view unit, std::string_view text,
                          size_t lossOffset) {
  constexpr size_t block = 64 * 1024;
  const Outcome alone = convert(from, to, text);
  const std::string unitOutput = convert(from, to, unit).output;
  const Folder folder;
  for (size_t cut = 0; cut <= text.size(); cut += unit.size()) {
    SCOPED_TRACE(std::string(from) + " cut at " + std::to_string(cut));
    const size_t units = (block - cut) / unit.size();
    const std::string ahead = times(units, unit);
    const Outcome outcome = convert(from, to, "", {folder.write("text", ahead + std::string(text))});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_TRUE(outcome.output == times(units, unitOutput) + alone.output);
    EXPECT_TRUE(contains(outcome.errors, "offset " + std::to_string(ahead.size() + lossOffset) + ", line 1"))
        << outcome.errors;
    EXPECT_EQ(behindPlace(outcome.errors), behindPlace(alone.errors));
  }
}

TEST(VeldLoss, CharactersWithoutAPlaceAreToldWithTheirOffset) {
  expectLoss(convert("utf-8", "wlatin1", bytes("61 62 E2 82 AC CE 94 7A")), "61 62 80 1A 7A", 5);
  expectLoss(convert("utf-16le", "wlatin1", bytes("61 00 94 03")), "61 1A", 2);
  expectLoss(convert("utf-16be", "wlatin1", bytes("00 61 D8 3D DE 00")), "61 1A", 2);
  expectLoss(convert("utf-32be", "ebcdic1047", bytes("00 00 00 61 00 00 03 94")), "81 3F", 4);
}

TEST(VeldLoss, MalformedTextIsToldWithItsOffset) {
  expectLoss(convert("utf-8", "utf-16le", bytes("61 E2 28 A1")), "61 00 FD FF 28 00 FD FF", 1);
  expectLoss(convert("utf-8", "utf-8", bytes("61 62 C0 80 63")), "61 62 EF BF BD 63", 2);
  expectLoss(convert("utf-32le", "utf-16le", bytes("61 00 00 00 00 D8 00 00")), "61 00 FD FF", 4);
  expectLoss(convert("utf-16le", "utf-32le", bytes("61 00 00 DC 62 00")), "61 00 00 00 FD FF 00 00 62 00 00 00", 2);
}

TEST(VeldLoss, MalformedTextThatPassesUnreportedIsTold) {
  expectLoss(convert("utf-16le", "utf-8", bytes("61 00 00 DC 62 00")), "61 ED B0 80 62", 2);
  expectLoss(convert("utf-16be", "utf-16le", bytes("00 61 DC 00 00 62")), "61 00 00 DC 62 00", 2);
  expectLoss(convert("utf-16le", "utf-16le", bytes("61 00 3D D8 62 00")), "61 00 3D D8 62 00", 2);
  expectLoss(convert("utf-32le", "utf-8", bytes("61 00 00 00 00 00 11 00")), "61 F4 90 80 80", 4);
  expectLoss(convert("utf-32be", "utf-8", bytes("00 00 00 61 00 00 D8 00")), "61 ED A0 80", 4);
  expectLoss(convert("utf-8", "utf-32be", bytes("61 F4 90 80 80")), "00 00 00 61 00 11 00 00", 1);
  const Outcome joined = convert("utf-16le", "utf-8", bytes("61 00 3D D8 62 00 63 00"));
  expectLoss(joined, hex(joined.output), 2);
}

TEST(VeldLoss, TheOffsetHoldsInEveryBlock) {
  for (const size_t ahead :
       {size_t{65533}, size_t{65534}, size_t{65535}, size_t{65536}, size_t{65537}, size_t{100000}, size_t{131071}}) {
    SCOPED_TRACE(ahead);
    const Outcome outcome = convert("utf-8", "wlatin1", times(ahead, "a") + bytes("CE 94") + times(70000, "b"));
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_TRUE(contains(outcome.errors, "offset " + std::to_string(ahead) + ", line ")) << outcome.errors;
    EXPECT_EQ(outcome.output, times(ahead, "a") + bytes("1A") + times(70000, "b"));
  }
}

TEST(VeldLoss, AMalformedCharacterThatBlocksCutIsToldAtItsStart) {
  for (const size_t ahead : {size_t{65533}, size_t{65534}, size_t{65535}}) {
    SCOPED_TRACE(ahead);
    const Outcome outcome = convert("utf-8", "utf-16le", times(ahead, "a") + bytes("ED A0 80 62"));
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_TRUE(contains(outcome.errors, "offset " + std::to_string(ahead) + ", line ")) << outcome.errors;
  }
}

// All bytes of the loss may be held, with others behind them.
TEST(VeldLoss, ASequenceThatBlocksCutIsTold) {
  expectSameAtEveryCut("iso2022jp", "utf-8", "a", bytes("48 69 1B 28 42 77 6F"), 2);
  expectSameAtEveryCut("jis-7", "utf-8", "a", bytes("48 69 1B 28 42 77 6F"), 2);
  expectSameAtEveryCut("iso2022jp", "utf-16le", "a", bytes("48 1B 24 40 30 21 77"), 1);
}

TEST(VeldLoss, FirstHalvesThatBlocksCutAreTold) {
  for (const char* to : {"ibm-939", "utf-8", "wlatin1", "utf-32le"}) {
    SCOPED_TRACE(to);
    for (const char* text : {"62 00 00 D8 40 D8 41 DC 63 00", "00 D8 01 D8 02 D8 40 D8 41 0A", "00 D8 01 D8 62 00"}) {
      const std::string little = bytes(text);
      expectSameAtEveryCut("utf-16le", to, bytes("61 00"), little, little[0] == 'b' ? 2 : 0);
    }
  }
  expectSameAtEveryCut("utf-16be", "ibm-939", bytes("00 61"), bytes("D8 00 D8 40 0A 41"), 0);
}

TEST(VeldLoss, TheOffsetCountsTheByteOrderMark) {
  expectLoss(convert("utf-16", "wlatin1", bytes("FF FE 61 00 94 03")), "61 1A", 4);
}

TEST(VeldLoss, AnEndInsideACharacterCountsAsCut) {
  expectLoss(convert("utf-8", "utf-16le", bytes("61 E2 82")), "61 00", 1);
  expectLoss(convert("utf-8", "wlatin1", bytes("61 E2 82")), "61", 1);
  expectLoss(convert("utf-8", "utf-8", bytes("61 E2 82")), "61", 1);
  expectLoss(convert("utf-16le", "utf-8", bytes("61 00 62")), "61", 2);
  expectLoss(convert("utf-16le", "utf-8", bytes("61 00 3D D8")), "61", 2);
  expectLoss(convert("utf-16be", "utf-8", bytes("00 61 D8 3D")), "61", 2);
  expectLoss(convert("utf-16le", "wlatin1", bytes("61 00 3D D8")), "61", 2);
  expectLoss(convert("utf-16be", "utf-16be", bytes("00 61 D8 3D")), "00 61", 2);
  expectLoss(convert("utf-8", "utf-16le", bytes("61 F4")), "61 00", 1);
  expectLoss(convert("utf-16be", "utf-16le", bytes("00 61 00")), "61 00", 2);
  expectLoss(convert("utf-16le", "utf-16le", bytes("61 00 62")), "61 00", 2);
  expectLoss(convert("utf-16le", "wlatin1", bytes("61 00 62")), "61", 2);
  expectLoss(convert("utf-32le", "utf-8", bytes("61 00 00 00 62 00 00")), "61", 4);
  expectLoss(convert("utf-32le", "utf-32be", bytes("61 00 00 00 62 00")), "00 00 00 61", 4);
  expectLoss(convert("utf-32be", "wlatin1", bytes("00 00 00 61 00 00")), "61", 4);
  expectLoss(convert("utf-16", "utf-8", bytes("FF")), "", 0);
}

TEST(VeldLoss, BytesWithoutAMeaningCountAsSubstituted) {
  expectLoss(convert("wlatin1", "utf-8", bytes("61 81")), "61 EF BF BD", 1);
  expectLoss(convert("wlatin1", "utf-16le", bytes("61 81")), "61 00 FD FF", 1);
  expectLoss(convert("us-ascii", "latin1", bytes("61 E9")), "61 E9", 1);
}

TEST(VeldLoss, BytesThatBecomeAnotherCharacterCountAsSubstituted) {
  const Outcome pages = convert("wlatin1", "latin2", bytes("61 80"));
  expectLoss(pages, hex(pages.output), 1);
  EXPECT_EQ(pages.output.size(), 2u);
  const Outcome ebcdic = convert("ebcdic880", "open_ed-1047", bytes("C1 40 42"));
  expectLoss(ebcdic, hex(ebcdic.output), 2);
  EXPECT_EQ(ebcdic.output.substr(0, 2), bytes("C1 40"));
}

TEST(VeldLoss, BytesBeyondAsciiCountAsSubstituted) {
  expectLoss(convert("utf-8", "us-ascii", bytes("61 C3 A9")), "61 C3 A9", 1);
  expectLoss(convert("wlatin1", "us-ascii", bytes("61 62 E9")), "61 62 E9", 2);
  expectLoss(convert("utf-16le", "us-ascii", bytes("61 00 E9 00")), "61 1A", 2);
}

TEST(VeldLoss, Plane16CountsWhereItIsLost) {
  expectLoss(convert("utf-8", "utf-16le", bytes("61 F4 8F BF BD")), "61 00 FD FF", 1);
  expectLoss(convert("utf-8", "utf-8", bytes("61 F4 8F BF BD")), "61 EF BF BD", 1);
  const Outcome whole = convert("utf-8", "utf-32le", bytes("61 F4 8F BF BD"));
  EXPECT_EQ(whole.exitCode, 0) << whole.errors;
  EXPECT_EQ(hex(whole.output), "61 00 00 00 FD FF 10 00");
  const Outcome back = convert("utf-32le", "utf-8", whole.output);
  EXPECT_EQ(back.exitCode, 0) << back.errors;
  EXPECT_EQ(hex(back.output), "61 F4 8F BF BD");
}

TEST(VeldLoss, Plane16IsToldWhenBlocksCutIt) {
  for (const size_t ahead : {size_t{65533}, size_t{65534}, size_t{65535}, size_t{65536}}) {
    SCOPED_TRACE(ahead);
    const Outcome outcome = convert("utf-8", "utf-16le", times(ahead, "a") + bytes("F4 8F BF BD"));
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_TRUE(contains(outcome.errors, "offset " + std::to_string(ahead) + ", line ")) << outcome.errors;
    EXPECT_EQ(outcome.output, times(ahead, bytes("61 00")) + bytes("FD FF"));
  }
}

TEST(VeldLoss, WildCardsHaveNoLoss) {
  for (const char* source : {"utf-16le", "utf-32be", "utf-8", "wlatin1"}) {
    const Outcome outcome = convert(source, "any", bytes("F4 90 81"));
    EXPECT_EQ(hex(outcome.output), "F4 90 81") << source;
    EXPECT_EQ(outcome.errors, "") << source;
    EXPECT_EQ(outcome.exitCode, 0) << source;
  }
}

TEST(VeldLoss, UtfEbcdicSourcesGetAWarning) {
  const Outcome outcome = convert("utf-e", "utf-8", bytes("C1"));
  EXPECT_EQ(outcome.output, "A");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_TRUE(contains(outcome.errors, "warning: ")) << outcome.errors;
  EXPECT_EQ(convert("utf-8", "utf-e", "A").errors, "");
}

TEST(VeldLoss, OnlyTheFirstLossOfAFileIsTold) {
  const Folder folder;
  const std::string one = folder.write("one", bytes("61 CE 94 CE 94"));
  const std::string two = folder.write("two", bytes("CE 94"));
  const Outcome outcome = convert("utf-8", "wlatin1", "", {one, two});
  EXPECT_EQ(hex(outcome.output), "61 1A 1A 1A");
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(lineCount(outcome.errors), 2u);
  EXPECT_TRUE(contains(outcome.errors, one + ": offset 1, line 1, column 2: ")) << outcome.errors;
  EXPECT_TRUE(contains(outcome.errors, two + ": offset 0, line 1, column 1: ")) << outcome.errors;
}

TEST(VeldLoss, OnLossFailStopsAheadOfIt) {
  const std::string text = bytes("61 62 CE 94 7A");
  expectLoss(convert("utf-8", "wlatin1", text, {"--on-loss", "fail"}), "61 62", 2);
  expectLoss(convert("wlatin1", "utf-8", bytes("61 81 62"), {"--on-loss", "fail"}), "61", 1);
  const Outcome whole = convert("utf-8", "wlatin1", "ab", {"--on-loss", "fail"});
  EXPECT_EQ(whole.output, "ab");
  EXPECT_EQ(whole.exitCode, 0);
}

TEST(VeldLoss, OnLossFailStopsInLaterBlocks) {
  const Outcome outcome =
      convert("utf-8", "utf-16le", times(90000, "a") + bytes("FF") + times(90000, "b"), {"--on-loss", "fail"});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.output, times(90000, bytes("61 00")));
}

TEST(VeldLoss, OnLossFailLeavesTheOutputFileAsItWas) {
  const Folder folder;
  folder.write("out", "old");
  for (const std::string& text : {bytes("61 CE 94"), bytes("61 CE")}) {
    const Outcome outcome = convert("utf-8", "wlatin1", text, {"--on-loss", "fail", "-o", folder.file("out")});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_TRUE(contains(outcome.errors, "; the conversion stopped ahead of it")) << outcome.errors;
    EXPECT_EQ(folder.read("out"), "old");
    EXPECT_EQ(folder.names(), std::vector<std::string>{"out"});
  }
}

TEST(VeldLoss, OnLossSubstituteWritesTheOutputFile) {
  const Folder folder;
  const Outcome outcome =
      convert("utf-8", "wlatin1", bytes("61 CE 94"), {"--on-loss", "substitute", "-o", folder.file("out")});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(hex(folder.read("out")), "61 1A");
}

TEST(VeldLoss, ACopiedByteIsNoSubstitute) {
  const Outcome outcome = convert("utf-8", "us-ascii", bytes("61 C3 A9"));
  EXPECT_EQ(hex(outcome.output), "61 C3 A9");
  EXPECT_TRUE(contains(outcome.errors, "; its bytes stay as they are")) << outcome.errors;
}

}  // namespace
}  // namespace test
