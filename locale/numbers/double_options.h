// What a call of formatDouble asks for, once its flags and widths have been read.
#pragma once

#include <algorithm>
#include <limits>

#include "locale/numbers/binary_double.h"
#include "locale/numbers/decimal_text.h"
#include "locale/numbers/formats.h"

namespace veldnls {

inline constexpr int32_t defaultPrecision = 6;

inline int32_t absoluteWidth(int32_t width) {
  constexpr auto limits = std::numeric_limits<int32_t>();
  return width == limits.min() ? limits.max() : width < 0 ? -width : width;
}

struct DoubleOptions {
  int32_t width;  // not negative; 0 for none
  int32_t precision;
  uint32_t flags;
  bool left;
  bool zero;
  bool space;
  bool negative;

  bool has(uint32_t flag) const { return (flags & flag) != 0; }
};

struct Output {
  char16_t* units;
  int32_t capacity;
  int32_t* length;
};

// Shows that a text of `length` units has no room in its field, or the field none in the output.
inline NlsStatus showTooNarrow(int32_t field, int32_t length, const Output& out) {
  *out.length = std::max(field, length);
  fillUnits(out.units, std::min(field, out.capacity), u'*');
  return nlsFieldTooNarrow;
}

// Places a text of `length` units in its field; `write(at)` writes it.
template <class Write>
NlsStatus placeInField(const DoubleOptions& options, int32_t length, const Output& out, Write write) {
  const int32_t field = options.width == 0 ? out.capacity : options.width;
  if (length > out.capacity || field > out.capacity) return showTooNarrow(field, length, out);
  char16_t* at = out.units;
  const int32_t blanks = options.width == 0 ? 0 : field - length;
  if (options.left || options.zero) {
    // The last place of the field stays as it was.
    fillUnits(at + length, blanks - 1, u' ');
  } else {
    fillUnits(at, blanks, u' ');
    at += std::max(blanks, 0);
  }
  write(at);
  *out.length = std::max(length, options.width);
  return 0;
}

}  // namespace veldnls
