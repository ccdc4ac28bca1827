// One UTF-8 sequence, for kernels that go character by character. Each unit that includes this has its own copy of the
// functions, since units are compiled for different processors.
#pragma once

#include <cstddef>
#include <cstdint>

namespace veldnls {

namespace {

inline bool isTrail(uint8_t byte) { return (byte & 0xC0) == 0x80; }

// Length of the valid sequence at `at`, of which `available` bytes (at least 1) may be read; 0 if there is none.
inline size_t validSequence(const uint8_t* at, size_t available) {
  const uint8_t lead = at[0];
  if (lead < 0x80) return 1;
  if (lead < 0xC2 || lead > 0xF4) return 0;
  if (lead < 0xE0) return available >= 2 && isTrail(at[1]) ? 2 : 0;
  if (lead < 0xF0) {
    if (available < 3 || !isTrail(at[1]) || !isTrail(at[2])) return 0;
    return (lead == 0xE0 && at[1] < 0xA0) || (lead == 0xED && at[1] > 0x9F) ? 0 : 3;
  }
  if (available < 4 || !isTrail(at[1]) || !isTrail(at[2]) || !isTrail(at[3])) return 0;
  return lead == 0xF0 && at[1] < 0x90 ? 0 : 4;
}

inline uint32_t sequenceValue(const uint8_t* at, size_t length) {
  switch (length) {
    case 1:
      return at[0];
    case 2:
      return (at[0] & 0x1Fu) << 6 | (at[1] & 0x3Fu);
    case 3:
      return (at[0] & 0x0Fu) << 12 | (at[1] & 0x3Fu) << 6 | (at[2] & 0x3Fu);
    default:
      return (at[0] & 0x07u) << 18 | (at[1] & 0x3Fu) << 12 | (at[2] & 0x3Fu) << 6 | (at[3] & 0x3Fu);
  }
}

// Values up to 0x1FFFFF.
inline size_t sequenceLength(uint32_t value) { return value < 0x80 ? 1 : value < 0x800 ? 2 : value < 0x10000 ? 3 : 4; }

inline void putSequence(uint8_t* at, uint32_t value, size_t length) {
  switch (length) {
    case 1:
      at[0] = static_cast<uint8_t>(value);
      return;
    case 2:
      at[0] = static_cast<uint8_t>(0xC0 | value >> 6);
      break;
    case 3:
      at[0] = static_cast<uint8_t>(0xE0 | value >> 12);
      at[1] = static_cast<uint8_t>(0x80 | (value >> 6 & 0x3F));
      break;
    default:
      at[0] = static_cast<uint8_t>(0xF0 | value >> 18);
      at[1] = static_cast<uint8_t>(0x80 | (value >> 12 & 0x3F));
      at[2] = static_cast<uint8_t>(0x80 | (value >> 6 & 0x3F));
      break;
  }
  at[length - 1] = static_cast<uint8_t>(0x80 | (value & 0x3F));
}

}  // namespace

}  // namespace veldnls
