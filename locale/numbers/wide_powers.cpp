// A power is the product of two: one of 0 to 31, which is exact, and one of a multiple of 32. Powers of two stand in
// the exponents alone, so that the mantissas are powers of five.
#include "locale/numbers/wide_powers.h"

namespace veldnls {
namespace {

constexpr int32_t stepBits = 5;
constexpr int32_t step = 1 << stepBits;
static_assert(step == nearPower);
constexpr int32_t lowestStep = lowestPower / step;
constexpr int32_t highestStep = highestPower / step;

// Integers of up to 1,024 bits, for the tables.
struct TableInteger {
  static constexpr int limbBits = 32;
  uint32_t limbs[32] = {1};
  int size = 1;  // the limbs from here on are zero

  constexpr void multiply(uint32_t factor) {
    uint64_t carry = 0;
    for (int i = 0; i < size; ++i) {
      carry += uint64_t{limbs[i]} * factor;
      limbs[i] = static_cast<uint32_t>(carry);
      carry >>= limbBits;
    }
    if (carry != 0) limbs[size++] = static_cast<uint32_t>(carry);
  }
  constexpr int bits() const { return (size - 1) * limbBits + static_cast<int>(std::bit_width(limbs[size - 1])); }
  constexpr bool bit(int place) const { return place >= 0 && (limbs[place / limbBits] >> place % limbBits & 1) != 0; }
  constexpr bool isBelow(const TableInteger& other) const {
    for (int i = size > other.size ? size : other.size; i-- > 0;) {
      if (limbs[i] != other.limbs[i]) return limbs[i] < other.limbs[i];
    }
    return false;
  }
  constexpr void subtract(const TableInteger& other) {
    uint64_t borrow = 0;
    for (int i = 0; i < size; ++i) {
      const uint64_t difference = uint64_t{limbs[i]} - other.limbs[i] - borrow;
      limbs[i] = static_cast<uint32_t>(difference);
      borrow = difference >> 63;
    }
  }
};

// The upper 128 bits of five to the power of n.
constexpr WidePower powerOfFive(const TableInteger& power) {
  const int bits = power.bits();
  UInt128 mantissa = 0;
  for (int i = 1; i <= 128; ++i) mantissa = mantissa << 1 | (power.bit(bits - i) ? 1 : 0);
  return {mantissa, bits - 128, bits <= 128};
}

// 128 bits of the reciprocal, by long division.
constexpr WidePower reciprocal(const TableInteger& power) {
  const int bits = power.bits();
  // The power of two just below it.
  TableInteger rest;
  rest.size = power.size;
  rest.limbs[0] = 0;
  rest.limbs[power.size - 1] = uint32_t{1} << (bits - 1) % TableInteger::limbBits;
  UInt128 mantissa = 0;
  for (int i = 0; i < 128; ++i) {
    rest.multiply(2);
    const bool fits = !rest.isBelow(power);
    if (fits) rest.subtract(power);
    mantissa = mantissa << 1 | (fits ? 1 : 0);
  }
  return {mantissa, -bits - 127, false};
}

constexpr WidePower makePower(int32_t n) {
  TableInteger power;
  for (int32_t i = 0; i < (n < 0 ? -n : n); ++i) power.multiply(5);
  WidePower result = n < 0 ? reciprocal(power) : powerOfFive(power);
  result.exponent += n;
  return result;
}

constexpr auto stepPowers = [] {
  std::array<WidePower, highestStep - lowestStep + 1> powers{};
  for (size_t i = 0; i < powers.size(); ++i) powers[i] = makePower((lowestStep + static_cast<int32_t>(i)) * step);
  return powers;
}();

static_assert(lowestStep * step == lowestPower && highestStep * step + step - 1 == highestPower);

uint64_t highWord(UInt128 value) { return static_cast<uint64_t>(value >> 64); }
uint64_t lowWord(UInt128 value) { return static_cast<uint64_t>(value); }

// The upper 128 bits of a product. The lower ones are counted as zero.
UInt128 multiplyHigh(UInt128 a, UInt128 b) {
  const UInt128 low = UInt128{lowWord(a)} * lowWord(b);
  const UInt128 middle = UInt128{highWord(a)} * lowWord(b) + highWord(low);
  const UInt128 other = UInt128{lowWord(a)} * highWord(b) + lowWord(middle);
  return UInt128{highWord(a)} * highWord(b) + highWord(middle) + highWord(other);
}

}  // namespace

constexpr std::array<WidePower, 2 * nearPower> nearPowers = [] {
  std::array<WidePower, 2 * nearPower> powers{};
  for (size_t i = 0; i < powers.size(); ++i) powers[i] = makePower(static_cast<int32_t>(i) - nearPower);
  return powers;
}();

WidePower farPowerOfTen(int32_t n) {
  const WidePower& coarse = stepPowers[static_cast<size_t>((n >> stepBits) - lowestStep)];
  const int32_t rest = n & (step - 1);
  if (rest == 0) return coarse;
  // The step's error, less than one, is multiplied by less than one, the product's is less than one, and the last shift
  // may double both.
  const WidePower& fine = nearPowers[static_cast<size_t>(rest + nearPower)];
  const UInt128 product = multiplyHigh(coarse.mantissa, fine.mantissa);
  const int32_t shift = product >> 127 == 0 ? 1 : 0;
  return {product << shift, coarse.exponent + fine.exponent + 128 - shift, false};
}

}  // namespace veldnls
