#include "locale/numbers/cut_integer.h"
#include "locale/numbers/general_integer.h"
#include "locale/numbers/integer_frame.h"

namespace veldnls {
namespace {

// Digits and separators of any integer.
template <Grouping grouping>
int32_t countUnits(uint64_t value) {
  const int32_t digits = countDigits(value);
  if (grouping == Grouping::none) return digits;
  // A division by three, without a branch for zero.
  return digits + (grouping == Grouping::thousands ? digits * 326 >> 10 : std::max(digits - 2, 0) / 2);
}
static_assert([] {
  for (int32_t digits = 1; digits <= 20; ++digits) {
    if (digits * 326 >> 10 != (digits - 1) / 3) return false;
  }
  return true;
}());

// Writes them in front of `end`, and nothing else.
template <Grouping grouping>
[[gnu::always_inline]] inline void writeBefore(char16_t* end, uint64_t value, char16_t separator) {
  if constexpr (grouping == Grouping::none) {
    writeIntegerBefore(end, value);
  } else if constexpr (grouping == Grouping::thousands) {
    writeThousandsBefore(end, value, separator);
  } else {
    writeLakhsBefore(end, value, separator);
  }
}

// All of an output of at most fewUnits is filled, whatever the number's length, so that the way through here is the
// same for all.
[[gnu::always_inline]] inline void fillOutput(const IntegerFrame& frame, char16_t* output, int32_t capacity) {
  if (frame.width > 0) fillFewUnits(output, frame.width, frame.filling);
  fillFewUnits(output + frame.width, capacity - frame.width, u'\0');
}

// Whether an output has few units, but room for a small integer and what is overwritten behind it; the width, which
// isn't negative, has so too.
inline bool hasCutRoom(int32_t width, int32_t capacity) {
  constexpr uint32_t least = 1 + maxSmallUnits + overwrittenUnits;
  const auto room = static_cast<uint32_t>(capacity);
  return room - least <= fewUnits - least && static_cast<uint32_t>(width) <= room - overwrittenUnits;
}

// Places a number of `count` units that has such room, in an output that fillOutput has filled.
template <Grouping grouping>
[[gnu::always_inline]] inline NlsStatus placeCut(const CutInteger& cut, int32_t count, char16_t separator,
                                                 const IntegerFrame& frame, char16_t* output, int32_t* length) {
  const int32_t total = std::max(count + frame.signCount, frame.width);
  const int32_t start = frame.left ? frame.signCount : total - count;
  *length = total;
  // Where there is no sign, a digit takes its place.
  output[frame.signPlace(start)] = frame.sign;
  const int32_t blocks = blockUnits<grouping> * cut.blockCount;
  char16_t* const end = output + start + count;
  writeSmallInteger<grouping>(output + start, cut.first, count - blocks, separator);
  writeBlocks<grouping>(end - blocks, cut, separator);
  if (frame.left) fillHalfBlock(end, u' ');
  fillHalfBlock(output + total, u'\0');
  return 0;
}

// In an output of more than fewUnits.
template <class Integer>
[[gnu::noinline]] NlsStatus formatWide(const LocaleNumber& locale, Integer value, int32_t width, int32_t precision,
                                       uint32_t flags, char16_t* output, int32_t capacity, int32_t* length);

// The functions below are `framed` for calls that a plainFrame won't do for. For others room has been found.
template <bool framed, class Integer>
[[gnu::always_inline]] inline IntegerFrame makeFrame(Integer value, int32_t width, int32_t precision, uint32_t flags) {
  return framed ? readFrame(value, width, precision, flags) : plainFrame(value, width, precision);
}

// Any decimal integer, in an output of any size.
template <Grouping grouping, bool framed, class Integer>
[[gnu::noinline]] NlsStatus formatAny(const LocaleNumber& locale, Integer value, int32_t width, int32_t precision,
                                      uint32_t flags, char16_t* output, int32_t capacity, int32_t* length) {
  if (capacity > fewUnits) return formatWide(locale, value, width, precision, flags, output, capacity, length);
  const IntegerFrame frame = makeFrame<framed>(value, width, precision, flags);
  const uint64_t magnitude = magnitudeOfInteger(value);
  const int32_t count = countUnits<grouping>(magnitude);
  if (frame.width > capacity || frame.precision >= capacity || count + frame.signCount > capacity) {
    return formatGeneral(locale, value, width, precision, flags, output, capacity, length);
  }
  fillOutput(frame, output, capacity);
  const int32_t number = std::max(count, frame.precision);
  const int32_t total = std::max(number + frame.signCount, frame.width);
  const int32_t start = frame.left ? frame.signCount : total - number;
  *length = total;
  if (number + frame.signCount > 0) output[frame.signPlace(start)] = frame.sign;
  char16_t* const end = output + start + number;
  if (frame.precision > 0) fillFewUnits(end - frame.precision, frame.precision, u'0');
  writeBefore<grouping>(end, magnitude, locale.groupSeparator);
  return 0;
}

template <Grouping grouping, bool framed, class Integer>
[[gnu::noinline]] NlsStatus formatLarge(const LocaleNumber& locale, Integer value, int32_t width, int32_t precision,
                                        uint32_t flags, char16_t* output, int32_t capacity, int32_t* length) {
  const IntegerFrame frame = makeFrame<framed>(value, width, precision, flags);
  if (grouping != Grouping::lakhs && frame.precision <= maxSmallPrecision &&
      (!framed || hasCutRoom(frame.width, capacity))) {
    fillOutput(frame, output, capacity);
    const CutInteger cut = cutInteger(magnitudeOfInteger(value));
    const int32_t count = countUnits<grouping>(cut);
    if (count + frame.signCount <= capacity - overwrittenUnits) {
      return placeCut<grouping>(cut, count, locale.groupSeparator, frame, output, length);
    }
  }
  return formatAny<grouping, framed>(locale, value, width, precision, flags, output, capacity, length);
}

template <Grouping grouping, bool framed, class Integer>
[[gnu::noinline]] NlsStatus formatSmall(const LocaleNumber& locale, Integer value, int32_t width, int32_t precision,
                                        uint32_t flags, char16_t* output, int32_t capacity, int32_t* length) {
  const IntegerFrame frame = makeFrame<framed>(value, width, precision, flags);
  if (frame.precision > maxSmallPrecision || (framed && !hasCutRoom(frame.width, capacity))) {
    return formatAny<grouping, framed>(locale, value, width, precision, flags, output, capacity, length);
  }
  fillOutput(frame, output, capacity);
  const CutInteger cut{static_cast<uint32_t>(magnitudeOfInteger(value)), 0, {}};
  const int32_t count = std::max(countUnits<grouping>(cut), frame.precision);
  // There is no separator among added zeros.
  const char16_t separator = cut.first < 1000 ? u'0' : locale.groupSeparator;
  return placeCut<grouping>(cut, count, separator, frame, output, length);
}

// A small integer without flags and precision is what most calls bring. It is placed here, with few registers and no
// other function.
template <Grouping grouping, class Integer>
[[gnu::always_inline]] inline NlsStatus formatDecimal(const LocaleNumber& locale, Integer value, int32_t width,
                                                      int32_t precision, uint32_t flags, char16_t* output,
                                                      int32_t capacity, int32_t* length) {
  const uint64_t magnitude = magnitudeOfInteger(value);
  const bool small = magnitude < CutInteger::blockLimit;
  if ((flags & frameFlags) != 0 || width < 0) {
    if (!small) return formatLarge<grouping, true>(locale, value, width, precision, flags, output, capacity, length);
    return formatSmall<grouping, true>(locale, value, width, precision, flags, output, capacity, length);
  }
  if (!hasCutRoom(width, capacity)) {
    return formatAny<grouping, false>(locale, value, width, precision, flags, output, capacity, length);
  }
  if (!small) return formatLarge<grouping, false>(locale, value, width, precision, flags, output, capacity, length);
  if (precision != 0) {
    return formatSmall<grouping, false>(locale, value, width, precision, flags, output, capacity, length);
  }
  const IntegerFrame frame = plainFrame(value, width, 0);
  fillOutput(frame, output, capacity);
  const CutInteger cut{static_cast<uint32_t>(magnitude), 0, {}};
  return placeCut<grouping>(cut, countUnits<grouping>(cut), locale.groupSeparator, frame, output, length);
}

// A function for each grouping, so that none saves registers that only another needs.

template <class Integer>
[[gnu::noinline]] NlsStatus formatUngrouped(const LocaleNumber& locale, Integer value, int32_t width, int32_t precision,
                                            uint32_t flags, char16_t* output, int32_t capacity, int32_t* length) {
  return formatDecimal<Grouping::none>(locale, value, width, precision, flags, output, capacity, length);
}

template <class Integer>
[[gnu::noinline]] NlsStatus formatLakhs(const LocaleNumber& locale, Integer value, int32_t width, int32_t precision,
                                        uint32_t flags, char16_t* output, int32_t capacity, int32_t* length) {
  if (groupingOf(locale) != Grouping::lakhs) {
    return formatGeneral(locale, value, width, precision, flags, output, capacity, length);
  }
  return formatDecimal<Grouping::lakhs>(locale, value, width, precision, flags, output, capacity, length);
}

template <class Integer>
[[gnu::noinline]] NlsStatus formatGrouped(const LocaleNumber& locale, Integer value, int32_t width, int32_t precision,
                                          uint32_t flags, char16_t* output, int32_t capacity, int32_t* length) {
  if (groupingOf(locale) != Grouping::thousands) {
    return formatLakhs(locale, value, width, precision, flags, output, capacity, length);
  }
  return formatDecimal<Grouping::thousands>(locale, value, width, precision, flags, output, capacity, length);
}

template <class Integer>
NlsStatus format(const LocaleNumber& locale, Integer value, int32_t width, int32_t precision, uint32_t flags,
                 char16_t* output, int32_t capacity, int32_t* length) {
  if ((flags & FMT_GROUP) == 0) {
    return formatUngrouped(locale, value, width, precision, flags, output, capacity, length);
  }
  return formatGrouped(locale, value, width, precision, flags, output, capacity, length);
}

template <class Integer>
NlsStatus formatWide(const LocaleNumber& locale, Integer value, int32_t width, int32_t precision, uint32_t flags,
                     char16_t* output, int32_t capacity, int32_t* length) {
  // Whatever its digits, a number in such a field needs no more than fewUnits: those behind them stay empty.
  constexpr int32_t most = fewUnits / 2;
  if (precision > most || absoluteWidth(width) > most) {
    return formatGeneral(locale, value, width, precision, flags, output, capacity, length);
  }
  std::fill_n(output + fewUnits, capacity - fewUnits, u'\0');
  return format(locale, value, width, precision, flags, output, fewUnits, length);
}

}  // namespace

NlsStatus formatInt32(const LocaleNumber& locale, int32_t value, int32_t width, int32_t precision, uint32_t flags,
                      char16_t* output, int32_t capacity, int32_t* length) {
  return formatInt64(locale, value, width, precision, flags, output, capacity, length);
}

NlsStatus formatInt64(const LocaleNumber& locale, int64_t value, int32_t width, int32_t precision, uint32_t flags,
                      char16_t* output, int32_t capacity, int32_t* length) {
  return format(locale, value, width, precision, flags, output, capacity, length);
}

NlsStatus formatUInt32(const LocaleNumber& locale, uint32_t value, int32_t width, int32_t precision, uint32_t flags,
                       char16_t* output, int32_t capacity, int32_t* length) {
  return formatUInt64(locale, value, width, precision, flags, output, capacity, length);
}

NlsStatus formatUInt64(const LocaleNumber& locale, uint64_t value, int32_t width, int32_t precision, uint32_t flags,
                       char16_t* output, int32_t capacity, int32_t* length) {
  constexpr uint32_t bases = FMT_HEX | FMT_HEX_UPPER | FMT_OCTAL | FMT_ALT_HEX;
  if ((flags & bases) != 0) {
    return formatGeneral(locale, value, width, precision, flags, output, capacity, length);
  }
  return format(locale, value, width, precision, flags, output, capacity, length);
}

}  // namespace veldnls
