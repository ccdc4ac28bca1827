#include <algorithm>
#include <vector>

#include "locale/numbers_oracle.h"
#include "veldnls/number_flags.h"
#include "veldnls/status.h"

namespace oracle {
namespace {

// A text from right to left, as it is made, and the end of all integer formats.
struct Reversed {
  std::u16string units;

  void pad(char16_t unit, int length) {
    while (static_cast<int>(units.size()) < length) units += unit;
  }
  Result finish(int width, bool left, int capacity) {
    if (!left) pad(u' ', width);
    const auto room = static_cast<size_t>(capacity);
    // Only what has a place is turned around.
    std::reverse(units.begin(), units.begin() + static_cast<ptrdiff_t>(std::min(units.size(), room)));
    if (left) pad(u' ', width);
    Result result{0, static_cast<int32_t>(units.size()), std::u16string(room, u'\0')};
    if (units.size() > room) result.status = nlsFieldTooNarrow;
    std::copy_n(units.begin(), std::min(units.size(), room), result.units.begin());
    return result;
  }
};

std::u16string digitsOf(const Signs& signs, uint64_t value, uint32_t base, bool upper, bool group) {
  std::vector<int> sizes;
  for (const char16_t unit : signs.grouping) {
    if (!group) break;
    if (unit >= u'0' && unit <= u'9') sizes.push_back(unit - u'0');
    if (unit == u'-') {
      sizes.push_back(-1);
      break;
    }
  }
  if (sizes.empty()) sizes.push_back(-1);
  const std::string letters = upper ? "0123456789ABCDEF" : "0123456789abcdef";
  std::u16string units;
  size_t current = 0;
  int since = 0;
  for (; value != 0; value /= base) {
    if (sizes[current] > 0 && since != 0 && since % sizes[current] == 0) {
      units += signs.separator;
      since = 0;
      if (current + 1 < sizes.size()) ++current;
    }
    units += static_cast<char16_t>(letters[value % base]);
    ++since;
  }
  return units;
}

struct Options {
  int width;
  int precision;
  bool left;
};

}  // namespace

Result formatSigned(const Signs& signs, int64_t value, int32_t width, int32_t precision, uint32_t flags,
                    int32_t capacity) {
  const Options options{std::abs(width), precision < 0 ? 6 : precision, width < 0 || (flags & FMT_LEFT) != 0};
  if (capacity < options.precision || capacity < width) {
    return {nlsFieldTooNarrow, 0, std::u16string(static_cast<size_t>(capacity), untouched)};
  }
  const uint64_t magnitude = value < 0 ? uint64_t{0} - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
  Reversed text{digitsOf(signs, magnitude, 10, false, (flags & FMT_GROUP) != 0)};
  text.pad(u'0', options.precision);
  const bool sign = value < 0 || (flags & (FMT_PLUS | FMT_SPACE)) != 0;
  if ((flags & FMT_ZERO) != 0 && !options.left && options.precision == 0 && value != 0) {
    text.pad(u'0', sign ? options.width - 1 : options.width);
  }
  if (value < 0) {
    text.units += u'-';
  } else if ((flags & FMT_PLUS) != 0) {
    text.units += u'+';
  } else if ((flags & FMT_SPACE) != 0) {
    text.units += u' ';
  }
  return text.finish(options.width, options.left, capacity);
}

Result formatUnsigned(const Signs& signs, uint64_t value, int32_t width, int32_t precision, uint32_t flags,
                      int32_t capacity) {
  const Options options{std::abs(width), precision < 0 ? 6 : precision, width < 0 || (flags & FMT_LEFT) != 0};
  if (capacity < options.precision || capacity < width) {
    return {nlsFieldTooNarrow, 0, std::u16string(static_cast<size_t>(capacity), untouched)};
  }
  const bool lower = (flags & FMT_HEX) != 0;
  const bool hex = lower || (flags & FMT_HEX_UPPER) != 0;
  const bool octal = !hex && (flags & FMT_OCTAL) != 0;
  const uint32_t base = hex ? 16 : octal ? 8 : 10;
  Reversed text{digitsOf(signs, value, base, !lower, base == 10 && (flags & FMT_GROUP) != 0)};
  text.pad(u'0', options.precision);
  if ((flags & FMT_ZERO) != 0 && !options.left && options.precision == 0 && value != 0) {
    text.pad(u'0', (flags & FMT_ALT_HEX) != 0 ? options.width - 1 : options.width);
  }
  if (hex && (flags & FMT_ALT_HEX) != 0) text.units += lower ? u"x0" : u"X0";
  if (octal && (flags & FMT_ALT_OCTAL) != 0 && static_cast<int>(text.units.size()) < options.width) text.units += u'0';
  return text.finish(options.width, options.left, capacity);
}

}  // namespace oracle
