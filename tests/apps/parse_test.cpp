// veld parse: values as a locale writes them, and where a text is none.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "apps/locale_commands.h"

namespace test {
namespace {

using Json = nlohmann::json;

std::string parsed(const std::string& locale, const std::string& kind, const std::string& text, Words more = {}) {
  const Outcome outcome = parseIn(locale, kind, {text}, more);
  EXPECT_EQ(outcome.exitCode, 0) << kind << ' ' << text << '\n' << outcome.errors;
  return outcome.output;
}

// What is told of a text that is refused.
std::string complaint(const std::string& locale, const std::string& kind, const std::string& text, Words more = {}) {
  const Outcome outcome = parseIn(locale, kind, {text}, more);
  EXPECT_EQ(outcome.exitCode, 1) << text;
  EXPECT_EQ(outcome.output, "") << text;
  return outcome.errors;
}

TEST(VeldParse, Numbers) {
  EXPECT_EQ(parsed("de_DE", "number", "1.234,5"), "1234.5\n");
  EXPECT_EQ(parsed("en_US", "number", "1,234.5"), "1234.5\n");
  EXPECT_EQ(parsed("fr_FR", "number", "-1\u00A0234,5"), "-1234.5\n");
  EXPECT_EQ(parsed("en_US", "number", " 1.5e3 "), "1500\n");
  EXPECT_EQ(parsed("en_US", "number", "1D2"), "100\n");
  EXPECT_EQ(parsed("en_US", "number", "0.1"), "0.1\n");
  EXPECT_EQ(parsed("en_US", "number", "7.571968556055867e-74"), "7.571968556055867e-74\n");
}

TEST(VeldParse, MissingValuesKeepTheirLetter) {
  EXPECT_EQ(parsed("en_US", "number", "."), ".\n");
  EXPECT_EQ(parsed("en_US", "number", ".a"), ".A\n");
  EXPECT_EQ(parsed("en_US", "number", "._"), "._\n");
  EXPECT_EQ(parsed("en_US", "number", ""), ".\n");
}

TEST(VeldParse, WholeNumbers) {
  EXPECT_EQ(parsed("en_US", "integer", "-9223372036854775808"), "-9223372036854775808\n");
  EXPECT_EQ(parsed("en_US", "integer", " 12  "), "12\n");
  EXPECT_EQ(parsed("en_US", "hex", "ff"), "255\n");
  EXPECT_EQ(parsed("en_US", "hex", "0XFFFFFFFFFFFFFFFF"), "18446744073709551615\n");
  EXPECT_TRUE(contains(complaint("en_US", "hex", "+ff"), "nlsNoDigits"));
  EXPECT_TRUE(contains(complaint("en_US", "hex", "12g"), "character 3: "));
  EXPECT_TRUE(contains(complaint("en_US", "hex", "10000000000000000"), "nlsNumberOverflow (0x803FE811)"));
  EXPECT_TRUE(contains(complaint("en_US", "integer", "9223372036854775808"), "nlsNumberOverflow (0x803FE811)"));
}

TEST(VeldParse, AGroupSeparatorInAnIntegerIsWarnedOf) {
  const Outcome outcome = parseIn("en_US", "integer", {"1,234"});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.output, "134\n");
  EXPECT_TRUE(contains(outcome.errors, "a group separator takes the character behind it with it")) << outcome.errors;
  EXPECT_TRUE(contains(complaint("en_US", "integer", "1,234x"), "character 6: "));
  EXPECT_TRUE(contains(complaint("en_US", "integer", "1,2,34x"), "character 7: "));
  EXPECT_EQ(parseIn("en_US", "number", {"1,234"}).errors, "");
}

TEST(VeldParse, AmountsAndPercents) {
  EXPECT_EQ(parsed("en_US", "money", "$-1,234.50"), "-1234.5\n");
  EXPECT_EQ(parsed("de_DE", "money", "  €1.234,50"), "1234.5\n");
  EXPECT_EQ(parsed("de_DE", "money", "1.234,50 €"), "1234.5\n");
  EXPECT_EQ(parsed("de_DE", "money", "1.234,50"), "1234.5\n");
  EXPECT_EQ(parsed("ar_EG", "money", "ج.م.1.500"), "1.5\n");
  EXPECT_EQ(parsed("en_US", "percent", "25.6%"), "0.256\n");
  EXPECT_EQ(parsed("en_US", "percent", "( 50.0%)"), "-0.5\n");
  EXPECT_EQ(parsed("fa_IR", "percent", "25٪"), "0.25\n");
  EXPECT_EQ(parsed("en_US", "percent", "."), ".\n");
  EXPECT_TRUE(contains(complaint("de_DE", "money", "€1x"), "character 3: "));
  EXPECT_TRUE(contains(complaint("de_DE", "money", "$1"), "character 1: "));
  EXPECT_TRUE(contains(complaint("en_US", "percent", "(1x%)"), "character 3: "));
  EXPECT_TRUE(contains(complaint("en_US", "percent", "1%%"), "character 2: "));
}

TEST(VeldParse, SignsWithoutANumberAreRefused) {
  const auto place = [](const char* kind, const char* text) {
    const std::string errors = complaint("en_US", kind, text);
    EXPECT_TRUE(contains(errors, "nlsNoDigits (0x803FE810): character ")) << errors;
    return errors.substr(errors.find("character ") + 10, 1);
  };
  EXPECT_EQ(place("money", "$"), "2");
  EXPECT_EQ(place("money", " $ "), "4");
  EXPECT_EQ(place("percent", "%"), "1");
  EXPECT_EQ(place("percent", "()"), "2");
  EXPECT_EQ(place("percent", "( %)"), "3");
  EXPECT_EQ(place("percent", "("), "1");
  // Parentheses are the sign of a number.
  EXPECT_EQ(place("percent", "(-50%)"), "2");
  EXPECT_EQ(place("percent", "( +50)"), "3");
  EXPECT_EQ(place("percent", "(.%)"), "2");
  for (const char* kind : {"money", "percent"}) {
    EXPECT_EQ(parsed("en_US", kind, ""), ".\n");
    EXPECT_EQ(parsed("en_US", kind, "  "), ".\n");
  }
  EXPECT_EQ(parsed("en_US", "money", "$."), ".\n");
  EXPECT_EQ(parsed("en_US", "percent", ".%"), ".\n");
}

TEST(VeldParse, DatesAndTimes) {
  EXPECT_EQ(parsed("en_US", "date", "02/03/2011"), "2011-02-03\n");
  EXPECT_EQ(parsed("en_US", "date", "  02/ 3/2011 "), "2011-02-03\n");
  EXPECT_EQ(parsed("de_DE", "date", "02. märz 2011", {"--form", "long"}), "2011-03-02\n");
  EXPECT_EQ(parsed("de_DE", "date", "Mittwoch, 02. März 2011", {"--form", "full"}), "2011-03-02\n");
  EXPECT_EQ(parsed("en_US", "time", "13:00:00"), "13:00:00\n");
  EXPECT_EQ(parsed("en_US", "time", "12:00:01 AM", {"--form", "12"}), "00:00:01\n");
  EXPECT_EQ(parsed("de_DE", "time", "13.05 Uhr"), "13:05:00\n");
  EXPECT_EQ(parsed("en_US", "datetime", "01Jan1960:00:00:01"), "1960-01-01T00:00:01\n");
  EXPECT_EQ(parsed("en_US", "date", "2011|Mar|02", {"--format", "%Y|%b|%d"}), "2011-03-02\n");
}

TEST(VeldParse, DatesAsNumbers) {
  EXPECT_EQ(parsed("en_US", "date", "01/02/1960", {"--count"}), "1\n");
  EXPECT_EQ(parsed("en_US", "date", "01/01/1582", {"--count"}), "-138061\n");
  EXPECT_EQ(parsed("en_US", "time", "13:00:00", {"--count"}), "46800\n");
  EXPECT_EQ(parsed("en_US", "datetime", "31Dec1959:23:59:59", {"--count"}), "-1\n");
  EXPECT_EQ(parsed("en_US", "time", "00:00:01.250", {"--count", "--format", "%H:%M:%S.%s"}), "1.25\n");
}

TEST(VeldParse, ThePlaceOfAFaultIsTold) {
  EXPECT_EQ(complaint("de_DE", "number", "12,5ö3"),
            "veld: nlsNoDigits (0x803FE810): character 5: this is no part of a number\n"
            "  12,5ö3\n"
            "      ^\n");
  EXPECT_EQ(complaint("ja_JP", "date", "2011年03x02日水曜日", {"--form", "full"}),
            "veld: nlsDateResultMissing (0x803FE80B): character 8: \"月\" should stand here\n"
            "  2011年03x02日水曜日\n"
            "          ^\n");
  EXPECT_EQ(complaint("en_US", "date", "2/3/2011"),
            "veld: nlsDateResultMissing (0x803FE80B): character 2: a month of two digits should stand here\n"
            "  2/3/2011\n"
            "   ^\n");
  EXPECT_TRUE(contains(complaint("en_US", "date", "02/32/2011"), "character 4: a day of two digits"));
  EXPECT_TRUE(contains(complaint("en_US", "date", "02/03/"), "character 7: a year of four digits"));
  EXPECT_TRUE(contains(complaint("en_US", "date", ""), "character 1: a month of two digits"));
  EXPECT_TRUE(
      contains(complaint("en_US", "date", "02Foo2011", {"--form", "medium"}), "character 3: a month's short name"));
  EXPECT_TRUE(contains(complaint("en_US", "time", "13:05:09 XM", {"--form", "12"}), "character 1: an hour"));
  EXPECT_TRUE(
      contains(complaint("en_US", "time", "01:05:09 XM", {"--form", "12"}), "character 10: the half of the day"));
  EXPECT_TRUE(contains(complaint("en_US", "datetime", "01Jan1960 00:00:01"), "character 10: \":\" should stand here"));
}

// Tabs are no blanks of a date, but of a number.
TEST(VeldParse, TabsInFrontOfADateAreFaults) {
  EXPECT_TRUE(contains(complaint("en_US", "date", "\t02/03/2011"), "character 1: a month of two digits"));
  EXPECT_TRUE(contains(complaint("en_US", "time", " \t13:00:00"), "character 2: an hour"));
  EXPECT_EQ(parsed("en_US", "number", "\t1"), "1\n");
}

TEST(VeldParse, CharactersBeyondTheBasicPlaneAreOne) {
  EXPECT_EQ(complaint("en_US", "number", "1\U0001F600"),
            "veld: nlsNoDigits (0x803FE810): character 2: this is no part of a number\n  1\U0001F600\n   ^\n");
  EXPECT_TRUE(contains(complaint("en_US", "date", "\U0001F6002011-03-0x", {"--format", "\U0001F600%Y-%m-%d"}),
                       "character 11: a day of two digits"));
  EXPECT_TRUE(contains(complaint("en_US", "date", "2011", {"--format", "\U0001F600%Y-%m-%d"}),
                       "character 1: \"\U0001F600\" should stand here"));
}

// The mark's line of a complaint, up to the mark.
std::string markOf(const std::string& complaint) {
  const size_t end = complaint.size() - 1;
  return complaint.substr(complaint.rfind('\n', end - 1) + 1, end - complaint.rfind('\n', end - 1));
}

TEST(VeldParse, TheMarkStandsInTheColumnOfItsCharacter) {
  const auto mark = [](const std::string& text, const std::string& format) {
    return markOf(complaint("en_US", "date", text, {"--format", format}));
  };
  // Ideographs and characters of full width take two columns, also beyond the basic plane.
  EXPECT_EQ(mark("年年x", "年年%Y%m%d"), "      ^\n");
  EXPECT_EQ(mark("Ａ가ア|x", "Ａ가ア|%Y%m%d"), "         ^\n");
  EXPECT_EQ(mark("\U00020000x", "\U00020000%Y%m%d"), "    ^\n");
  EXPECT_EQ(mark("\u5E74\u6708", "\u5E74\u65E5%Y%m%d"), "    ^\n");
  // Half-width katakana takes one, a combining mark none; it is marked under the character that it stands on.
  EXPECT_EQ(mark("ｱx", "ｱ%Y%m%d"), "   ^\n");
  EXPECT_EQ(mark("e\u0301x", "e\u0301%Y%m%d"), "   ^\n");
  EXPECT_EQ(mark("e\u0301", "e%Y%m%d"), "  ^\n");
  EXPECT_EQ(mark("\u0301x", "%Y%m%d"), "  ^\n");
  // Behind the end of the text.
  EXPECT_EQ(mark("年", "年%Y%m%d"), "    ^\n");
  EXPECT_EQ(mark("e\u0301", "e\u0301%Y%m%d"), "   ^\n");
}

TEST(VeldParse, LongTextsShowAroundTheFault) {
  const std::string errors = complaint("en_US", "number", times(50000, "1") + "x" + times(50000, "2"));
  EXPECT_TRUE(contains(errors, "character 50001: "));
  EXPECT_TRUE(contains(errors, "\n  " + times(80, "1") + "x" + times(39, "2") + "\n  " + times(80, " ") + "^\n"))
      << errors;
  const std::string control = complaint("en_US", "number", "1\x1B[31m");
  EXPECT_TRUE(contains(control, "\n  1\uFFFD[31m\n   ^\n")) << control;
  const std::string wanted = complaint("en_US", "date", "x", {"--format", "\x1B%d%m%Y"});
  EXPECT_TRUE(contains(wanted, "character 1: \"\\x1B\" should stand here\n")) << wanted;
}

TEST(VeldParse, WhatMakesNoDateIsRefused) {
  EXPECT_TRUE(contains(complaint("en_US", "date", "02/30/2011"), "nlsDateOutOfRange (0x803FE80D): character 1: "));
  EXPECT_TRUE(contains(complaint("en_US", "datetime", "30Feb2011:00:00:00"),
                       "nlsDateResultMissing (0x803FE80B): character 1: this makes no date"));
}

TEST(VeldParse, NothingMayFollow) {
  EXPECT_EQ(complaint("en_US", "date", "02/03/2011 at noon"),
            "veld: character 12: nothing may follow the value\n"
            "  02/03/2011 at noon\n"
            "             ^\n");
  EXPECT_TRUE(contains(complaint("en_US", "time", "13:00:00x"), "character 9: nothing may follow"));
  EXPECT_TRUE(contains(complaint("en_US", "integer", "12 x"), "nlsNoDigits (0x803FE810): character 4"));
}

TEST(VeldParse, TextsFromStandardInput) {
  const Outcome outcome = parseLines("de_DE", "number", "1,5\n1.5x\n2");
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.output, "1.5\n2\n");
  EXPECT_TRUE(contains(outcome.errors, "veld: line 2: nlsNoDigits (0x803FE810): character 4: ")) << outcome.errors;
  EXPECT_TRUE(
      contains(parseLines("en_US", "integer", std::string("1\0002\n", 4)).errors, "character 2: nothing may follow"));
}

TEST(VeldParse, ReportsInJson) {
  const Outcome outcome = parseIn("en_US", "date", {"02/03/2011", "x"}, {"--report", "json"});
  EXPECT_EQ(outcome.exitCode, 1);
  const size_t end = outcome.output.find('\n');
  EXPECT_EQ(Json::parse(outcome.output.substr(0, end)),
            (Json{{"text", "02/03/2011"}, {"result", "2011-02-03"}, {"count", "18661"}}));
  const Json bad = Json::parse(outcome.output.substr(end + 1));
  EXPECT_EQ(bad["name"], "nlsDateResultMissing");
  EXPECT_EQ(bad["character"], 1);
  EXPECT_TRUE(Json::parse(parseIn("en_US", "integer", {"1,2"}, {"--report", "json"}).output).contains("warning"));
}

TEST(VeldParse, FormatsThatCantBeUsed) {
  const auto refused = [](const std::string& kind, const std::string& format) {
    return refusedFormat("parse", kind, format);
  };
  EXPECT_TRUE(contains(refused("date", "%Y-%m-%Q"), "\"%Q\" at character 7 of the format can't be read"));
  EXPECT_TRUE(contains(refused("date", "%?b"), "\"%?b\" at character 1"));
  EXPECT_TRUE(contains(refused("date", "%Y-%m"), "needs a year, a month and a day"));
  EXPECT_TRUE(contains(refused("datetime", "%H:%M"), "needs a year, a month and a day"));
  EXPECT_TRUE(contains(refused("date", ""), "needs a year, a month and a day"));
  EXPECT_TRUE(contains(refused("time", "%H%"), "\"%\" at character 3"));
}

TEST(VeldParse, WrongUsageExitsWithTwo) {
  expectWrongUsage("parse", {{},
                             {"octal", "7"},
                             {"number", "1", "--count"},
                             {"number", "1", "--form", "short"},
                             {"hex", "1", "--format", "%Y"},
                             {"date", "1", "--form", "24"},
                             {"number", "1", "--width", "3"},
                             {"-l", "xx_DE", "number", "1"},
                             {"-l", "", "number", "1"}});
}

}  // namespace
}  // namespace test
