// Look-ups of two-byte codes and of units, sixteen and thirty-two at a time.
#pragma once

#include "core/kernels/avx512/byte_table.h"
#include "core/kernels/avx512/lanes.h"
#include "core/kernels/double_byte.h"

namespace veldnls::avx512 {

namespace {

inline __m512i all16(int value) { return _mm512_set1_epi16(static_cast<int16_t>(value)); }
inline __m512i all32(int value) { return _mm512_set1_epi32(value); }

inline __m512i widened(__m256i units) { return _mm512_cvtepu16_epi32(units); }
inline __m512i joined(__m256i front, __m256i back) {
  return _mm512_inserti64x4(_mm512_castsi256_si512(front), back, 1);
}

// The item of each wanted lane in an array of at least two 16-bit items, in the lower half of the lane; the upper half
// is left undefined. Items are read together with the one ahead of them, so that nothing behind the array is.
inline __m512i items16(__mmask16 wanted, __m512i indices, const void* items) {
  const __m512i ahead = _mm512_max_epi32(_mm512_sub_epi32(indices, all32(1)), _mm512_setzero_si512());
  const __m512i pairs = _mm512_mask_i32gather_epi32(_mm512_setzero_si512(), wanted, ahead, items, 2);
  return _mm512_mask_srli_epi32(pairs, _mm512_test_epi32_mask(indices, indices), pairs, 16);
}

// Output characters of units: in lanes of 16 bits, and which units have one.
struct Characters {
  __m512i codes;
  __mmask32 found;
};

// The same of half of them, in lanes of 32 bits.
struct HalfCharacters {
  __m256i codes;
  __mmask16 found;
};

template <class Half>
Characters bothHalves(size_t length, Half half) {
  const HalfCharacters front = half(false);
  if (length <= blockUnits16 / 2) return {_mm512_castsi256_si512(front.codes), front.found};
  const HalfCharacters back = half(true);
  return {joined(front.codes, back.codes), front.found | static_cast<__mmask32>(back.found) << 16};
}

inline __m256i halfOf(__m512i lanes, bool upper) { return upper ? upperHalf(lanes) : lowerHalf(lanes); }

// Units from U+009F on but half-width katakana, by ranks.
class Ranks {
 public:
  Ranks(const UnitCodes& codes, uint32_t blank)
      : blocks_(codes.blocks), groups_(codes.groups), values_(codes.values), blank_(all16(static_cast<int>(blank))) {}

  Characters operator()(__m512i units, size_t length) const {
    const __m512i block = _mm512_and_si512(blocks_[_mm512_srli_epi16(units, 8)], all16(0xFF));
    const __m512i inBlock = _mm512_and_si512(_mm512_srli_epi16(units, 4), all16(0xF));
    const __m512i groups = _mm512_or_si512(_mm512_slli_epi16(block, 4), inBlock);
    Characters characters =
        bothHalves(length, [&](bool upper) { return ofHalf(halfOf(units, upper), halfOf(groups, upper)); });
    const __mmask32 katakana =
        _mm512_cmplt_epu16_mask(_mm512_sub_epi16(units, all16(firstHalfWidthKatakana)), all16(halfWidthKatakanaCount));
    const __mmask32 spaces = _mm512_cmpeq_epi16_mask(units, all16(ideographicSpace));
    characters.codes = _mm512_mask_mov_epi16(characters.codes, spaces, blank_);
    characters.found |= spaces;
    characters.found &= ~katakana & _mm512_cmpge_epu16_mask(units, all16(0x9F));
    return characters;
  }

 private:
  HalfCharacters ofHalf(__m256i units, __m256i groups) const {
    // The bits of a group in the lower half of a lane, its rank in the upper.
    const __m512i group = _mm512_i32gather_epi32(widened(groups), groups_, sizeof(UnitGroup));
    const __m512i bit = _mm512_sllv_epi32(all32(1), _mm512_and_si512(widened(units), all32(0xF)));
    const __m512i below = _mm512_and_si512(group, _mm512_sub_epi32(bit, all32(1)));
    const __m512i place = _mm512_add_epi32(_mm512_srli_epi32(group, 16), _mm512_popcnt_epi32(below));
    const __mmask16 found = _mm512_test_epi32_mask(group, bit);
    return {_mm512_cvtepi32_epi16(items16(found, place, values_)), found};
  }

  ByteTable blocks_;
  const UnitGroup* groups_;
  const uint16_t* values_;
  __m512i blank_;
};

// The units of two-byte codes in lanes of 32 bits, 0 where there is none.
class Rows {
 public:
  Rows(const CodeRows& rows, uint32_t blank)
      : rows_(rows.rows), units_(rows.units), blank_(all32(static_cast<int>(blank))) {}

  __m512i operator()(__mmask16 wanted, __m512i first, __m512i second) const {
    const __m512i code = _mm512_or_si512(_mm512_slli_epi32(first, 8), second);
    const __m512i rowOf = _mm512_srli_epi32(_mm512_add_epi32(code, all32(0x60)), 7);
    // From low to high: where the row starts, 16 bits; its first second byte and its span, eight bits each.
    const __m512i row = _mm512_mask_i32gather_epi32(_mm512_setzero_si512(), wanted, rowOf, rows_, sizeof(CodeRow));
    const __m512i rowFirst = _mm512_and_si512(_mm512_srli_epi32(row, 16), all32(0xFF));
    const __m512i place = _mm512_sub_epi32(second, rowFirst);
    const __mmask16 inRow = _mm512_mask_cmple_epu32_mask(wanted, place, _mm512_srli_epi32(row, 24));
    const __m512i index = _mm512_add_epi32(_mm512_and_si512(row, all32(0xFFFF)), place);
    const __mmask16 spaces = _mm512_mask_cmpeq_epi32_mask(wanted, code, blank_);
    // The first unit of all is 0.
    const __mmask16 there = _mm512_mask_test_epi32_mask(inRow, index, index);
    const __m512i units = _mm512_and_si512(items16(there, index, units_), all32(0xFFFF));
    return _mm512_mask_mov_epi32(units, spaces, all32(ideographicSpace));
  }

 private:
  const CodeRow* rows_;
  const char16_t* units_;
  __m512i blank_;
};

// The bytes that are second ones: those behind a lead that is no second byte itself, so that in a run of leads it is
// every other. `carried` is bit 0 if the first byte is one.
inline uint64_t secondBytes(uint64_t leads, uint64_t carried) {
  constexpr uint64_t oddPlaces = 0xAAAAAAAAAAAAAAAA;
  const uint64_t first = leads & ~carried;
  // A subtraction runs through each run of leads, and comes out at its end the other way when that begins at an odd
  // place.
  const uint64_t ends = ((first << 1 | oddPlaces) - first) ^ oddPlaces;
  return ends ^ (leads | carried);
}

inline void storeLanes(uint8_t* out, __m512i units, size_t count) {
  _mm256_mask_storeu_epi16(out, first16(count), _mm512_cvtepi32_epi16(units));
}

}  // namespace

}  // namespace veldnls::avx512
