// What a call of an integer formatter asks for, once its flags and widths have been read.
#pragma once

#include <type_traits>

#include "locale/numbers/double_options.h"

namespace veldnls {

struct IntegerFrame {
  int32_t width;      // not negative
  int32_t precision;  // likewise: the fewest digits
  int32_t signCount;  // 0 or 1
  char16_t sign;      // if there is one; any unit otherwise
  char16_t filling;   // of the width: blanks, or zeros behind the sign
  bool left;

  // Where the sign of digits from `start` on belongs.
  int32_t signPlace(int32_t start) const { return filling == u'0' ? 0 : start - signCount; }
};

template <class Integer>
uint64_t magnitudeOfInteger(Integer value) {
  return value < 0 ? -static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
}

inline int32_t readPrecision(int32_t precision) { return precision < 0 ? defaultPrecision : precision; }

// Flags that ask for more than plainFrame tells.
inline constexpr uint32_t frameFlags = FMT_PLUS | FMT_SPACE | FMT_ZERO | FMT_LEFT;

template <class Integer>
[[gnu::always_inline]] inline IntegerFrame readFrame(Integer value, int32_t width, int32_t precision, uint32_t flags) {
  const bool left = width < 0 || (flags & FMT_LEFT) != 0;
  const bool zeros = (flags & FMT_ZERO) != 0 && !left && precision == 0 && value != 0;
  const bool always = std::is_signed_v<Integer> && (flags & (FMT_PLUS | FMT_SPACE)) != 0;
  // A field of zeros has one in the place of its sign.
  const char16_t positive = !always ? u'0' : (flags & FMT_PLUS) != 0 ? u'+' : u' ';
  return {.width = absoluteWidth(width),
          .precision = readPrecision(precision),
          .signCount = (value < 0 ? 1 : 0) | (always ? 1 : 0),
          .sign = value < 0 ? u'-' : positive,
          .filling = zeros ? u'0' : u' ',
          .left = left};
}

// The same for a call without frameFlags, whose width isn't negative.
template <class Integer>
[[gnu::always_inline]] inline IntegerFrame plainFrame(Integer value, int32_t width, int32_t precision) {
  return {.width = width,
          .precision = readPrecision(precision),
          .signCount = value < 0 ? 1 : 0,
          .sign = u'-',
          .filling = u' ',
          .left = false};
}

}  // namespace veldnls
