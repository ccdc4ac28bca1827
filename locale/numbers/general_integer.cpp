#include "locale/numbers/general_integer.h"

#include "locale/numbers/grouping.h"
#include "locale/numbers/integer_frame.h"
#include "locale/numbers/integer_text.h"

namespace veldnls {
namespace {

struct Base {
  int32_t bits;  // of a digit; 0 for decimal
  const char16_t* letters;
};

Base chooseBase(uint32_t flags) {
  constexpr const char16_t* lower = u"0123456789abcdef";
  if ((flags & FMT_HEX) != 0) return {4, lower};
  if ((flags & FMT_HEX_UPPER) != 0) return {4, u"0123456789ABCDEF"};
  return {(flags & FMT_OCTAL) != 0 ? 3 : 0, lower};
}

// The digits of a value in front of `end`; none for zero. Returns their start.
char16_t* writeInBase(uint64_t value, const Base& base, char16_t* end) {
  for (; value != 0; value >>= base.bits) *--end = base.letters[value & ((uint64_t{1} << base.bits) - 1)];
  return end;
}

char16_t* writeDecimal(uint64_t value, GroupSizes sizes, char16_t separator, char16_t* end) {
  for (int32_t count = 0; value != 0; value /= 10, ++count) {
    if (sizes.current() > 0 && count == sizes.current()) {
      *--end = separator;
      count = 0;
      sizes.next();
    }
    *--end = digitUnit(static_cast<uint32_t>(value % 10));
  }
  return end;
}

// Digits and separators in front of `end`; returns their start.
template <class Integer>
const char16_t* writeMagnitude(const LocaleNumber& locale, Integer value, uint32_t flags, const Base& base,
                               char16_t* end) {
  const uint64_t magnitude = magnitudeOfInteger(value);
  if (base.bits != 0) return writeInBase(magnitude, base, end);
  const GroupSizes sizes = (flags & FMT_GROUP) != 0 ? GroupSizes(locale) : GroupSizes();
  return writeDecimal(magnitude, sizes, locale.groupSeparator, end);
}

template <class Integer>
NlsStatus format(const LocaleNumber& locale, Integer value, int32_t width, int32_t precision, uint32_t flags,
                 char16_t* output, int32_t capacity, int32_t* length) {
  constexpr bool hasBases = std::is_unsigned_v<Integer>;
  const IntegerFrame frame = readFrame(value, width, precision, flags);
  capacity = std::max(capacity, 0);
  *length = 0;
  // Nothing is written then.
  if (capacity < frame.precision || capacity < width) return nlsFieldTooNarrow;
  const Base base = hasBases ? chooseBase(flags) : Base{};
  IntegerText text;
  char16_t digits[IntegerText::maxDigits];
  const char16_t* start = writeMagnitude(locale, value, flags, base, std::end(digits));
  text.digitCount = static_cast<int32_t>(std::end(digits) - start);
  std::copy_n(start, text.digitCount, text.digits);
  const bool prefix = hasBases && (flags & FMT_ALT_HEX) != 0;
  // A prefix takes two places in front of the zeros, but only one is left to it, in other bases as well.
  const int32_t reserved = frame.signCount + (prefix ? 1 : 0);
  const int32_t least = frame.filling == u'0' ? frame.width - reserved : frame.precision;
  text.zeros = std::max(least - text.digitCount, 0);
  if (frame.signCount > 0) text.prefix[text.prefixLength++] = frame.sign;
  if (base.bits == 4 && prefix) {
    text.prefix[text.prefixLength++] = u'0';
    text.prefix[text.prefixLength++] = (flags & FMT_HEX) != 0 ? u'x' : u'X';
  }
  if (base.bits == 3 && (flags & FMT_ALT_OCTAL) != 0 && text.numberLength() < frame.width) ++text.zeros;
  text.fillWithBlanks(frame.width, frame.left);
  return writeIntegerText(text, true, output, capacity, length);
}

}  // namespace

NlsStatus formatGeneral(const LocaleNumber& locale, int64_t value, int32_t width, int32_t precision, uint32_t flags,
                        char16_t* output, int32_t capacity, int32_t* length) {
  return format(locale, value, width, precision, flags, output, capacity, length);
}

NlsStatus formatGeneral(const LocaleNumber& locale, uint64_t value, int32_t width, int32_t precision, uint32_t flags,
                        char16_t* output, int32_t capacity, int32_t* length) {
  return format(locale, value, width, precision, flags, output, capacity, length);
}

}  // namespace veldnls
