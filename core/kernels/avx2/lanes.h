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
inline void store4(uint8_t* at, __m128i lanes) { _mm_storeu_si32(at, lanes); }

inline size_t smaller(size_t a, size_t b) { return a < b ? a : b; }
// Masks of 32 lanes: the first `count`, up to all; those of bytes from 0x80 on; how many there are; how many lanes are
// in front of the first. Intrinsics, not the standard functions: those have a body that units for plain processors
// might be linked to.
inline uint32_t first32(size_t count) { return _bzhi_u32(~uint32_t{0}, static_cast<unsigned>(count)); }
inline uint32_t signs(__m256i bytes) { return static_cast<uint32_t>(_mm256_movemask_epi8(bytes)); }
inline size_t countOf(uint32_t mask) { return static_cast<size_t>(_mm_popcnt_u32(mask)); }
inline size_t lanesBefore(uint32_t mask) { return _tzcnt_u32(mask); }

// Shuffles that begin at byte 16 leave bytes where they are.
alignas(16) inline constexpr uint8_t moves[48] = {
    0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80,
    0,    1,    2,    3,    4,    5,    6,    7,    8,    9,    10,   11,   12,   13,   14,   15,
    0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80};

// Moved by up to 16 bytes, with zeros behind what is moved.
inline __m128i movedDown(__m128i bytes, size_t by) { return _mm_shuffle_epi8(bytes, load16(moves + 16 + by)); }
inline __m128i movedUp(__m128i bytes, size_t by) { return _mm_shuffle_epi8(bytes, load16(moves + 16 - by)); }

// 8 to 32 bytes, with zeros behind them.
inline __m256i loadFront(const uint8_t* at, size_t count) {
  if (count == blockBytes) return load(at);
  if (count >= 16) return _mm256_set_m128i(movedDown(load16(at + count - 16), blockBytes - count), load16(at));
  return _mm256_zextsi128_si256(_mm_unpacklo_epi64(load8(at), movedDown(load8(at + count - 8), 16 - count)));
}

// Copies up to a few blocks.
inline void copy(uint8_t* out, const uint8_t* in, size_t count) {
  if (count >= blockBytes) {
    for (size_t i = 0; i + blockBytes < count; i += blockBytes) store(out + i, load(in + i));
    store(out + count - blockBytes, load(in + count - blockBytes));
  } else if (count >= 16) {
    store16(out, load16(in));
    store16(out + count - 16, load16(in + count - 16));
  } else if (count >= 8) {
    store8(out, load8(in));
    store8(out + count - 8, load8(in + count - 8));
  } else {
    for (size_t i = 0; i < count; ++i) out[i] = in[i];
  }
}

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

// Eight units, in the lower half, and zeros.
template <std::endian order>
inline __m256i loadUnits16Half(const uint8_t* at) {
  const __m256i units = _mm256_zextsi128_si256(load16(at));
  return order == std::endian::little ? units : bytesTurnedInUnits16(units);
}

// Four to eight units, and zeros.
template <std::endian order>
inline __m256i loadSomeUnits16(const uint8_t* at, size_t count) {
  const __m128i last = load8(at + 2 * count - 8);
  const __m128i behindFour = _mm_srl_epi64(last, _mm_cvtsi32_si128(static_cast<int>(128 - 16 * count)));
  const __m256i units = _mm256_zextsi128_si256(_mm_unpacklo_epi64(load8(at), behindFour));
  return order == std::endian::little ? units : bytesTurnedInUnits16(units);
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
