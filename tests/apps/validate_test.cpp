// veld validate: faults with their places, and its results.
#include <gtest/gtest.h>

#include "apps/program.h"

namespace test {
namespace {

constexpr size_t block = 65536;  // the program's

Outcome validate(const std::string& encoding, std::string_view input, std::vector<std::string> more = {}) {
  std::vector<std::string> arguments{"validate", "-f", encoding};
  arguments.insert(arguments.end(), more.begin(), more.end());
  return runVeld({.arguments = std::move(arguments), .input = std::string(input)});
}

std::string fault(size_t offset, size_t line, size_t column, const std::string& encoding,
                  const std::string& hexDigits) {
  return "standard input: offset " + std::to_string(offset) + ", line " + std::to_string(line) + ", column " +
         std::to_string(column) + ": malformed in " + encoding + " at " + hexDigits + "\n";
}

void expectValid(const std::string& encoding, std::string_view input) {
  SCOPED_TRACE(encoding);
  const Outcome outcome = validate(encoding, input, {"--all"});
  EXPECT_EQ(outcome.output, "standard input: valid " + encoding + ", " + std::to_string(input.size()) + " bytes\n");
  EXPECT_EQ(outcome.errors, "");
  EXPECT_EQ(outcome.exitCode, 0);
}

void expectFaults(const std::string& encoding, std::string_view input, const std::vector<std::string>& faults) {
  SCOPED_TRACE(encoding);
  const Outcome first = validate(encoding, input);
  EXPECT_EQ(first.output, faults.front());
  EXPECT_EQ(first.exitCode, 1);
  std::string all;
  for (const std::string& line : faults) all += line;
  all += "standard input: " + std::to_string(faults.size()) + (faults.size() == 1 ? " fault in " : " faults in ") +
         std::to_string(input.size()) + " bytes\n";
  const Outcome every = validate(encoding, input, {"--all"});
  EXPECT_EQ(every.output, all);
  EXPECT_EQ(every.exitCode, 1);
}

TEST(VeldValidate, SoundTextIsValid) {
  expectValid("utf-8", bytes("61 E3 81 82 F0 9F 98 80"));
  expectValid("utf-8", "");
  expectValid("wlatin1", bytes("61 80"));
  expectValid("utf-16be", bytes("D8 3D DE 00 00 61"));
  expectValid("utf-32le", bytes("61 00 00 00"));
  expectValid("shift-jis", bytes("61 82 A0 B1"));
  expectValid("euc-jp", bytes("61 A4 A2 8E B1 8F A1 A1"));
  expectValid("ibm-939", bytes("81 0E 44 81 0F 82"));
  expectValid("iso2022jp", bytes("61 1B 24 42 24 22 1B 28 4A 62"));
  expectValid("ebcdic-any", bytes("00 FF"));
}

TEST(VeldValidate, Utf8IsTheDefault) {
  EXPECT_EQ(runVeld({.arguments = {"validate"}, .input = "a"}).output, "standard input: valid utf-8, 1 bytes\n");
}

TEST(VeldValidate, AFaultIsToldWithItsPlaceAndBytes) {
  expectFaults("utf-8", bytes("61 0A C3 A9 E2 28 61 62 63"), {fault(4, 2, 2, "utf-8", "E2 28 61 62")});
  expectFaults("wlatin1", bytes("61 62 63 81"), {fault(3, 1, 4, "wlatin1", "81")});
  expectFaults("shift-jis", bytes("82 A0 0D 0A 82 A0 82 20 61"), {fault(6, 2, 2, "shift-jis", "82 20 61")});
  expectFaults("utf-16le", bytes("61 00 0A 00 3D D8 00 DE 00 DC 62 00"), {fault(8, 2, 2, "utf-16le", "00 DC 62 00")});
  expectFaults("utf-32be", bytes("00 00 00 61 00 11 00 00"), {fault(4, 1, 2, "utf-32be", "00 11 00 00")});
}

TEST(VeldValidate, AllGoesOnOneByteBehindAFault) {
  expectFaults("utf-8", bytes("E2 28 A1 61 FF 62"),
               {fault(0, 1, 1, "utf-8", "E2 28 A1 61"), fault(2, 1, 3, "utf-8", "A1 61 FF 62"),
                fault(4, 1, 5, "utf-8", "FF 62")});
  expectFaults("us-ascii", bytes("80 61 80"),
               {fault(0, 1, 1, "us-ascii", "80 61 80"), fault(2, 1, 3, "us-ascii", "80")});
  expectFaults("euc-kr", bytes("B0 20 B0 A1 FF"),
               {fault(0, 1, 1, "euc-kr", "B0 20 B0 A1"), fault(4, 1, 4, "euc-kr", "FF")});
}

TEST(VeldValidate, AllGoesOnOneUnitBehindAFaultOfUtf16AndUtf32) {
  expectFaults("utf-16le", bytes("00 D8 61 00 00 DC 62"),
               {fault(0, 1, 1, "utf-16le", "00 D8 61 00"), fault(4, 1, 3, "utf-16le", "00 DC 62"),
                fault(6, 1, 4, "utf-16le", "62")});
  expectFaults("utf-32le", bytes("00 00 11 00 61 00 00 00 62 00"),
               {fault(0, 1, 1, "utf-32le", "00 00 11 00"), fault(8, 1, 3, "utf-32le", "62 00")});
}

// A fault in double-byte mode doesn't end that mode: what follows it are pairs.
TEST(VeldValidate, AllKeepsTheShiftState) {
  expectFaults("ibm-939", bytes("81 0E 44 81 30 44 82 44 30 44 83 0F 81 30 15 FF 0E 44"),
               {fault(4, 1, 3, "ibm-939", "30 44 82 44"), fault(8, 1, 5, "ibm-939", "30 44 83 0F"),
                fault(17, 2, 2, "ibm-939", "44")});
  expectFaults("iso2022jp", bytes("1B 24 42 24 22 80 24 24 1B 28 4A 61 80"),
               {fault(5, 1, 2, "iso2022jp", "80 24 24 1B"), fault(12, 1, 5, "iso2022jp", "80")});
  expectFaults("hitachi-jp", bytes("0A 42 B0 A1 20 B0 A1 0A 41 81"), {fault(4, 1, 2, "hitachi-jp", "20 B0 A1 0A")});
}

TEST(VeldValidate, ABegunShiftSequenceAheadOfAFaultHasItsColumns) {
  expectFaults("iso2022jp", bytes("61 62 1B 24 D0 78 79"), {fault(4, 1, 5, "iso2022jp", "D0 78 79")});
}

TEST(VeldValidate, LinesOfEbcdicEndWithEitherLineEnd) {
  expectFaults("ibm-939", bytes("81 15 81 25 81 0E 44 20"), {fault(7, 3, 2, "ibm-939", "20")});
}

TEST(VeldValidate, BlocksDontShowInTheResult) {
  for (size_t ahead = block - 9; ahead <= block + 9; ++ahead) {
    SCOPED_TRACE(ahead);
    const std::string letters(ahead, 'a');
    expectValid("utf-8", letters + bytes("E3 81 82 F0 9F 98 80") + "b");
    expectFaults("utf-8", letters + bytes("E3 20 62 63"), {fault(ahead, 1, ahead + 1, "utf-8", "E3 20 62 63")});
    expectValid("shift-jis", letters + bytes("82 A0 82 A0") + "b");
    expectFaults("shift-jis", letters + bytes("82 A0 82 20"), {fault(ahead + 2, 1, ahead + 2, "shift-jis", "82 20")});
    const std::string host = std::string(ahead, '\x81');
    expectValid("ibm-939", host + bytes("0E 44 81 44 82 0F 82"));
    expectValid("hitachi-jp", host + bytes("0A 42 B0 A1 B0 A2 0A 41 82"));
    expectFaults("hitachi-jp", host + bytes("0A 42 B0 20 B0 A2 0A 41 82"),
                 {fault(ahead + 3, 1, ahead + 1, "hitachi-jp", "20 B0 A2 0A")});
    expectValid("iso2022jp", letters + bytes("1B 24 42 24 22 24 24 1B 28 4A 62"));
  }
}

TEST(VeldValidate, BlocksOfUnitsDontShowInTheResult) {
  for (const size_t units : {block / 2 - 3, block / 2 - 2, block / 2 - 1, block / 2, block / 2 + 1}) {
    SCOPED_TRACE(units);
    const std::string letters = times(units, bytes("61 00"));
    expectValid("utf-16le", letters + bytes("3D D8 00 DE 62 00"));
    expectFaults("utf-16le", letters + bytes("3D D8 62 00"),
                 {fault(2 * units, 1, units + 1, "utf-16le", "3D D8 62 00")});
  }
}

TEST(VeldValidate, PiecesMakeTheSameResult) {
  const std::vector<std::pair<const char*, const char*>> texts{{"utf-8", "61 E3 81 82 E3 81 20 C3 A9 C3"},
                                                               {"utf-16be", "00 61 D8 3D DE 00 DC 00 00 62 00"},
                                                               {"hitachi-jp", "81 0A 42 B0 A1 20 B0 A1 0A 41"},
                                                               {"iso2022jp", "1B 24 42 24 22 80 24 24 1B 28 4A 61"},
                                                               {"gb18030", "B0 A1 B0 A2 61 B0"},
                                                               {"shift-jis", "82 A0 82 20 82"}};
  for (const auto& [encoding, text] : texts) {
    SCOPED_TRACE(encoding);
    const Outcome whole = validate(encoding, bytes(text), {"--all"});
    const Outcome pieces =
        runVeld({.arguments = {"validate", "--all", "-f", encoding}, .input = bytes(text), .pieceSize = 1});
    EXPECT_EQ(pieces.output, whole.output);
    EXPECT_EQ(pieces.exitCode, whole.exitCode);
  }
}

TEST(VeldValidate, Utf16ReadsTheByteOrderMark) {
  EXPECT_EQ(validate("utf-16", bytes("FE FF DC 00")).output, fault(2, 1, 1, "utf-16be", "DC 00"));
  EXPECT_EQ(validate("utf-16", bytes("FF FE 00 DC")).output, fault(2, 1, 1, "utf-16le", "00 DC"));
}

TEST(VeldValidate, EveryFileIsATextOfItsOwn) {
  const Folder folder;
  const std::string good = folder.write("good", bytes("0E 44 81"));
  const std::string bad = folder.write("bad", bytes("44 81 0E 44"));
  const Outcome outcome = runVeld({.arguments = {"validate", "-f", "ibm-939", good, bad, good}});
  EXPECT_EQ(outcome.output, good + ": valid ibm-939, 3 bytes\n" + bad +
                                ": offset 3, line 1, column 3: malformed in ibm-939 at 44\n" + good +
                                ": valid ibm-939, 3 bytes\n");
  EXPECT_EQ(outcome.exitCode, 1);
}

TEST(VeldValidate, AFileThatCantBeReadLeavesTheOthers) {
  const Folder folder;
  const std::string good = folder.write("good", "a");
  const Outcome outcome = runVeld({.arguments = {"validate", folder.file("absent"), "/", good}});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.output, good + ": valid utf-8, 1 bytes\n");
  EXPECT_TRUE(contains(outcome.errors, folder.file("absent") + ": can't be opened for reading: ")) << outcome.errors;
  EXPECT_TRUE(contains(outcome.errors, "/: can't be read: ")) << outcome.errors;
}

TEST(VeldValidate, WhatCantBeValidatedIsToldAheadOfAnyFile) {
  for (const char* encoding : {"utf-e", "ucsu", "aroman", "latin4"}) {
    const Outcome outcome = validate(encoding, "a", {"/absent"});
    EXPECT_EQ(outcome.exitCode, 2) << encoding;
    EXPECT_EQ(outcome.output, "") << encoding;
    EXPECT_TRUE(contains(outcome.errors, "can't validate " + std::string(encoding))) << outcome.errors;
    EXPECT_EQ(lineCount(outcome.errors), 1u) << outcome.errors;
  }
}

TEST(VeldValidate, NarrowRulesAreToldBesideTheirFaults) {
  const auto note = [](const char* encoding, std::string_view text) { return validate(encoding, bytes(text)).errors; };
  EXPECT_TRUE(contains(note("utf-32le", "00 F6 01 00"), "note: the library's rule for utf-32le refuses"));
  EXPECT_TRUE(contains(note("gb18030", "B0 A1 61"), "note: the library's rule for gb18030"));
  EXPECT_TRUE(contains(note("fujitsu-jp", "28 40 40 29"), "refuses the code 40 40, though it is sound"));
  EXPECT_TRUE(contains(note("iso2022kr", "0E 21 20 0F"), "refuses the code 21 20, though it is sound"));
  EXPECT_TRUE(contains(note("ibm-942", "B1"), "refuses 64 bytes that are sound, the first 80, the last DF"));
  EXPECT_TRUE(contains(note("shift-jis", "80"), "refuses the byte 80, though it is sound"));
  EXPECT_TRUE(contains(note("us-ascii", "85"), "refuses 32 bytes that are sound, the first 80, the last 9F"));
  EXPECT_EQ(note("dec-jp", "8E B1"), "");
  EXPECT_EQ(note("utf-32le", "61 00 00 00"), "");
  EXPECT_EQ(note("ibm-939", "0E 30"), "");
  EXPECT_EQ(note("shift-jis", "FF"), "");
}

// Text that was written without a loss has no fault, or one with a note.
TEST(VeldValidate, WhatConversionWritesIsSound) {
  std::string hangul;
  for (int lead = 0xEA; lead < 0xED; ++lead) {
    for (int second = 0x80; second < 0xC0; ++second) {
      if (lead == 0xEA && second < 0xB0) continue;
      hangul += {static_cast<char>(lead), static_cast<char>(second), '\x82'};
    }
  }
  const auto expectSound = [](const char* encoding, std::string_view text) {
    const Outcome written = convert("utf-8", encoding, text);
    ASSERT_EQ(written.exitCode, 0) << encoding << written.errors;
    const Outcome outcome = validate(encoding, written.output);
    EXPECT_TRUE(outcome.exitCode == 0 || contains(outcome.errors, "note: the library's rule for ")) << encoding;
  };
  for (const char* encoding : {"ms-949", "fujitsu-ko", "hitachi-ko", "hitquo-ko", "hitachi-cn"}) {
    expectSound(encoding, hangul);
  }
  for (const char* encoding : {"ibm-942", "macos-1", "shift-jis"}) expectSound(encoding, bytes("EF BD B1"));
  for (const char* encoding : {"shift-jis", "big5"}) expectSound(encoding, bytes("C2 80"));
  expectSound("euc-cn", bytes("E2 82 AC"));
}

TEST(VeldValidate, AFullDeviceIsTold) {
  const Outcome outcome = runVeld({.arguments = {"validate"}, .input = "a", .outputFile = "/dev/full"});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_TRUE(contains(outcome.errors, "standard output can't be written")) << outcome.errors;
}

}  // namespace
}  // namespace test
