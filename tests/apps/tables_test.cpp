// veld encodings and veld info.
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "apps/program.h"

namespace test {
namespace {

using Json = nlohmann::json;

constexpr size_t rowCount = 230;

Json encodings(std::vector<std::string> more) {
  std::vector<std::string> arguments{"encodings", "--json"};
  arguments.insert(arguments.end(), more.begin(), more.end());
  const Outcome outcome = runVeld({.arguments = std::move(arguments)});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
  return Json::parse(outcome.output, nullptr, false);
}

bool has(const Json& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

TEST(VeldEncodings, OneRowTellsAll) {
  const Json row = encodings({"1252"});
  EXPECT_EQ(row["cei"], 62);
  EXPECT_EQ(row["name"], "wlatin1");
  EXPECT_EQ(row["class"], "single byte");
  EXPECT_EQ(row["base"], "wlatin1");
  EXPECT_EQ(row["pad"], "0x20");
  EXPECT_EQ(row["substitution"], "0x1A");
  EXPECT_EQ(row["description"], "Western (Windows)");
  for (const char* name : {"wlatin1", "wlt1", "Western (Windows)", "U_WLATIN1_CE", "Win cp1252-latin1", "windows-1252",
                           "Cp1252", "1252"}) {
    EXPECT_TRUE(has(row["names"], name)) << name;
  }
}

TEST(VeldEncodings, OnlyNamesThatLeadToTheRowAreItsNames) {
  EXPECT_FALSE(has(encodings({"utf-16be"})["names"], "1200"));
  EXPECT_TRUE(has(encodings({"utf-16le"})["names"], "1200"));
}

TEST(VeldEncodings, TheTableHasAllRows) {
  const Json rows = encodings({});
  ASSERT_EQ(rows.size(), rowCount);
  for (size_t i = 0; i < rowCount; ++i) EXPECT_EQ(rows[i]["cei"], i);
  EXPECT_EQ(rows[24]["pad"], "0x2000");
  EXPECT_EQ(rows[20]["substitution"], "0xEFBFBD");
  EXPECT_EQ(rows[97]["pad"], "0x40");
  EXPECT_EQ(rows[129]["class"], "multi-byte, shifted");
}

TEST(VeldEncodings, NamesLeadBack) {
  const Json rows = encodings({});
  for (const int cei : {20, 24, 25, 28, 62, 97, 138, 161, 205, 229}) {
    for (const Json& name : rows[static_cast<size_t>(cei)]["names"]) {
      EXPECT_EQ(encodings({name.get<std::string>()})["cei"], cei) << name;
    }
  }
}

TEST(VeldEncodings, TextHasALineForEachRow) {
  const Outcome outcome = runVeld({.arguments = {"encodings"}});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(lineCount(outcome.output), rowCount + 1);
  EXPECT_TRUE(contains(runVeld({.arguments = {"encodings", "latin2"}}).output, "U_LATIN2_CE"));
}

TEST(VeldEncodings, AnUnknownNameIsUsage) { EXPECT_EQ(runVeld({.arguments = {"encodings", "latn2"}}).exitCode, 2); }

TEST(VeldInfo, TellsVersionsAndHost) {
  const Outcome plain = runVeld({.arguments = {"info"}});
  EXPECT_EQ(plain.exitCode, 0) << plain.errors;
  for (const char* part : {"3.1.1", "3.0.0", "utf-16le", "wlatin1", "en_US", "0x00000000"}) {
    EXPECT_TRUE(contains(plain.output, part)) << part << '\n' << plain.output;
  }
  const Outcome german = runVeld({.arguments = {"info"}, .environment = {"LC_ALL=de_DE.UTF-8"}});
  EXPECT_TRUE(contains(german.output, "utf-8 (status 0x00000000")) << german.output;
  EXPECT_TRUE(contains(german.output, "de_DE (status 0x00000000")) << german.output;
}

}  // namespace
}  // namespace test
