// Looks through Unicode text for what the library's stages pass on or change without a word.
#pragma once

#include <optional>

#include "pipeline.h"
#include "unwritable.h"

namespace veld {

enum class ByteOrder { little, big };

inline constexpr size_t utf16Unit = 2;
inline constexpr size_t utf32Unit = 4;

// The order in which an encoding of class 2 or 3 has its bytes.
ByteOrder byteOrderOf(CEI cei);

// The unit of `size` bytes at a place of a text that has so many there.
uint32_t unitAt(Bytes text, size_t place, size_t size, ByteOrder order);
bool isHighSurrogate(uint32_t unit);
bool isLowSurrogate(uint32_t unit);

// All return places in the text, counted in bytes.

// Finds in utf-8 what a target takes as another character: those of `unwritable`, and what lies in plane 16 from a
// second byte of `trail` on: 80 finds the whole plane, 90 what lies beyond U+10FFFF. All calls take the same
// `unwritable`.
class Utf8Scan {
 public:
  Utf8Scan() = default;
  Utf8Scan(Unwritable& unwritable, uint8_t trail);
  std::optional<size_t> find(Bytes text, Unwritable& unwritable);
  // The text without a part of a character at its end that can't be judged before more follows.
  Bytes judgeable(Bytes text) const;

 private:
  bool isSuspect(uint8_t lead, Unwritable& unwritable);
  bool isLost(Bytes text, Unwritable& unwritable) const;

  std::array<bool, 256> suspects_{};  // bytes with which a lost character may begin
  std::array<uint16_t, 256> seen_{};  // how often they came, up to when they are looked at
  uint8_t trail_ = 0;
};

// The first surrogate without its other half, or character of `unwritable`. A high surrogate at the end counts as not
// yet complete.
std::optional<size_t> findLost(Bytes utf16, ByteOrder order, Unwritable& unwritable);
// The first value that is a surrogate, beyond U+10FFFF, or of `unwritable`.
std::optional<size_t> findNoCharacter(Bytes utf32, ByteOrder order, Unwritable& unwritable);

// The text without an end that can't be judged before more follows: the first half of a pair, or two in a row, a part
// of a unit.
Bytes withoutOpenPair(Bytes utf16, ByteOrder order);
Bytes withoutOpenUnit(Bytes utf32);

}  // namespace veld
