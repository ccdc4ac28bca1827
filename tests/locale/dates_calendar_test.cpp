// The calendar: every day of its range, and what is no day.
#include "locale/dates/calendar.h"

#include <gtest/gtest.h>

#include <climits>

#include "locale/dates_days.h"

namespace veldnls {
namespace {

std::optional<int32_t> dateOf(int month, int day, int year) {
  return dateFromMonthDayYear(static_cast<uint32_t>(month), static_cast<uint32_t>(day), static_cast<uint32_t>(year));
}

TEST(DatesCalendar, EveryDayBothWays) {
  test::Day day;
  for (; day.date <= test::lastDay; day.next()) {
    const int32_t julian = day.year * 1000 + day.dayOfYear;
    ASSERT_EQ(julianFromDate(day.date), julian) << day.date;
    ASSERT_EQ(dateFromJulian(julian), day.date);
    const auto calendar = calendarFromJulian(julian);
    ASSERT_TRUE(calendar.has_value());
    ASSERT_TRUE(calendar->year == day.year && calendar->month == day.month && calendar->day == day.day) << day.date;
    ASSERT_EQ(dateOf(day.month, day.day, day.year), day.date);
    ASSERT_EQ(weekdayOf(day.date), day.weekday) << day.date;
  }
  EXPECT_EQ(day.year, 20001);
  EXPECT_EQ(day.dayOfYear, 1);
}

TEST(DatesCalendar, KnownDays) {
  EXPECT_EQ(dateOf(1, 1, 1960), 0);
  EXPECT_EQ(weekdayOf(0), 6);
  EXPECT_EQ(dateOf(1, 1, 1970), 3653);
  EXPECT_EQ(weekdayOf(3653), 5);
  EXPECT_EQ(dateOf(1, 1, 1582), firstDate);
  EXPECT_EQ(weekdayOf(firstDate), 6);
  EXPECT_EQ(weekdayOf(-138052), 1);
  EXPECT_EQ(dateOf(12, 31, 20000), endDate - 1);
}

TEST(DatesCalendar, TheYear4000IsACommonOne) {
  EXPECT_FALSE(dateOf(2, 29, 4000).has_value());
  EXPECT_TRUE(dateOf(2, 29, 3996).has_value());
  EXPECT_TRUE(dateOf(2, 29, 2000).has_value());
  EXPECT_EQ(*dateOf(3, 1, 4000) - *dateOf(2, 28, 4000), 1);
  EXPECT_FALSE(dateFromJulian(4000366).has_value());
}

TEST(DatesCalendar, YearsOfTwoDigits) {
  for (int year = 0; year < 100; ++year) {
    const int full = year < 50 ? 2000 + year : 1900 + year;
    EXPECT_EQ(dateOf(7, 14, year), dateOf(7, 14, full)) << year;
    EXPECT_EQ(dateFromJulian(year * 1000 + 77), dateFromJulian(full * 1000 + 77)) << year;
    EXPECT_EQ(calendarFromJulian(year * 1000 + 77)->year, full);
    // The leap day goes by the full year.
    EXPECT_EQ(dateOf(2, 29, year).has_value(), test::leapYear(full)) << year;
    EXPECT_EQ(dateFromJulian(year * 1000 + 366).has_value(), test::leapYear(full)) << year;
  }
}

TEST(DatesCalendar, EveryCombinationThatIsNoDate) {
  const auto isYear = [](uint32_t year) { return year < 100 || (year >= 1582 && year <= 20000); };
  const auto check = [&](uint32_t year) {
    const int full = static_cast<int>(year >= 100 ? year : year < 50 ? 2000 + year : 1900 + year);
    for (uint32_t month = 0; month <= 13; ++month) {
      for (uint32_t day = 0; day <= 32; ++day) {
        const bool valid = isYear(year) && month >= 1 && month <= 12 && day >= 1 &&
                           static_cast<int>(day) <= test::monthDays(static_cast<int>(month), full);
        ASSERT_EQ(dateFromMonthDayYear(month, day, year).has_value(), valid) << month << " " << day << " " << year;
      }
    }
  };
  for (uint32_t year = 0; year <= 2101; ++year) check(year);
  for (const uint32_t year : {3900u, 3999u, 4000u, 4001u, 8000u, 9999u, 16000u, 19999u, 20000u, 20001u, 0x7FFFFFFFu,
                              0x80000000u, 0xFFFFFFFFu}) {
    check(year);
  }
  EXPECT_FALSE(dateFromMonthDayYear(UINT_MAX, 1, 1960).has_value());
  EXPECT_FALSE(dateFromMonthDayYear(1, UINT_MAX, 1960).has_value());
}

TEST(DatesCalendar, JulianNumbersThatNameNoDay) {
  for (const int32_t julian : {INT_MIN, -1960001, -1, 0, 1000, 1960000, 1960367, 1961366, 1960999, 100001, 1581365,
                               1582000, 20000366, 20001001, INT_MAX}) {
    EXPECT_FALSE(dateFromJulian(julian).has_value()) << julian;
    EXPECT_FALSE(calendarFromJulian(julian).has_value()) << julian;
  }
  EXPECT_EQ(dateFromJulian(1), dateOf(1, 1, 2000));
  EXPECT_EQ(dateFromJulian(99365), dateOf(12, 31, 1999));
  EXPECT_EQ(dateFromJulian(1582001), firstDate);
  EXPECT_EQ(dateFromJulian(20000365), endDate - 1);
}

}  // namespace
}  // namespace veldnls
