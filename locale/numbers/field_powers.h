// The powers of ten of the field formats. They are doubles made in one fixed way, and fields show their errors.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace veldnls {

inline constexpr int32_t highestFieldPower = 308;
inline constexpr int32_t lastRoundingHalf = 323;

// Ten to the power of n: a table up to 100000000, above that its entry for what 8 leaves of n, times squares of
// 100000000 from low to high; the reciprocal for a negative n. Zero below -highestFieldPower, and n isn't above it.
double powerOfTen(int32_t n);

// value / powerOfTen(n); n is above 0, and neither value nor quotient is below the smallest normal double.
double divideByPowerOfTen(double value, int32_t n);

// 0.5 times ten to the power of minus p, as near as a double comes; p isn't negative.
double roundingHalf(int32_t p);

// 0.5 / powerOfTen(n).
inline constexpr int32_t lastHalfUnit = 14;
extern const std::array<double, lastHalfUnit + 1> halfUnits;

}  // namespace veldnls
