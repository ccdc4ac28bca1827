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

// The value on the way to its rounded digits; it isn't whole.
double scaledValue(const DecimalField& d) {
  const bool rounds = d.precision <= significantDigits - d.estimate;
  return multiply(rounds ? add(d.value, roundingHalf(d.precision)) : d.value, nudge);
}

// The group size for a text of `count` integer digits, 0 if separators aren't asked for or have no room.
int32_t fittingGroupSize(const DecimalField& d, int32_t count) {
  if (!d.group || !d.decimal || d.status != 0) return 0;
  const int32_t size = groupSize(d.locale);
  return count + countSeparators(count, size) > d.room ? 0 : size;
}

char16_t* writeInteger(const DecimalField& d, const ExactDigits& scaled, int32_t count, int32_t size, char16_t* at) {
  if (size <= 0) {
    scaled.writeInteger(count, at);
    return at + count;
  }
  char16_t digits[maxIntegerDigits];
  scaled.writeInteger(count, digits);
  return copyGrouped(digits, count, size, d.locale.groupSeparator, at);
}

// Writes the scaled value, whose integer digits fit, to the end of the field.
void writeDecimal(const DecimalField& d, const ExactDigits& scaled, int32_t integerCount) {
  const Field& field = d.field;
  bool zero = integerCount == 0 && d.room > 0;
  const int32_t shown = zero ? 1 : integerCount;
  char16_t fraction[significantDigits + maxLead];
  int32_t kept = 0;
  if (d.precision > 0 && !d.whole && shown < significantDigits) {
    const int32_t lead = d.firstEstimate < 0 ? 1 - d.firstEstimate : 0;
    kept = std::min(d.precision, significantDigits - shown + lead);
    scaled.writeFraction(kept, fraction);
    while (kept > 0 && fraction[kept - 1] == u'0') --kept;
  }
  const bool cut = d.best && kept < d.precision;
  const int32_t places = cut ? kept : d.precision;
  bool sign = field.negative;
  if (cut && shown == 0) {
    // A fraction that is cut has room for a "0" in front, unless its rounding took it; one without digits is a "0" that
    // takes the sign's place.
    zero = kept == 0 || !d.secondAttempt;
    sign = sign && kept != 0;
  }
  const int32_t size = fittingGroupSize(d, shown);
  const int32_t length =
      (sign ? 1 : 0) + (zero ? 1 : integerCount + countSeparators(integerCount, size)) + (places > 0 ? 1 + places : 0);
  char16_t* at = field.units + field.width + (field.negative ? 1 : 0) - length;
  if (sign) *at++ = u'-';
  if (zero) *at++ = u'0';
  at = writeInteger(d, scaled, integerCount, size, at);
  if (places == 0) return;
  *at++ = d.locale.decimalPoint;
  at = copyUnits(fraction, kept, at);
  fillUnits(at, places - kept, u'0');
}

// False if only the exponent form is left.
bool writeDecimalField(DecimalField& d) {
  if (!choosePrecision(d)) return false;
  const ExactDigits exact(d.value);
  const int32_t exactCount = exact.integerCount();
  for (;;) {
    // Scaling can only add a digit.
    if (exactCount <= d.room) {
      const ExactDigits scaled = d.whole ? exact : ExactDigits(scaledValue(d));
      const int32_t count = d.whole ? exactCount : scaled.integerCount();
      if (count <= d.room) {
        writeDecimal(d, scaled, count);
        return true;
      }
    }
    if (d.precision == 0 || d.secondAttempt) return false;
    d.secondAttempt = true;
    --d.precision;
    measureRoom(d);
    if (d.decimal) d.status = nlsDigitsLost;
  }
}

NlsStatus formatDecimalOrExponent(const LocaleNumber& locale, double value, const DoubleOptions& options, bool best,
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

}  // namespace

NlsStatus formatField(const LocaleNumber& locale, double value, const DoubleOptions& options, bool best,
                      const Output& out) {
  const int32_t size = std::min(options.width, out.capacity);
  *out.length = size;
  const Field field{out.units, size - (options.negative ? 1 : 0), options.negative};
  if (field.width < 0 || out.capacity == 0) return nlsFieldTooNarrow;
  fillUnits(field.units, size, u' ');
  const NlsStatus status = options.has(FMT_FIELD_EXPONENT)
                               ? writeExponentField(locale, value, field, std::min(defaultPrecision + 1 - size, -1))
                               : formatDecimalOrExponent(locale, value, options, best, field);
  if (status == nlsFieldTooNarrow) fillUnits(field.units, size, u'*');
  return status;
}

}  // namespace veldnls
