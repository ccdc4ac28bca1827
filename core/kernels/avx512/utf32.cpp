#include "core/kernels/avx512/functions.h"
#include "core/kernels/avx512/lanes.h"
#include "core/kernels/avx512/utf8_output.h"

namespace veldnls::avx512 {

namespace {

using std::endian;

__m512i all32(int value) { return _mm512_set1_epi32(value); }

// Up to 16 units, cut in front of the first of `bad` lanes. Where there is none, which is foreseen, the next units
// don't wait for the test.
struct Extent {
  Extent(size_t remaining, __mmask16 bad) : length(smaller(remaining, blockUnits32)) {
    if (bad == 0) [[likely]]
      return;
    const size_t before = lanesBefore(bad);
    stops = before < length;
    length = smaller(length, before);
  }

  size_t length;
  bool stops = false;
};

}  // namespace

template <endian order>
KernelRun utf32ToUtf8(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  KernelRun run{0, 0};
  while (run.read < count) {
    const size_t remaining = count - run.read;
    const __m512i units = loadUnits32<order>(in + 4 * run.read, smaller(remaining, blockUnits32));
    const Extent extent(remaining, _mm512_cmpge_epu32_mask(units, all32(0x200000)));
    if (_mm512_test_epi32_mask(units, all32(~0x7F)) == 0) {
      if (extent.length > room - run.written) break;
      _mm_mask_storeu_epi8(out + run.written, first16(extent.length), _mm512_cvtepi32_epi8(units));
      run = {run.read + extent.length, run.written + extent.length};
      continue;
    }
    const Utf8Lanes lanes = toUtf8Lanes(units, first16(extent.length));
    const size_t size = countOf(lanes.kept);
    if (size > room - run.written) break;
    putLanes(out + run.written, lanes);
    run = {run.read + extent.length, run.written + size};
    if (extent.stops) break;
  }
  return run;
}

template <endian order>
KernelRun utf32ToUtf16(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  KernelRun run{0, 0};
  while (run.read < count) {
    const size_t remaining = count - run.read;
    const __m512i units = loadUnits32<order>(in + 4 * run.read, smaller(remaining, blockUnits32));
    const __mmask16 surrogates = _mm512_cmpeq_epi32_mask(_mm512_and_si512(units, all32(~0x7FF)), all32(0xD800));
    const __mmask16 outside = _mm512_cmpgt_epu32_mask(units, all32(0x10FFFF));
    const Extent extent(remaining, surrogates | outside);
    const __mmask16 inside = first16(extent.length);
    const __mmask16 pairs = _mm512_mask_cmpge_epu32_mask(inside, units, all32(0x10000));
    uint8_t* target = out + 2 * run.written;
    size_t size = extent.length;
    if (pairs == 0) {
      if (size > room - run.written) break;
      _mm256_mask_storeu_epi16(target, inside, _mm512_cvtepi32_epi16(units));
    } else {
      size += countOf(pairs);
      if (size > room - run.written) break;
      // High surrogate in the lower half of a lane, low one in the upper half.
      const __m512i high = _mm512_add_epi32(_mm512_srli_epi32(units, 10), all32(0xD800 - (0x10000 >> 10)));
      const __m512i low = _mm512_or_si512(_mm512_and_si512(units, all32(0x3FF)), all32(0xDC00));
      const __m512i both = _mm512_or_si512(high, _mm512_slli_epi32(low, 16));
      const auto kept = static_cast<__mmask32>(_pdep_u32(inside, 0x55555555) | _pdep_u32(pairs, 0xAAAAAAAA));
      storeUnits16(target, _mm512_maskz_compress_epi16(kept, _mm512_mask_mov_epi32(units, pairs, both)), size);
    }
    run = {run.read + extent.length, run.written + size};
    if (extent.stops) break;
  }
  return run;
}

template TextKernel utf32ToUtf8<endian::little>;
template TextKernel utf32ToUtf8<endian::big>;
template TextKernel utf32ToUtf16<endian::little>;
template TextKernel utf32ToUtf16<endian::big>;

}  // namespace veldnls::avx512
