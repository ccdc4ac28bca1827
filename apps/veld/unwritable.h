// Characters that the library writes to a multi-byte encoding without a word, and that are read there as something
// else.
#pragma once

#include <array>

#include "veldnls/nls.h"

namespace veld {

// Code points below this are written as single bytes, with no value for those that have no place.
inline constexpr char32_t firstBeyondSingleBytes = 0xA0;

struct Unwritable {
  // By code point: written as a byte that begins a character of two bytes or a shift sequence, or that stands for
  // another character.
  std::array<bool, firstBeyondSingleBytes> single{};
  // Characters beyond U+FFFF are written as others: only their low 16 bits are looked up.
  bool beyondBmp = false;

  bool has(char32_t character) const {
    return character < firstBeyondSingleBytes ? single[character] : beyondBmp && character > 0xFFFF;
  }
  bool any() const;
};

// Those of a target; none for encodings that aren't multi-byte.
Unwritable findUnwritable(QZNLS& nls, CEI to);

}  // namespace veld
