// Powers of ten in 128 bits.
#pragma once

#include <array>

#include "locale/numbers/binary_double.h"

namespace veldnls {

// Ten to a power is at least mantissa * 2^exponent, and less than (mantissa + powerError) * 2^exponent if it isn't
// exact. The mantissa's highest bit is set.
struct WidePower {
  UInt128 mantissa;
  int32_t exponent;
  bool exact;
};

inline constexpr int32_t powerError = 4;
inline constexpr int32_t lowestPower = -352;
inline constexpr int32_t highestPower = 351;

// The powers near zero, which usual numbers need, from -nearPower on.
inline constexpr int32_t nearPower = 32;
extern const std::array<WidePower, 2 * nearPower> nearPowers;

// Any other power from lowestPower to highestPower.
WidePower farPowerOfTen(int32_t n);

inline WidePower widePowerOfTen(int32_t n) {
  return n >= -nearPower && n < nearPower ? nearPowers[static_cast<size_t>(n + nearPower)] : farPowerOfTen(n);
}

// The upper 128 bits of the product of a power's mantissa and a number with its highest bit set.
struct ScaledNumber {
  UInt128 high;
  bool rest;  // bits below are not all zero
};
inline ScaledNumber scale(uint64_t number, UInt128 power) {
  const UInt128 low = UInt128{number} * static_cast<uint64_t>(power);
  return {UInt128{number} * static_cast<uint64_t>(power >> 64) + static_cast<uint64_t>(low >> 64),
          static_cast<uint64_t>(low) != 0};
}

}  // namespace veldnls
