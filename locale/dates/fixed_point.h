// Seconds in units of 2^-64, in which doubles from 2^-11 on come out even and sums are exact.
#pragma once

#include <algorithm>

#include "locale/numbers/double_arithmetic.h"

namespace veldnls {

using Int128 = __int128;

inline constexpr int fractionBits = 64;

// The value rounded down. REQUIRES: its magnitude is below 2^62.
inline Int128 fixedPoint(double value) {
  const BinaryDouble magnitude = decompose(value);
  const Int128 mantissa = isNegative(value) ? -Int128{magnitude.mantissa} : Int128{magnitude.mantissa};
  const int32_t shift = magnitude.exponent + fractionBits;
  return shift >= 0 ? mantissa * (Int128{1} << shift) : mantissa >> std::min(-shift, 127);
}

// The double next to a number, ties to even.
inline double nextDouble(Int128 fixed) {
  const UInt128 magnitude = fixed < 0 ? -static_cast<UInt128>(fixed) : static_cast<UInt128>(fixed);
  if (magnitude == 0) return 0;
  const auto upper = static_cast<uint64_t>(magnitude >> 64);
  const int shift = upper != 0 ? std::countl_zero(upper) : 64 + std::countl_zero(static_cast<uint64_t>(magnitude));
  const double result = roundToDouble(magnitude << shift, -fractionBits - shift);
  return fixed < 0 ? -result : result;
}

}  // namespace veldnls
