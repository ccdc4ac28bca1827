// The conversions of a double into a field: decimal, as many digits as fit, exponent.
#pragma once

#include "locale/numbers/double_options.h"

namespace veldnls {

// `value` is finite and not negative.
NlsStatus formatField(const LocaleNumber& locale, double value, const DoubleOptions& options, bool best,
                      const Output& out);

// A field that is filled from the right. It has one unit more than `width` for a negative value, and holds blanks.
struct Field {
  char16_t* units;
  int32_t width;
  bool negative;
};

// The value in decimal form, or with an exponent if it doesn't fit.
// Returns 0; nlsDigitsLost; nlsFieldTooNarrow, without output.
NlsStatus writeDecimalOrExponentField(const LocaleNumber& locale, double value, const DoubleOptions& options, bool best,
                                      const Field& field);

// A precision of the exponent form that shows as many digits as fit.
inline constexpr int32_t fittingPrecision = 99;

// The value as mantissa and exponent. Any precision but the one above is negative, and asks for at most 1 - `precision`
// digits and an exponent of at least two with its sign.
// Returns 0; nlsDigitsLost; nlsFieldTooNarrow, without output.
NlsStatus writeExponentField(const LocaleNumber& locale, double value, Field field, int32_t precision);

}  // namespace veldnls
