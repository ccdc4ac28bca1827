#include "locale/numbers/field_format.h"

#include "core/digits.h"
#include "locale/numbers/double_arithmetic.h"
#include "locale/numbers/exact_digits.h"
#include "locale/numbers/field_powers.h"
#include "locale/numbers/grouping.h"

namespace veldnls {
namespace {

// Digits of a double that are shown; behind them stand zeros.
constexpr int32_t significantDigits = 15;
// Pushes a value just past its decimal tie.
constexpr double nudge = 1.0000000000000002;

// Places between the point and the first digit of a double.
constexpr int32_t maxLead = 324;

struct DecimalField {
  const LocaleNumber& locale;
  Field field;
  double value;
  bool best;
  bool decimal;
  bool group;
  int32_t precision;
  int32_t estimate = 0;       // of the decimal exponent
  int32_t firstEstimate = 0;  // the same before the precision was chosen
  int32_t room = 0;           // for integer digits
  bool whole = false;
  bool secondAttempt = false;
  NlsStatus status = 0;
};

int32_t exponentEstimate(int32_t exponent) {
  const int32_t product = exponent * 77;
  return (product + (product < 0 ? 255 : 0)) >> 8;
}

// Whether a small value has too little room for a decimal fraction.
bool smallNeedsExponent(const DecimalField& d) {
  const int32_t width = d.field.width;
  if (width <= 2) return false;
  const int32_t more = d.estimate < -99 ? 2 : 1;
  if (d.estimate < -9 && more + 3 < width) return true;
  return width > 4 && ((!isZero(d.value) && isBelow(d.value, 0.00001)) || d.estimate + width < 3);
}

void measureRoom(DecimalField& d) { d.room = d.field.width - d.precision - (d.precision > 0 ? 1 : 0); }

// Chooses precision and room; false if only the exponent form is left.
bool choosePrecision(DecimalField& d) {
  Field& field = d.field;
  if (d.best && d.estimate < 1) {
    if (smallNeedsExponent(d)) return false;
    d.precision = field.width - (field.width - 2 < 2 ? 1 : 2);
    d.estimate = 0;
  }
  // The estimate 32 is sent to the exponent form in a field of any width.
  if (d.estimate > field.width || d.estimate == 32) return false;
  if (field.width == 0) {
    if (!isBelow(d.value, 0.5)) return false;
    // A field for nothing but a sign holds the "0" in its place.
    field.width = 1;
    field.negative = false;
    d.precision = 0;
  }
  if (d.best && d.estimate > 0) d.precision = fittingPrecision;
  measureRoom(d);
  if (d.room < d.estimate) {
    if (d.decimal) d.status = nlsDigitsLost;
    d.precision = d.estimate == field.width ? 0 : field.width - d.estimate - 1;
    measureRoom(d);
  }
  if (d.best && d.whole) {
    d.precision = 0;
    measureRoom(d);
  }
  return true;
}

// With more places digits are cut instead, also if fewer are shown in the end.
bool roundsAtPrecision(const DecimalField& d) { return d.precision <= significantDigits - d.estimate; }

// The value on the way to its rounded digits; it isn't whole.
double scaledValue(const DecimalField& d) {
  return multiply(roundsAtPrecision(d) ? add(d.value, roundingHalf(d.precision)) : d.value, nudge);
}

// The group size for a text of `count` integer digits, 0 if separators aren't asked for or have no room.
int32_t fittingGroupSize(const DecimalField& d, int32_t count) {
  if (!d.group || !d.decimal || d.status != 0) return 0;
  const int32_t size = groupSize(d.locale);
  return count + countSeparators(count, size) > d.room ? 0 : size;
}

// How many places behind the point are real digits, if none of them is a zero at the end.
int32_t realPlaces(const DecimalField& d, int32_t integerCount) {
  const int32_t shown = integerCount == 0 && d.room > 0 ? 1 : integerCount;
  if (d.precision == 0 || d.whole || shown >= significantDigits) return 0;
  const int32_t lead = d.firstEstimate < 0 ? 1 - d.firstEstimate : 0;
  return std::min(d.precision, significantDigits - shown + lead);
}

// What stands at the end of the field.
struct DecimalText {
  bool zero;  // in the place of integer digits
  bool sign;
  int32_t places;
  int32_t groupSize;
  char16_t* start;
};

// `kept` real places are left once the zeros at their end are cut.
DecimalText arrange(const DecimalField& d, int32_t integerCount, int32_t kept) {
  const Field& field = d.field;
  DecimalText text{.zero = integerCount == 0 && d.room > 0,
                   .sign = field.negative,
                   .places = d.precision,
                   .groupSize = 0,
                   .start = nullptr};
  const int32_t shown = text.zero ? 1 : integerCount;
  if (d.best && kept < d.precision) {
    text.places = kept;
    if (shown == 0) {
      // A fraction that is cut has room for a "0" in front, unless its rounding took it; one without digits is a "0"
      // that takes the sign's place.
      text.zero = kept == 0 || !d.secondAttempt;
      text.sign = text.sign && kept != 0;
    }
  }
  text.groupSize = fittingGroupSize(d, shown);
  const int32_t length = (text.sign ? 1 : 0) +
                         (text.zero ? 1 : integerCount + countSeparators(integerCount, text.groupSize)) +
                         (text.places > 0 ? 1 + text.places : 0);
  text.start = field.units + field.width + (field.negative ? 1 : 0) - length;
  return text;
}

// Writes what stands in front of the integer digits, and returns their place.
char16_t* writeStart(const DecimalText& text) {
  char16_t* at = text.start;
  if (text.sign) *at++ = u'-';
  if (text.zero) *at++ = u'0';
  return at;
}

// Writes the scaled value, whose integer digits fit, to the end of the field. `kept` places of its fraction are real.
void writeExact(const DecimalField& d, const ExactDigits& scaled, int32_t integerCount, int32_t kept) {
  char16_t fraction[significantDigits + maxLead];
  if (kept > 0) scaled.writeFraction(kept, fraction);
  while (kept > 0 && fraction[kept - 1] == u'0') --kept;
  const DecimalText text = arrange(d, integerCount, kept);
  char16_t integer[maxIntegerDigits];
  scaled.writeInteger(integerCount, integer);
  char16_t* at = copyGrouped(integer, integerCount, text.groupSize, d.locale.groupSeparator, writeStart(text));
  if (text.places == 0) return;
  *at++ = d.locale.decimalPoint;
  at = copyUnits(fraction, kept, at);
  fillUnits(at, text.places - kept, u'0');
}

// The same for a value in two words, whose fraction has `kept` places.
void writeNumber(const DecimalField& d, const RoundedNumber& scaled, int32_t integerCount, int32_t kept) {
  uint64_t fraction = scaled.fraction;
  if (fraction == 0) {
    kept = 0;
  } else if (d.best) {
    kept -= cutZeros(fraction);
  }
  const DecimalText text = arrange(d, integerCount, kept);
  char16_t* at = writeStart(text);
  if (text.groupSize > 0) {
    char16_t integer[maxIntegerPower + 1];
    writeDigitsBefore(integer + integerCount, scaled.integer, integerCount);
    at = copyGrouped(integer, integerCount, text.groupSize, d.locale.groupSeparator, at);
  } else {
    at += integerCount;
    writeIntegerBefore(at, scaled.integer);
  }
  if (text.places == 0) return;
  *at++ = d.locale.decimalPoint;
  writeDigitsBefore(at + kept, fraction, kept);
  fillUnits(at + kept, text.places - kept, u'0');
}

// Tries the value at its present precision; false if its integer digits don't fit.
bool writeScaled(const DecimalField& d, const ExactDigits& exact) {
  RoundedNumber number;
  if (!d.whole && roundsAtPrecision(d) && exact.roundClearly(d.precision, &number)) {
    const int32_t count = countDigits(number.integer);
    if (count > d.room) return false;
    const int32_t kept = realPlaces(d, count);
    if (kept < d.precision) number.fraction /= integerPowersOfTen[static_cast<size_t>(d.precision - kept)];
    writeNumber(d, number, count, kept);
    return true;
  }
  const ExactDigits scaled = d.whole ? exact : ExactDigits(scaledValue(d));
  const int32_t count = scaled.integerCount();
  if (count > d.room) return false;
  const int32_t kept = realPlaces(d, count);
  if (scaled.cut(kept, &number)) {
    writeNumber(d, number, count, kept);
  } else {
    writeExact(d, scaled, count, kept);
  }
  return true;
}

// False if only the exponent form is left.
bool writeDecimalField(DecimalField& d) {
  if (!choosePrecision(d)) return false;
  const ExactDigits exact(d.value);
  const int32_t exactCount = exact.integerCount();
  for (;;) {
    // Scaling can only add a digit.
    if (exactCount <= d.room && writeScaled(d, exact)) return true;
    if (d.precision == 0 || d.secondAttempt) return false;
    d.secondAttempt = true;
    --d.precision;
    measureRoom(d);
    if (d.decimal) d.status = nlsDigitsLost;
  }
}

}  // namespace

NlsStatus writeDecimalOrExponentField(const LocaleNumber& locale, double value, const DoubleOptions& options, bool best,
                                      const Field& field) {
  const BinaryDouble number = decompose(value);
  const int32_t estimate = exponentEstimate(binaryExponent(number));
  DecimalField d{.locale = locale,
                 .field = field,
                 .value = value,
                 .best = best,
                 .decimal = options.has(FMT_FIELD_DECIMAL),
                 .group = options.has(FMT_GROUP),
                 .precision = options.precision < 0 ? defaultPrecision : options.precision,
                 .estimate = estimate,
                 .firstEstimate = estimate,
                 .whole = isWhole(number)};
  if (writeDecimalField(d)) return d.status;
  const NlsStatus status = writeExponentField(locale, value, d.field, fittingPrecision);
  return status == 0 && d.decimal ? nlsDigitsLost : status;
}

}  // namespace veldnls
