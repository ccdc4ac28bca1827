// The conversions of a double that aren't bound to a field: fixed, exponent, general, integer part, fraction.
#pragma once

#include "locale/numbers/double_options.h"

namespace veldnls {

// `value` is finite and not negative.
NlsStatus formatConversion(const LocaleNumber& locale, double value, const DoubleOptions& options, const Output& out);

}  // namespace veldnls
