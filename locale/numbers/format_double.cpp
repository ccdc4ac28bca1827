#include "locale/numbers/conversion_format.h"
#include "locale/numbers/field_format.h"
#include "locale/numbers/missing_value.h"

namespace veldnls {
namespace {

constexpr int32_t bestPrecision = 99;

DoubleOptions readOptions(double value, int32_t width, int32_t precision, uint32_t flags) {
  DoubleOptions options{.width = absoluteWidth(width),
                        .precision = precision,
                        .flags = flags,
                        .left = width < 0 || (flags & FMT_LEFT) != 0,
                        .zero = false,
                        .space = false,
                        .negative = isNegative(value)};
  options.zero = options.has(FMT_ZERO) && !options.left && width != 0;
  options.space = options.has(FMT_SPACE) && !options.has(FMT_PLUS) && !options.left && !options.zero;
  return options;
}

// The letter stands in the place of the last integer digit, or at the end of a field without such a place.
NlsStatus formatMissingDecimal(char16_t letter, const DoubleOptions& options, const Output& out) {
  // Unlike the field of a number, this one isn't cut to the output: that could cut its letter.
  if (options.width > out.capacity) return showTooNarrow(options.width, 0, out);
  fillUnits(out.units, out.capacity, u' ');
  const int32_t precision = options.precision < 0 ? defaultPrecision : options.precision;
  int32_t place = options.width - precision - 1;
  if (place < 0) place = options.has(FMT_GROUP) ? -1 : options.width - 1;
  if (place >= 0) out.units[place] = letter;
  *out.length = options.width;
  return 0;
}

NlsStatus formatMissing(char16_t letter, const DoubleOptions& options, const Output& out) {
  if (options.has(FMT_FIELD_DECIMAL)) return formatMissingDecimal(letter, options, out);
  return placeInField(options, 1, out, [letter](char16_t* at) { *at = letter; });
}

}  // namespace

NlsStatus formatDouble(const LocaleNumber& locale, double value, int32_t width, int32_t precision, uint32_t flags,
                       char16_t* output, int32_t capacity, int32_t* length) {
  const DoubleOptions options = readOptions(value, width, precision, flags);
  const Output out{output, std::max(capacity, 0), length};
  if (isMissing(value)) return formatMissing(missingLetter(value), options, out);
  *length = 0;
  if (!isFinite(value)) return nlsBadArgument;
  const bool best = options.has(FMT_BEST) || precision == bestPrecision;
  if (best || options.has(FMT_FIELD_DECIMAL | FMT_FIELD_EXPONENT)) {
    return formatField(locale, magnitudeOf(value), options, best, out);
  }
  return formatConversion(locale, magnitudeOf(value), options, out);
}

}  // namespace veldnls
