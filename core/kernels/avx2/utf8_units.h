// The characters of a window of UTF-8 as units, side by side in memory.
#pragma once

#include "core/kernels/avx2/lanes.h"
#include "core/kernels/avx2/utf8_window.h"

namespace veldnls::avx2 {

namespace {

inline constexpr size_t groupLanes = 8;

// For each choice among eight 16-bit lanes the shuffle that brings those chosen to the front, with zeros behind them.
struct Packings {
  uint8_t at[256][16];
};

alignas(64) inline constexpr Packings packings = [] {
  Packings made{};
  for (int chosen = 0; chosen < 256; ++chosen) {
    int filled = 0;
    for (int lane = 0; lane < 8; ++lane) {
      if ((chosen >> lane & 1) == 0) continue;
      made.at[chosen][filled++] = static_cast<uint8_t>(2 * lane);
      made.at[chosen][filled++] = static_cast<uint8_t>(2 * lane + 1);
    }
    while (filled < 16) made.at[chosen][filled++] = 0x80;
  }
  return made;
}();

inline __m128i packed(__m128i lanes, uint32_t chosen) { return _mm_shuffle_epi8(lanes, load16(packings.at[chosen])); }

// 16 positions of a window in lanes of 16 bits.
struct HalfWindow {
  // `pairs` are five bits of the first byte and six of the second.
  HalfWindow(__m256i bytes, __m256i pairs, __m256i thirds) : one(bytes), third(thirds) {
    two = _mm256_maddubs_epi16(pairs, all16(0x0140));
    three = _mm256_or_si256(_mm256_slli_epi16(two, 6), third);
  }

  // The UTF-16 unit that each position begins, if it begins one that isn't of a sequence of four bytes.
  __m256i units() const {
    const __m256i shorter = _mm256_blendv_epi8(one, two, _mm256_cmpgt_epi16(one, all16(0x7F)));
    return _mm256_blendv_epi8(shorter, three, _mm256_cmpgt_epi16(one, all16(0xDF)));
  }

  __m256i fours() const { return _mm256_cmpgt_epi16(one, all16(0xEF)); }

  // Of a sequence of four bytes the first gives the high surrogate. The lead's mark (bit 4) stands for 0x1000 in it.
  __m256i highs() const {
    const __m256i value = _mm256_add_epi16(_mm256_slli_epi16(two, 2), _mm256_srli_epi16(third, 4));
    return _mm256_add_epi16(value, all16(0xD800 - (0x10000 >> 10) - 0x1000));
  }
  // The second gives the low one: four bits of the third byte, six of the fourth.
  __m256i lows() const { return _mm256_or_si256(_mm256_and_si256(three, all16(0x3FF)), all16(0xDC00)); }

  // Of a sequence of four bytes the value's upper bits, and its lower 16.
  __m256i planes() const { return _mm256_and_si256(_mm256_srli_epi16(two, 4), all16(0x1F)); }
  __m256i inPlane(__m256i fourth) const { return _mm256_or_si256(_mm256_slli_epi16(three, 6), fourth); }

  __m256i one;
  __m256i third;
  __m256i two;
  __m256i three;
};

// Two registers of lanes. One has the positions 0 to 7 and 16 to 23 of a window, the other 8 to 15 and 24 to 31, for so
// bytes fall when they are spread.
struct Lanes {
  __m256i first;
  __m256i second;
};

inline Lanes spread(__m256i bytes, __m256i behind) {
  return {_mm256_unpacklo_epi8(bytes, behind), _mm256_unpackhi_epi8(bytes, behind)};
}

inline Lanes chosen(const Lanes& otherwise, const Lanes& lanes, const Lanes& masks) {
  return {_mm256_blendv_epi8(otherwise.first, lanes.first, masks.first),
          _mm256_blendv_epi8(otherwise.second, lanes.second, masks.second)};
}

// The lanes of a mask of 32 positions.
inline Lanes masked(uint32_t positions) {
  const __m256i halves = _mm256_shuffle_epi8(_mm256_set1_epi32(static_cast<int>(positions)),
                                             _mm256_setr_epi64x(0x0100010001000100, 0x0100010001000100,  //
                                                                0x0302030203020302, 0x0302030203020302));
  const __m256i lower = _mm256_setr_epi16(1, 2, 4, 8, 16, 32, 64, 128, 1, 2, 4, 8, 16, 32, 64, 128);
  const __m256i upper = _mm256_slli_epi16(lower, groupLanes);
  return {_mm256_cmpeq_epi16(_mm256_and_si256(halves, lower), lower),
          _mm256_cmpeq_epi16(_mm256_and_si256(halves, upper), upper)};
}

struct SpreadWindow {
  SpreadWindow(const Lanes& bytes, const Lanes& pairs, const Lanes& thirds)
      : first(bytes.first, pairs.first, thirds.first), second(bytes.second, pairs.second, thirds.second) {}

  explicit SpreadWindow(const Window& window)
      : SpreadWindow(spread(window.at, _mm256_setzero_si256()),
                     spread(_mm256_and_si256(window.at, all8(0x1F)), sixBits(window.second)),
                     spread(sixBits(window.third), _mm256_setzero_si256())) {}

  static __m256i sixBits(__m256i bytes) { return _mm256_and_si256(bytes, all8(0x3F)); }

  Lanes units() const { return {first.units(), second.units()}; }

  HalfWindow first;
  HalfWindow second;
};

// Calls `put(index of its first unit, group of eight lanes, mask)` for the four groups of a window in their order.
template <class Put>
inline void inGroups(uint32_t kept, Put put) {
  put(
      0, [](const Lanes& all) { return _mm256_castsi256_si128(all.first); }, kept & 0xFF);
  put(
      countOf(kept & 0xFF), [](const Lanes& all) { return _mm256_castsi256_si128(all.second); }, kept >> 8 & 0xFF);
  put(
      countOf(kept & 0xFFFF), [](const Lanes& all) { return _mm256_extracti128_si256(all.first, 1); },
      kept >> 16 & 0xFF);
  put(
      countOf(kept & 0xFFFFFF), [](const Lanes& all) { return _mm256_extracti128_si256(all.second, 1); }, kept >> 24);
}

struct ToUtf16 {
  static constexpr size_t unitBytes = 2;
  static constexpr int firstDoubtful = 0xF4;
  using Masks = Sequences<firstDoubtful>;

  // The positions that give a unit: starts, and the second bytes of sequences of four.
  static uint32_t giving(const Masks& sequences) { return sequences.starts() | sequences.longer3 << 1; }

  // A pair isn't parted: what begins it at the last position is left to the next window.
  static size_t ending(const Masks& sequences) { return blockBytes - (sequences.longer3 >> (blockBytes - 1)); }

  static Lanes units(const Window& window, uint32_t longer3) {
    const SpreadWindow all(window);
    const Lanes units = all.units();
    if (longer3 == 0) return units;
    return chosen(chosen(units, {all.first.highs(), all.second.highs()}, {all.first.fours(), all.second.fours()}),
                  {all.first.lows(), all.second.lows()}, masked(longer3 << 1));
  }

  // Writes a block of room from the front on, of which the units kept are the beginning.
  static void put(uint8_t* out, const Window& window, uint32_t longer3, uint32_t kept) {
    const Lanes all = units(window, longer3);
    inGroups(kept,
             [&](size_t index, auto group, uint32_t mask) { put8(out + unitBytes * index, packed(group(all), mask)); });
  }

  static void putAscii(uint8_t* out, __m256i bytes) { putWide16(out, bytes); }

  // Eight units, or four, of those in the lanes.
  static void put8(uint8_t* out, __m128i lanes) { store16(out, lanes); }
  static void put4(uint8_t* out, __m128i lanes) { store8(out, lanes); }
};

struct ToUtf32 {
  static constexpr size_t unitBytes = 4;
  static constexpr int firstDoubtful = 0xF5;
  using Masks = Sequences<firstDoubtful>;

  static uint32_t giving(const Masks& sequences) { return sequences.starts(); }
  static size_t ending(const Masks&) { return blockBytes; }

  static void put(uint8_t* out, const Window& window, uint32_t longer3, uint32_t kept) {
    if (longer3 != 0) return putFours(out, window, kept);
    const Lanes units = SpreadWindow(window).units();
    inGroups(kept, [&](size_t index, auto group, uint32_t mask) {
      put8(out + unitBytes * index, packed(group(units), mask));
    });
  }

  // Sequences of four bytes may be among them: units go in two registers, as their upper and their lower 16 bits.
  static void putFours(uint8_t* out, const Window& window, uint32_t kept) {
    const SpreadWindow all(window);
    const Lanes fourths = spread(SpreadWindow::sixBits(window.fourth), _mm256_setzero_si256());
    const Lanes fours{all.first.fours(), all.second.fours()};
    const Lanes lower =
        chosen(all.units(), {all.first.inPlane(fourths.first), all.second.inPlane(fourths.second)}, fours);
    const Lanes upper{_mm256_and_si256(all.first.planes(), fours.first),
                      _mm256_and_si256(all.second.planes(), fours.second)};
    inGroups(kept, [&](size_t index, auto group, uint32_t mask) {
      const __m128i low = packed(group(lower), mask);
      const __m128i high = packed(group(upper), mask);
      store16(out + unitBytes * index, _mm_unpacklo_epi16(low, high));
      store16(out + unitBytes * index + 16, _mm_unpackhi_epi16(low, high));
    });
  }

  static void putAscii(uint8_t* out, __m256i bytes) {
    const Lanes lanes = spread(bytes, _mm256_setzero_si256());
    inGroups(~uint32_t{0}, [&](size_t index, auto group, uint32_t) { put8(out + unitBytes * index, group(lanes)); });
  }

  static void put8(uint8_t* out, __m128i lanes) { store(out, _mm256_cvtepu16_epi32(lanes)); }
  static void put4(uint8_t* out, __m128i lanes) { store16(out, _mm_cvtepu16_epi32(lanes)); }
};

}  // namespace

}  // namespace veldnls::avx2
