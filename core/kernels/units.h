// Units in memory, for kernels that go unit by unit. Each unit of code that includes this has its own copy of the
// functions, since they are compiled for different processors.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

#include "core/kernels/code_points.h"

namespace veldnls {

namespace {

template <std::endian order>
inline uint32_t unit16(const uint8_t* text, size_t index) {
  const uint8_t* at = text + 2 * index;
  constexpr size_t low = order == std::endian::little ? 0 : 1;
  return at[low] | uint32_t{at[1 - low]} << 8;
}

template <std::endian order>
inline uint32_t unit32(const uint8_t* text, size_t index) {
  const uint32_t first = unit16<order>(text, 2 * index);
  const uint32_t second = unit16<order>(text, 2 * index + 1);
  return order == std::endian::little ? first | second << 16 : first << 16 | second;
}

inline void putUnit16(uint8_t* text, size_t index, uint32_t unit) {
  uint8_t* at = text + 2 * index;
  at[0] = static_cast<uint8_t>(unit);
  at[1] = static_cast<uint8_t>(unit >> 8);
}

inline void putUnit32(uint8_t* text, size_t index, uint32_t unit) {
  putUnit16(text, 2 * index, unit);
  putUnit16(text, 2 * index + 1, unit >> 16);
}

inline bool isHigh(uint32_t unit) { return (unit & 0xFFFFFC00) == 0xD800; }
inline bool isLow(uint32_t unit) { return (unit & 0xFFFFFC00) == 0xDC00; }
inline bool isSurrogateUnit(uint32_t unit) { return (unit & 0xFFFFF800) == 0xD800; }

}  // namespace

}  // namespace veldnls
