// The double next to a decimal number.
#pragma once

#include <cstdint>

namespace veldnls {

// leading * 10^exponent, and a little more if `more`: then `leading` has 19 digits, and the text holds them all. Units
// of the text that aren't ASCII digits are skipped, so that separators may stay.
struct DecimalNumber {
  static constexpr int32_t maxLeading = 19;

  uint64_t leading;
  int64_t exponent;
  bool more;
  const char16_t* text;
  const char16_t* textEnd;
};

// The nearest double, ties to even. Infinity for a number that is too large; one below half the smallest normal double
// counts as zero.
double decimalToDouble(const DecimalNumber& number);

}  // namespace veldnls
