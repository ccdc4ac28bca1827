// veld format and veld parse: what one writes the other reads, in every locale.
#include <gtest/gtest.h>

#include <map>
#include <sstream>

#include "apps/locale_commands.h"

namespace test {
namespace {

using Lines = std::vector<std::string>;

Lines linesOf(const std::string& text) {
  std::istringstream stream(text);
  Lines lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

std::string joined(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + '\n';
  return text;
}

// The values that don't come back.
Lines lost(const std::string& locale, const std::string& kind, const Lines& values, const Lines& more) {
  const Outcome written = formatLines(locale, kind, joined(values), more);
  EXPECT_EQ(written.exitCode, 0) << locale << ' ' << written.errors;
  Lines missing;
  // Texts that can't be read have no line: all are gone through by themselves then.
  const Lines read = linesOf(parseLines(locale, kind, written.output, more).output);
  if (read == values) return missing;
  const Lines texts = linesOf(written.output);
  EXPECT_EQ(texts.size(), values.size());
  for (size_t i = 0; i < texts.size(); ++i) {
    if (parseIn(locale, kind, {texts[i]}, more).output != values[i] + '\n') missing.push_back(values[i]);
  }
  return missing;
}

// A date of each month, and of each day of the week.
const Lines dates = {"1582-01-01", "1600-02-29", "1959-12-31", "1960-01-01", "2011-03-02", "2011-04-04", "2011-05-06",
                     "2011-06-05", "2024-07-31", "2024-08-01", "2024-09-24", "2024-10-12", "2024-11-08", "9999-12-31"};
const Lines numbers = {"0",
                       "1",
                       "-1",
                       "0.5",
                       "-1234.5",
                       "1234567.891",
                       "0.1",
                       "1e-10",
                       "1e+22",
                       "1e+300",
                       "-1.5e-300",
                       "-7.571968556055867e-74",
                       "5.6843418860808015e-14",
                       "1.7976931348623157e+308",
                       "123456789012345683968",
                       "0.30000000000000004",
                       "99999.999",
                       "1000000"};
const Lines integers = {"0", "-1", "1234567", "-9223372036854775808", "9223372036854775807"};

Lines with(const Lines& values, const char* behind) {
  Lines result;
  for (const std::string& value : values) result.push_back(value + behind);
  return result;
}

TEST(VeldLocaleRounds, NumbersComeBack) {
  for (const std::string& locale : localeNames()) EXPECT_EQ(lost(locale, "number", numbers, {}), Lines()) << locale;
}

TEST(VeldLocaleRounds, IntegersComeBack) {
  for (const char* locale : {"en_US", "de_DE", "hi_IN", "fa_IR", "ar_EG"}) {
    EXPECT_EQ(lost(locale, "integer", integers, {}), Lines()) << locale;
  }
}

TEST(VeldLocaleRounds, AmountsAndPercentsComeBack) {
  const Lines amounts = {"0", "-1234.5", "1234567.25"};
  for (const std::string& locale : localeNames()) {
    EXPECT_EQ(lost(locale, "percent", {"0.25", "-0.5", "12"}, {}), Lines()) << locale;
    // Two currencies have no smaller coins.
    const bool isWhole = locale == "ja_JP" || locale == "ko_KR";
    EXPECT_EQ(lost(locale, "money", amounts, {}), isWhole ? Lines({"-1234.5", "1234567.25"}) : Lines()) << locale;
  }
}

TEST(VeldLocaleRounds, DatesComeBack) {
  for (const std::string& locale : localeNames()) {
    for (const char* form : {"short", "medium", "long"}) {
      EXPECT_EQ(lost(locale, "date", dates, {"--form", form}), Lines()) << locale << ' ' << form;
    }
  }
}

// Names that begin with another's are taken for that one: days of the week in Turkish, months in the other two.
TEST(VeldLocaleRounds, FullDatesComeBackButWhereANameBeginsAnother) {
  const std::map<std::string, Lines> losses = {
      {"kw_GB", {"2011-06-05"}},
      {"tr_TR", {"2011-04-04", "2024-10-12"}},
      {"vi_VN", {"1959-12-31", "2024-10-12", "2024-11-08", "9999-12-31"}},
  };
  for (const std::string& locale : localeNames()) {
    const auto known = losses.find(locale);
    EXPECT_EQ(lost(locale, "date", dates, {"--form", "full"}), known == losses.end() ? Lines() : known->second)
        << locale;
  }
}

TEST(VeldLocaleRounds, TimesComeBackButForTheSecondsOfGermany) {
  const Lines times = {"00:00:00", "00:59:01", "11:59:59", "12:00:00", "12:30:15", "13:05:09", "23:59:59"};
  for (const std::string& locale : localeNames()) {
    EXPECT_EQ(lost(locale, "time", times, {"--form", "12"}), Lines()) << locale;
    const Lines found = lost(locale, "time", times, {});
    if (locale == "de_DE") {
      EXPECT_EQ(found, Lines({"00:59:01", "11:59:59", "12:30:15", "13:05:09", "23:59:59"}));
    } else {
      EXPECT_EQ(found, Lines()) << locale;
    }
  }
}

TEST(VeldLocaleRounds, DatetimesComeBack) {
  for (const std::string& locale : localeNames()) {
    EXPECT_EQ(lost(locale, "datetime", with(dates, "T23:05:09"), {}), Lines()) << locale;
    EXPECT_EQ(lost(locale, "datetime", with(dates, "T00:05:09"), {"--form", "short"}), Lines()) << locale;
  }
}

}  // namespace
}  // namespace test
