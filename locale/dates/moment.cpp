#include "locale/dates/moment.h"

#include "locale/dates/fixed_point.h"
#include "veldnls/status.h"

namespace veldnls {
namespace {

constexpr int64_t secondsPerDay = 86400;
constexpr int64_t firstSecond = firstDate * secondsPerDay;
constexpr int64_t endSecond = endDate * secondsPerDay;

constexpr int wholeBits = 62;

bool isBelowWholeBits(double value) {
  constexpr uint64_t limit = std::bit_cast<uint64_t>(static_cast<double>(int64_t{1} << wholeBits));
  return magnitudeBits(value) < limit;
}

// Whole seconds from the first of all to a second and a fraction of it. The sum is taken as a double: a fraction that
// is too near to the next second for one makes it that second.
int64_t secondsFromFirst(int64_t whole, uint64_t fraction) {
  const int64_t seconds = whole - firstSecond;
  const uint64_t halfSpacing = uint64_t{1} << (std::bit_width(static_cast<uint64_t>(seconds)) + fractionBits - 54);
  return fraction >= 0 - halfSpacing ? seconds + 1 : seconds;
}

}  // namespace

NlsStatus momentOfDate(int32_t date, Moment* moment) {
  // The slots only bring dates of the calendar, all of which have a year; whoever else calls is told.
  if (date < firstDate || date >= endDate) return nlsDateOutOfRange;
  const auto calendar = calendarFromJulian(julianFromDate(date));
  if (!calendar) return nlsNoCalendarYear;
  *moment = {.date = *calendar, .weekday = weekdayOf(date), .hasTime = false, .hour = 0, .minute = 0, .second = 0};
  return 0;
}

NlsStatus momentOfSeconds(double seconds, Moment* moment) {
  if (!isBelowWholeBits(seconds)) return nlsDateOutOfRange;
  const Int128 fixed = fixedPoint(seconds);
  const auto whole = static_cast<int64_t>(fixed >> fractionBits);
  if (whole < firstSecond || whole >= endSecond) return nlsDateOutOfRange;

  // Only the time of a moment before 1960 comes from the sum: in the last microseconds before a midnight of later days,
  // the day is the next one already.
  const int64_t sum = secondsFromFirst(whole, static_cast<uint64_t>(fixed));
  const auto time = static_cast<int32_t>((isNegative(seconds) ? sum : whole) % secondsPerDay);
  const NlsStatus status = momentOfDate(static_cast<int32_t>(sum / secondsPerDay) + firstDate, moment);
  if (status != 0) return status;
  moment->hasTime = true;
  moment->hour = time / 3600;
  moment->minute = time / 60 % 60;
  moment->second = time % 60;
  return 0;
}

}  // namespace veldnls
