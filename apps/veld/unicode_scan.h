// Looks through Unicode text for what the library's stages pass on or change without a word.
#pragma once

#include <optional>

#include "chain.h"

namespace veld {

enum class ByteOrder { little, big };

// All return places in the text, counted in bytes.

// The first lead byte of plane 16 whose next byte is at least `trail`: 80 finds the whole plane, 90 what lies beyond
// U+10FFFF.
std::optional<size_t> findPlane16(Bytes utf8, uint8_t trail);
// The first surrogate without its other half; a high one at the end counts as not yet complete.
std::optional<size_t> findUnpaired(Bytes utf16, ByteOrder order);
// The first value that is a surrogate or beyond U+10FFFF.
std::optional<size_t> findNoCharacter(Bytes utf32, ByteOrder order);

// The text without an end that can't be judged before more follows: a lead byte of plane 16, the first half of a pair,
// a part of a unit.
Bytes withoutOpenPlane16(Bytes utf8);
Bytes withoutOpenPair(Bytes utf16, ByteOrder order);
Bytes withoutOpenUnit(Bytes utf32);

}  // namespace veld
