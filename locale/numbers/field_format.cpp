#include "locale/numbers/field_format.h"

#include "locale/numbers/digit_groups.h"
#include "locale/numbers/grouping.h"

namespace veldnls {
namespace {

// Writes a whole number in decimal form to the end of a field, with `places` zeros behind its point; false if it has no
// room or its groups aren't of three digits.
bool writeWhole(const LocaleNumber& locale, uint64_t value, const Field& field, int32_t places, bool group) {
  const int32_t count = std::max(countDigits(value), 1);
  if (places >= field.width) return false;
  const int32_t room = field.width - places - (places > 0 ? 1 : 0);
  if (count > room || (group && groupingOf(locale) != Grouping::thousands)) return false;
  char16_t* at = field.units + field.width + (field.negative ? 1 : 0);
  if (places > 0) {
    fillUnits(at -= places, places, u'0');
    *--at = locale.decimalPoint;
  }
  const int32_t separators = group ? countSeparators(count, thousandsSize) : 0;
  const bool grouped = separators > 0 && count + separators <= room;
  if (value == 0) {
    at[-1] = u'0';
  } else if (grouped) {
    writeThousandsBefore(at, value, locale.groupSeparator);
  } else {
    writeIntegerBefore(at, value);
  }
  if (field.negative) at[-count - (grouped ? separators : 0) - 1] = u'-';
  return true;
}

// Writes a whole number of few digits as mantissa and exponent, of at most 1 - `precision` digits; false if some of
// them have no room.
bool writeWholeExponent(const LocaleNumber& locale, uint64_t value, const Field& field, int32_t precision) {
  // The others are rounded.
  constexpr uint64_t firstTooLong = 100'000'000'000'000;
  constexpr int32_t exponentLength = 4;
  const int32_t count = countDigits(value);
  const int32_t digits = 1 - precision;
  if (value == 0 || value >= firstTooLong || count > digits || field.width < digits + 1 + exponentLength) return false;
  char16_t* at = field.units + field.width + (field.negative ? 1 : 0);
  writeTwoDigits(at - 2, static_cast<uint32_t>(count - 1));
  *(at -= 3) = u'+';
  *--at = u'E';
  fillUnits(at - (digits - count), digits - count, u'0');
  writeIntegerBefore(at - (digits - count), value);
  // The point takes the place of the first digit, which moves to the left.
  at -= digits;
  at[-1] = at[0];
  at[0] = locale.decimalPoint;
  if (field.negative) at[-2] = u'-';
  return true;
}

NlsStatus writeField(const LocaleNumber& locale, double value, const DoubleOptions& options, bool best,
                     const Field& field, int32_t size) {
  uint64_t whole = 0;
  const bool isWhole = isWholeWord(decompose(value), &whole);
  if (options.has(FMT_FIELD_EXPONENT)) {
    const int32_t precision = std::min(defaultPrecision + 1 - size, -1);
    if (isWhole && writeWholeExponent(locale, whole, field, precision)) return 0;
    return writeExponentField(locale, value, field, precision);
  }
  const bool decimal = options.has(FMT_FIELD_DECIMAL);
  const int32_t places = best ? 0 : options.precision < 0 ? defaultPrecision : options.precision;
  // A precision of 99 in the decimal conversion counts as one that doesn't fit.
  if (isWhole && !(best && decimal) && writeWhole(locale, whole, field, places, decimal && options.has(FMT_GROUP))) {
    return 0;
  }
  return writeDecimalOrExponentField(locale, value, options, best, field);
}

}  // namespace

NlsStatus formatField(const LocaleNumber& locale, double value, const DoubleOptions& options, bool best,
                      const Output& out) {
  const int32_t size = std::min(options.width, out.capacity);
  *out.length = size;
  const Field field{out.units, size - (options.negative ? 1 : 0), options.negative};
  if (field.width < 0 || out.capacity == 0) return nlsFieldTooNarrow;
  fillUnits(field.units, size, u' ');
  const NlsStatus status = writeField(locale, value, options, best, field, size);
  if (status == nlsFieldTooNarrow) fillUnits(field.units, size, u'*');
  return status;
}

}  // namespace veldnls
