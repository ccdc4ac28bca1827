// veld format: values as a locale writes them.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "apps/locale_commands.h"

namespace test {
namespace {

using Json = nlohmann::json;

std::string formatted(const std::string& locale, const std::string& kind, const std::string& value, Words more = {}) {
  const Outcome outcome = formatIn(locale, kind, {value}, more);
  EXPECT_EQ(outcome.exitCode, 0) << kind << ' ' << value << '\n' << outcome.errors;
  return outcome.output;
}

std::string number(const std::string& value, Words more = {}) { return formatted("en_US", "number", value, more); }

TEST(VeldFormat, NumbersHaveTheDigitsThatBringThemBack) {
  EXPECT_EQ(number("1234567.891"), "1,234,567.891\n");
  EXPECT_EQ(formatted("de_DE", "number", "1234567.891"), "1.234.567,891\n");
  EXPECT_EQ(formatted("fr_FR", "number", "1234567.891"), "1\u00A0234\u00A0567,891\n");
  EXPECT_EQ(number("0.1"), "0.1\n");
  EXPECT_EQ(number("-0.5"), "-0.5\n");
  EXPECT_EQ(number("0"), "0\n");
  EXPECT_EQ(number("0.30000000000000004"), "0.30000000000000004\n");
  EXPECT_EQ(number("1e20"), "100,000,000,000,000,000,000\n");
  EXPECT_EQ(number("1e300"), "1e+300\n");
  EXPECT_EQ(number("1.5e-10"), "1.5e-10\n");
  EXPECT_EQ(number("1.7976931348623157e308"), "1.7976931348623157e+308\n");
  EXPECT_EQ(formatted("en_US", "number", "-7.571968556055867e-74"), "-7.571968556055867e-74\n");
  EXPECT_EQ(number("1e300", {"--upper"}), "1E+300\n");
  EXPECT_EQ(number("1e300", {"--keep-zeros"}), "1e+300\n");
}

// Of these, powers of two, the first has a shortest text that isn't the nearest of its length.
TEST(VeldFormat, PowersOfTwoGetADigitMoreWhereTheNearestTextIsAnothers) {
  EXPECT_EQ(number("5.684341886080802e-14"), "5.6843418860808015e-14\n");
  EXPECT_EQ(number("5.960464477539063e-08"), "5.960464477539063e-08\n");
  EXPECT_EQ(number("1.1368683772161603e-13"), "1.1368683772161603e-13\n");
}

TEST(VeldFormat, APrecisionOf99IsForWholeNumbersAlone) {
  for (const char* kind : {"number", "money", "percent"}) {
    const Outcome outcome = formatIn("en_US", kind, {"1.5"}, {"--precision", "99"});
    EXPECT_EQ(outcome.exitCode, 2) << kind;
    EXPECT_EQ(outcome.output, "") << kind;
    EXPECT_TRUE(contains(outcome.errors, "--precision 99")) << outcome.errors;
  }
  EXPECT_EQ(number("1.5", {"--precision", "98"}), "1.5" + times(97, "0") + "\n");
  EXPECT_EQ(number("1.5", {"--precision", "100"}), "1.5" + times(99, "0") + "\n");
  EXPECT_EQ(formatted("en_US", "integer", "5", {"--precision", "99"}), times(98, "0") + "5\n");
}

TEST(VeldFormat, ConversionsOfNumbers) {
  EXPECT_EQ(number("2.5", {"--precision", "0"}), "3\n");
  EXPECT_EQ(number("0.125", {"--precision", "2"}), "0.13\n");
  EXPECT_EQ(number("1.5", {"--as", "fixed"}), "1.500000\n");
  EXPECT_EQ(number("1234567", {"--as", "general"}), "1.234567e+06\n");
  EXPECT_EQ(number("1500", {"--as", "exponent", "--precision", "2"}), "1.50e+03\n");
  EXPECT_EQ(number("1500", {"--as", "EXPONENT", "--precision", "2", "--upper"}), "1.50E+03\n");
  EXPECT_EQ(number("1e100", {"--as", "best"}), "       1E100\n");
  EXPECT_EQ(number("1234.5", {"--as", "field", "--width", "10", "--precision", "1", "--no-group"}), "    1234.5\n");
  EXPECT_EQ(number("1.5", {"--as", "field-exponent"}), " 1.50000E+00\n");
  EXPECT_EQ(number("1234.9", {"--as", "integer-part"}), "1,234\n");
  EXPECT_EQ(number("0.25", {"--as", "fraction-part", "--precision", "2"}), "0.25\n");
  EXPECT_EQ(number("3.999", {"--as", "fraction-part", "--precision", "2"}), "1.00\n");
}

TEST(VeldFormat, WidthsAndFlags) {
  EXPECT_EQ(number("12.5", {"--width", "8"}), "    12.5\n");
  EXPECT_EQ(number("12.5", {"--width", "-8"}), "12.5    \n");
  EXPECT_EQ(number("12.5", {"--width", "8", "--left"}), "12.5    \n");
  EXPECT_EQ(number("-12.5", {"--width", "8", "--zero"}), "-00012.5\n");
  EXPECT_EQ(number("12.5", {"--plus"}), "+12.5\n");
  EXPECT_EQ(number("12.5", {"--space"}), " 12.5\n");
  EXPECT_EQ(number("12", {"--point"}), "12.\n");
  EXPECT_EQ(number("1.5", {"--as", "general", "--precision", "4", "--keep-zeros"}), "1.500\n");
  EXPECT_EQ(number("12345", {"--no-group"}), "12345\n");
  EXPECT_EQ(number("1", {"--width", "4000"}), times(3999, " ") + "1\n");
}

TEST(VeldFormat, WholeNumbers) {
  const auto integer = [](const std::string& value, Words more = {}) {
    return formatted("en_IN", "integer", value, more);
  };
  EXPECT_EQ(integer("1234567"), "1234567\n");
  EXPECT_EQ(integer("1234567", {"--group"}), "12,34,567\n");
  EXPECT_EQ(integer("-9223372036854775808"), "-9223372036854775808\n");
  EXPECT_EQ(integer("0"), "0\n");
  EXPECT_EQ(integer("7", {"--width", "5", "--zero"}), "00007\n");
  EXPECT_EQ(integer("0", {"--width", "5", "--zero"}), "00000\n");
  EXPECT_EQ(integer("7", {"--precision", "3"}), "007\n");
  EXPECT_EQ(integer("0", {"--precision", "0"}), "\n");
  EXPECT_EQ(integer("7", {"--plus"}), "+7\n");
}

TEST(VeldFormat, ZerosFillTheWidthOfZeroAsOfOthers) {
  const auto both = [](const char* kind, Words more) {
    more.emplace_back("--zero");
    return formatIn("en_US", kind, {"0", "5"}, more).output;
  };
  EXPECT_EQ(both("integer", {"--width", "8", "--plus"}), "+0000000\n+0000005\n");
  EXPECT_EQ(both("integer", {"--width", "6", "--space"}), " 00000\n 00005\n");
  EXPECT_EQ(both("integer", {"--width", "1", "--plus"}), "+0\n+5\n");
  EXPECT_EQ(both("integer", {"--width", "-4"}), "0   \n5   \n");
  EXPECT_EQ(both("integer", {"--width", "4", "--left"}), "0   \n5   \n");
  EXPECT_EQ(both("integer", {}), "0\n5\n");
  EXPECT_EQ(both("hex", {"--width", "8"}), "00000000\n00000005\n");
  EXPECT_EQ(both("hex", {"--width", "8", "--prefix"}), "0x000000\n0x000005\n");
  EXPECT_EQ(both("hex", {"--width", "-5", "--prefix"}), "0x0  \n0x5  \n");
  EXPECT_EQ(both("octal", {"--width", "4", "--prefix"}), "0000\n0005\n");
}

TEST(VeldFormat, HexadecimalAndOctal) {
  EXPECT_EQ(formatted("en_US", "hex", "255"), "ff\n");
  EXPECT_EQ(formatted("en_US", "hex", "0xFF", {"--upper", "--prefix"}), "0XFF\n");
  EXPECT_EQ(formatted("en_US", "hex", "18446744073709551615"), "ffffffffffffffff\n");
  EXPECT_EQ(formatted("en_US", "octal", "8", {"--width", "4", "--prefix"}), " 010\n");
  EXPECT_EQ(formatIn("en_US", "hex", {"-1"}).exitCode, 1);
}

TEST(VeldFormat, HugeWidthsAndPrecisionsAreServed) {
  EXPECT_EQ(formatted("en_US", "integer", "5", {"--precision", "1000"}), times(999, "0") + "5\n");
  EXPECT_EQ(formatted("en_US", "number", "1e300", {"--as", "fixed", "--precision", "1000"}).size(),
            300u + 1 + 100 + 1 + 350 + 1);
  EXPECT_EQ(formatted("en_US", "money", "1e300", {"--precision", "1000", "--width", "4000"}).size(), 4001u);
  EXPECT_EQ(formatted("en_US", "hex", "5", {"--width", "-4000"}), "5" + times(3999, " ") + "\n");
}

TEST(VeldFormat, AmountsAndPercents) {
  EXPECT_EQ(formatted("en_US", "money", "-1234.5"), "$-1,234.50\n");
  EXPECT_EQ(formatted("de_DE", "money", "1234.5"), "€1.234,50\n");
  EXPECT_EQ(formatted("ja_JP", "money", "1234.5"), "￥1,235\n");
  EXPECT_EQ(formatted("ar_EG", "money", "1.5"), "ج.م.1.500\n");
  EXPECT_EQ(formatted("de_DE", "money", "1234.5", {"--width", "12", "--precision", "1"}), "    €1.234,5\n");
  EXPECT_EQ(formatted("en_US", "money", "1234.9", {"--no-fraction"}), "$1,234\n");
  EXPECT_EQ(formatted("en_US", "percent", "0.256"), "26%\n");
  EXPECT_EQ(formatted("de_DE", "percent", "0.256", {"--precision", "1"}), "25,6%\n");
  EXPECT_EQ(formatted("en_US", "percent", "-0.5", {"--precision", "1", "--width", "8", "--parentheses"}), "( 50.0%)\n");
}

TEST(VeldFormat, DatesInTheirForms) {
  EXPECT_EQ(formatted("en_US", "date", "1960-01-01"), "01/01/1960\n");
  EXPECT_EQ(formatted("en_US", "date", "1960-01-01", {"--form", "medium"}), "01Jan1960\n");
  EXPECT_EQ(formatted("en_US", "date", "1960-01-01", {"--form", "long"}), "January 01, 1960\n");
  EXPECT_EQ(formatted("en_US", "date", "1960-01-01", {"--form", "full"}), "Friday, January 01, 1960\n");
  EXPECT_EQ(formatted("ja_JP", "date", "2011-03-02", {"--form", "full"}), "2011年03月02日水曜日\n");
  EXPECT_EQ(formatted("de_DE", "time", "13:05:09"), "13.05 Uhr\n");
  EXPECT_EQ(formatted("en_US", "time", "13:05:09", {"--form", "12"}), "01:05:09 PM\n");
  EXPECT_EQ(formatted("en_US", "datetime", "1960-01-01T00:00:00"), "01Jan1960:00:00:00\n");
  EXPECT_EQ(formatted("en_US", "datetime", "2011-03-02 13:05:09", {"--form", "long"}), "March 02, 2011 01:05:09 PM\n");
}

TEST(VeldFormat, DatesAsNumbers) {
  EXPECT_EQ(formatted("en_US", "date", "0"), "01/01/1960\n");
  EXPECT_EQ(formatted("en_US", "date", "-0.5"), "12/31/1959\n");
  EXPECT_EQ(formatted("en_US", "date", "-138061"), "01/01/1582\n");
  EXPECT_EQ(formatted("en_US", "time", "46800"), "13:00:00\n");
  EXPECT_EQ(formatted("en_US", "time", "-1"), "23:59:59\n");
  EXPECT_EQ(formatted("en_US", "datetime", "1"), "01Jan1960:00:00:01\n");
}

// Years have four digits in every text; a day beyond 9999 is still the right day of the week.
TEST(VeldFormat, YearsOfFiveDigitsLoseTheFirst) {
  EXPECT_EQ(formatted("en_US", "date", "6589335", {"--form", "full"}), "Tuesday, December 31, 0000\n");
  EXPECT_EQ(formatted("en_US", "date", "2936547", {"--form", "full"}), "Wednesday, December 31, 9999\n");
  EXPECT_EQ(formatted("en_US", "date", "2936548", {"--form", "full"}), "Thursday, January 01, 0000\n");
}

TEST(VeldFormat, FormatsOfTheUsersOwn) {
  EXPECT_EQ(formatted("de_DE", "date", "2011-03-02", {"--format", "%A, %e. %B %Y"}), "Mittwoch,  2. März 2011\n");
  EXPECT_EQ(formatted("de_DE", "date", "2011-03-02", {"--format", "%?A %?B 日 %%"}), "Mi März 日 %\n");
  EXPECT_EQ(formatted("de_DE", "time", "13:05:09", {"--format", "%H:%M:%S"}), "13:05:09\n");
  EXPECT_EQ(formatted("en_US", "datetime", "0", {"--format", "%Y%m%d%H%M%S"}), "19600101000000\n");
}

TEST(VeldFormat, CharactersOfPlane16StayWhole) {
  EXPECT_EQ(formatted("en_US", "date", "0", {"--format", "\U00100000%d\U0010DF0D|\U0010FFFF"}),
            "\U00100000"
            "01\U0010DF0D|\U0010FFFF\n");
  EXPECT_EQ(formatted("en_US", "date", "0", {"--format", "\xF4\x8F\xBF%d\xF4\x90\x80\x80"}),
            "\uFFFD"
            "01\uFFFD\n");
  EXPECT_EQ(formatIn("en_US", "number", {"1\U0010FFFFx"}).errors,
            "veld: nlsNoDigits (0x803FE810): character 2: this is no part of a number\n  1\U0010FFFFx\n   ^\n");
}

TEST(VeldFormat, FormatsThatCantBeUsed) {
  const auto refused = [](const std::string& kind, const std::string& format) {
    return refusedFormat("format", kind, format);
  };
  EXPECT_TRUE(contains(refused("date", "ä%H"), "\"%H\" at character 2 of the format can't be written in a date"));
  EXPECT_TRUE(contains(refused("datetime", "%Q"), "\"%Q\" at character 1"));
  EXPECT_TRUE(contains(refused("date", "%Y%"), "\"%\" at character 3"));
  EXPECT_TRUE(contains(refused("date", times(61, "x")), "longer than 60"));
}

TEST(VeldFormat, MissingValues) {
  EXPECT_EQ(number("."), ".\n");
  EXPECT_EQ(number(".a"), "A\n");
  EXPECT_EQ(number("._"), "_\n");
  for (const char* kind : {"date", "time", "datetime"}) {
    const Outcome outcome = formatIn("en_US", kind, {"."});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_TRUE(contains(outcome.errors, "nlsDateInputMissing (0x803FE80C): character 1: ")) << outcome.errors;
  }
}

TEST(VeldFormat, ValuesOutsideOfTheRange) {
  for (const auto& [kind, value] : std::vector<std::pair<std::string, std::string>>{{"date", "-138062"},
                                                                                    {"date", "6589336"},
                                                                                    {"date", "1e300"},
                                                                                    {"date", "2011-02-30"},
                                                                                    {"time", "-1e300"},
                                                                                    {"datetime", "569318630400"},
                                                                                    {"datetime", "-11928470401"}}) {
    const Outcome outcome = formatIn("en_US", kind, {value});
    EXPECT_EQ(outcome.exitCode, 1) << value;
    EXPECT_EQ(outcome.output, "") << value;
    EXPECT_TRUE(contains(outcome.errors, "(0x803FE80")) << outcome.errors;
    EXPECT_TRUE(contains(outcome.errors, "): character 1: ")) << outcome.errors;
  }
  EXPECT_EQ(formatIn("en_US", "date", {"  6589336"}).errors,
            "veld: nlsDateOutOfRange (0x803FE80D): character 3: outside of the range\n    6589336\n    ^\n");
  EXPECT_TRUE(contains(formatIn("en_US", "number", {"1e400"}).errors, "nlsNumberOverflow (0x803FE811): "));
  EXPECT_TRUE(contains(formatIn("en_US", "number", {"1e-400"}).errors, "nlsNumberUnderflow (0x803FE812): "));
  EXPECT_TRUE(contains(formatIn("en_US", "percent", {"1e307"}).errors, "nlsBadArgument (0x803FE806): character 1: "));
  EXPECT_TRUE(contains(formatIn("en_US", "integer", {"9223372036854775808"}).errors, "nlsNumberOverflow"));
}

TEST(VeldFormat, BadValuesAreTold) {
  const Outcome outcome = formatIn("de_DE", "number", {"1", "1,5", "日本5", "2"});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.output, "1\n2\n");
  EXPECT_EQ(outcome.errors,
            "veld: nlsNoDigits (0x803FE810): character 2: this is no part of a number\n"
            "  1,5\n"
            "   ^\n"
            "veld: nlsNoDigits (0x803FE810): character 1: this is no part of a number\n"
            "  日本5\n"
            "  ^\n");
  for (const char* value : {"2011-3-2", "2011-03-02x", "2011/03/02", "today", "20110302T", "2011-03"}) {
    EXPECT_EQ(formatIn("de_DE", "date", {value}).exitCode, 1) << value;
  }
  EXPECT_TRUE(contains(formatIn("de_DE", "date", {"2011-13-02"}).errors, "character 6: a month of two digits"));
  EXPECT_TRUE(contains(formatIn("de_DE", "time", {"13:05"}).errors, "character 6: \":\" should stand here"));
}

TEST(VeldFormat, FieldsThatAreTooNarrowShowWhatTheLibraryShows) {
  const Outcome stars = formatIn("en_US", "number", {"1e100"}, {"--as", "best", "--width", "3"});
  EXPECT_EQ(stars.exitCode, 1);
  EXPECT_EQ(stars.output, "***\n");
  EXPECT_TRUE(contains(stars.errors, "nlsFieldTooNarrow (0x803FE80E): ")) << stars.errors;
  const Outcome lost = formatIn("en_US", "number", {"1234.5"}, {"--as", "field", "--width", "4", "--precision", "1"});
  EXPECT_EQ(lost.exitCode, 1);
  EXPECT_EQ(lost.output, "1235\n");
  EXPECT_TRUE(contains(lost.errors, "nlsDigitsLost (0x803FE816): ")) << lost.errors;
  const Outcome amount = formatIn("en_US", "money", {"1"}, {"--width", "0"});
  EXPECT_EQ(amount.exitCode, 1);
  EXPECT_EQ(amount.output, "");
  EXPECT_EQ(amount.errors, "veld: nlsFieldTooNarrow (0x803FE80E): the field is too narrow\n  1\n");
}

TEST(VeldFormat, ValuesFromStandardInput) {
  const Outcome outcome = formatLines("de_DE", "number", "1.5\r\n\nx\n-2");
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.output, "1,5\n.\n-2\n");
  EXPECT_EQ(outcome.errors,
            "veld: line 3: nlsNoDigits (0x803FE810): character 1: this is no part of a number\n  x\n  ^\n");
  EXPECT_EQ(formatLines("de_DE", "number", "").output, "");
  EXPECT_EQ(formatLines("de_DE", "number", times(40000, "1234.5\n")).output, times(40000, "1.234,5\n"));
}

TEST(VeldFormat, ReportsInJson) {
  const Outcome outcome = formatIn("de_DE", "number", {"1234.5", "ä\xFF"}, {"--report", "json"});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.errors, "");
  const size_t end = outcome.output.find('\n');
  EXPECT_EQ(Json::parse(outcome.output.substr(0, end)), (Json{{"text", "1234.5"}, {"result", "1.234,5"}}));
  EXPECT_EQ(Json::parse(outcome.output.substr(end + 1)), (Json{{"text", "ä\uFFFD"},
                                                               {"status", "0x803FE810"},
                                                               {"name", "nlsNoDigits"},
                                                               {"character", 1},
                                                               {"reason", "this is no part of a number"}}));
}

TEST(VeldFormat, TheHostsLocaleIsTheDefault) {
  const auto asHost = [](const char* environment) {
    return runVeld({.arguments = {"format", "number", "1234.5"}, .environment = {environment}}).output;
  };
  EXPECT_EQ(asHost("LC_ALL=de_DE.UTF-8"), "1.234,5\n");
  EXPECT_EQ(asHost("LC_ALL=C"), "1,234.5\n");
}

TEST(VeldFormat, WrongUsageExitsWithTwo) {
  expectWrongUsage("format", {{},
                              {"moon"},
                              {"-l", "xx_XX", "number", "1"},
                              {"number", "1", "--width", "5000"},
                              {"number", "1", "--width", "x"},
                              {"number", "1", "--precision", "-1"},
                              {"number", "1", "--as", "roman"},
                              {"number", "1", "--group", "--no-group"},
                              {"number", "1", "--form", "short"},
                              {"number", "1", "--format", "%Y"},
                              {"date", "0", "--width", "9"},
                              {"date", "0", "--form", "12"},
                              {"time", "0", "--form", "long"},
                              {"datetime", "0", "--form", "24"},
                              {"money", "1", "--plus"},
                              {"percent", "1", "--no-fraction"},
                              {"hex", "1", "--group"},
                              {"number", "1", "--report", "yaml"},
                              {"number", "1", "--count"}});
  EXPECT_TRUE(contains(runVeld({.arguments = {"format", "date", "0", "--width", "9"}}).errors,
                       "--width isn't for this kind of value, but for: hex integer money number octal percent"));
}

TEST(VeldFormat, NegativeValuesNeedNoMark) {
  EXPECT_EQ(runVeld({.arguments = {"format", "-l", "de_DE", "number", "-1.5"}}).output, "-1,5\n");
  EXPECT_EQ(runVeld({.arguments = {"format", "number", "-7", "-l", "de_DE", "--width", "-4"}}).output, "-7  \n");
}

}  // namespace
}  // namespace test
