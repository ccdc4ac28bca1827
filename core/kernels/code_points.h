// Bounds of code points, for all who take units apart.
#pragma once

#include <cstdint>

namespace veldnls {

inline constexpr uint32_t lastCodePoint = 0x10FFFF;
inline constexpr uint32_t firstSupplementary = 0x10000;

}  // namespace veldnls
