#include "locale/numbers/decimal_to_double.h"

#include "locale/numbers/binary_double.h"
#include "locale/numbers/long_integer.h"
#include "locale/numbers/wide_powers.h"

namespace veldnls {
namespace {

// More digits can't move a number across a halfway point of doubles: the 767th is the last that one has.
constexpr int32_t maxDigits = 800;

// All digits as an integer; `exponent` becomes that of its last digit. A digit 1 stands for those beyond maxDigits.
LongInteger readDigits(const DecimalNumber& number, int32_t* exponent) {
  LongInteger result(number.leading);
  *exponent = static_cast<int32_t>(number.exponent);
  if (!number.more) return result;
  int32_t count = 0;
  bool more = false;
  for (const char16_t* at = number.text; at != number.textEnd; ++at) {
    if (!isDigitUnit(*at) || (count == 0 && *at == u'0')) continue;
    if (count == maxDigits) {
      more = more || *at != u'0';
      continue;
    }
    if (++count <= DecimalNumber::maxLeading) continue;
    result.multiplyAndAdd(10, static_cast<uint64_t>(*at - u'0'));
  }
  if (more) {
    result.multiplyAndAdd(10, 1);
    ++count;
  }
  *exponent -= count - DecimalNumber::maxLeading;
  return result;
}

// The order of a number and the double halfway above mantissa * 2^exponent.
int compareWithHalf(const DecimalNumber& number, uint64_t mantissa, int32_t exponent) {
  int32_t power = 0;
  LongInteger digits = readDigits(number, &power);
  LongInteger half(2 * mantissa + 1);
  (power < 0 ? half : digits).multiplyByPowerOfTen(power < 0 ? -power : power);
  const int32_t shift = exponent - 1;
  (shift < 0 ? digits : half).multiplyByPowerOfTwo(shift < 0 ? -shift : shift);
  return digits.compare(half);
}

// Rounds high * 2^exponent, of which `drop` bits are to go. The number is at least that and less than `error` more.
inline double roundNumber(const DecimalNumber& number, UInt128 high, UInt128 error, int32_t exponent, int32_t drop) {
  auto mantissa = static_cast<uint64_t>(high >> drop);
  const UInt128 rest = high & ((UInt128{1} << drop) - 1);
  const UInt128 half = UInt128{1} << (drop - 1);
  bool up = rest > half;
  if (!up && rest + error >= half) {
    const int order = rest == half && error == 0 ? 0 : compareWithHalf(number, mantissa, exponent + drop);
    up = order > 0 || (order == 0 && mantissa % 2 != 0);
  }
  return composeDouble(mantissa + (up ? 1 : 0), exponent + drop);
}

// Rounds by the upper words of number and power alone; false if they leave the result open or it isn't a normal double.
inline bool roundByUpperWords(const DecimalNumber& number, const WidePower& power, double* result) {
  const int leadingShift = std::countl_zero(number.leading);
  const UInt128 product = UInt128{number.leading << leadingShift} * static_cast<uint64_t>(power.mantissa >> 64);
  const int32_t shift = product >> 127 == 0 ? 1 : 0;
  const auto word = static_cast<uint64_t>(product << shift >> 64);
  const int32_t exponent = power.exponent - leadingShift + 128 - shift;
  constexpr int32_t drop = 64 - doubleMantissaBits;
  constexpr uint64_t half = uint64_t{1} << (drop - 1);
  // What the power's lower word adds to the last bit of the product, and what more digits add to it.
  constexpr uint64_t powerGap = 3;
  constexpr uint64_t digitGap = 64;
  const uint64_t rest = word & (2 * half - 1);
  // Wraps around for what is rounded up: whether it is, no branch could foretell.
  const uint64_t below = half - rest;
  if (below <= powerGap + (number.more ? digitGap : 0) || exponent + drop < lowestDoubleExponent) return false;
  *result = composeDouble((word >> drop) + (rest > half ? 1 : 0), exponent + drop);
  return true;
}

}  // namespace

double decimalToDouble(const DecimalNumber& number) {
  constexpr int64_t firstTooLarge = 309;  // even for one digit
  constexpr int64_t lastTooSmall = -328;  // even for 20 digits
  if (number.leading == 0 || number.exponent <= lastTooSmall) return 0;
  if (number.exponent >= firstTooLarge) return std::bit_cast<double>(doubleInfinityBits);
  const WidePower power = widePowerOfTen(static_cast<int32_t>(number.exponent));
  double result = 0;
  if (roundByUpperWords(number, power, &result)) return result;
  const int leadingShift = std::countl_zero(number.leading);
  const ScaledNumber product = scale(number.leading << leadingShift, power.mantissa);
  UInt128 error = (power.exact ? 0 : powerError) + (product.rest ? 1 : 0);
  if (number.more) error += ((power.mantissa >> 64) + 1) << leadingShift;

  const int32_t shift = product.high >> 127 == 0 ? 1 : 0;
  const UInt128 high = product.high << shift;
  error <<= shift;
  const int32_t exponent = power.exponent - leadingShift + 64 - shift;
  constexpr int32_t usualDrop = 128 - doubleMantissaBits;
  const int32_t drop = lastBitExponent(exponent + 128) - exponent;
  if (drop == usualDrop) return roundNumber(number, high, error, exponent, usualDrop);
  // Half the smallest normal double drops one bit more.
  return drop > usualDrop + 1 ? 0 : roundNumber(number, high, error, exponent, drop);
}

}  // namespace veldnls
