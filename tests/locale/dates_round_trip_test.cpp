// What every format of every locale writes comes back through the parser, but for the losses that stand here.
#include <gtest/gtest.h>

#include <set>

#include "locale/dates_days.h"
#include "locale/locale_object_support.h"

namespace {

using test::ReadDate;
using test::ReadSeconds;

// Formats that lose something of what four-digit years and whole seconds tell: locale and format.
const std::set<std::string> losses = {
    "de_DE timeFormat24",  // has no seconds
};

const char* const dateFormats[] = {"dateFormatShort", "dateFormatMedium", "dateFormatLong"};
const char* const timeFormats[] = {"timeFormat12", "timeFormat24"};

class DatesRoundTrip : public testing::Test {
 protected:
  test::NlsHost host{&VELDNLSLIB};
};

bool dateComesBack(QZLocale* locale, const test::Day& day, int style) {
  const auto month = static_cast<uint32_t>(day.month);
  const auto monthDay = static_cast<uint32_t>(day.day);
  const auto year = static_cast<uint32_t>(day.year);
  const std::u16string text = test::formatDate(locale, month, monthDay, year, style).text;
  return test::parseDate(locale, text, style) == ReadDate{0, month, monthDay, year, static_cast<int32_t>(text.size())};
}

bool timeComesBack(QZLocale* locale, int seconds, int style) {
  const std::u16string text = test::formatTime(locale, seconds, style).text;
  return test::parseTime(locale, text, style) ==
         ReadSeconds{0, static_cast<double>(seconds), static_cast<int32_t>(text.size())};
}

bool momentComesBack(QZLocale* locale, double seconds) {
  const std::u16string text = test::formatDateTime(locale, seconds).text;
  return test::parseDateTime(locale, text) == ReadSeconds{0, seconds, static_cast<int32_t>(text.size())};
}

bool isTestedYear(int year) {
  return year == 1582 || year == 1960 || year == 2000 || year == 2011 || year == 4000 || year == 9999;
}

// The days of the tested years.
const std::vector<test::Day>& days() {
  static const std::vector<test::Day> found = [] {
    std::vector<test::Day> list;
    for (test::Day day; day.year <= 9999; day.next()) {
      if (isTestedYear(day.year)) list.push_back(day);
    }
    return list;
  }();
  return found;
}

TEST_F(DatesRoundTrip, EveryFormatOfEveryLocale) {
  ASSERT_EQ(days().size(), 4 * 365u + 2 * 366u);
  const std::vector<std::string> names = test::localeNames();
  ASSERT_EQ(names.size(), 132u);
  std::set<std::string> lost;
  for (const std::string& name : names) {
    const test::LocaleHandle handle = test::makeLocale(host.nls, name);
    QZLocale* locale = handle.get();
    for (int style = 0; style < 3; ++style) {
      for (const test::Day& day : days()) {
        if (!dateComesBack(locale, day, style)) lost.insert(name + " " + dateFormats[style]);
      }
    }
    for (int style = 0; style < 2; ++style) {
      for (int hour = 0; hour < 24; ++hour) {
        for (const int rest : {0, 62, 1830, 3599}) {
          if (!timeComesBack(locale, hour * 3600 + rest, style)) lost.insert(name + " " + timeFormats[style]);
        }
      }
    }
    for (const test::Day& day : days()) {
      if (!momentComesBack(locale, day.date * 86400.0 + day.dayOfYear * 235)) lost.insert(name + " dateTimeFormat");
    }
  }
  EXPECT_EQ(lost, losses);
}

TEST_F(DatesRoundTrip, GermanTimesLoseTheirSecondsOnly) {
  const test::LocaleHandle german = test::makeLocale(host.nls, "de_DE");
  for (int seconds = 0; seconds < 86400; seconds += 7) {
    const std::u16string text = test::formatTime(german.get(), seconds, NLS_TIME_STYLE_24).text;
    EXPECT_EQ(test::parseTime(german.get(), text, NLS_TIME_STYLE_24),
              (ReadSeconds{0, static_cast<double>(seconds / 60 * 60), static_cast<int32_t>(text.size())}));
  }
}

TEST_F(DatesRoundTrip, FractionsOfASecondAreLostEverywhere) {
  for (const std::string& name : test::localeNames()) {
    const test::LocaleHandle locale = test::makeLocale(host.nls, name);
    const double seconds = 1612325106.5;
    EXPECT_EQ(test::parseDateTime(locale.get(), test::formatDateTime(locale.get(), seconds).text).seconds, 1612325106)
        << name;
    EXPECT_EQ(test::formatTime(locale.get(), 3661.999, 0), test::formatTime(locale.get(), 3661, 0)) << name;
  }
}

TEST_F(DatesRoundTrip, YearsFrom10000OnAreLostEverywhere) {
  for (const std::string& name : test::localeNames()) {
    const test::LocaleHandle locale = test::makeLocale(host.nls, name);
    for (int style = 0; style < 3; ++style) {
      // The last four digits remain, which are no year or another one.
      const ReadDate gone =
          test::parseDate(locale.get(), test::formatDate(locale.get(), 5, 17, 10000, style).text, style);
      EXPECT_EQ(gone, (ReadDate{nlsDateResultMissing, 0, 0, 0, -77})) << name;
      const ReadDate other =
          test::parseDate(locale.get(), test::formatDate(locale.get(), 5, 17, 12345, style).text, style);
      EXPECT_EQ(other.status, 0u) << name;
      EXPECT_EQ(other.year, 2345u) << name;
    }
  }
}

}  // namespace
