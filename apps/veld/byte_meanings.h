// What the bytes of a code page stand for.
#pragma once

#include <array>
#include <optional>

#include "veldnls/nls.h"

namespace veld {

inline constexpr size_t byteValues = 256;
inline constexpr char16_t noMeaning = 0xFFFD;

using ByteMeanings = std::array<char16_t, byteValues>;

// By byte, the character of a single-byte encoding, or of a multi-byte one in single-byte mode; noMeaning for bytes
// that are no character by themselves. Of multi-byte encodings these are also the bytes that the library reads as
// blanks though they aren't, and those from 80 on where single bytes are 7-bit. Nothing where there is no table.
std::optional<ByteMeanings> byteMeanings(QZNLS& nls, CEI cei);

}  // namespace veld
