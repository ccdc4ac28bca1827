// Reversal of the byte order of wide text.
#pragma once

#include <cstdint>

namespace veldnls {

// Writes each whole unit of `input` with its bytes reversed, and bytes of an incomplete last unit as they are. Input
// and output are the same or don't overlap.
void swapUtf16(const uint8_t* input, uint32_t length, uint8_t* output);
void swapUtf32(const uint8_t* input, uint32_t length, uint8_t* output);

}  // namespace veldnls
