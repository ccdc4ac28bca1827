// Days of the calendar, found by walking from one to the next.
#pragma once

#include <cstdint>

namespace test {

inline bool leapYear(int year) {
  if (year % 4 != 0) return false;
  if (year % 100 != 0) return true;
  if (year % 400 != 0) return false;
  return year % 4000 != 0;
}

inline int monthDays(int month, int year) {
  if (month == 2) return leapYear(year) ? 29 : 28;
  return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

inline constexpr int32_t firstDay = -138061;
inline constexpr int32_t lastDay = 6589335;

// The first day of the range: 1 January 1582, a Friday if today's calendar had held then.
struct Day {
  int32_t date = firstDay;
  int year = 1582;
  int month = 1;
  int day = 1;
  int dayOfYear = 1;
  int weekday = 6;  // 1 for Sunday

  void next() {
    ++date;
    weekday = weekday % 7 + 1;
    ++dayOfYear;
    if (++day <= monthDays(month, year)) return;
    day = 1;
    if (++month <= 12) return;
    month = 1;
    dayOfYear = 1;
    ++year;
  }
};

}  // namespace test
