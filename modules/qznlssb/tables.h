// Code-page tables of the single-byte encodings, by CEI. Constant and shared.
#pragma once

#include "veldnls/encoding.h"

namespace veldnls {

// 256 UTF-16 values by byte, or null. U+FFFD: the byte is undefined.
extern const char16_t* const byteToUnicodeTables[NLS_CEI_COUNT];

// 256 page addresses by high byte of the UTF-16 value, each null or 256 bytes by low byte; or null. A zero in a page is
// no mapping, but for U+0000.
extern const uint8_t* const* const byteFromUnicodeTables[NLS_CEI_COUNT];

}  // namespace veldnls
