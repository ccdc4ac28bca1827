// A table of 256 bytes in four registers.
#pragma once

#include "core/kernels/avx512/lanes.h"

namespace veldnls::avx512 {

namespace {

class ByteTable {
 public:
  explicit ByteTable(const uint8_t* table)
      : quarters_{_mm512_loadu_si512(table), _mm512_loadu_si512(table + 64), _mm512_loadu_si512(table + 128),
                  _mm512_loadu_si512(table + 192)} {}
  ByteTable(__m512i first, __m512i second, __m512i third, __m512i fourth) : quarters_{first, second, third, fourth} {}

  // A permutation looks at the low seven bits of an index; the top bit chooses between two of them.
  __m512i operator[](__m512i indices) const {
    const __m512i low = _mm512_permutex2var_epi8(quarters_[0], indices, quarters_[1]);
    const __m512i high = _mm512_permutex2var_epi8(quarters_[2], indices, quarters_[3]);
    return _mm512_mask_blend_epi8(_mm512_movepi8_mask(indices), low, high);
  }

 private:
  __m512i quarters_[4];
};

}  // namespace

}  // namespace veldnls::avx512
