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
  double value;
  Scaled scaled{};       // unless the leading digits are there
  uint64_t leading = 0;  // so many digits of the value; 0 if their rounding isn't sure to be that of the mantissa
  int32_t exponent = 0;
  int32_t digits = 0;
  int32_t exponentLength = 0;
  bool point = true;
  uint64_t number = 0;  // the digits shown, without the zeros behind significantDigits
  NlsStatus status = 0;
};

// More digits than are shown, so that their rounding can be told.
constexpr int32_t leadingCount = 17;

// Letter, minus sign and digits.
int32_t plainExponentLength(int32_t exponent) {
  const auto magnitude = static_cast<uint64_t>(exponent < 0 ? -exponent : exponent);
  return 1 + (exponent < 0 ? 1 : 0) + std::max(countDigits(magnitude), 1);
}

// The power of ten that a value is divided by first.
int32_t firstPower(int32_t binary) {
  // Values below the normal ones stay far below 0.1 for that bound.
  if (binary < 0) return std::max(-((binary * -77 + 255) >> 8), -highestFieldPower);
  return (binary * 77 >> 8) + (binary < 308 ? 1 : 0);
}

Scaled scaleMantissa(double value) {
  if (isZero(value)) return {value, 0};
  const int32_t binary = binaryExponent(decompose(value));
  double mantissa = 0;
  int32_t exponent = firstPower(binary);
  if (binary < 0) {
    mantissa = multiply(value, powerOfTen(-exponent));
    if (!isBelow(mantissa, 1)) {
      mantissa = multiply(mantissa, tenth);
      ++exponent;
    }
  } else {
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

// Takes the leading digits of a value that is scaled by exact powers of ten, and whose mantissa isn't so near to 0.1 or
// 1 that its exponent may not be theirs. False for any other.
bool takeLeading(ExponentField& e) {
  constexpr int32_t lastExactPower = 22;
  constexpr uint64_t lowest = integerPowersOfTen[leadingCount - 1];
  constexpr uint64_t gap = 1000;
  if (isZero(e.value)) return false;
  const int32_t binary = binaryExponent(decompose(e.value));
  const int32_t first = firstPower(binary);
  if (first < -lastExactPower || first > lastExactPower) return false;
  uint64_t leading = 0;
  if (!leadingNumber(e.value, leadingCount, &e.exponent, &leading)) return false;
  // Scaling takes one step up, for small values, or down.
  const int32_t steps = first - 1 - e.exponent;
  if (steps > 1 || steps < (binary < 0 ? -1 : 0)) return false;
  // A power of ten itself is known not to need a step.
  const bool power = leading == lowest && e.exponent >= 0;
  if ((leading < lowest + gap && !power) || leading > 10 * lowest - gap) return false;
  e.leading = leading;
  return true;
}

// Rounds the leading digits to those shown; false if mantissa and exponent are to be looked at.
bool roundLeading(ExponentField& e) {
  // The mantissa is pushed up by 16 units of 2^-53, and seven roundings move it by less than one each.
  const uint64_t gap = (e.leading >> 48) + 2;
  const int32_t shown = std::min(e.digits, significantDigits);
  const uint64_t unit = integerPowersOfTen[static_cast<size_t>(leadingCount - shown)];
  const uint64_t rounded = e.leading + (e.digits <= lastHalfUnit ? unit / 2 : 0);
  e.number = rounded / unit;
  return rounded % unit + gap < unit && e.number < integerPowersOfTen[static_cast<size_t>(shown)];
}

void scale(ExponentField& e) {
  e.leading = 0;
  e.scaled = scaleMantissa(e.value);
  e.exponent = e.scaled.exponent;
}

// Adds half a unit of the last digit shown, and returns whether the mantissa reached 1 and was scaled down. One that
// was above 1 before has gained but a tenth of that half unit by then: its digits are cut rather than rounded.
bool roundMantissa(ExponentField& e) {
  double& mantissa = e.scaled.mantissa;
  if (isZero(mantissa)) return false;
  if (e.digits <= lastHalfUnit) mantissa = add(mantissa, halfUnits[static_cast<size_t>(e.digits)]);
  mantissa = multiply(mantissa, nudge);
  if (isBelow(mantissa, 1)) return false;
  mantissa = multiply(mantissa, tenth);
  ++e.exponent;
  return true;
}

// Rounds to the digits shown; returns whether that raised the exponent.
bool roundToDigits(ExponentField& e) {
  if (e.leading != 0) {
    if (roundLeading(e)) return false;
    const int32_t exponent = e.exponent;
    scale(e);
    e.exponent = exponent;
  }
  return roundMantissa(e);
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
  // Only an exponent that becomes longer moves the end of the text: behind E-99 out of E-100 a place stays blank.
  if (e.digits > 0 && roundToDigits(e) && e.exponent == 100) {
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
  if (roundToDigits(e)) {
    const int32_t change = plainExponentLength(e.exponent) - e.exponentLength;
    e.exponentLength += change;
    e.digits -= change;
    if (!e.point) e.exponent += change;
  }
  return e.digits > 0;
}

void dropZeros(ExponentField& e, int32_t taken) {
  const int32_t left = e.number == 0 ? 1 : taken - cutZeros(e.number);
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
  ExponentField e{.field = field, .precision = precision, .value = value};
  if (!takeLeading(e)) scale(e);
  if (precision < 0) {
    fitFixedExponent(e);
    // A mantissa that was rounded up to 1E100, and has no room as such, is rounded once more.
    if (e.digits < 1) e.precision = fittingPrecision;
  }
  if (e.precision > 0 && !fitPlainExponent(e)) return nlsFieldTooNarrow;
  const int32_t taken = std::min(e.digits, significantDigits);
  if (e.leading == 0) {
    // The mantissa is below 1 and has no integer digits.
    RoundedNumber mantissa;
    ExactDigits(e.scaled.mantissa).cut(taken, &mantissa);
    e.number = mantissa.fraction;
  }
  if (e.precision > 0) dropZeros(e, taken);
  const int32_t behind = std::min(e.digits, taken);
  char16_t* at = e.field.units + e.field.width - e.digits - (e.point ? 1 : 0) - e.exponentLength;
  if (e.field.negative) *at++ = u'-';
  // The point takes the place of the first digit, which moves to the left.
  char16_t* first = at;
  at += behind + (e.point ? 1 : 0);
  writeDigitsBefore(at, e.number, behind);
  if (e.point) {
    first[0] = first[1];
    first[1] = locale.decimalPoint;
  }
  fillUnits(at, e.digits - behind, u'0');
  writeExponent(at + (e.digits - behind), e);
  return e.status;
}

}  // namespace veldnls
