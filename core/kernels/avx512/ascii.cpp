#include "core/kernels/avx512/functions.h"
#include "core/kernels/avx512/lanes.h"

namespace veldnls::avx512 {

namespace {

using std::endian;

// How many of the first `count` lanes are in front of the first of `others`.
size_t runOf(uint64_t others, size_t count) { return smaller(lanesBefore(others), count); }

__mmask32 nonAscii16(__m512i units) {
  return _mm512_test_epi16_mask(units, _mm512_set1_epi16(static_cast<int16_t>(0xFF80)));
}

__mmask16 nonAscii32(__m512i units) { return _mm512_test_epi32_mask(units, _mm512_set1_epi32(~0x7F)); }

}  // namespace

size_t asciiRun(const uint8_t* in, size_t count) {
  for (size_t i = 0; i < count; i += blockBytes) {
    const size_t n = smaller(count - i, blockBytes);
    const size_t run = runOf(_mm512_movepi8_mask(loadBytes(in + i, n)), n);
    if (run < n) return i + run;
  }
  return count;
}

template <endian order>
size_t asciiRun16(const uint8_t* in, size_t count) {
  for (size_t i = 0; i < count; i += blockUnits16) {
    const size_t n = smaller(count - i, blockUnits16);
    const size_t run = runOf(nonAscii16(loadUnits16<order>(in + 2 * i, n)), n);
    if (run < n) return i + run;
  }
  return count;
}

size_t widenAscii16(const uint8_t* in, uint8_t* out, size_t count) {
  for (size_t i = 0; i < count; i += blockBytes) {
    const size_t n = smaller(count - i, blockBytes);
    const __m512i bytes = loadBytes(in + i, n);
    const size_t run = runOf(_mm512_movepi8_mask(bytes), n);
    uint8_t* at = out + 2 * i;
    storeUnits16(at, _mm512_cvtepu8_epi16(lowerHalf(bytes)), smaller(run, blockUnits16));
    if (run > blockUnits16) {
      storeUnits16(at + blockBytes, _mm512_cvtepu8_epi16(upperHalf(bytes)), run - blockUnits16);
    }
    if (run < n) return i + run;
  }
  return count;
}

size_t widenAscii32(const uint8_t* in, uint8_t* out, size_t count) {
  for (size_t i = 0; i < count; i += blockUnits32) {
    const size_t n = smaller(count - i, blockUnits32);
    const __m128i bytes = _mm_maskz_loadu_epi8(first16(n), in + i);
    const size_t run = runOf(static_cast<uint64_t>(_mm_movepi8_mask(bytes)), n);
    storeUnits32(out + 4 * i, _mm512_cvtepu8_epi32(bytes), run);
    if (run < n) return i + run;
  }
  return count;
}

template <endian order>
size_t narrowAscii16(const uint8_t* in, uint8_t* out, size_t count) {
  for (size_t i = 0; i < count; i += blockUnits16) {
    const size_t n = smaller(count - i, blockUnits16);
    const __m512i units = loadUnits16<order>(in + 2 * i, n);
    const size_t run = runOf(nonAscii16(units), n);
    _mm256_mask_storeu_epi8(out + i, first32(run), _mm512_cvtepi16_epi8(units));
    if (run < n) return i + run;
  }
  return count;
}

template <endian order>
size_t narrowAscii32(const uint8_t* in, uint8_t* out, size_t count) {
  for (size_t i = 0; i < count; i += blockUnits32) {
    const size_t n = smaller(count - i, blockUnits32);
    const __m512i units = loadUnits32<order>(in + 4 * i, n);
    const size_t run = runOf(nonAscii32(units), n);
    _mm_mask_storeu_epi8(out + i, first16(run), _mm512_cvtepi32_epi8(units));
    if (run < n) return i + run;
  }
  return count;
}

template PrefixKernel asciiRun16<endian::little>;
template PrefixKernel asciiRun16<endian::big>;
template ItemKernel narrowAscii16<endian::little>;
template ItemKernel narrowAscii16<endian::big>;
template ItemKernel narrowAscii32<endian::little>;
template ItemKernel narrowAscii32<endian::big>;

}  // namespace veldnls::avx512
