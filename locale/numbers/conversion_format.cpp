#include "locale/numbers/conversion_format.h"

#include "locale/numbers/conversion_digits.h"
#include "locale/numbers/digit_groups.h"
#include "locale/numbers/exact_digits.h"
#include "locale/numbers/grouping.h"

namespace veldnls {
namespace {

constexpr int32_t maxWordDigits = 20;

// What a number takes between its sign and its end.
struct Shape {
  int32_t integerCount;
  int32_t fractionCount;
  bool point;
  int32_t exponentLength;
};

// Places a number with its sign, zeros and separators. `write(at, size)` writes what the shape tells, the integer
// digits in groups of `size` if that isn't 0.
template <class Write>
NlsStatus placeNumber(const LocaleNumber& locale, const Shape& shape, const DoubleOptions& options, int32_t field,
                      const Output& out, Write write) {
  const bool plus = options.has(FMT_PLUS);
  int32_t length = shape.integerCount + shape.fractionCount + (shape.point ? 1 : 0) + shape.exponentLength;
  int32_t size = 0;
  if (options.has(FMT_GROUP)) {
    size = groupSize(locale);
    const int32_t separators = countSeparators(shape.integerCount, size);
    // A minus sign isn't counted: it may take the room that separators have used.
    const bool fits = length + separators + (plus ? 1 : 0) + (options.space ? 1 : 0) <= out.capacity;
    size = fits ? size : 0;
    length += fits ? separators : 0;
  }
  int32_t zeros = 0;
  const char16_t sign = options.negative ? u'-' : plus ? u'+' : options.space ? u' ' : u'\0';
  if (options.zero && length < field) {
    zeros = field - length - (sign != 0 ? 1 : 0);
    length = field;
  } else if (sign != 0) {
    ++length;
  }
  return placeInField(options, length, out, [&](char16_t* at) {
    if (sign != 0) *at++ = sign;
    fillUnits(at, zeros, u'0');
    write(at + zeros, size);
  });
}

// `power` has two digits or three.
int32_t exponentLength(int32_t power) { return power > -100 && power < 100 ? 4 : 5; }

void writeExponent(char16_t* at, const DoubleOptions& options, int32_t power) {
  const bool general = options.has(FMT_GENERAL | FMT_GENERAL_UPPER);
  const bool upper = options.has(general ? FMT_GENERAL_UPPER : FMT_EXPONENT_UPPER);
  *at++ = upper ? u'E' : u'e';
  *at++ = power < 0 ? u'-' : u'+';
  const int32_t count = exponentLength(power) - 2;
  writeDigitsBefore(at + count, static_cast<uint64_t>(power < 0 ? -power : power), count);
}

NlsStatus formatDigits(const LocaleNumber& locale, const ConversionDigits& digits, const DoubleOptions& options,
                       int32_t field, const Output& out) {
  const int32_t fractionCount = digits.length - digits.integerCount;
  const Shape shape{digits.integerCount, fractionCount, fractionCount > 0 || options.has(FMT_POINT),
                    digits.exponentForm ? exponentLength(digits.power) : 0};
  return placeNumber(locale, shape, options, field, out, [&](char16_t* at, int32_t size) {
    at = copyGrouped(digits.first, digits.integerCount, size, locale.groupSeparator, at);
    if (shape.point) *at++ = locale.decimalPoint;
    at = copyUnits(digits.first + digits.integerCount, fractionCount, at);
    if (digits.exponentForm) writeExponent(at, options, digits.power);
  });
}

// The fixed conversion of a number whose parts fit a word each.
NlsStatus formatRounded(const LocaleNumber& locale, const RoundedNumber& number, int32_t places,
                        const DoubleOptions& options, int32_t field, const Output& out) {
  const int32_t count = std::max(countDigits(number.integer), 1);
  const Shape shape{count, places, places > 0 || options.has(FMT_POINT), 0};
  return placeNumber(locale, shape, options, field, out, [&](char16_t* at, int32_t size) {
    if (size == thousandsSize && number.integer != 0) {
      at += count + countSeparators(count, size);
      writeThousandsBefore(at, number.integer, locale.groupSeparator);
    } else if (size > 0) {
      char16_t digits[maxWordDigits];
      writeDigitsBefore(digits + count, number.integer, count);
      at = copyGrouped(digits, count, size, locale.groupSeparator, at);
    } else {
      at += count;
      writeDigitsBefore(at, number.integer, count);
    }
    if (shape.point) *at++ = locale.decimalPoint;
    writeDigitsBefore(at + places, number.fraction, places);
  });
}

}  // namespace

NlsStatus formatConversion(const LocaleNumber& locale, double value, const DoubleOptions& options, const Output& out) {
  const int32_t field = options.width == 0 ? out.capacity : options.width;
  const Conversion conversion = chooseConversion(options);
  RoundedNumber rounded;
  if (conversion.kind == ConversionKind::fixed && ExactDigits(value).round(conversion.precision, &rounded)) {
    return formatRounded(locale, rounded, conversion.precision, options, field, out);
  }
  ConversionDigits digits;
  takeConversionDigits(value, conversion, options, field, digits);
  return formatDigits(locale, digits, options, field, out);
}

}  // namespace veldnls
