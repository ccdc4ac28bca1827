// veld diff: the characters and codes on which two encodings differ.
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "apps/program.h"

namespace test {
namespace {

using Json = nlohmann::json;

Outcome diff(const std::string& a, const std::string& b) { return runVeld({.arguments = {"diff", a, b}}); }

Json differences(const std::string& a, const std::string& b) {
  const Outcome outcome = runVeld({.arguments = {"diff", a, b, "--json"}});
  EXPECT_EQ(outcome.exitCode, 1) << outcome.errors;
  return Json::parse(outcome.output, nullptr, false);
}

bool hasCode(const Json& object, const char* code, const Json& a, const Json& b) {
  const Json wanted{{"code", code}, {"a", a}, {"b", b}};
  return std::find(object["codes"].begin(), object["codes"].end(), wanted) != object["codes"].end();
}

TEST(VeldDiff, EqualEncodingsDontDiffer) {
  for (const auto& [a, b] : {std::pair<const char*, const char*>{"latin1", "wlatin1"},
                             {"shift-jis", "ms-932"},
                             {"utf-8", "utf-16le"},
                             {"ibm-939", "ibm-939"}}) {
    const Outcome outcome = diff(a, b);
    EXPECT_EQ(outcome.exitCode, 0) << a << ' ' << b << '\n' << outcome.output;
    EXPECT_EQ(lineCount(outcome.output), 3u) << outcome.output;
  }
}

TEST(VeldDiff, TheTableNamesCharactersAndCodes) {
  const Outcome outcome = diff("wlatin1", "latin9");
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_TRUE(contains(outcome.output, "Characters that only wlatin1 has: ")) << outcome.output;
  EXPECT_TRUE(contains(outcome.output, "  U+00A4 \xC2\xA4\n")) << outcome.output;
  EXPECT_TRUE(contains(outcome.output, "  U+00BC \xC2\xBC to U+00BE \xC2\xBE\n")) << outcome.output;
  EXPECT_TRUE(contains(outcome.output, "  A4           U+00A4 \xC2\xA4 | U+20AC \xE2\x82\xAC\n")) << outcome.output;
  EXPECT_TRUE(contains(outcome.output, "  81           - | U+0081\n")) << outcome.output;
}

TEST(VeldDiff, JsonHasTheSame) {
  const Json object = differences("wlatin1", "latin9");
  EXPECT_EQ(object["a"], "wlatin1");
  EXPECT_EQ(object["b"], "latin9");
  EXPECT_TRUE(hasCode(object, "A4", "U+00A4", "U+20AC"));
  EXPECT_TRUE(hasCode(object, "81", Json(), "U+0081"));
  EXPECT_EQ(object["codes"].size(), 40u);
}

TEST(VeldDiff, DoubleByteCodesAreCompared) {
  const Json object = differences("euc-cn", "euc-kr");
  EXPECT_TRUE(hasCode(object, "B0 A1", "U+554A", "U+AC00"));
  EXPECT_TRUE(hasCode(object, "80", "U+20AC", Json()));
  EXPECT_FALSE(hasCode(object, "41", "U+0041", "U+0041"));
  const Json host = differences("ibm-939", "ibm-930");
  EXPECT_TRUE(hasCode(host, "81", "U+0061", "U+FF71"));
  EXPECT_EQ(std::count_if(host["codes"].begin(), host["codes"].end(),
                          [](const Json& code) { return code["code"].get<std::string>().size() > 2; }),
            0);
}

TEST(VeldDiff, FourByteCodesOfGb18030AreCompared) {
  const Json object = differences("gb18030", "ms-936");
  EXPECT_TRUE(hasCode(object, "81 30 81 30", "U+0080", Json()));
  EXPECT_TRUE(hasCode(object, "84 31 A2 33", "U+FFDF", Json()));
  EXPECT_EQ(std::count_if(object["codes"].begin(), object["codes"].end(),
                          [](const Json& code) { return code["code"].get<std::string>().size() > 5; }),
            6793);
}

TEST(VeldDiff, UnicodeFormsHaveNoCodesToCompare) {
  const Json object = differences("utf-8", "us-ascii");
  EXPECT_EQ(object["codes"].size(), 0u);
  EXPECT_EQ(object["onlyB"]["count"], 0);
  EXPECT_EQ(object["onlyA"]["ranges"].back(), (Json{{"first", "U+E000"}, {"last", "U+10FFFF"}}));
}

TEST(VeldDiff, APageThatCanOnlyBeReadHasWhatItReads) {
  const Json object = differences("aeasteuro", "latin2");
  EXPECT_GT(object["onlyA"]["count"], 0);
  EXPECT_GT(object["codes"].size(), 0u);
}

TEST(VeldDiff, WhatCantBeComparedIsTold) {
  EXPECT_TRUE(contains(diff("any", "utf-8").errors, "any stands for every encoding"));
  EXPECT_EQ(diff("any", "utf-8").exitCode, 2);
  const Outcome vacant = diff("utf-8", "quo1047");
  EXPECT_EQ(vacant.exitCode, 2);
  EXPECT_TRUE(contains(vacant.errors, "quo1047 has no code-page table")) << vacant.errors;
  EXPECT_EQ(diff("utf-8", "nonsense").exitCode, 2);
  EXPECT_EQ(runVeld({.arguments = {"diff", "utf-8"}}).exitCode, 2);
}

}  // namespace
}  // namespace test
