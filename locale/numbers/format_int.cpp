#include <type_traits>

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

template <class Integer>
uint64_t magnitudeOf(Integer value) {
  return value < 0 ? -static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
}

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

IntegerOptions readOptions(int32_t width, int32_t precision, uint32_t flags) {
  return {absoluteWidth(width), precision < 0 ? defaultPrecision : precision, flags,
          width < 0 || (flags & FMT_LEFT) != 0};
}

// Whether an output is too narrow from the start: nothing is written then.
bool isTooNarrow(int32_t width, const IntegerOptions& options, int32_t capacity) {
  return capacity < options.precision || capacity < width;
}

NlsStatus formatSigned(const LocaleNumber& locale, int64_t value, int32_t width, int32_t precision, uint32_t flags,
                       char16_t* output, int32_t capacity, int32_t* length) {
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

NlsStatus formatUnsigned(const LocaleNumber& locale, uint64_t value, int32_t width, int32_t precision, uint32_t flags,
                         char16_t* output, int32_t capacity, int32_t* length) {
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

// Places a number with no more than zeros, a minus sign and blanks in front. `write(end)` writes its digits, `count`
// units in front of its end. Neither capacity nor width, which is at most the capacity, are above fewUnits; the number,
// without blanks, has room.
template <class Write>
[[gnu::always_inline]] inline NlsStatus placePlain(int32_t count, int32_t least, bool negative, int32_t width,
                                                   char16_t* output, int32_t capacity, int32_t* length, Write write) {
  // All of the output is filled, whatever the number's length, so that the way through here is the same for all.
  if (width > 0) fillFewUnits(output, width, u' ');
  fillFewUnits(output + width, capacity - width, u'\0');
  const int32_t number = std::max(count, least) + (negative ? 1 : 0);
  const int32_t total = std::max(number, width);
  *length = total;
  char16_t* const end = output + total;
  // The first digit of a number that isn't negative overwrites the sign: whether there is one, no branch could
  // foretell.
  if (number > 0) end[-number] = u'-';
  if (least > 0) fillFewUnits(end - least, least, u'0');
  write(end);
  return 0;
}

// How many separators stand between the thousands of a number below 10^20.
constexpr int32_t countThousandsSeparators(int32_t digits) { return digits * 326 >> 10; }
static_assert([] {
  for (int32_t digits = 1; digits <= 20; ++digits) {
    if (countThousandsSeparators(digits) != (digits - 1) / 3) return false;
  }
  return countThousandsSeparators(0) == 0;
}());

constexpr uint32_t notPlain = FMT_PLUS | FMT_SPACE | FMT_ZERO | FMT_LEFT | FMT_HEX | FMT_HEX_UPPER | FMT_OCTAL;

// Whether placePlain can do it if the number has room.
inline bool isPlain(uint32_t flags, int32_t width, int32_t capacity) {
  // A negative width is above any capacity, and a negative capacity below any number.
  return (flags & notPlain) == 0 && capacity <= fewUnits &&
         static_cast<uint32_t>(width) <= static_cast<uint32_t>(capacity);
}

// Whether a precision asks for more digits than a value has anyhow; true for any above 0.
template <class Integer>
bool needsZeros(Integer value, int32_t precision) {
  constexpr uint64_t leastOfDefault = integerPowersOfTen[defaultPrecision - 1];
  return precision != 0 && (precision > 0 || magnitudeOf(value) < leastOfDefault);
}

// What most calls ask for stands in functions of their own, which need few registers and no other function.
template <class Integer>
[[gnu::noinline]] NlsStatus formatOther(const LocaleNumber& locale, Integer value, int32_t width, int32_t precision,
                                        uint32_t flags, char16_t* output, int32_t capacity, int32_t* length) {
  capacity = std::max(capacity, 0);
  if constexpr (std::is_signed_v<Integer>) {
    return formatSigned(locale, value, width, precision, flags, output, capacity, length);
  } else {
    return formatUnsigned(locale, value, width, precision, flags, output, capacity, length);
  }
}

template <bool grouped, bool withZeros, class Integer>
[[gnu::always_inline]] inline NlsStatus formatPlain(const LocaleNumber& locale, Integer value, int32_t width,
                                                    int32_t precision, uint32_t flags, char16_t* output,
                                                    int32_t capacity, int32_t* length) {
  const uint64_t magnitude = magnitudeOf(value);
  const int32_t digits = countDigits(magnitude);
  const int32_t count = digits + (grouped ? countThousandsSeparators(digits) : 0);
  const int32_t least = !withZeros ? 0 : precision < 0 ? defaultPrecision : precision;
  if (std::max(count, least) + (value < 0 ? 1 : 0) > capacity) {
    return formatOther(locale, value, width, precision, flags, output, capacity, length);
  }
  return placePlain(count, least, value < 0, width, output, capacity, length, [&](char16_t* end) {
    if constexpr (grouped) {
      writeThousandsBefore(end, magnitude, locale.groupSeparator);
    } else {
      writeIntegerBefore(end, magnitude);
    }
  });
}

// With zeros in front, or more than fewUnits of room.
template <bool grouped, class Integer>
[[gnu::noinline]] NlsStatus formatWithMore(const LocaleNumber& locale, Integer value, int32_t width, int32_t precision,
                                           uint32_t flags, char16_t* output, int32_t capacity, int32_t* length) {
  const int32_t few = std::min(capacity, fewUnits);
  if (!isPlain(flags, width, few) || precision >= few) {
    return formatOther(locale, value, width, precision, flags, output, capacity, length);
  }
  // So many units have room for any such number: what lies behind them stays empty.
  if (capacity > few) std::fill_n(output + few, capacity - few, u'\0');
  return formatPlain<grouped, true>(locale, value, width, precision, flags, output, few, length);
}

template <class Integer>
[[gnu::always_inline]] inline NlsStatus formatGrouped(const LocaleNumber& locale, Integer value, int32_t width,
                                                      int32_t precision, uint32_t flags, char16_t* output,
                                                      int32_t capacity, int32_t* length) {
  if (!groupsThousands(locale)) {
    return formatOther(locale, value, width, precision, flags, output, capacity, length);
  }
  if (needsZeros(value, precision) || !isPlain(flags, width, capacity)) {
    return formatWithMore<true>(locale, value, width, precision, flags, output, capacity, length);
  }
  return formatPlain<true, false>(locale, value, width, precision, flags, output, capacity, length);
}

template <class Integer>
[[gnu::always_inline]] inline NlsStatus format(const LocaleNumber& locale, Integer value, int32_t width,
                                               int32_t precision, uint32_t flags, char16_t* output, int32_t capacity,
                                               int32_t* length) {
  if ((flags & FMT_GROUP) != 0) {
    return formatGrouped(locale, value, width, precision, flags, output, capacity, length);
  }
  if (needsZeros(value, precision) || !isPlain(flags, width, capacity)) {
    return formatWithMore<false>(locale, value, width, precision, flags, output, capacity, length);
  }
  return formatPlain<false, false>(locale, value, width, precision, flags, output, capacity, length);
}

}  // namespace

NlsStatus formatInt32(const LocaleNumber& locale, int32_t value, int32_t width, int32_t precision, uint32_t flags,
                      char16_t* output, int32_t capacity, int32_t* length) {
  return format(locale, value, width, precision, flags, output, capacity, length);
}

NlsStatus formatInt64(const LocaleNumber& locale, int64_t value, int32_t width, int32_t precision, uint32_t flags,
                      char16_t* output, int32_t capacity, int32_t* length) {
  return format(locale, value, width, precision, flags, output, capacity, length);
}

NlsStatus formatUInt32(const LocaleNumber& locale, uint32_t value, int32_t width, int32_t precision, uint32_t flags,
                       char16_t* output, int32_t capacity, int32_t* length) {
  return format(locale, value, width, precision, flags, output, capacity, length);
}

NlsStatus formatUInt64(const LocaleNumber& locale, uint64_t value, int32_t width, int32_t precision, uint32_t flags,
                       char16_t* output, int32_t capacity, int32_t* length) {
  return format(locale, value, width, precision, flags, output, capacity, length);
}

}  // namespace veldnls
