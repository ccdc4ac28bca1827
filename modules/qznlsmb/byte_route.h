// What both directions of single-byte routes share: they map bytes, and only the invariant part of a code page is kept.
#pragma once

#include <cstdint>

namespace veldnls {

// Whether a byte was replaced by the target's blank.
inline bool isReplaced(uint8_t from, uint8_t to, uint32_t padChar) {
  return to == padChar && from != 0x20 && from != 0x40;
}

// The byte that counts as a blank of the input, by the target's blank and what the map makes of either.
inline uint8_t inputBlank(const uint8_t* map, uint32_t padChar) {
  if (padChar == 0x40) return map[0x40] == padChar ? 0x40 : 0x20;
  return map[0x20] == padChar ? 0x20 : 0x40;
}

}  // namespace veldnls
