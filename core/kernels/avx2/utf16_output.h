// UTF-16 units as UTF-8: the sequences stand in lanes, trail first, and a shuffle by their lengths packs them.
#pragma once

#include "core/kernels/avx2/lanes.h"
#include "core/kernels/kernels.h"

namespace veldnls::avx2 {

namespace {

// What a sequence from a unit has at most.
constexpr size_t mostSequenceBytes = 3;
// What putLoose writes behind its bytes at most.
constexpr size_t looseBytes = 12;

struct ShuffleTable {
  static constexpr uint8_t noByte = 0x80;

  __m128i operator[](size_t row) const { return load16(at[row]); }

  alignas(64) uint8_t at[256][16] = {};
};

// Lanes of two bytes, by a mask of those that hold a sequence of two.
constexpr ShuffleTable packedShort = [] {
  ShuffleTable table;
  for (unsigned mask = 0; mask < 256; ++mask) {
    uint8_t* to = table.at[mask];
    uint8_t* const end = to + 16;
    for (unsigned lane = 0; lane < 8; ++lane) {
      if ((mask >> lane & 1) != 0) *to++ = static_cast<uint8_t>(2 * lane + 1);
      *to++ = static_cast<uint8_t>(2 * lane);
    }
    while (to != end) *to++ = ShuffleTable::noByte;
  }
  return table;
}();

// Four lanes of four bytes, by a mask of the sequences of two and more and, above it, of those of three.
constexpr ShuffleTable packedLong = [] {
  ShuffleTable table;
  for (unsigned mask = 0; mask < 256; ++mask) {
    uint8_t* to = table.at[mask];
    uint8_t* const end = to + 16;
    for (unsigned lane = 0; lane < 4; ++lane) {
      if ((mask >> (4 + lane) & 1) != 0) *to++ = static_cast<uint8_t>(4 * lane + 2);
      if ((mask >> lane & 1) != 0) *to++ = static_cast<uint8_t>(4 * lane + 1);
      *to++ = static_cast<uint8_t>(4 * lane);
    }
    while (to != end) *to++ = ShuffleTable::noByte;
  }
  return table;
}();

// By a length of 4 to 12: where the middle four bytes begin that are to be written, which are those behind the first
// four or, if these go beyond, the last.
constexpr auto middleStarts = [] {
  struct Table {
    uint8_t at[13];
  } table{};
  for (unsigned length = 4; length < 13; ++length) table.at[length] = static_cast<uint8_t>(length < 8 ? length - 4 : 4);
  return table;
}();

// By such a length: the first four bytes, the middle and the last.
constexpr auto quarters = [] {
  struct Table {
    alignas(16) uint8_t at[13][16];
  } table{};
  for (unsigned length = 4; length < 13; ++length) {
    for (unsigned i = 0; i < 4; ++i) {
      table.at[length][i] = static_cast<uint8_t>(i);
      table.at[length][4 + i] = static_cast<uint8_t>(middleStarts.at[length] + i);
      table.at[length][8 + i] = static_cast<uint8_t>(length - 4 + i);
    }
  }
  return table;
}();

// Sixteen rows of 16 that begin one later each.
constexpr auto laterBytes = [] {
  struct Table {
    uint8_t at[32];
  } table{};
  for (unsigned i = 0; i < 32; ++i) table.at[i] = static_cast<uint8_t>(i < 16 ? i : ShuffleTable::noByte);
  return table;
}();

inline __m256i all16(int value) { return _mm256_set1_epi16(static_cast<int16_t>(value)); }

// Where the bits of `mask` are all zero, in lanes of 16.
inline __m256i without(__m256i units, int mask) {
  return _mm256_cmpeq_epi16(_mm256_and_si256(units, all16(mask)), _mm256_setzero_si256());
}

inline __m256i surrogatesOf(__m256i units) {
  return _mm256_cmpeq_epi16(_mm256_and_si256(units, all16(0xF800)), all16(0xD800));
}

inline bool hasSurrogate(__m256i units) {
  const __m256i surrogates = surrogatesOf(units);
  return _mm256_testz_si256(surrogates, surrogates) == 0;
}

inline bool allShort(__m256i units) { return _mm256_testz_si256(units, all16(0xF800)) != 0; }

inline size_t onesOf(uint32_t bits) { return static_cast<size_t>(_mm_popcnt_u32(bits)); }

// The two bytes of a sequence that come last; `lead` marks the first of them where it's a lead.
inline __m256i lastBytes(__m256i units, __m256i ascii, __m256i lead) {
  const __m256i first = _mm256_and_si256(_mm256_slli_epi16(units, 2), all16(0x3F00));
  const __m256i second = _mm256_and_si256(units, all16(0x003F));
  const __m256i marks = _mm256_or_si256(all16(0x8080), _mm256_and_si256(lead, all16(0x4000)));
  return _mm256_blendv_epi8(_mm256_or_si256(_mm256_or_si256(first, second), marks), units, ascii);
}

// Units below 0x800, packed in each half.
struct ShortSequences {
  explicit ShortSequences(__m256i units) {
    const __m256i ascii = without(units, 0xFF80);
    const auto masks = ~static_cast<uint32_t>(_mm256_movemask_epi8(_mm256_packs_epi16(ascii, ascii)));
    const uint32_t first = masks & 0xFF;
    const uint32_t second = masks >> 24;
    const __m256i shuffles = _mm256_set_m128i(packedShort[second], packedShort[first]);
    bytes = _mm256_shuffle_epi8(lastBytes(units, ascii, _mm256_set1_epi16(-1)), shuffles);
    length[0] = 8 + onesOf(first);
    length[1] = 8 + onesOf(second);
  }

  __m256i bytes;
  size_t length[2];
};

// Surrogates of pairs as if each were a sequence of two bytes, which is half of the pair's. A pair lies within a half
// of the units.
inline __m256i pairBytes(__m256i units, __m256i lows) {
  // What is above the lower ten bits of the pair's value.
  const __m256i high = _mm256_add_epi16(_mm256_and_si256(units, all16(0x03FF)), all16(0x0040));
  const __m256i first = _mm256_or_si256(_mm256_and_si256(high, all16(0x0700)),
                                        _mm256_and_si256(_mm256_srli_epi16(high, 2), all16(0x003F)));
  const __m256i highBytes = _mm256_or_si256(first, all16(0xF080));
  const __m256i carried = _mm256_and_si256(_mm256_slli_epi16(_mm256_slli_si256(units, 2), 12), all16(0x3000));
  const __m256i last = _mm256_or_si256(_mm256_and_si256(_mm256_slli_epi16(units, 2), all16(0x0F00)),
                                       _mm256_and_si256(units, all16(0x003F)));
  const __m256i lowBytes = _mm256_or_si256(_mm256_or_si256(carried, last), all16(0x8080));
  return _mm256_blendv_epi8(highBytes, lowBytes, lows);
}

// Any units, by fours: the first and the third packed in the halves of `even`, the others of `odd`. `mayHavePairs` is
// false if there are no surrogates.
struct LongSequences {
  LongSequences(__m256i units, bool mayHavePairs) {
    const __m256i ascii = without(units, 0xFF80);
    __m256i upToTwo = without(units, 0xF800);
    __m256i last = lastBytes(units, ascii, upToTwo);
    if (mayHavePairs) {
      const __m256i surrogates = surrogatesOf(units);
      const __m256i lows = _mm256_cmpeq_epi16(_mm256_and_si256(units, all16(0xFC00)), all16(0xDC00));
      last = _mm256_blendv_epi8(last, pairBytes(units, lows), surrogates);
      upToTwo = _mm256_or_si256(upToTwo, surrogates);
    }
    const __m256i leads = _mm256_or_si256(_mm256_srli_epi16(units, 12), all16(0xE0));
    // In the order of the units, a row of the table for each four.
    const __m256i kinds = _mm256_shuffle_epi32(_mm256_packs_epi16(ascii, upToTwo), _MM_SHUFFLE(3, 1, 2, 0));
    const auto masks = ~static_cast<uint32_t>(_mm256_movemask_epi8(kinds));
    const uint32_t rows[4] = {masks & 0xFF, masks >> 8 & 0xFF, masks >> 16 & 0xFF, masks >> 24};
    for (int i = 0; i < 4; ++i) length[i] = 4 + onesOf(rows[i]);
    even = _mm256_shuffle_epi8(_mm256_unpacklo_epi16(last, leads),
                               _mm256_set_m128i(packedLong[rows[2]], packedLong[rows[0]]));
    odd = _mm256_shuffle_epi8(_mm256_unpackhi_epi16(last, leads),
                              _mm256_set_m128i(packedLong[rows[3]], packedLong[rows[1]]));
  }

  __m256i even;
  __m256i odd;
  size_t length[4];
};

// Writes 16 units that aren't surrogates, and whatever up to `looseBytes` behind. Returns the bytes.
inline size_t putLoose(uint8_t* out, __m256i units) {
  if (allShort(units)) {
    const ShortSequences sequences(units);
    store16(out, _mm256_castsi256_si128(sequences.bytes));
    store16(out + sequences.length[0], _mm256_extracti128_si256(sequences.bytes, 1));
    return sequences.length[0] + sequences.length[1];
  }
  const LongSequences sequences(units, false);
  uint8_t* at = out;
  store16(at, _mm256_castsi256_si128(sequences.even));
  at += sequences.length[0];
  store16(at, _mm256_castsi256_si128(sequences.odd));
  at += sequences.length[1];
  store16(at, _mm256_extracti128_si256(sequences.even, 1));
  at += sequences.length[2];
  store16(at, _mm256_extracti128_si256(sequences.odd, 1));
  at += sequences.length[3];
  return static_cast<size_t>(at - out);
}

// The first `length` bytes, up to 12.
inline void putUpToTwelve(uint8_t* out, __m128i bytes, size_t length) {
  if (length < 4) {
    const auto word = static_cast<uint32_t>(_mm_cvtsi128_si32(bytes));
    for (size_t i = 0; i < length; ++i) out[i] = static_cast<uint8_t>(word >> 8 * i);
    return;
  }
  const __m128i parts = _mm_shuffle_epi8(bytes, load16(quarters.at[length]));
  store4(out, parts);
  store4(out + middleStarts.at[length], _mm_srli_si128(parts, 4));
  store4(out + length - 4, _mm_srli_si128(parts, 8));
}

// The first `length` bytes, of 4 to 16.
inline void putFourToSixteen(uint8_t* out, __m128i bytes, size_t length) {
  if (length < 8) {
    store4(out, bytes);
    store4(out + length - 4, _mm_shuffle_epi8(bytes, load16(laterBytes.at + length - 4)));
    return;
  }
  store8(out, bytes);
  store8(out + length - 8, _mm_shuffle_epi8(bytes, load16(laterBytes.at + length - 8)));
}

// The next three take `count` units, of four to eight, with zeros behind them in the lower half of `units`. They write
// the units' bytes alone, and nothing if these don't fit.

inline KernelRun putSequences(uint8_t* out, size_t room, const LongSequences& sequences, size_t count, size_t dropped) {
  const size_t middle = sequences.length[0];
  const size_t rest = sequences.length[1] - dropped;
  if (middle + rest > room) return {0, 0};
  putUpToTwelve(out, _mm256_castsi256_si128(sequences.even), middle);
  putUpToTwelve(out + middle, _mm256_castsi256_si128(sequences.odd), rest);
  return {count, middle + rest};
}

// Units that are no surrogates.
inline KernelRun putPlain(uint8_t* out, size_t room, __m256i units, size_t count) {
  const size_t zeros = 8 - count;
  if (!allShort(units)) return putSequences(out, room, LongSequences(units, false), count, zeros);
  const ShortSequences sequences(units);
  const size_t length = sequences.length[0] - zeros;
  if (length > room) return {0, 0};
  putFourToSixteen(out, _mm256_castsi256_si128(sequences.bytes), length);
  return {count, length};
}

// Leaves the last unit if it may begin a pair. Converts nothing if a pair isn't whole.
inline KernelRun putPairs(uint8_t* out, size_t room, __m256i units, size_t count) {
  const __m256i kinds = _mm256_and_si256(units, all16(0xFC00));
  const __m256i highLanes = _mm256_cmpeq_epi16(kinds, all16(0xD800));
  const __m256i lowLanes = _mm256_cmpeq_epi16(kinds, all16(0xDC00));
  const auto marks = static_cast<uint32_t>(_mm256_movemask_epi8(_mm256_packs_epi16(highLanes, lowLanes)));
  const uint32_t highs = marks & 0xFF;
  const uint32_t lows = marks >> 8 & 0xFF;
  if (((highs << 1 ^ lows) & ((1u << count) - 1)) != 0) return {0, 0};
  const size_t left = highs >> (count - 1);
  // It had to be taken off the first four.
  if (count == 4 && left != 0) return {0, 0};
  return putSequences(out, room, LongSequences(units, true), count - left, 8 - count + 2 * left);
}

}  // namespace

}  // namespace veldnls::avx2
