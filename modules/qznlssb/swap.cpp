#include "modules/qznlssb/swap.h"

#include <cstddef>
#include <cstring>

namespace veldnls {

namespace {

uint16_t reversed(uint16_t unit) { return static_cast<uint16_t>(unit << 8 | unit >> 8); }

uint32_t reversed(uint32_t unit) {
  return unit << 24 | (unit & 0x0000FF00) << 8 | (unit & 0x00FF0000) >> 8 | unit >> 24;
}

template <class Unit>
void swapUnits(const uint8_t* input, uint32_t length, uint8_t* output) {
  size_t at = 0;
  for (; length - at >= sizeof(Unit); at += sizeof(Unit)) {
    Unit unit;
    std::memcpy(&unit, input + at, sizeof unit);
    unit = reversed(unit);
    std::memcpy(output + at, &unit, sizeof unit);
  }
  for (; at < length; ++at) output[at] = input[at];
}

}  // namespace

void swapUtf16(const uint8_t* input, uint32_t length, uint8_t* output) { swapUnits<uint16_t>(input, length, output); }

void swapUtf32(const uint8_t* input, uint32_t length, uint8_t* output) { swapUnits<uint32_t>(input, length, output); }

}  // namespace veldnls
