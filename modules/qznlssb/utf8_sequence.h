// One UTF-8 sequence: its length by the lead byte, its form, its value.
#pragma once

#include <cstdint>

namespace veldnls {

// Bytes that the lead byte promises behind it, 0 to 5. A byte that is no lead stands alone.
inline uint32_t utf8ExtraBytes(uint8_t lead) {
  if (lead < 0xC0) return 0;
  if (lead < 0xE0) return 1;
  if (lead < 0xF0) return 2;
  if (lead < 0xF8) return 3;
  return lead < 0xFC ? 4 : 5;
}

inline constexpr uint32_t invalidUtf8 = 0xFFFFFFFF;

// Reads a sequence whose first byte isn't ASCII.
uint32_t readLongUtf8(const uint8_t* start, uint32_t available, uint32_t& advance);

// Reads the sequence at `start`, of which `available` bytes (at least 1) may be read; those missing count as no
// continuation. Returns its value, which may be above U+10FFFF, or invalidUtf8, and writes its length to `advance`. An
// invalid sequence ends before its first byte that continues nothing. Surrogates, forms longer than needed and
// sequences of five or six bytes are invalid.
inline uint32_t readUtf8(const uint8_t* start, uint32_t available, uint32_t& advance) {
  if (*start >= 0x80) return readLongUtf8(start, available, advance);
  advance = 1;
  return *start;
}

}  // namespace veldnls
