// Characters in lanes of 32 bits to UTF-8.
#pragma once

#include "core/kernels/avx512/lanes.h"

namespace veldnls::avx512 {

namespace {

// The bytes of up to 16 characters, each at the front of its lane, and which bytes of the lanes count.
struct Utf8Lanes {
  __m512i bytes;
  uint64_t kept;
};

// Moves the bit fields of a value into the bytes of its lane, from those that begin at bits `shifts`, and puts the
// marks of lead and trails on. The shifts are those of a lane's four bytes, the first lowest.
template <int shifts, int fields, int marks>
inline __m512i sequenceOf(__m512i values) {
  const __m512i choice =
      _mm512_set1_epi64(static_cast<int64_t>(uint64_t{shifts} | uint64_t{shifts + 0x20202020} << 32));
  const __m512i shifted = _mm512_multishift_epi64_epi8(choice, values);
  constexpr int aAndBOrC = 0xEA;
  return _mm512_ternarylogic_epi32(shifted, _mm512_set1_epi32(fields), _mm512_set1_epi32(marks), aAndBOrC);
}

// `values` are below 0x200000. Lanes outside of `counting` give no bytes.
inline Utf8Lanes toUtf8Lanes(__m512i values, __mmask16 counting) {
  const auto all = [](int value) { return _mm512_set1_epi32(value); };
  const __mmask16 two = _mm512_cmpge_epu32_mask(values, all(0x80));
  const __mmask16 three = _mm512_cmpge_epu32_mask(values, all(0x800));
  const __mmask16 four = _mm512_cmpge_epu32_mask(values, all(0x10000));
  __m512i bytes = _mm512_mask_mov_epi32(values, two, sequenceOf<0x0006, 0x3F1F, 0x80C0>(values));
  __m512i kept = _mm512_mask_mov_epi32(all(0xFF), two, all(0xFFFF));
  bytes = _mm512_mask_mov_epi32(bytes, three, sequenceOf<0x00060C, 0x3F3F0F, 0x8080E0>(values));
  kept = _mm512_mask_mov_epi32(kept, three, all(0xFFFFFF));
  if (four != 0) {
    bytes =
        _mm512_mask_mov_epi32(bytes, four, sequenceOf<0x00060C12, 0x3F3F3F07, static_cast<int>(0x808080F0)>(values));
    kept = _mm512_mask_mov_epi32(kept, four, all(-1));
  }
  return {bytes, _mm512_movepi8_mask(_mm512_maskz_mov_epi32(counting, kept))};
}

inline void putLanes(uint8_t* out, const Utf8Lanes& lanes) {
  storeBytes(out, _mm512_maskz_compress_epi8(lanes.kept, lanes.bytes), countOf(lanes.kept));
}

}  // namespace

}  // namespace veldnls::avx512
