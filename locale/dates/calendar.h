// The calendar. A date is a count of days from 1 January 1960, which is 0. Years run from 1582 to 20000 by the
// Gregorian rule, but that a year which 4000 divides is a common one. A year below 100 is one of 1950 to 2049.
#pragma once

#include <cstdint>
#include <optional>

namespace veldnls {

inline constexpr int32_t firstDate = -138061;  // 1 January 1582
inline constexpr int32_t endDate = 6589336;    // the day behind 31 December 20000

struct CalendarDate {
  int32_t year;
  int32_t month;  // from 1
  int32_t day;
};

// Julian numbers stand between dates and calendar: year * 1000 + day of the year, from 1.
//
// The number of a date from firstDate to endDate - 1.
int32_t julianFromDate(int32_t date);

// Nothing where the number names no day.
std::optional<int32_t> dateFromJulian(int32_t julian);
std::optional<CalendarDate> calendarFromJulian(int32_t julian);

// Nothing where the three make no date.
std::optional<int32_t> dateFromMonthDayYear(uint32_t month, uint32_t day, uint32_t year);

// 1 for Sunday to 7 for Saturday, for the dates of julianFromDate.
int32_t weekdayOf(int32_t date);

}  // namespace veldnls
