// The records that kernels() chooses from.
#pragma once

#include "core/kernels/kernels.h"

namespace veldnls {

extern const Kernels scalarKernels;
#ifndef VELDNLS_SCALAR_ONLY
extern const Kernels avx2Kernels;
extern const Kernels avx512Kernels;
#endif

}  // namespace veldnls
