#include "core/text/swap.h"

#include <cstring>
#include <functional>

#include "core/kernels/kernels.h"
#include "core/scratch.h"

namespace veldnls {

namespace {

uint16_t reversed(uint16_t unit) { return static_cast<uint16_t>(unit << 8 | unit >> 8); }

uint32_t reversed(uint32_t unit) {
  return unit << 24 | (unit & 0x0000FF00) << 8 | (unit & 0x00FF0000) >> 8 | unit >> 24;
}

// From the last unit down, for an output that starts inside the input: no unit is written on before it is read.
template <class Unit>
void swapDown(uint8_t* output, const uint8_t* input, size_t count) {
  for (size_t i = count * sizeof(Unit); i != 0; i -= sizeof(Unit)) {
    Unit unit;
    std::memcpy(&unit, input + i - sizeof unit, sizeof unit);
    unit = reversed(unit);
    std::memcpy(output + i - sizeof unit, &unit, sizeof unit);
  }
}

template <class Unit>
void swapUnits(uint8_t* output, const uint8_t* input, size_t length, WholeKernel* swapUp) {
  const size_t count = length / sizeof(Unit);
  if (std::less<>{}(input, output) && rangesOverlap(input, length, output, length)) {
    swapDown<Unit>(output, input, count);
  } else {
    swapUp(input, output, count);
  }
}

}  // namespace

void swapUnits16(uint8_t* output, const uint8_t* input, size_t length) {
  swapUnits<uint16_t>(output, input, length, kernels().swap16);
}

void swapUnits32(uint8_t* output, const uint8_t* input, size_t length) {
  swapUnits<uint32_t>(output, input, length, kernels().swap32);
}

}  // namespace veldnls
