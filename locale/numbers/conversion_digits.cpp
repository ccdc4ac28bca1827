#include "locale/numbers/conversion_digits.h"

#include "locale/numbers/exact_digits.h"

namespace veldnls {
namespace {

using Kind = ConversionKind;

// Fractions are shown as zeros when precision and integer digits together exceed maxPrecision.
void dropLongFraction(const Conversion& conversion, ConversionDigits& digits, int32_t integerCount, int32_t count) {
  if (conversion.precision + integerCount > maxPrecision) {
    fillUnits(digits.first + integerCount, count - integerCount, u'0');
  }
}

// In general, integer and fraction conversions zero keeps the caller's precision, and has one digit behind the point if
// that can't be used.
void takeZero(const Conversion& conversion, const DoubleOptions& options, ConversionDigits& digits) {
  const bool general = conversion.kind == Kind::general;
  digits.exponentForm = !general && options.has(FMT_EXPONENT | FMT_EXPONENT_UPPER);
  digits.integerCount = 1;
  if (digits.exponentForm || (!general && options.has(FMT_FIXED))) {
    digits.length = conversion.precision + 1;
  } else {
    digits.length = options.precision >= 1 && options.precision <= 98 ? options.precision + 1 : 2;
  }
  fillUnits(digits.first, digits.length + 1, u'0');
}

// The length of a general conversion in exponent form depends on the field, and counts digits of the exponent that are
// not the ones written.
int32_t generalExponentLength(const Conversion& conversion, const DoubleOptions& options, int32_t field,
                              int32_t power) {
  const int32_t exponentDigits = countDigits(static_cast<uint64_t>(power < 0 ? -power : power));
  const int32_t used = exponentDigits + (power < 0 ? 2 : 1);
  if (used >= field) return conversion.precision;
  const int32_t room = field - used - (options.negative ? 1 : 0);
  if (room == 0) return conversion.precision;
  return room < 3 ? 1 : std::min(room - 1, conversion.precision + 1);
}

void takeSignificant(double value, const Conversion& conversion, const DoubleOptions& options, int32_t field,
                     ConversionDigits& digits) {
  // One more than is shown, for rounding.
  const int32_t count = conversion.precision + 2;
  digits.power = leadingDigits(value, count, digits.first);
  const int32_t integerCount = std::max(digits.power + 1, 0);
  if (integerCount > 0 && integerCount < count) dropLongFraction(conversion, digits, integerCount, count);
  const bool general = conversion.kind == Kind::general;
  if (!general || digits.power < -4 || conversion.precision <= digits.power) {
    digits.exponentForm = true;
    digits.integerCount = 1;
    digits.length =
        general ? generalExponentLength(conversion, options, field, digits.power) : conversion.precision + 1;
    return;
  }
  digits.length = conversion.precision;
  digits.integerCount = integerCount;
  if (integerCount > 0) return;
  // "0" and the zeros behind the point.
  const int32_t zeros = -digits.power;
  std::copy_backward(digits.first, digits.first + count, digits.first + count + zeros);
  fillUnits(digits.first, zeros, u'0');
  digits.integerCount = 1;
  digits.length += zeros;
}

void takeFixed(double value, const Conversion& conversion, ConversionDigits& digits) {
  const int32_t places = conversion.precision + 1;
  const ExactDigits exact(value);
  digits.integerCount = exact.integerCount();
  exact.writeInteger(digits.integerCount, digits.first);
  exact.writeFraction(places, digits.first + digits.integerCount);
  dropLongFraction(conversion, digits, digits.integerCount, digits.integerCount + places);
  if (digits.integerCount == 0) {
    *--digits.first = u'0';
    digits.integerCount = 1;
  }
  digits.length = digits.integerCount + conversion.precision;
}

void takeFraction(double value, const Conversion& conversion, ConversionDigits& digits) {
  digits.first[0] = u'0';
  digits.integerCount = 1;
  digits.length = conversion.precision + 1;
  ExactDigits(value).writeFraction(conversion.precision + 1, digits.first + 1);
}

void takeInteger(double value, ConversionDigits& digits) {
  const ExactDigits exact(value);
  digits.first[0] = u'0';
  digits.integerCount = std::max(exact.integerCount(), 1);
  exact.writeInteger(exact.integerCount(), digits.first);
  digits.length = digits.integerCount;
  // Nothing is rounded.
  digits.first[digits.length] = u'0';
}

// Half up, by the first digit that isn't shown.
void roundDigits(ConversionDigits& digits) {
  char16_t* at = digits.first + digits.length;
  if (*at < u'5') return;
  while (at > digits.first) {
    if (*--at != u'9') {
      ++*at;
      return;
    }
    *at = u'0';
  }
  *digits.first = u'1';
  if (digits.exponentForm) {
    ++digits.power;
  } else {
    digits.first[digits.length++] = u'0';
    ++digits.integerCount;
  }
}

void takeNonZero(double value, const Conversion& conversion, const DoubleOptions& options, int32_t field,
                 ConversionDigits& digits) {
  switch (conversion.kind) {
    case Kind::general:
    case Kind::exponent:
      return takeSignificant(value, conversion, options, field, digits);
    case Kind::fixed:
      return takeFixed(value, conversion, digits);
    case Kind::fractionOnly:
      return takeFraction(value, conversion, digits);
    case Kind::integerOnly:
      return takeInteger(value, digits);
  }
}

}  // namespace

Conversion chooseConversion(const DoubleOptions& options) {
  constexpr uint32_t notGeneral =
      FMT_FIXED | FMT_FRACTION_ONLY | FMT_INTEGER_ONLY | FMT_EXPONENT | FMT_EXPONENT_UPPER | FMT_FIELD_DECIMAL;
  const int32_t precision = std::min(options.precision < 0 ? defaultPrecision : options.precision, maxPrecision);
  if (options.has(FMT_GENERAL | FMT_GENERAL_UPPER) || !options.has(notGeneral)) {
    return {Kind::general, precision == 0 ? defaultPrecision : precision};
  }
  if (options.has(FMT_INTEGER_ONLY)) return {Kind::integerOnly, precision};
  if (options.has(FMT_FRACTION_ONLY)) return {Kind::fractionOnly, precision};
  if (options.has(FMT_EXPONENT | FMT_EXPONENT_UPPER)) return {Kind::exponent, precision};
  return {Kind::fixed, precision};
}

void takeConversionDigits(double value, const Conversion& conversion, const DoubleOptions& options, int32_t field,
                          ConversionDigits& digits) {
  if (isZero(value)) {
    takeZero(conversion, options, digits);
  } else {
    takeNonZero(value, conversion, options, field, digits);
  }
  roundDigits(digits);
  if (conversion.kind != Kind::general || options.has(FMT_KEEP_ZEROS)) return;
  while (digits.length > digits.integerCount && digits.first[digits.length - 1] == u'0') --digits.length;
}

}  // namespace veldnls
