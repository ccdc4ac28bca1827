// Loads and stores of up to 64 bytes: what lies outside of the count isn't touched.
#pragma once

#include <immintrin.h>

#include <bit>
#include <cstddef>
#include <cstdint>

namespace veldnls::avx512 {

inline constexpr size_t blockBytes = 64;
inline constexpr size_t blockUnits16 = 32;
inline constexpr size_t blockUnits32 = 16;

namespace {

// Masks of the first `count` lanes, up to all of them.
inline uint64_t first64(size_t count) { return _bzhi_u64(~uint64_t{0}, static_cast<unsigned>(count)); }
inline __mmask32 first32(size_t count) { return _bzhi_u32(~uint32_t{0}, static_cast<unsigned>(count)); }
inline __mmask16 first16(size_t count) {
  return static_cast<__mmask16>(_bzhi_u32(0xFFFF, static_cast<unsigned>(count)));
}

inline size_t smaller(size_t a, size_t b) { return a < b ? a : b; }
// Intrinsics, not the standard functions: those have a body that units for plain processors might be linked to.
inline size_t countOf(uint64_t mask) { return static_cast<size_t>(_mm_popcnt_u64(mask)); }
// The number of lanes in front of the first of `mask`.
inline size_t lanesBefore(uint64_t mask) { return static_cast<size_t>(_tzcnt_u64(mask)); }

inline __m512i loadBytes(const uint8_t* at, size_t count) { return _mm512_maskz_loadu_epi8(first64(count), at); }
inline void storeBytes(uint8_t* at, __m512i bytes, size_t count) { _mm512_mask_storeu_epi8(at, first64(count), bytes); }
inline void storeUnits16(uint8_t* at, __m512i units, size_t count) {
  _mm512_mask_storeu_epi16(at, first32(count), units);
}
inline void storeUnits32(uint8_t* at, __m512i units, size_t count) {
  _mm512_mask_storeu_epi32(at, first16(count), units);
}

inline __m512i bytesTurnedInUnits16(__m512i units) {
  const __m512i order = _mm512_set4_epi32(0x0E0F0C0D, 0x0A0B0809, 0x06070405, 0x02030001);
  return _mm512_shuffle_epi8(units, order);
}

inline __m512i bytesTurnedInUnits32(__m512i units) {
  const __m512i order = _mm512_set4_epi32(0x0C0D0E0F, 0x08090A0B, 0x04050607, 0x00010203);
  return _mm512_shuffle_epi8(units, order);
}

// Units of a text of either order, `count` of them, the rest zero.
template <std::endian order>
inline __m512i loadUnits16(const uint8_t* at, size_t count) {
  const __m512i units = _mm512_maskz_loadu_epi16(first32(count), at);
  return order == std::endian::little ? units : bytesTurnedInUnits16(units);
}

template <std::endian order>
inline __m512i loadUnits32(const uint8_t* at, size_t count) {
  const __m512i units = _mm512_maskz_loadu_epi32(first16(count), at);
  return order == std::endian::little ? units : bytesTurnedInUnits32(units);
}

inline __m256i lowerHalf(__m512i lanes) { return _mm512_castsi512_si256(lanes); }
inline __m256i upperHalf(__m512i lanes) { return _mm512_extracti64x4_epi64(lanes, 1); }

}  // namespace

}  // namespace veldnls::avx512
