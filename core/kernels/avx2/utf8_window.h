// 32 positions of a UTF-8 text, and which sequences begin there.
#pragma once

#include "core/kernels/avx2/lanes.h"

namespace veldnls::avx2 {

namespace {

inline constexpr size_t longestSequence = 4;
// What a window of a text reads: also the bytes behind its last position.
inline constexpr size_t windowBytes = blockBytes + longestSequence - 1;

inline __m256i all8(int value) { return _mm256_set1_epi8(static_cast<char>(value)); }
inline __m256i all16(int value) { return _mm256_set1_epi16(static_cast<int16_t>(value)); }

// Positions of bytes from `value` (0x80 and above) on.
inline uint32_t atLeast(__m256i bytes, int value) { return signs(_mm256_subs_epu8(bytes, all8(value - 0x80))); }

// The byte at each position, and those behind it.
struct Window {
  // `windowBytes` of a text.
  explicit Window(const uint8_t* in) : at(load(in)), second(load(in + 1)), third(load(in + 2)), fourth(load(in + 3)) {}

  // A block by itself, behind which zeros are taken to stand.
  explicit Window(__m256i block) : at(block) {
    const __m256i upper = _mm256_permute2x128_si256(block, block, 0x81);
    second = _mm256_alignr_epi8(upper, block, 1);
    third = _mm256_alignr_epi8(upper, block, 2);
    fourth = _mm256_alignr_epi8(upper, block, 3);
  }

  __m256i at;
  __m256i second;
  __m256i third;
  __m256i fourth;
};

// `carried` are the positions at the front that a sequence of the window before goes on to. From `firstDoubtful` on,
// which is above F0, no byte is a lead.
template <int firstDoubtful>
struct Sequences {
  Sequences(__m256i at, __m256i second, uint32_t carriedTo) : carried(carriedTo), nonAscii(signs(at)) {
    if ((nonAscii | carried) == 0) return;
    leads = atLeast(at, 0xC0);
    longer2 = atLeast(at, 0xE0);
    longer3 = atLeast(at, 0xF0);
    expected = carried | uint64_t{leads} << 1 | uint64_t{longer2} << 2 | uint64_t{longer3} << 3;
    // As signed numbers 80 to BF are the lowest.
    const __m256i high = _mm256_cmpgt_epi8(second, all8(0x9F));
    const __m256i overlong = _mm256_or_si256(_mm256_cmpeq_epi8(_mm256_and_si256(at, all8(0xFE)), all8(0xC0)),
                                             _mm256_andnot_si256(high, _mm256_cmpeq_epi8(at, all8(0xE0))));
    const __m256i surrogate = _mm256_and_si256(high, _mm256_cmpeq_epi8(at, all8(0xED)));
    forbidden = signs(_mm256_or_si256(overlong, surrogate));
    if (longer3 != 0) {
      const __m256i low = _mm256_cmpgt_epi8(all8(0x90), second);
      forbidden |= atLeast(at, firstDoubtful) | signs(_mm256_and_si256(low, _mm256_cmpeq_epi8(at, all8(0xF0))));
    }
  }

  uint32_t starts() const { return ~trails(); }
  uint32_t trails() const { return nonAscii & ~leads; }

  // Whether something is wrong with the window, or with the sequence that is carried to it. One that begins here and
  // goes on behind it is only tested up to there.
  bool wrong() const { return (forbidden | (trails() ^ static_cast<uint32_t>(expected))) != 0; }

  uint32_t carriedOn() const { return static_cast<uint32_t>(expected >> blockBytes); }

  // The first position that no whole sequence of the window covers, if nothing is carried to it.
  size_t end() const {
    const uint32_t trail = trails();
    const uint32_t broken = (leads & ~(trail >> 1)) | (longer2 & ~(trail >> 2)) | (longer3 & ~(trail >> 3));
    return lanesBefore(forbidden | broken | (trail & ~static_cast<uint32_t>(expected)));
  }

  uint32_t carried;
  uint32_t nonAscii;
  uint32_t leads = 0;  // of two bytes and more; three; four
  uint32_t longer2 = 0;
  uint32_t longer3 = 0;
  uint32_t forbidden = 0;
  uint64_t expected = 0;  // positions where trailing bytes must be, up to behind the window
};

}  // namespace

}  // namespace veldnls::avx2
