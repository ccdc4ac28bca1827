// Byte order of units turned around.
#pragma once

#include <cstddef>
#include <cstdint>

namespace veldnls {

// Swaps the bytes of each whole unit of `length` bytes. The ranges may overlap at any distance; a rest below a unit is
// neither read nor written.
void swapUnits16(uint8_t* output, const uint8_t* input, size_t length);
void swapUnits32(uint8_t* output, const uint8_t* input, size_t length);

}  // namespace veldnls
