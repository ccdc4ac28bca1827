// Code units as bytes in memory, of either byte order and any alignment, and surrogate pairs.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "core/kernels/code_points.h"

namespace veldnls {

inline constexpr uint32_t utf16UnitBytes = 2;
inline constexpr uint32_t utf32UnitBytes = 4;

inline constexpr uint32_t replacementCharacter = 0xFFFD;

template <std::endian order>
inline uint32_t load16(const uint8_t* at) {
  constexpr size_t low = order == std::endian::little ? 0 : 1;
  return uint32_t{at[low]} | uint32_t{at[1 - low]} << 8;
}

template <std::endian order>
inline uint32_t load32(const uint8_t* at) {
  if constexpr (order == std::endian::little) {
    return load16<order>(at) | load16<order>(at + 2) << 16;
  } else {
    return load16<order>(at) << 16 | load16<order>(at + 2);
  }
}

// Units are written little-endian only; a big-endian target is turned around after the run.
inline void store16(uint8_t* at, uint32_t unit) {
  if constexpr (std::endian::native == std::endian::little) {
    const auto bytes = static_cast<uint16_t>(unit);
    std::memcpy(at, &bytes, sizeof bytes);
  } else {
    at[0] = static_cast<uint8_t>(unit);
    at[1] = static_cast<uint8_t>(unit >> 8);
  }
}

inline void store32(uint8_t* at, uint32_t unit) {
  store16(at, unit);
  store16(at + 2, unit >> 16);
}

inline bool isHighSurrogate(uint32_t unit) { return (unit & ~uint32_t{0x3FF}) == 0xD800; }
inline bool isLowSurrogate(uint32_t unit) { return (unit & ~uint32_t{0x3FF}) == 0xDC00; }
inline bool isSurrogate(uint32_t unit) { return (unit & ~uint32_t{0x7FF}) == 0xD800; }

// The code point of two units, by their low ten bits: neither is tested.
inline uint32_t pairValue(uint32_t high, uint32_t low) {
  return firstSupplementary + ((high & 0x3FF) << 10) + (low & 0x3FF);
}

// Writes the two units of a code point of U+10000 and above.
inline void storePair(uint8_t* at, uint32_t value) {
  const uint32_t offset = value - firstSupplementary;
  store16(at, 0xD800 | (offset >> 10 & 0x3FF));
  store16(at + 2, 0xDC00 | (offset & 0x3FF));
}

}  // namespace veldnls
