#include "locale/numbers/double_arithmetic.h"
#include "locale/numbers/exact_digits.h"
#include "locale/numbers/field_format.h"
#include "locale/numbers/field_powers.h"

namespace veldnls {
namespace {

// Digits of a double that are shown; behind them stand zeros.
constexpr int32_t significantDigits = 14;
constexpr double tenth = 0.10000000000000002;
// Pushes a mantissa just past its decimal tie.
constexpr double nudge = 1.0000000000000018;

struct Scaled {
  double mantissa;   // 0.1 to 1, or a little above where the estimate of the exponent is too low
  int32_t exponent;  // of the first digit
};

struct ExponentField {
  Field field;
  int32_t precision;
  double mantissa;
  int32_t exponent;
  int32_t digits = 0;
  int32_t exponentLength = 0;
  bool point = true;
  NlsStatus status = 0;
};

// Letter, minus sign and digits.
int32_t plainExponentLength(int32_t exponent) {
  const auto magnitude = static_cast<uint64_t>(exponent < 0 ? -exponent : exponent);
  return 1 + (exponent < 0 ? 1 : 0) + std::max(countDigits(magnitude), 1);
}

Scaled scaleMantissa(double value) {
  if (isZero(value)) return {value, 0};
  const int32_t binary = binaryExponent(decompose(value));
  double mantissa = 0;
  int32_t exponent = 0;
  if (binary < 0) {
    // Values below the normal ones stay far below 0.1 for that bound.
    exponent = std::max(-((binary * -77 + 255) >> 8), -highestFieldPower);
    mantissa = multiply(value, powerOfTen(-exponent));
    if (!isBelow(mantissa, 1)) {
      mantissa = multiply(mantissa, tenth);
      ++exponent;
    }
  } else {
    exponent = (binary * 77 >> 8) + (binary < 308 ? 1 : 0);
    mantissa = divideByPowerOfTen(value, exponent);
    if (binary >= 308) {
      mantissa = divideByPowerOfTen(mantissa, 1);
      ++exponent;
    }
  }
  if (isBelow(mantissa, tenth) && magnitudeBits(value) != magnitudeBits(powerOfTen(exponent - 1))) {
    mantissa = multiply(mantissa, 10);
    --exponent;
  }
  return {mantissa, exponent - 1};
}

// Adds half a unit of the last digit shown, and returns whether the mantissa reached 1 and was scaled down.
bool roundMantissa(ExponentField& e) {
  if (isZero(e.mantissa)) return false;
  if (e.digits <= lastHalfUnit) e.mantissa = add(e.mantissa, halfUnits[static_cast<size_t>(e.digits)]);
  e.mantissa = multiply(e.mantissa, nudge);
  if (isBelow(e.mantissa, 1)) return false;
  e.mantissa = multiply(e.mantissa, tenth);
  ++e.exponent;
  return true;
}

void fitFixedExponent(ExponentField& e) {
  Field& field = e.field;
  e.exponentLength = e.exponent >= -99 && e.exponent <= 99 ? 4 : 5;
  e.digits = field.width - e.exponentLength - 1;
  const int32_t wanted = 1 - e.precision;
  if (e.digits > wanted) {
    field.units += e.digits - wanted;
    field.width -= e.digits - wanted;
    e.digits = wanted;
  } else if (e.digits < wanted) {
    e.status = nlsDigitsLost;
  }
  if (e.digits > 0 && roundMantissa(e) && e.exponent == 100) {
    ++e.exponentLength;
    --e.digits;
  }
}

// A number without point is an integer times a power of ten, so that few digits don't lose a place to the point.
void dropPoint(ExponentField& e) {
  e.point = false;
  e.exponent -= e.digits - 1;
  e.exponentLength = plainExponentLength(e.exponent);
  if (e.field.width < e.exponentLength + e.digits) {
    --e.digits;
    ++e.exponent;
    e.exponentLength = plainExponentLength(e.exponent);
  }
  if (plainExponentLength(e.exponent - 1) < e.exponentLength) {
    --e.exponent;
    --e.exponentLength;
    ++e.digits;
  }
}

// False if not one digit fits.
bool fitPlainExponent(ExponentField& e) {
  e.exponentLength = plainExponentLength(e.exponent);
  e.digits = e.field.width - e.exponentLength;
  if (e.digits < 1) return false;
  if (e.digits < 4) {
    dropPoint(e);
  } else {
    --e.digits;
  }
  if (e.digits < 1) return false;
  if (roundMantissa(e)) {
    const int32_t change = plainExponentLength(e.exponent) - e.exponentLength;
    e.exponentLength += change;
    e.digits -= change;
    if (!e.point) e.exponent += change;
  }
  return e.digits > 0;
}

void cutZeros(ExponentField& e, const char16_t* digits, int32_t taken) {
  int32_t left = taken;
  while (left > 1 && digits[left - 1] == u'0') --left;
  if (!e.point) {
    e.exponent += e.digits - left;
    e.exponentLength = plainExponentLength(e.exponent);
  }
  if (left == 1) e.point = false;
  e.digits = left;
}

void writeExponent(char16_t* at, const ExponentField& e) {
  *at++ = u'E';
  if (e.exponent < 0) {
    *at++ = u'-';
  } else if (e.precision < 0) {
    *at++ = u'+';
  }
  const auto magnitude = static_cast<uint64_t>(e.exponent < 0 ? -e.exponent : e.exponent);
  const int32_t count = std::max(countDigits(magnitude), e.precision < 0 ? 2 : 1);
  writeDigitsBefore(at + count, magnitude, count);
}

}  // namespace

NlsStatus writeExponentField(const LocaleNumber& locale, double value, Field field, int32_t precision) {
  const Scaled scaled = scaleMantissa(value);
  ExponentField e{.field = field, .precision = precision, .mantissa = scaled.mantissa, .exponent = scaled.exponent};
  if (precision < 0) {
    fitFixedExponent(e);
    if (e.digits < 1) e.precision = fittingPrecision;
  }
  if (e.precision > 0 && !fitPlainExponent(e)) return nlsFieldTooNarrow;
  char16_t digits[significantDigits + 1];
  const int32_t taken = std::min(e.digits, significantDigits);
  // The mantissa is below 1 and has no integer digits.
  ExactDigits(e.mantissa).writeFraction(taken, digits);
  if (e.precision > 0) cutZeros(e, digits, taken);
  char16_t* at = e.field.units + e.field.width - e.digits - (e.point ? 1 : 0) - e.exponentLength;
  if (e.field.negative) *at++ = u'-';
  *at++ = digits[0];
  if (e.point) *at++ = locale.decimalPoint;
  const int32_t behind = std::min(e.digits, taken);
  at = copyUnits(digits + 1, behind - 1, at);
  fillUnits(at, e.digits - behind, u'0');
  writeExponent(at + (e.digits - behind), e);
  return e.status;
}

}  // namespace veldnls
