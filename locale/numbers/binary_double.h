// Doubles by their bits. Formatters and parsers of numbers calculate with integers only, so that no environment of
// floating point, whatever it rounds or traps, has a part in their results.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

namespace veldnls {

using UInt128 = unsigned __int128;

inline constexpr int doubleMantissaBits = 53;
inline constexpr int lowestDoubleExponent = -1074;  // of the last bit of a double

inline constexpr uint64_t doubleSignBit = uint64_t{1} << 63;
inline constexpr uint64_t doubleInfinityBits = uint64_t{0x7FF} << 52;
inline constexpr uint64_t doubleSmallestNormalBits = uint64_t{1} << 52;

// mantissa times two to the exponent.
struct BinaryDouble {
  uint64_t mantissa;
  int32_t exponent;
};

// The magnitude of a finite double.
constexpr BinaryDouble decompose(double value) {
  constexpr uint64_t hiddenBit = uint64_t{1} << (doubleMantissaBits - 1);
  const auto bits = std::bit_cast<uint64_t>(value);
  const uint64_t stored = bits & (hiddenBit - 1);
  const auto exponent = static_cast<int32_t>(bits >> (doubleMantissaBits - 1) & 0x7FF);
  if (exponent == 0) return {stored, lowestDoubleExponent};
  return {stored | hiddenBit, exponent - 1 + lowestDoubleExponent};
}

inline uint64_t magnitudeBits(double value) { return std::bit_cast<uint64_t>(value) & ~doubleSignBit; }
inline double magnitudeOf(double value) { return std::bit_cast<double>(magnitudeBits(value)); }
inline bool isFinite(double value) { return magnitudeBits(value) < doubleInfinityBits; }
inline bool isZero(double value) { return magnitudeBits(value) == 0; }

// Below zero; not for missing values and other doubles that aren't numbers.
inline bool isNegative(double value) {
  const auto bits = std::bit_cast<uint64_t>(value);
  return bits > doubleSignBit && bits <= (doubleSignBit | doubleInfinityBits);
}

// Order of two doubles that are neither negative nor missing.
inline bool isBelow(double a, double b) { return std::bit_cast<uint64_t>(a) < std::bit_cast<uint64_t>(b); }

// The exponent of a value that is written as a fraction from 0.5 to 1 times a power of two; 0 for zero.
inline int32_t binaryExponent(const BinaryDouble& value) {
  return value.mantissa == 0 ? 0 : value.exponent + static_cast<int32_t>(std::bit_width(value.mantissa));
}

inline bool isWhole(const BinaryDouble& value) {
  return value.exponent >= 0 || value.mantissa == 0 || std::countr_zero(value.mantissa) >= -value.exponent;
}

// Whether a number is whole and fits a word, which `word` receives.
inline bool isWholeWord(const BinaryDouble& value, uint64_t* word) {
  if (value.exponent >= 0) {
    *word = value.mantissa << (value.exponent & 63);
    return value.exponent <= 64 - doubleMantissaBits;
  }
  if (value.exponent <= -doubleMantissaBits) {
    *word = 0;
    return value.mantissa == 0;
  }
  *word = value.mantissa >> -value.exponent;
  return *word << -value.exponent == value.mantissa;
}

// The exponent of the last bit of a double that holds a value of this binary exponent.
inline int32_t lastBitExponent(int32_t binaryExponent) {
  const int32_t exponent = binaryExponent - doubleMantissaBits;
  return exponent < lowestDoubleExponent ? lowestDoubleExponent : exponent;
}

// The double of a mantissa and the exponent of its last bit, which is lastBitExponent of the value; a mantissa that
// rounding has carried to 2^53 is taken too. What is too large becomes infinity.
inline double composeDouble(uint64_t mantissa, int32_t exponent) {
  if (exponent > 1023 - (doubleMantissaBits - 1)) return std::bit_cast<double>(doubleInfinityBits);
  return std::bit_cast<double>((static_cast<uint64_t>(exponent - lowestDoubleExponent) << 52) + mantissa);
}

}  // namespace veldnls
