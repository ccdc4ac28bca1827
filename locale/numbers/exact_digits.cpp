#include "locale/numbers/exact_digits.h"

#include "core/digits.h"
#include "locale/numbers/decimal_text.h"
#include "locale/numbers/wide_powers.h"

namespace veldnls {
namespace {

constexpr int32_t wordBits = 64;

// Digits by multiplication with a power of ten of 128 bits; false if its error leaves them open. `power` receives the
// power of ten of the first digit.
bool scaleToDigits(const BinaryDouble& number, int32_t count, int32_t* power, uint64_t* digits) {
  // The logarithm of 2, near enough that no exponent of a double is rounded to another integer. The first digit stands
  // for this power or the next.
  const int32_t estimate = (binaryExponent(number) - 1) * 315653 >> 20;
  const WidePower scaling = widePowerOfTen(count - 1 - estimate);
  const int shift = std::countl_zero(number.mantissa);
  const ScaledNumber product = scale(number.mantissa << shift, scaling.mantissa);
  const int32_t drop = -(number.exponent - shift + scaling.exponent + wordBits);
  const UInt128 mask = (UInt128{1} << drop) - 1;
  const UInt128 error = (scaling.exact ? 0 : powerError) + (product.rest ? 1 : 0);
  if (error != 0 && (product.high & mask) + error > mask) return false;
  const UInt128 scaled = product.high >> drop;
  const bool next = scaled >= integerPowersOfTen[static_cast<size_t>(count)];
  *power = estimate + (next ? 1 : 0);
  const auto word = static_cast<uint64_t>(scaled);
  *digits = !next ? word : scaled == word ? word / 10 : static_cast<uint64_t>(scaled / 10);
  return true;
}

// fraction / 2^shift in units of the last of some places, cut, or, with `halves` 1, rounded half up.
uint64_t scaleFraction(uint64_t fraction, int32_t shift, int32_t places, uint64_t halves) {
  // Of 53 bits and 10^19 comes less than 2^117.
  if (shift >= 128) return 0;
  const UInt128 scaled = UInt128{fraction} * integerPowersOfTen[static_cast<size_t>(places)];
  return static_cast<uint64_t>((scaled + (UInt128{halves} << (shift - 1))) >> shift);
}

int32_t leadingDigitsOfLarge(double value, int32_t count, char16_t* out) {
  char16_t integer[maxIntegerDigits];
  const ExactDigits exact(value);
  const int32_t digits = exact.integerCount();
  exact.writeInteger(digits, integer);
  std::copy_n(integer, std::min(digits, count), out);
  if (count > digits) exact.writeFraction(count - digits, out + digits);
  return digits - 1;
}

int32_t leadingDigitsOfSmall(double value, int32_t count, char16_t* out) {
  int32_t written = 0;
  int32_t zeros = 0;
  nlsFractionDigits(value, out, count, &written, &zeros);
  // What the fraction lacks is counted with the zeros ahead of its digits.
  const int32_t lacking = count - written;
  fillUnits(out + written, lacking, u'0');
  return -1 - (zeros - lacking);
}

}  // namespace

ExactDigits::ExactDigits(double value) : value_(value) {
  const BinaryDouble number = decompose(value);
  if (number.exponent >= 0) {
    large_ = number.exponent > wordBits - doubleMantissaBits;
    integer_ = large_ ? 0 : number.mantissa << number.exponent;
    return;
  }
  shift_ = -number.exponent;
  integer_ = shift_ < wordBits ? number.mantissa >> shift_ : 0;
  fraction_ = shift_ < wordBits ? number.mantissa & ((uint64_t{1} << shift_) - 1) : number.mantissa;
}

int32_t ExactDigits::integerCount() const {
  if (!large_) return countDigits(integer_);
  int32_t count = 0;
  nlsIntegerDigits(value_, nullptr, 0, &count, nullptr);
  return count;
}

void ExactDigits::writeInteger(int32_t count, char16_t* out) const {
  if (large_) {
    nlsIntegerDigits(value_, out, count, &count, nullptr);
  } else {
    writeDigitsBefore(out + count, integer_, count);
  }
}

void ExactDigits::writeFraction(int32_t places, char16_t* out) const {
  if (fraction_ == 0) {
    fillUnits(out, places, u'0');
  } else if (places <= maxIntegerPower) {
    writeDigitsBefore(out + places, scaleFraction(fraction_, shift_, places, 0), places);
  } else {
    int32_t written = 0;
    nlsFractionDigits(value_, out, places, &written, nullptr);
  }
}

bool ExactDigits::cut(int32_t places, RoundedNumber* result) const {
  if (large_ || places > maxIntegerPower) return false;
  *result = {integer_, fraction_ == 0 ? 0 : scaleFraction(fraction_, shift_, places, 0)};
  return true;
}

bool ExactDigits::roundClearly(int32_t places, RoundedNumber* result) const {
  constexpr int32_t gapBits = 50;
  constexpr int32_t mostShift = 100;
  if (large_ || places > maxIntegerPower || shift_ == 0 || shift_ > mostShift) return false;
  const uint64_t mantissa = shift_ < wordBits ? integer_ << shift_ | fraction_ : fraction_;
  const uint64_t power = integerPowersOfTen[static_cast<size_t>(places)];
  const UInt128 one = UInt128{1} << shift_;
  const UInt128 scaled = UInt128{fraction_} * power + one / 2;
  const UInt128 gap = ((UInt128{mantissa} * power + one / 2) >> gapBits) + 1;
  const UInt128 rest = scaled & (one - 1);
  if (rest < gap || rest + gap >= one) return false;
  result->integer = integer_;
  result->fraction = static_cast<uint64_t>(scaled >> shift_);
  if (result->fraction == power) {
    result->fraction = 0;
    ++result->integer;
  }
  return true;
}

bool ExactDigits::round(int32_t places, RoundedNumber* result) const {
  if (large_ || places > maxIntegerPower) return false;
  result->integer = integer_;
  result->fraction = 0;
  if (fraction_ == 0) return true;
  result->fraction = scaleFraction(fraction_, shift_, places, 1);
  if (result->fraction == integerPowersOfTen[static_cast<size_t>(places)]) {
    result->fraction = 0;
    ++result->integer;
  }
  return true;
}

bool leadingNumber(double value, int32_t count, int32_t* power, uint64_t* digits) {
  return scaleToDigits(decompose(value), count, power, digits);
}

int32_t leadingDigits(double value, int32_t count, char16_t* out) {
  int32_t power = 0;
  uint64_t digits = 0;
  if (count <= maxIntegerPower && leadingNumber(value, count, &power, &digits)) {
    writeDigitsBefore(out + count, digits, count);
    return power;
  }
  return isBelow(value, 1) ? leadingDigitsOfSmall(value, count, out) : leadingDigitsOfLarge(value, count, out);
}

}  // namespace veldnls
