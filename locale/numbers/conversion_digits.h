// The digits that a conversion shows, rounded.
#pragma once

#include "core/digits.h"
#include "locale/numbers/double_options.h"

namespace veldnls {

inline constexpr int32_t maxPrecision = 350;

enum class ConversionKind { general, exponent, fixed, fractionOnly, integerOnly };

struct Conversion {
  ConversionKind kind;
  int32_t precision;
};

// The conversion that the flags ask for; where they ask for several, the first of: general, integer, fraction,
// exponent, fixed.
Conversion chooseConversion(const DoubleOptions& options);

struct ConversionDigits {
  // A spare "0" for a carry may stand in front of the digits.
  char16_t units[1 + maxIntegerDigits + maxPrecision + 16];
  char16_t* first = units + 1;
  int32_t integerCount = 0;  // those in front of the decimal point
  int32_t length = 0;        // those shown
  int32_t power = 0;         // of ten, of the first digit, for the exponent
  bool exponentForm = false;
};

// `field` is the width, or the capacity if there is none; it limits the general conversion. `value` is finite and not
// negative.
void takeConversionDigits(double value, const Conversion& conversion, const DoubleOptions& options, int32_t field,
                          ConversionDigits& digits);

}  // namespace veldnls
