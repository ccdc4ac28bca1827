// Reads text by a format: text that must stand there, and items "%x", whose letters count in their case.
#pragma once

#include "veldnls/locale_record.h"

namespace veldnls {

// What the items of a format have read; 0 where none has.
struct DateTimeFields {
  int32_t year;
  int32_t month;
  int32_t day;
  int32_t hour;
  int32_t minute;
  int32_t second;
  int32_t millisecond;
};

// Text behind what the format asks for is left. Returns 0 with the units read in `*consumed`, or nlsDateResultMissing
// with `*consumed` as it was.
NlsStatus parseItems(const LocaleDateTime& locale, const NlsText60& format, const char16_t* text, int32_t length,
                     DateTimeFields* fields, int32_t* consumed);

}  // namespace veldnls
