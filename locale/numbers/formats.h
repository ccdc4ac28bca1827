// Numbers as text of a locale, in UTF-16 without terminator.
//
// All functions: `width`, `capacity` and `*length` count units. A negative width asks for left justification in its
// absolute value. `output` has room for `capacity` units, and nothing is written behind them; a capacity below 1 counts
// as 0. `flags` are those of veldnls/number_flags.h. The result doesn't depend on the process, its locale or the state
// of its floating point, and no floating-point exception is raised. Any thread.
#pragma once

#include "veldnls/locale_record.h"
#include "veldnls/number_flags.h"
#include "veldnls/status.h"

namespace veldnls {

// A double by one of the conversions of `flags`. A precision below 0 means 6; one of 99 means FMT_BEST.
//
// The conversions into a field (FMT_BEST, FMT_FIELD_DECIMAL, FMT_FIELD_EXPONENT) fill the smaller of width and
// capacity. What doesn't fit in decimal form is shown with an exponent, and a field too narrow for that is filled with
// "*". Other conversions fill a field too if the width isn't 0; the last unit of a field that is left-justified isn't
// written. Digits are those of the exact value, rounded half up. A missing value is shown as its letter.
//
// Returns 0; nlsFieldTooNarrow, with the length that would be needed in `*length` and "*" in the output;
// nlsDigitsLost when FMT_FIELD_DECIMAL had to drop digits and FMT_FIELD_EXPONENT shows fewer than it would like: the
// text is valid; nlsBadArgument, without output, for a double that is neither finite nor a missing value.
NlsStatus formatDouble(const LocaleNumber& locale, double value, int32_t width, int32_t precision, uint32_t flags,
                       char16_t* output, int32_t capacity, int32_t* length);

// Integers. `precision` is the least count of digits, one below 0 means 6, and zero with precision 0 has no digit.
// The output behind the text is filled with U+0000 up to the capacity.
//
// Returns 0 or nlsFieldTooNarrow: without output when the capacity is below precision or width, otherwise with the last
// `capacity` units of the text and the text's length in `*length`.
NlsStatus formatInt32(const LocaleNumber& locale, int32_t value, int32_t width, int32_t precision, uint32_t flags,
                      char16_t* output, int32_t capacity, int32_t* length);
NlsStatus formatInt64(const LocaleNumber& locale, int64_t value, int32_t width, int32_t precision, uint32_t flags,
                      char16_t* output, int32_t capacity, int32_t* length);
NlsStatus formatUInt32(const LocaleNumber& locale, uint32_t value, int32_t width, int32_t precision, uint32_t flags,
                       char16_t* output, int32_t capacity, int32_t* length);
NlsStatus formatUInt64(const LocaleNumber& locale, uint64_t value, int32_t width, int32_t precision, uint32_t flags,
                       char16_t* output, int32_t capacity, int32_t* length);

// A pointer in upper-case hexadecimal; null is "NIL", whatever the width. The output behind the text is filled with
// U+0000. Returns 0, or nlsFieldTooNarrow with the first `capacity` units of the text.
NlsStatus formatPointer(const void* value, int32_t width, uint32_t flags, char16_t* output, int32_t capacity,
                        int32_t* length);

// A hundred times the value with FMT_FIXED, and "%" behind it. Statuses of formatDouble.
NlsStatus formatPercent(const LocaleNumber& locale, double value, int32_t width, int32_t precision, uint32_t flags,
                        char16_t* output, int32_t capacity, int32_t* length);

// An amount with FMT_FIXED and FMT_GROUP, the symbol directly in front of its first character. Statuses of
// formatDouble; nlsFieldTooNarrow without output for a width below 1 or below the symbol's length.
NlsStatus formatCurrency(const LocaleNumber& locale, const NlsText60& symbol, double value, int32_t width,
                         int32_t precision, uint32_t flags, char16_t* output, int32_t capacity, int32_t* length);

}  // namespace veldnls
