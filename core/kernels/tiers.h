// The records that kernels() chooses from.
#pragma once

#include "core/kernels/kernels.h"

namespace veldnls {

extern const Kernels scalarKernels;
#ifndef VELDNLS_SCALAR_ONLY
extern const Kernels avx2Kernels;
#ifndef VELDNLS_NO_AVX512
extern const Kernels avx512Kernels;
#endif
#endif

}  // namespace veldnls
