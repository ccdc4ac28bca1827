// Blocks of 32 bytes. There are no masked forms of bytes in this tier: what is shorter goes item by item.
#pragma once

#include <immintrin.h>

#include <bit>
#include <cstddef>
#include <cstdint>

namespace veldnls::avx2 {

inline constexpr size_t blockBytes = 32;
inline constexpr size_t blockUnits16 = 16;
inline constexpr size_t blockUnits32 = 8;

namespace {

inline __m256i load(const uint8_t* at) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at)); }
inline void store(uint8_t* at, __m256i lanes) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(at), lanes); }
inline __m128i load16(const uint8_t* at) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at)); }
inline void store16(uint8_t* at, __m128i lanes) { _mm_storeu_si128(reinterpret_cast<__m128i*>(at), lanes); }
inline __m128i load8(const uint8_t* at) { return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(at)); }
inline void store8(uint8_t* at, __m128i lanes) { _mm_storel_epi64(reinterpret_cast<__m128i*>(at), lanes); }

inline __m256i bytesTurnedInUnits16(__m256i units) {
  return _mm256_shuffle_epi8(units, _mm256_set_epi32(0x0E0F0C0D, 0x0A0B0809, 0x06070405, 0x02030001,  //
                                                     0x0E0F0C0D, 0x0A0B0809, 0x06070405, 0x02030001));
}

inline __m256i bytesTurnedInUnits32(__m256i units) {
  return _mm256_shuffle_epi8(units, _mm256_set_epi32(0x0C0D0E0F, 0x08090A0B, 0x04050607, 0x00010203,  //
                                                     0x0C0D0E0F, 0x08090A0B, 0x04050607, 0x00010203));
}

template <std::endian order>
inline __m256i loadUnits16(const uint8_t* at) {
  return order == std::endian::little ? load(at) : bytesTurnedInUnits16(load(at));
}

template <std::endian order>
inline __m256i loadUnits32(const uint8_t* at) {
  return order == std::endian::little ? load(at) : bytesTurnedInUnits32(load(at));
}

// Whether all units are below 0x80.
inline bool allAscii16(__m256i units) {
  return _mm256_testz_si256(units, _mm256_set1_epi16(static_cast<int16_t>(0xFF80))) != 0;
}
inline bool allAscii32(__m256i units) { return _mm256_testz_si256(units, _mm256_set1_epi32(~0x7F)) != 0; }

// 16 units below 0x100 as bytes.
inline __m128i narrowed16(__m256i units) {
  return _mm_packus_epi16(_mm256_castsi256_si128(units), _mm256_extracti128_si256(units, 1));
}

// Eight units below 0x100 as bytes, in the lower half.
inline __m128i narrowed32(__m256i units) {
  const __m128i pairs = _mm_packus_epi32(_mm256_castsi256_si128(units), _mm256_extracti128_si256(units, 1));
  return _mm_packus_epi16(pairs, pairs);
}

// 32 bytes as 16-bit units.
inline void putWide16(uint8_t* out, __m256i bytes) {
  store(out, _mm256_cvtepu8_epi16(_mm256_castsi256_si128(bytes)));
  store(out + blockBytes, _mm256_cvtepu8_epi16(_mm256_extracti128_si256(bytes, 1)));
}

// 32 bytes, at `in`, as 32-bit units.
inline void putWide32(uint8_t* out, const uint8_t* in) {
  for (size_t i = 0; i < blockBytes; i += blockUnits32) store(out + 4 * i, _mm256_cvtepu8_epi32(load8(in + i)));
}

}  // namespace

}  // namespace veldnls::avx2
