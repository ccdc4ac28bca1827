// Addition and multiplication of doubles that aren't negative, rounded to the nearest double, ties to even: what the
// processor gives in its usual state, without its exceptions and in whatever state it is. Overflow gives infinity,
// which is no operand.
#pragma once

#include <utility>

#include "locale/numbers/binary_double.h"

namespace veldnls {

// A mantissa of 64 bits, the highest of them set, times two to the exponent.
struct Normalized {
  uint64_t mantissa;
  int32_t exponent;
};

// `value` isn't zero.
constexpr Normalized normalize(double value) {
  const BinaryDouble number = decompose(value);
  const int shift = std::countl_zero(number.mantissa);
  return {number.mantissa << shift, number.exponent - shift};
}

// The double next to a number that is below the smallest normal one, of which `drop` bits are to go.
double roundToSmallDouble(const Normalized& number, bool sticky, int32_t drop);

// The double next to a number and, if `sticky`, a bit less than one more of its last bit.
inline double roundToDouble(const Normalized& number, bool sticky) {
  constexpr int32_t usualDrop = 64 - doubleMantissaBits;
  const int32_t last = lastBitExponent(number.exponent + 64);
  if (last - number.exponent != usualDrop) return roundToSmallDouble(number, sticky, last - number.exponent);
  constexpr uint64_t belowHalf = (uint64_t{1} << (usualDrop - 1)) - 1;
  const uint64_t odd = number.mantissa >> usualDrop & 1;
  // A carry out of the word leaves zero, that of a mantissa with one more bit.
  const uint64_t rounded = number.mantissa + belowHalf + (odd | (sticky ? 1 : 0));
  const uint64_t carry = rounded < number.mantissa ? uint64_t{1} << doubleMantissaBits : 0;
  return composeDouble(rounded >> usualDrop | carry, last);
}

// The double next to a number of 127 or 128 bits times two to the exponent.
inline double roundToDouble(UInt128 number, int32_t exponent) {
  const int32_t shift = number >> 127 == 0 ? 1 : 0;
  number <<= shift;
  return roundToDouble({static_cast<uint64_t>(number >> 64), exponent + 64 - shift},
                       static_cast<uint64_t>(number) != 0);
}

inline double add(double a, double b) {
  if (isBelow(a, b)) std::swap(a, b);
  if (isZero(b)) return a;
  const Normalized large = normalize(a);
  const Normalized small = normalize(b);
  const int32_t distance = large.exponent - small.exponent;
  if (distance >= 64) return roundToDouble(large, true);
  const uint64_t addend = small.mantissa >> distance;
  const bool sticky = addend << distance != small.mantissa;
  const uint64_t sum = large.mantissa + addend;
  if (sum >= large.mantissa) return roundToDouble({sum, large.exponent}, sticky);
  return roundToDouble({sum >> 1 | uint64_t{1} << 63, large.exponent + 1}, sticky || sum % 2 != 0);
}

inline double multiply(double a, double b) {
  if (isZero(a) || isZero(b)) return 0;
  const Normalized left = normalize(a);
  const Normalized right = normalize(b);
  return roundToDouble(UInt128{left.mantissa} * right.mantissa, left.exponent + right.exponent);
}

}  // namespace veldnls
