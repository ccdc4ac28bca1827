// Bytes that a text of an encoding may hold outside of double-byte characters.
#pragma once

#include "veldnls/encoding.h"

namespace veldnls {

// 256 bytes, each 1 for a byte that is defined in the encoding and 0 for another; or null.
extern const uint8_t* const validByteMaps[NLS_CEI_COUNT];

}  // namespace veldnls
