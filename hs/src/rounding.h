#pragma once

#include <cstdint>

namespace veldnls::hs {

// The smallest multiple of `multiple` that is not below `size`. In 64 bits, so that sums of 32-bit sizes don't wrap.
constexpr uint64_t roundUp(uint64_t size, uint64_t multiple) { return (size + multiple - 1) / multiple * multiple; }

}  // namespace veldnls::hs
