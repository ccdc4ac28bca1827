#include "core/kernels/avx512/functions.h"
#include "core/kernels/avx512/lanes.h"

namespace veldnls::avx512 {

namespace {

template <__m512i (*turn)(__m512i)>
void turnBytes(const uint8_t* in, uint8_t* out, size_t length) {
  size_t i = 0;
  for (; i + 2 * blockBytes <= length; i += 2 * blockBytes) {
    const __m512i first = turn(_mm512_loadu_si512(in + i));
    const __m512i second = turn(_mm512_loadu_si512(in + i + blockBytes));
    _mm512_storeu_si512(out + i, first);
    _mm512_storeu_si512(out + i + blockBytes, second);
  }
  for (; i < length; i += blockBytes) {
    const size_t n = smaller(length - i, blockBytes);
    storeBytes(out + i, turn(loadBytes(in + i, n)), n);
  }
}

}  // namespace

void swap16(const uint8_t* in, uint8_t* out, size_t count) { turnBytes<bytesTurnedInUnits16>(in, out, 2 * count); }
void swap32(const uint8_t* in, uint8_t* out, size_t count) { turnBytes<bytesTurnedInUnits32>(in, out, 4 * count); }

}  // namespace veldnls::avx512
