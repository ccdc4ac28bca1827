// veld: wrong usage, and how the module is found.
#include <gtest/gtest.h>

#include "apps/program.h"

namespace test {
namespace {

Outcome veld(std::vector<std::string> arguments) { return runVeld({.arguments = std::move(arguments)}); }

TEST(VeldUsage, WrongUsageExitsWithTwo) {
  EXPECT_EQ(veld({}).exitCode, 2);
  EXPECT_EQ(veld({"transmogrify"}).exitCode, 2);
  EXPECT_EQ(veld({"convert", "-f", "utf-8"}).exitCode, 2);
  EXPECT_EQ(veld({"convert", "-t", "utf-8"}).exitCode, 2);
  EXPECT_EQ(veld({"convert", "-f", "utf-8", "-t", "utf-8", "--on-loss", "laugh"}).exitCode, 2);
  EXPECT_EQ(veld({"encodings", "--yaml"}).exitCode, 2);
  EXPECT_EQ(veld({"validate", "--from"}).exitCode, 2);
  EXPECT_EQ(veld({"validate", "--report", "yaml"}).exitCode, 2);
  EXPECT_EQ(veld({"validate", "-f", "utf-9"}).exitCode, 2);
}

TEST(VeldUsage, AnUnknownCommandIsNamed) {
  const Outcome outcome = veld({"frob"});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_TRUE(contains(outcome.errors, "\"frob\" is no command")) << outcome.errors;
}

TEST(VeldUsage, FaultsAreToldOnALineOfTheProgram) {
  const auto told = [](std::vector<std::string> arguments) {
    const Outcome outcome = veld(std::move(arguments));
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(lineCount(outcome.errors), 1u) << outcome.errors;
    EXPECT_EQ(outcome.errors.substr(0, 6), "veld: ");
    return outcome.errors;
  };
  EXPECT_TRUE(contains(told({}), "a command is missing; the commands are convert, "));
  EXPECT_TRUE(contains(told({"--session-encoding", "utf-8"}), "info (\"veld --help\" tells more)"));
  EXPECT_TRUE(contains(told({"--session-encoding"}), "--session-encoding: "));
  EXPECT_TRUE(contains(told({"frob\n\x1B[31m"}), "\"frob\\n\\x1B[31m\""));
  EXPECT_TRUE(contains(told({"encodings", "--yaml"}), "--yaml"));
  EXPECT_TRUE(contains(told({"encodings", "--ya\nml"}), "--ya\\nml (\"veld encodings --help\" tells more)"));
  EXPECT_TRUE(contains(told({"convert", "-f", "utf-8"}), "(\"veld convert --help\" tells more)"));
  EXPECT_TRUE(contains(told({"validate", "--report", "yaml"}), "--report: "));
  EXPECT_TRUE(contains(told({"format", "--progress", "number", "1"}), "--progress"));
}

TEST(VeldUsage, TheVersionIsThatOfTheProgram) {
  const Outcome alone = veld({"--version"});
  EXPECT_EQ(alone.exitCode, 0);
  EXPECT_EQ(alone.errors, "");
  EXPECT_EQ(lineCount(alone.output), 1u);
  EXPECT_EQ(alone.output.substr(0, 5), "veld ");
  EXPECT_TRUE(contains(veld({"info"}).output, "program         " + alone.output.substr(5)));
  EXPECT_EQ(veld({"convert", "--version"}).output, alone.output);
  EXPECT_EQ(veld({"--version", "--module", "none.so"}).output, alone.output);
  const Outcome full = runVeld({.arguments = {"--version"}, .outputFile = "/dev/full"});
  EXPECT_EQ(full.exitCode, 2);
  EXPECT_TRUE(contains(full.errors, "standard output can't be written")) << full.errors;
}

TEST(VeldUsage, WordsOfOptionsAreNoNumbers) {
  EXPECT_EQ(convert("utf-8", "wlatin1", "a", {"--on-loss", "1"}).exitCode, 2);
  EXPECT_EQ(convert("utf-8", "wlatin1", "a", {"--report", "1"}).exitCode, 2);
  EXPECT_EQ(convert("utf-8", "wlatin1", "a", {"--on-loss", "FAIL", "--report", "Text"}).exitCode, 0);
  EXPECT_EQ(convert("utf-8", "wlatin1", bytes("CE 94 61"), {"--on-loss", "FAIL"}).output, "");
}

TEST(VeldUsage, ValuesInBracketsAreValues) {
  for (const char* value : {"[5]", "[1,2]", "[]"}) {
    const Outcome outcome = veld({"parse", "-l", "en_US", "number", value, "7"});
    EXPECT_EQ(outcome.output, "7\n") << value;
    EXPECT_EQ(outcome.exitCode, 1) << value;
    EXPECT_TRUE(contains(outcome.errors, std::string("\n  ") + value + "\n")) << outcome.errors;
  }
  EXPECT_EQ(veld({"format", "-l", "en_US", "integer", "1", "--", "-2", "3"}).output, "1\n-2\n3\n");
}

TEST(VeldUsage, HelpToAFullDeviceIsTold) {
  const Outcome outcome = runVeld({.arguments = {"--help"}, .outputFile = "/dev/full"});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_TRUE(contains(outcome.errors, "standard output can't be written")) << outcome.errors;
}

TEST(VeldUsage, HelpTellsWhatTheToolAdds) {
  const Outcome outcome = veld({"convert", "--help"});
  EXPECT_EQ(outcome.exitCode, 0);
  for (const char* part :
       {"--on-loss", "byte order mark", "utf-16le", "us-ascii", "utf-e", "Exit status", "gb18030", "--report"}) {
    EXPECT_TRUE(contains(outcome.output, part)) << part;
  }
  EXPECT_TRUE(contains(veld({"validate", "--help"}).output, "NAME=utf-8"));
}

TEST(VeldUsage, AnUnknownNameGetsTheNearest) {
  const Outcome outcome = convert("wlatin", "utf-8", "");
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_TRUE(contains(outcome.errors, "unknown encoding \"wlatin\"")) << outcome.errors;
  EXPECT_TRUE(contains(outcome.errors, "wlatin1")) << outcome.errors;
  EXPECT_TRUE(contains(convert("utf-8", "windows1252", "").errors, "windows-1252"));
  EXPECT_TRUE(contains(convert("utf-8", "UTF--8", "").errors, "utf-8"));
}

TEST(VeldUsage, DoubleByteTypesNeedALanguage) {
  const Outcome without = convert("EUC", "utf-8", "a");
  EXPECT_EQ(without.exitCode, 2);
  EXPECT_EQ(without.output, "");
  EXPECT_TRUE(contains(without.errors, "--session-language")) << without.errors;
  const Outcome with = convert("EUC", "utf-8", "", {"--session-language", "JAPANESE"});
  EXPECT_FALSE(contains(with.errors, "--session-language")) << with.errors;
}

TEST(VeldUsage, AnUnknownSessionLanguageIsTold) {
  const std::string unknown[] = {"KLINGON", "JAPANES", "JAPANESE ", "KATAKANA", times(300, "x"), "ja\nJP"};
  for (const std::string& language : unknown) {
    const Outcome outcome = convert("utf-8", "utf-8", "a", {"--session-language", language});
    EXPECT_EQ(outcome.exitCode, 2) << language;
    EXPECT_EQ(outcome.output, "") << language;
    EXPECT_EQ(lineCount(outcome.errors), 1u) << outcome.errors;
    EXPECT_TRUE(contains(outcome.errors, "unknown session language \"")) << outcome.errors;
    EXPECT_TRUE(contains(outcome.errors, "\"veld --help\" lists")) << outcome.errors;
  }
  EXPECT_TRUE(contains(convert("utf-8", "utf-8", "", {"--session-language", "ja\nJP"}).errors, "\"ja\\nJP\""));
  EXPECT_EQ(runVeld({.arguments = {"info"}, .environment = {"LC_ALL=C", "VELD_SESSION_LANGUAGE=KLINGON"}}).exitCode, 2);
  EXPECT_EQ(runVeld({.arguments = {"info"}, .environment = {"LC_ALL=C", "VELD_SESSION_LANGUAGE="}}).exitCode, 0);
  const std::string help = veld({"--help"}).output;
  for (const char* language : {"JAPANESE", "KOREAN", "CHINESE", "TAIWANESE"}) {
    EXPECT_TRUE(contains(help, language)) << language;
    EXPECT_EQ(veld({"info", "--session-language", language}).exitCode, 0) << language;
  }
  EXPECT_EQ(veld({"info", "--session-language", "korean"}).exitCode, 0);
  EXPECT_EQ(veld({"info", "--session-language", "Kanji"}).exitCode, 0);
}

TEST(VeldUsage, NamesOfAnyLengthAreAnswered) {
  EXPECT_EQ(convert("", "utf-8", "").exitCode, 2);
  EXPECT_EQ(convert(times(2000, "x"), "utf-8", "").exitCode, 2);
  EXPECT_EQ(convert(bytes("FF FE FF"), "utf-8", "").exitCode, 2);
}

TEST(VeldUsage, APairWithoutTablesIsRefused) {
  const Outcome outcome = convert("utf-8", "aeasteuro", "a");
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_TRUE(contains(outcome.errors, "no way from utf-8 to aeasteuro")) << outcome.errors;
}

TEST(VeldUsage, EncodingsWithoutTablesAreTold) {
  for (const char* encoding : {"quo1047", "etpc", "user"}) {
    const Outcome to = convert("utf-8", encoding, "a");
    const Outcome from = convert(encoding, "shift-jis", "a");
    for (const Outcome& outcome : {to, from, convert(encoding, encoding, "a"), convert("wlatin1", encoding, "a")}) {
      EXPECT_EQ(outcome.exitCode, 2) << encoding;
      EXPECT_TRUE(contains(outcome.errors, std::string(encoding) + " has no code-page table; ")) << outcome.errors;
    }
  }
}

TEST(VeldUsage, AeasteuroCanOnlyBeRead) {
  for (const char* source : {"utf-8", "wlatin1", "shift-jis", "aeasteuro"}) {
    const Outcome outcome = convert(source, "aeasteuro", "a");
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_TRUE(contains(outcome.errors, "aeasteuro can be read, but not written; ")) << outcome.errors;
  }
  EXPECT_EQ(convert("aeasteuro", "latin2", bytes("61 83")).output, bytes("61 C9"));
  EXPECT_EQ(convert("aeasteuro", "shift-jis", "a").output, "a");
}

TEST(VeldUsage, TheModuleCanBeNamed) {
  const std::string beside = std::string(VELDNLS_BINARY_DIR) + "/veldnls.so";
  EXPECT_EQ(veld({"--module", beside, "info"}).exitCode, 0);
  EXPECT_EQ(veld({"info", "--module", beside}).exitCode, 0);
}

TEST(VeldUsage, AModuleThatIsNoneIsTold) {
  const Folder folder;
  const Outcome absent = veld({"--module", folder.file("absent.so"), "info"});
  EXPECT_EQ(absent.exitCode, 2);
  EXPECT_TRUE(contains(absent.errors, "--module")) << absent.errors;
  EXPECT_EQ(veld({"--module", folder.write("text.so", "text"), "info"}).exitCode, 2);
  const Outcome other = veld({"--module", "libm.so.6", "info"});
  EXPECT_EQ(other.exitCode, 2);
  EXPECT_TRUE(contains(other.errors, "VELDNLSLIB")) << other.errors;
}

}  // namespace
}  // namespace test
