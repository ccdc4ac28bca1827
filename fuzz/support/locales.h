// Locales of the targets' object, and calls with texts of 16-bit units at guard pages.
#pragma once

#include <algorithm>
#include <string>

#include "fuzz/support/area.h"
#include "fuzz/support/object.h"
#include "veldnls/qzlocale.h"

namespace fuzz {

// One of all locales, chosen by a byte. They last as long as the program and stay as they are.
QZLocale* chooseLocale(Input& input);

// A locale that targets may change, with the data of another. There is one; the next call fills it anew.
QZLocale* changeableLocale(const QZLocale* like);

// Units, one for each byte of ASCII; 0xFF stands in front of any other unit, and a byte between them for the unit of
// that number in `others`.
std::u16string readUnits(Input& input, size_t longest, std::u16string_view others = {});

// What a record holds of a text, at most 60 units.
NlsText60 counted(std::u16string_view text);
std::u16string_view viewOf(const NlsText60& text);

inline int32_t lengthOf(std::u16string_view text) { return static_cast<int32_t>(text.size()); }

// The text in memory that ends, or begins, at a guard page. There is one such text at a time, and a second one.
const char16_t* placeText(std::u16string_view text, At at);
const char16_t* placeSecondText(std::u16string_view text, At at);

// What a formatter gave: all units of the output, of which those that it didn't write are `untouchedUnit`.
inline constexpr char16_t untouchedUnit = u'\xE000';
inline constexpr int32_t untouchedLength = -77;
inline constexpr int32_t mostUnits = 1200;

struct Written {
  NlsStatus status;
  int32_t length;
  std::u16string units;

  bool operator==(const Written&) const = default;
};

// Calls `format(output, capacity, &length)` with an output at a guard page, at most `mostUnits` long.
template <class Format>
Written writtenAt(At at, int32_t capacity, Format format) {
  static Area area(4096);
  const Room room = area.place(static_cast<size_t>(capacity) * sizeof(char16_t), at);
  std::ranges::fill(Area::beside(room, at), canary);
  auto* output = reinterpret_cast<char16_t*>(room.data());
  std::fill_n(output, capacity, untouchedUnit);
  Written written{0, untouchedLength, {}};
  written.status = format(output, capacity, &written.length);
  require(isUntouched(Area::beside(room, at)), "a unit is written outside of the output");
  written.units.assign(output, static_cast<size_t>(capacity));
  return written;
}

// The same at both ends, with one answer.
template <class Format>
Written written(int32_t capacity, Format format) {
  const Written atEnd = writtenAt(At::end, capacity, format);
  require(writtenAt(At::start, capacity, format) == atEnd, "the answer depends on where the output lies");
  return atEnd;
}

}  // namespace fuzz
