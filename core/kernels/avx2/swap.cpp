#include "core/kernels/avx2/functions.h"
#include "core/kernels/avx2/lanes.h"
#include "core/kernels/tiers.h"

namespace veldnls::avx2 {

void swap16(const uint8_t* in, uint8_t* out, size_t count) {
  size_t i = 0;
  for (; i + blockUnits16 <= count; i += blockUnits16) store(out + 2 * i, bytesTurnedInUnits16(load(in + 2 * i)));
  scalarKernels.swap16(in + 2 * i, out + 2 * i, count - i);
}

void swap32(const uint8_t* in, uint8_t* out, size_t count) {
  size_t i = 0;
  for (; i + blockUnits32 <= count; i += blockUnits32) store(out + 4 * i, bytesTurnedInUnits32(load(in + 4 * i)));
  scalarKernels.swap32(in + 4 * i, out + 4 * i, count - i);
}

}  // namespace veldnls::avx2
