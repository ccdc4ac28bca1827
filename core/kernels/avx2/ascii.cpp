#include "core/kernels/avx2/functions.h"
#include "core/kernels/avx2/lanes.h"
#include "core/kernels/tiers.h"

namespace veldnls::avx2 {

using std::endian;

// Each goes on item by item from the block that isn't all ASCII, or isn't whole.

size_t asciiRun(const uint8_t* in, size_t count) {
  size_t i = 0;
  while (i + blockBytes <= count && _mm256_movemask_epi8(load(in + i)) == 0) i += blockBytes;
  return i + scalarKernels.asciiRun(in + i, count - i);
}

template <endian order>
size_t asciiRun16(const uint8_t* in, size_t count) {
  size_t i = 0;
  while (i + blockUnits16 <= count && allAscii16(loadUnits16<order>(in + 2 * i))) i += blockUnits16;
  return i + scalarKernels.asciiRun16.of<order>()(in + 2 * i, count - i);
}

size_t widenAscii16(const uint8_t* in, uint8_t* out, size_t count) {
  size_t i = 0;
  for (; i + blockBytes <= count; i += blockBytes) {
    const __m256i bytes = load(in + i);
    if (_mm256_movemask_epi8(bytes) != 0) break;
    putWide16(out + 2 * i, bytes);
  }
  return i + scalarKernels.widenAscii16(in + i, out + 2 * i, count - i);
}

size_t widenAscii32(const uint8_t* in, uint8_t* out, size_t count) {
  size_t i = 0;
  for (; i + blockBytes <= count && _mm256_movemask_epi8(load(in + i)) == 0; i += blockBytes) {
    putWide32(out + 4 * i, in + i);
  }
  return i + scalarKernels.widenAscii32(in + i, out + 4 * i, count - i);
}

template <endian order>
size_t narrowAscii16(const uint8_t* in, uint8_t* out, size_t count) {
  size_t i = 0;
  for (; i + blockUnits16 <= count; i += blockUnits16) {
    const __m256i units = loadUnits16<order>(in + 2 * i);
    if (!allAscii16(units)) break;
    store16(out + i, narrowed16(units));
  }
  return i + scalarKernels.narrowAscii16.of<order>()(in + 2 * i, out + i, count - i);
}

template <endian order>
size_t narrowAscii32(const uint8_t* in, uint8_t* out, size_t count) {
  size_t i = 0;
  for (; i + blockUnits32 <= count; i += blockUnits32) {
    const __m256i units = loadUnits32<order>(in + 4 * i);
    if (!allAscii32(units)) break;
    store8(out + i, narrowed32(units));
  }
  return i + scalarKernels.narrowAscii32.of<order>()(in + 4 * i, out + i, count - i);
}

template PrefixKernel asciiRun16<endian::little>;
template PrefixKernel asciiRun16<endian::big>;
template ItemKernel narrowAscii16<endian::little>;
template ItemKernel narrowAscii16<endian::big>;
template ItemKernel narrowAscii32<endian::little>;
template ItemKernel narrowAscii32<endian::big>;

}  // namespace veldnls::avx2
