// The byte permutation between UTF-EBCDIC and its intermediate form I8 (Unicode Technical Report 16).
#pragma once

#include <cstdint>

namespace veldnls {

extern const uint8_t ebcdicToI8[256];
extern const uint8_t i8ToEbcdic[256];

}  // namespace veldnls
