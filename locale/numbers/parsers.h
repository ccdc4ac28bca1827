// Numbers out of text of a locale. Only the ASCII digits are digits. Text is counted in units; `*consumed` tells how
// many were read, which for a failure is the place of the unit that doesn't belong there. The result doesn't depend on
// the process, and no floating-point exception is raised. Any thread.
#pragma once

#include "veldnls/locale_record.h"
#include "veldnls/number_flags.h"
#include "veldnls/status.h"

namespace veldnls {

// A number with fraction and exponent, or a missing value: "." with a letter or "_", or alone. Blanks and tabs may
// stand around it. Group separators may stand anywhere in the integer part. The value is the double next to what all
// digits tell. `locale` may be null: "." and ",".
//
// Returns 0; for a text without anything 0 and the missing value "."; nlsNoDigits; nlsNumberOverflow;
// nlsNumberUnderflow, also when the value is below the smallest normal double; nlsDateOutOfRange for an exponent above
// 30800. On failures `*value` is the missing value ".".
NlsStatus parseDouble(const LocaleNumber* locale, const char16_t* text, int32_t length, double* value,
                      int32_t* consumed);

// Integers, with blanks in front and behind the sign. A text without anything is 0.
//
// Returns 0, nlsNoDigits with the value of what was read, nlsNumberOverflow with 0, nlsNegativeLength with 0.
//
// The signed ones skip a group separator together with the unit behind it, while both count as one unit of the length:
// "1,234" is 134.
NlsStatus parseInt32(const LocaleNumber& locale, const char16_t* text, int32_t length, uint32_t flags, int32_t* value,
                     int32_t* consumed);
NlsStatus parseInt64(const LocaleNumber& locale, const char16_t* text, int32_t length, uint32_t flags, int64_t* value,
                     int32_t* consumed);
NlsStatus parseUInt32(const LocaleNumber& locale, const char16_t* text, int32_t length, uint32_t flags, uint32_t* value,
                      int32_t* consumed);
NlsStatus parseUInt64(const LocaleNumber& locale, const char16_t* text, int32_t length, uint32_t flags, uint64_t* value,
                      int32_t* consumed);

}  // namespace veldnls
