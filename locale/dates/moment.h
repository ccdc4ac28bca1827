// What a format shows: a day with its weekday, and the time of day unless it is a plain date.
#pragma once

#include "locale/dates/calendar.h"
#include "veldnls/types.h"

namespace veldnls {

struct Moment {
  CalendarDate date;
  int32_t weekday;  // 1 for Sunday
  bool hasTime;
  int32_t hour;
  int32_t minute;
  int32_t second;
};

// Return 0, nlsDateOutOfRange, or nlsNoCalendarYear for a day in the range that the calendar doesn't know.
NlsStatus momentOfDate(int32_t date, Moment* moment);
// Seconds from the midnight that starts 1 January 1960. No floating-point exception is raised.
NlsStatus momentOfSeconds(double seconds, Moment* moment);

}  // namespace veldnls
