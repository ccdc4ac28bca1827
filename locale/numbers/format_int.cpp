#include "locale/numbers/double_options.h"
#include "locale/numbers/grouping.h"
#include "locale/numbers/integer_text.h"

namespace veldnls {
namespace {

struct IntegerOptions {
  int32_t width;  // not negative
  int32_t precision;
  uint32_t flags;
  bool left;

  bool has(uint32_t flag) const { return (flags & flag) != 0; }
};

struct Base {
  int32_t bits;  // of a digit; 0 for decimal
  const char16_t* letters;
};

constexpr Base decimal{0, nullptr};

uint64_t magnitudeOf(int64_t value) { return value < 0 ? -static_cast<uint64_t>(value) : static_cast<uint64_t>(value); }

Base chooseBase(const IntegerOptions& options) {
  constexpr const char16_t* lower = u"0123456789abcdef";
  if (options.has(FMT_HEX)) return {4, lower};
  if (options.has(FMT_HEX_UPPER)) return {4, u"0123456789ABCDEF"};
  return options.has(FMT_OCTAL) ? Base{3, lower} : decimal;
}

// The digits of a value in front of `end`; none for zero. Returns their start.
char16_t* writeDigits(uint64_t value, const Base& base, char16_t* end) {
  for (; value != 0; value >>= base.bits) *--end = base.letters[value & ((uint64_t{1} << base.bits) - 1)];
  return end;
}

char16_t* writeGroupedDigits(const LocaleNumber& locale, uint64_t value, char16_t* end) {
  GroupSizes sizes(locale);
  for (int32_t count = 0; value != 0; value /= 10, ++count) {
    if (sizes.current() > 0 && count == sizes.current()) {
      *--end = locale.groupSeparator;
      count = 0;
      sizes.next();
    }
    *--end = digitUnit(static_cast<uint32_t>(value % 10));
  }
  return end;
}

void takeDigits(const LocaleNumber& locale, uint64_t value, const IntegerOptions& options, const Base& base,
                IntegerText& text) {
  if (base.bits == 0 && !options.has(FMT_GROUP)) {
    text.digitCount = countDigits(value);
    writeDigitsBefore(text.digits + text.digitCount, value, text.digitCount);
    return;
  }
  char16_t scratch[IntegerText::maxDigits];
  char16_t* end = scratch + IntegerText::maxDigits;
  const char16_t* start = base.bits == 0 ? writeGroupedDigits(locale, value, end) : writeDigits(value, base, end);
  text.digitCount = static_cast<int32_t>(end - start);
  std::copy_n(start, text.digitCount, text.digits);
}

// Zeros up to the precision, or up to the width less `reserved` places.
void fillZeros(uint64_t value, const IntegerOptions& options, int32_t reserved, IntegerText& text) {
  int32_t least = options.precision;
  if (options.has(FMT_ZERO) && !options.left && options.precision == 0 && value != 0) least = options.width - reserved;
  text.zeros = std::max(least - text.digitCount, 0);
}

NlsStatus finish(const IntegerOptions& options, IntegerText& text, char16_t* output, int32_t capacity,
                 int32_t* length) {
  const int64_t blanks = std::max<int64_t>(options.width - text.numberLength(), 0);
  (options.left ? text.rightBlanks : text.leftBlanks) = blanks;
  return writeIntegerText(text, true, output, capacity, length);
}

// A number with nothing but zeros, a minus sign and blanks in front, which most calls ask for. False if there is more
// to it or too little room.
[[gnu::always_inline]] inline bool formatPlain(uint64_t magnitude, bool negative, int32_t width, int32_t precision,
                                               uint32_t flags, char16_t* output, int32_t capacity, int32_t* length) {
  constexpr uint32_t more =
      FMT_GROUP | FMT_PLUS | FMT_SPACE | FMT_ZERO | FMT_LEFT | FMT_HEX | FMT_HEX_UPPER | FMT_OCTAL;
  if ((flags & more) != 0 || width < 0 || precision > capacity) return false;
  const int32_t digits = countDigits(magnitude);
  const int32_t zeros = std::max((precision < 0 ? defaultPrecision : precision) - digits, 0);
  const int32_t number = zeros + digits + (negative ? 1 : 0);
  const int32_t blanks = std::max(width - number, 0);
  if (blanks + number + std::max(leastIntegerRoom - digits, 0) > capacity) return false;
  if (blanks > 0) fillUnits(output, blanks, u' ');
  char16_t* at = output + blanks;
  if (negative) *at++ = u'-';
  if (zeros > 0) fillUnits(at, zeros, u'0');
  writeInteger(at + zeros, magnitude);
  *length = blanks + number;
  fillUnits(output + *length, capacity - *length, u'\0');
  return true;
}

IntegerOptions readOptions(int32_t width, int32_t precision, uint32_t flags) {
  return {absoluteWidth(width), precision < 0 ? defaultPrecision : precision, flags,
          width < 0 || (flags & FMT_LEFT) != 0};
}

// Whether an output is too narrow from the start: nothing is written then.
bool isTooNarrow(int32_t width, const IntegerOptions& options, int32_t capacity) {
  return capacity < options.precision || capacity < width;
}

// Apart from its callers, whose usual way is short.
[[gnu::noinline]] NlsStatus formatSigned(const LocaleNumber& locale, int64_t value, int32_t width, int32_t precision,
                                         uint32_t flags, char16_t* output, int32_t capacity, int32_t* length) {
  const IntegerOptions options = readOptions(width, precision, flags);
  *length = 0;
  if (isTooNarrow(width, options, capacity)) return nlsFieldTooNarrow;
  const bool negative = value < 0;
  const uint64_t magnitude = magnitudeOf(value);
  IntegerText text;
  takeDigits(locale, magnitude, options, decimal, text);
  const bool sign = negative || options.has(FMT_PLUS | FMT_SPACE);
  fillZeros(magnitude, options, sign ? 1 : 0, text);
  if (sign) text.prefix[text.prefixLength++] = negative ? u'-' : options.has(FMT_PLUS) ? u'+' : u' ';
  return finish(options, text, output, capacity, length);
}

// Likewise.
[[gnu::noinline]] NlsStatus formatUnsigned(const LocaleNumber& locale, uint64_t value, int32_t width, int32_t precision,
                                           uint32_t flags, char16_t* output, int32_t capacity, int32_t* length) {
  const IntegerOptions options = readOptions(width, precision, flags);
  *length = 0;
  if (isTooNarrow(width, options, capacity)) return nlsFieldTooNarrow;
  const Base base = chooseBase(options);
  IntegerText text;
  takeDigits(locale, value, options, base, text);
  // Two places are written in front of the zeros, but only one is left to them.
  fillZeros(value, options, options.has(FMT_ALT_HEX) ? 1 : 0, text);
  if (base.bits == 4 && options.has(FMT_ALT_HEX)) {
    text.prefix[text.prefixLength++] = u'0';
    text.prefix[text.prefixLength++] = options.has(FMT_HEX) ? u'x' : u'X';
  }
  if (base.bits == 3 && options.has(FMT_ALT_OCTAL) && text.numberLength() < options.width) ++text.zeros;
  return finish(options, text, output, capacity, length);
}

}  // namespace

NlsStatus formatInt32(const LocaleNumber& locale, int32_t value, int32_t width, int32_t precision, uint32_t flags,
                      char16_t* output, int32_t capacity, int32_t* length) {
  if (formatPlain(magnitudeOf(int64_t{value}), value < 0, width, precision, flags, output, capacity, length)) return 0;
  return formatSigned(locale, value, width, precision, flags, output, capacity, length);
}

NlsStatus formatInt64(const LocaleNumber& locale, int64_t value, int32_t width, int32_t precision, uint32_t flags,
                      char16_t* output, int32_t capacity, int32_t* length) {
  if (formatPlain(magnitudeOf(value), value < 0, width, precision, flags, output, capacity, length)) return 0;
  return formatSigned(locale, value, width, precision, flags, output, capacity, length);
}

NlsStatus formatUInt32(const LocaleNumber& locale, uint32_t value, int32_t width, int32_t precision, uint32_t flags,
                       char16_t* output, int32_t capacity, int32_t* length) {
  if (formatPlain(value, false, width, precision, flags, output, capacity, length)) return 0;
  return formatUnsigned(locale, value, width, precision, flags, output, capacity, length);
}

NlsStatus formatUInt64(const LocaleNumber& locale, uint64_t value, int32_t width, int32_t precision, uint32_t flags,
                       char16_t* output, int32_t capacity, int32_t* length) {
  if (formatPlain(value, false, width, precision, flags, output, capacity, length)) return 0;
  return formatUnsigned(locale, value, width, precision, flags, output, capacity, length);
}

}  // namespace veldnls
