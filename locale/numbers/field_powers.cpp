#include "locale/numbers/field_powers.h"

#include "locale/numbers/double_arithmetic.h"
#include "locale/numbers/wide_powers.h"

namespace veldnls {
namespace {

constexpr double makePower(int32_t n) {
  constexpr double table[] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000};
  if (n <= 8) return table[n];
  double result = table[n % 8];
  double square = table[8];
  for (int32_t rest = n / 8;; square *= square) {
    if (rest % 2 != 0) result *= square;
    rest /= 2;
    if (rest == 0) return result;
  }
}

using Powers = std::array<double, highestFieldPower + 1>;

constexpr auto powers = [] {
  Powers all{};
  for (size_t n = 0; n < all.size(); ++n) all[n] = makePower(static_cast<int32_t>(n));
  return all;
}();

constexpr auto reciprocals = [] {
  Powers all{};
  for (size_t n = 0; n < all.size(); ++n) all[n] = 1 / powers[n];
  return all;
}();

// A divisor as its reciprocal: 2^191 / mantissa of 64 bits.
struct Divisor {
  UInt128 reciprocal;
  int32_t exponent;
};

constexpr Divisor makeDivisor(double value) {
  const Normalized number = normalize(value);
  UInt128 rest = UInt128{1} << 63;
  UInt128 quotient = 0;
  for (int i = 0; i < 128; ++i) {
    rest <<= 1;
    const bool fits = rest >= number.mantissa;
    if (fits) rest -= number.mantissa;
    quotient = quotient << 1 | (fits ? 1 : 0);
  }
  return {quotient, number.exponent};
}

constexpr auto divisors = [] {
  std::array<Divisor, highestFieldPower + 1> all{};
  for (size_t n = 1; n < all.size(); ++n) all[n] = makeDivisor(powers[n]);
  return all;
}();

#define VELDNLS_TEN_HALVES(tens)                                                                                  \
  0.5e-##tens##0, 0.5e-##tens##1, 0.5e-##tens##2, 0.5e-##tens##3, 0.5e-##tens##4, 0.5e-##tens##5, 0.5e-##tens##6, \
      0.5e-##tens##7, 0.5e-##tens##8, 0.5e-##tens##9

constexpr std::array<double, lastRoundingHalf + 1> roundingHalves = {VELDNLS_TEN_HALVES(0),
                                                                     VELDNLS_TEN_HALVES(1),
                                                                     VELDNLS_TEN_HALVES(2),
                                                                     VELDNLS_TEN_HALVES(3),
                                                                     VELDNLS_TEN_HALVES(4),
                                                                     VELDNLS_TEN_HALVES(5),
                                                                     VELDNLS_TEN_HALVES(6),
                                                                     VELDNLS_TEN_HALVES(7),
                                                                     VELDNLS_TEN_HALVES(8),
                                                                     VELDNLS_TEN_HALVES(9),
                                                                     VELDNLS_TEN_HALVES(10),
                                                                     VELDNLS_TEN_HALVES(11),
                                                                     VELDNLS_TEN_HALVES(12),
                                                                     VELDNLS_TEN_HALVES(13),
                                                                     VELDNLS_TEN_HALVES(14),
                                                                     VELDNLS_TEN_HALVES(15),
                                                                     VELDNLS_TEN_HALVES(16),
                                                                     VELDNLS_TEN_HALVES(17),
                                                                     VELDNLS_TEN_HALVES(18),
                                                                     VELDNLS_TEN_HALVES(19),
                                                                     VELDNLS_TEN_HALVES(20),
                                                                     VELDNLS_TEN_HALVES(21),
                                                                     VELDNLS_TEN_HALVES(22),
                                                                     VELDNLS_TEN_HALVES(23),
                                                                     VELDNLS_TEN_HALVES(24),
                                                                     VELDNLS_TEN_HALVES(25),
                                                                     VELDNLS_TEN_HALVES(26),
                                                                     VELDNLS_TEN_HALVES(27),
                                                                     VELDNLS_TEN_HALVES(28),
                                                                     VELDNLS_TEN_HALVES(29),
                                                                     VELDNLS_TEN_HALVES(30),
                                                                     VELDNLS_TEN_HALVES(31),
                                                                     0.5e-320,
                                                                     0.5e-321,
                                                                     0.5e-322,
                                                                     0.5e-323};
#undef VELDNLS_TEN_HALVES

}  // namespace

double powerOfTen(int32_t n) {
  if (n >= 0) return powers[static_cast<size_t>(n)];
  return n < -highestFieldPower ? 0 : reciprocals[static_cast<size_t>(-n)];
}

double divideByPowerOfTen(double value, int32_t n) {
  const Divisor& divisor = divisors[static_cast<size_t>(n)];
  const Normalized number = normalize(value);
  // The product is too small by less than two of its 127 bits. A quotient of two mantissas of 53 bits is further away
  // from the halfway point of two doubles, so that it's rounded as if it were exact.
  const ScaledNumber product = scale(number.mantissa, divisor.reciprocal);
  return roundToDouble(product.high, number.exponent - divisor.exponent - 127);
}

double roundingHalf(int32_t p) { return p > lastRoundingHalf ? 0 : roundingHalves[static_cast<size_t>(p)]; }

constexpr std::array<double, lastHalfUnit + 1> halfUnits = [] {
  std::array<double, lastHalfUnit + 1> all{};
  for (size_t n = 0; n < all.size(); ++n) all[n] = 0.5 / powers[n];
  return all;
}();

}  // namespace veldnls
