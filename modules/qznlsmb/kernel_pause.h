// How long inner loops do without kernels where these get nowhere.
#pragma once

#include <cstddef>

namespace veldnls {

// So many characters a loop does itself before a kernel that took fewer is asked again.
inline constexpr size_t kernelPause = 16;

}  // namespace veldnls
