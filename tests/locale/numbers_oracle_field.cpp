#include "locale/numbers_oracle_double.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "veldnls/number_flags.h"
#include "veldnls/status.h"

namespace oracle {
namespace {

double roundingHalf(int p) {
  const std::string text = "0.5e-" + std::to_string(p);
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

// How many digits doubles give.
constexpr int digitsOfDoubles = 15;

// A number in a field, whose text grows from step to step.
struct DecimalField {
  const Call& call;
  bool best;
  Field out;
  int size;  // of the field
  bool negative;
  int width;          // without the sign
  int firstEstimate;  // of how many digits the integer has
  int estimate;       // the same; at least 0 where the best form is wanted
  int precision;
  int room = 0;            // for the integer
  bool shortened = false;  // the fraction gave a place to a carry
  uint32_t status = 0;
  Exact exact = {};
  std::string integer = {};
  int integerEnd = 0;

  bool isWhole() const { return call.value == std::floor(call.value); }
  int count() const { return static_cast<int>(integer.size()); }
  void measure() { room = width - precision - (precision > 0 ? 1 : 0); }
  void losesDigits() {
    if (call.has(FMT_FIELD_DECIMAL)) status = nlsDigitsLost;
  }
};

// Whether a number below 1 shows more with an exponent.
bool isTooSmall(const DecimalField& field) {
  const double value = field.call.value;
  const int exponentLength = field.firstEstimate < -99 ? 5 : 4;
  if (field.width <= 2) return false;
  if (field.firstEstimate < -9 && exponentLength < field.width) return true;
  return field.width > 4 && ((value != 0 && value < 0.00001) || field.firstEstimate + field.width < 3);
}

// How many places the integer and the fraction have. Returns false if the number has to be shown with an exponent.
bool choosePlaces(DecimalField& field) {
  if (field.best && field.estimate < 1) {
    if (isTooSmall(field)) return false;
    field.precision = field.width - 2;
    if (field.precision < 2) field.precision = field.width - 1;
    field.estimate = 0;
  }
  if (field.estimate > field.width || field.estimate == 32) return false;
  if (field.width == 0) {
    if (field.call.value >= 0.5) return false;
    field.width = 1;
    field.negative = false;
    field.precision = 0;
  }
  if (field.best && field.estimate > 0) field.precision = 99;
  field.measure();
  if (field.room < field.estimate) {
    field.losesDigits();
    field.precision = field.estimate == field.width ? 0 : field.width - field.estimate - 1;
    field.measure();
  }
  if (field.isWhole() && field.best) {
    field.precision = 0;
    field.room = field.width;
  }
  return true;
}

double roundedValue(const DecimalField& field) {
  double value = field.call.value;
  if (field.isWhole()) return value;
  if (field.precision <= digitsOfDoubles - field.estimate) value += roundingHalf(field.precision);
  return value * 1.0000000000000002;
}

// The digits of the rounded number. One digit more than estimated costs the fraction a place; returns false if that
// doesn't help.
bool expand(DecimalField& field) {
  for (;;) {
    field.exact = exactDigits(roundedValue(field));
    if (static_cast<int>(field.exact.integer.size()) <= field.room) return true;
    if (field.precision == 0 || field.shortened) return false;
    --field.precision;
    field.measure();
    field.losesDigits();
    field.shortened = true;
  }
}

void putInteger(DecimalField& field) {
  field.integer = field.exact.integer;
  if (field.integer.empty() && field.room > 0) field.integer = "0";
  int at = field.room - field.count();
  if (field.negative) field.out[at++] = u'-';
  for (const char digit : field.integer) field.out[at++] = static_cast<char16_t>(digit);
  field.integerEnd = at;
}

// The fraction from `at` on. Returns how many of its digits aren't zeros at the end.
int putFractionDigits(DecimalField& field, int at) {
  const int count = field.count();
  int lead = field.firstEstimate < 0 ? 1 - field.firstEstimate : 0;
  int kept = 0;
  if (count < digitsOfDoubles) {
    std::string digits = field.exact.fraction;
    kept = std::min(field.precision, digitsOfDoubles - count + lead);
    digits.resize(static_cast<size_t>(std::max(kept, 0)), '0');
    for (int i = 0; i < kept; ++i) field.out[at + i] = static_cast<char16_t>(digits[static_cast<size_t>(i)]);
    while (kept > 0 && field.out[at + kept - 1] == u'0') --kept;
  } else {
    lead = count - digitsOfDoubles;
  }
  const int beyond = std::max(field.precision + count - lead - digitsOfDoubles, 0);
  field.out.fill(at + digitsOfDoubles - count + lead, beyond, u'0');
  return kept;
}

// Takes the zeros at the end of a fraction off, and the point with the last digit: the text moves to the right.
void moveRight(DecimalField& field, int kept) {
  Field& out = field.out;
  const int end = field.width + (field.negative ? 1 : 0);
  int shift = field.precision - kept;
  if (kept == 0) {
    if (field.count() > 0) {
      shift = field.precision + 1;
    } else {
      out[0] = u'0';
      shift = end - 1;
    }
  }
  for (int i = end - 1; i >= shift; --i) out[i] = out[i - shift];
  out.fill(0, shift, u' ');
  field.integerEnd += shift;
  // The zero ahead of the point finds room now.
  if (!field.shortened && field.count() == 0 && kept != 0) {
    const int point = shift + (field.negative ? 1 : 0);
    out[point - 1] = u'0';
    if (field.negative) out[point - 2] = u'-';
  }
}

void putFraction(DecimalField& field) {
  if (field.precision == 0) return;
  const int at = field.integerEnd + 1;
  field.out[field.integerEnd] = field.call.signs.point;
  if (field.isWhole()) return field.out.fill(at, field.precision, u'0');
  const int kept = putFractionDigits(field, at);
  if (field.best && kept < field.precision) moveRight(field, kept);
}

// Writes the integer once more, with separators, if there is room for them.
void putGroups(DecimalField& field) {
  const Call& call = field.call;
  if (!call.has(FMT_GROUP) || !call.has(FMT_FIELD_DECIMAL) || field.status != 0) return;
  const int size = groupSize(call.signs);
  const int separators = separatorCount(field.count(), size);
  if (separators == 0 || field.count() + separators > field.room) return;
  const std::u16string text = grouped(wide(field.integer), size, call.signs.separator);
  int from = field.integerEnd - static_cast<int>(text.size());
  if (field.negative) field.out[from - 1] = u'-';
  for (const char16_t unit : text) field.out[from++] = unit;
}

bool putDecimal(DecimalField& field) {
  if (!choosePlaces(field) || !expand(field)) return false;
  putInteger(field);
  putFraction(field);
  putGroups(field);
  return true;
}

uint32_t putNumber(DecimalField& field) {
  const Call& call = field.call;
  if (call.has(FMT_FIELD_EXPONENT)) {
    const int precision = field.size > 7 ? 7 - field.size : -1;
    return exponentField(call.signs, field.out, field.negative, field.width, precision, call.value);
  }
  if (putDecimal(field)) return field.status;
  const uint32_t status = exponentField(call.signs, field.out, field.negative, field.width, 99, call.value);
  return status == 0 && call.has(FMT_FIELD_DECIMAL) ? nlsDigitsLost : status;
}

}  // namespace

int binaryExponent(double value) {
  int exponent = 0;
  std::frexp(value, &exponent);
  return exponent;
}

int shifted(int value, int bits) { return static_cast<int>(std::floor(std::ldexp(value, -bits))); }

Result fieldFormat(const Call& call, bool best) {
  const int size = std::min(call.width, call.capacity);
  const int width = size - (call.negative ? 1 : 0);
  Field out{std::u16string(static_cast<size_t>(call.capacity), untouched)};
  if (width < 0 || call.capacity == 0) return {nlsFieldTooNarrow, size, out.units};
  out.fill(0, size, u' ');
  const int binary = binaryExponent(call.value);
  const int estimate = shifted(binary * 77 + (binary * 77 < 0 ? 255 : 0), 8);
  DecimalField field{.call = call,
                     .best = best,
                     .out = out,
                     .size = size,
                     .negative = call.negative,
                     .width = width,
                     .firstEstimate = estimate,
                     .estimate = estimate,
                     .precision = call.precision < 0 ? 6 : call.precision};
  const uint32_t status = putNumber(field);
  if (status == nlsFieldTooNarrow) field.out.fill(0, size, u'*');
  return {status, size, field.out.units};
}

}  // namespace oracle
