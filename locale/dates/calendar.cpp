#include "locale/dates/calendar.h"

#include <array>
#include <cstddef>

namespace veldnls {
namespace {

constexpr int32_t firstYear = 1582;
constexpr int32_t lastYear = 20000;
constexpr int32_t shortYears = 100;  // years below have two digits
constexpr int32_t daysToOrigin = 715875;
constexpr int32_t february = 1;

// A year at work, made of a template with the year's own values.
struct CalendarContext {
  int32_t year;
  int32_t daysInYear;
  std::array<int32_t, 12> monthLengths;
  int32_t yearCutoff;
};

constexpr CalendarContext calendarTemplate = {
    .year = 0, .daysInYear = 365, .monthLengths = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31}, .yearCutoff = 1950};

constexpr bool isLeapYear(int32_t year) {
  if (year % 4000 == 0) return false;
  return year % 400 == 0 || (year % 100 != 0 && year % 4 == 0);
}

// Years of two digits are those of the hundred years from the cutoff on.
constexpr int32_t fullYear(int32_t year, int32_t yearCutoff) {
  if (year >= shortYears) return year;
  const int32_t cutoff = yearCutoff % 100;
  return yearCutoff - cutoff + year + (year < cutoff ? 100 : 0);
}

constexpr CalendarContext contextOf(int32_t year) {
  CalendarContext context = calendarTemplate;
  context.year = fullYear(year, context.yearCutoff);
  if (isLeapYear(context.year)) {
    ++context.daysInYear;
    ++context.monthLengths[february];
  }
  return context;
}

// The date of the day ahead of 1 January.
constexpr int32_t dateBeforeYear(int32_t year) {
  const int32_t y = year - 1;
  const int32_t leapDays = y / 4 - y / 100 + y / 400 - y / 4000;
  return year * 365 - daysToOrigin + leapDays;
}
static_assert(dateBeforeYear(1960) == -1);
static_assert(dateBeforeYear(firstYear) == firstDate - 1);
static_assert(dateBeforeYear(lastYear + 1) == endDate - 1);

constexpr bool isYear(int32_t year) {
  return (year >= 0 && year < shortYears) || (year >= firstYear && year <= lastYear);
}

struct JulianParts {
  CalendarContext context;
  int32_t dayOfYear;
};

std::optional<JulianParts> partsOf(int32_t julian) {
  if (!isYear(julian / 1000)) return {};
  const JulianParts parts = {contextOf(julian / 1000), julian % 1000};
  if (parts.dayOfYear < 1 || parts.dayOfYear > parts.context.daysInYear) return {};
  return parts;
}

}  // namespace

int32_t julianFromDate(int32_t date) {
  const int32_t n = date + daysToOrigin;
  const int32_t correction = n / 1461 - n / 36525 + n / 146100 - n / 1461000 + 1;
  const int32_t year = (n - correction) / 365;
  return year * 1000 + date - dateBeforeYear(year);
}

std::optional<int32_t> dateFromJulian(int32_t julian) {
  const auto parts = partsOf(julian);
  if (!parts) return {};
  return dateBeforeYear(parts->context.year) + parts->dayOfYear;
}

std::optional<CalendarDate> calendarFromJulian(int32_t julian) {
  const auto parts = partsOf(julian);
  if (!parts) return {};
  CalendarDate result = {parts->context.year, 1, parts->dayOfYear};
  for (const int32_t length : parts->context.monthLengths) {
    if (result.day <= length) break;
    result.day -= length;
    ++result.month;
  }
  return result;
}

std::optional<int32_t> dateFromMonthDayYear(uint32_t month, uint32_t day, uint32_t year) {
  if (month < 1 || month > 12 || year > lastYear || !isYear(static_cast<int32_t>(year))) return {};
  const CalendarContext context = contextOf(static_cast<int32_t>(year));
  const size_t place = month - 1;
  if (day < 1 || day > static_cast<uint32_t>(context.monthLengths[place])) return {};
  int32_t julian = context.year * 1000 + static_cast<int32_t>(day);
  for (size_t earlier = 0; earlier < place; ++earlier) julian += context.monthLengths[earlier];
  return dateFromJulian(julian);
}

int32_t weekdayOf(int32_t date) {
  // 138052 days lead to a Sunday. The first days of 1582 lie ahead of it, 9 days at most: two weeks more keep the sum
  // positive, and the remainder the one that rounds down.
  return (date + 138052 + 14) % 7 + 1;
}

}  // namespace veldnls
