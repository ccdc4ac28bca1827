// The conversions between units and two-byte codes for text of up to 16 bytes: in narrow registers, since the
// preparations for wide ones would be most of the price, and without branches on what the text is made of, which in
// short texts are guessed wrong.
#pragma once

#include "core/kernels/avx512/code_lanes.h"
#include "core/kernels/kernels.h"

namespace veldnls::avx512 {

namespace {

inline constexpr size_t fieldBytes = 16;
inline constexpr size_t fieldUnits = 8;

inline __m256i few32(int value) { return _mm256_set1_epi32(value); }
inline __m128i few16(uint32_t value) { return _mm_set1_epi16(static_cast<int16_t>(value)); }
inline __mmask8 first8(size_t count) { return static_cast<__mmask8>(first16(count)); }

// The items of indices from 1 on, in lanes of 16 bits; 0 in lanes that aren't wanted.
inline __m128i fewItems(__mmask8 wanted, __m256i indices, const void* items) {
  const __m256i ahead = _mm256_add_epi32(indices, few32(-1));
  const __m256i pairs = _mm256_mmask_i32gather_epi32(_mm256_setzero_si256(), wanted, ahead, items, 2);
  return _mm256_cvtepi32_epi16(_mm256_srli_epi32(pairs, 16));
}

// The units of eight two-byte codes, 0 where there is none.
inline __m128i fewUnits(const CodeRows& rows, __mmask8 wanted, __m128i codes) {
  const __m256i code = _mm256_cvtepu16_epi32(codes);
  const __m256i rowOf = _mm256_srli_epi32(_mm256_add_epi32(code, few32(0x60)), 7);
  const __m256i row = _mm256_mmask_i32gather_epi32(_mm256_setzero_si256(), wanted, rowOf, rows.rows, sizeof(CodeRow));
  const __m256i second = _mm256_and_si256(code, few32(0xFF));
  const __m256i place = _mm256_sub_epi32(second, _mm256_srli_epi32(_mm256_slli_epi32(row, 8), 24));
  const __mmask8 inRow = _mm256_mask_cmple_epu32_mask(wanted, place, _mm256_srli_epi32(row, 24));
  const __m256i index = _mm256_add_epi32(_mm256_blend_epi16(_mm256_setzero_si256(), row, 0x55), place);
  // The first unit of all is 0.
  return fewItems(_mm256_mask_test_epi32_mask(inRow, index, index), index, rows.units);
}

// The units of a field. `run` tells how many bytes they are of, and how many they are.
inline __m256i unitsOfField(const CodeRows& rows, uint32_t blank, const uint8_t* in, size_t count, KernelRun& run) {
  const __m128i bytes = _mm_maskz_loadu_epi8(first16(count), in);
  const uint64_t nonAscii = _mm_movepi8_mask(bytes);
  if (nonAscii == 0) {
    run = {count, count};
    return _mm256_cvtepu8_epi16(bytes);
  }
  // The text's last byte is no lead.
  uint64_t starts = ~secondBytes(nonAscii, 0) & first16(count);
  const size_t end = count - ((starts & nonAscii) >> (count - 1));
  starts &= first16(end);
  const size_t characters = countOf(starts);
  const uint64_t doubles = _pext_u64(nonAscii, starts);
  const auto kept = static_cast<__mmask16>(starts);
  __m128i firsts = _mm_maskz_compress_epi8(kept, bytes);
  __m128i seconds = _mm_maskz_compress_epi8(kept, _mm_bsrli_si128(bytes, 1));
  uint64_t without = 0;
  const auto eight = [&](unsigned at) {
    const auto wanted = static_cast<__mmask8>(doubles >> at);
    const __m128i codes = _mm_unpacklo_epi8(seconds, firsts);
    __m128i units = _mm_mask_mov_epi16(_mm_srli_epi16(codes, 8), wanted, fewUnits(rows, wanted, codes));
    units = _mm_mask_mov_epi16(units, _mm_mask_cmpeq_epi16_mask(wanted, codes, few16(blank)), few16(ideographicSpace));
    without |= uint64_t{_mm_mask_testn_epi16_mask(wanted, units, units)} << at;
    return units;
  };
  __m256i units = _mm256_castsi128_si256(eight(0));
  if (characters > fieldUnits) {
    firsts = _mm_bsrli_si128(firsts, fieldUnits);
    seconds = _mm_bsrli_si128(seconds, fieldUnits);
    units = _mm256_inserti128_si256(units, eight(fieldUnits), 1);
  }
  run = {end, characters};
  if (without != 0) run = {lanesBefore(_pdep_u64(without & (0 - without), starts)), lanesBefore(without)};
  return units;
}

// Returns false, having written nothing, when the field has characters that this form doesn't know, or little room.
inline bool fieldToCodes(const UnitCodes& codes, uint32_t blank, const uint8_t* in, size_t count, uint8_t* out,
                         size_t room, KernelRun& run) {
  constexpr int firstKnown = 0x300;
  const uint32_t inside = first8(count);
  const __m128i units = _mm_maskz_loadu_epi16(static_cast<__mmask8>(inside), in);
  const uint32_t ascii = _mm_testn_epi16_mask(units, few16(0xFF80)) & inside;
  if (ascii == inside) {
    if (count > room) return false;
    _mm_mask_storeu_epi8(out, static_cast<__mmask16>(inside), _mm_packus_epi16(units, units));
    run = {count, count};
    return true;
  }
  const __m256i unit = _mm256_cvtepu16_epi32(units);
  const __mmask8 wanted = _mm256_cmpge_epu32_mask(unit, few32(firstKnown));
  // The byte of each block is read together with the three ahead of it.
  const __m256i zero = _mm256_setzero_si256();
  const __m256i ahead = _mm256_add_epi32(_mm256_srli_epi32(unit, 8), few32(-3));
  const __m256i block = _mm256_srli_epi32(_mm256_mmask_i32gather_epi32(zero, wanted, ahead, codes.blocks, 1), 24);
  constexpr int aOrBAndC = 0xF8;
  const __m256i groupOf =
      _mm256_ternarylogic_epi32(_mm256_slli_epi32(block, 4), _mm256_srli_epi32(unit, 4), few32(0xF), aOrBAndC);
  const __m256i group = _mm256_mmask_i32gather_epi32(zero, wanted, groupOf, codes.groups, sizeof(UnitGroup));
  const __m256i bit = _mm256_sllv_epi32(few32(1), _mm256_and_si256(unit, few32(0xF)));
  const __mmask8 found = _mm256_test_epi32_mask(group, bit);
  const __m256i below = _mm256_and_si256(group, _mm256_add_epi32(bit, few32(-1)));
  const __m256i place = _mm256_add_epi32(_mm256_srli_epi32(group, 16), _mm256_popcnt_epi32(below));
  const __mmask8 later = _mm256_mask_test_epi32_mask(found, place, place);
  __m128i characters = fewItems(later, place, codes.values);
  const uint32_t spaces = _mm_cmpeq_epi16_mask(units, few16(ideographicSpace));
  const uint32_t katakana =
      _mm_cmplt_epu16_mask(_mm_sub_epi16(units, few16(firstHalfWidthKatakana)), few16(halfWidthKatakanaCount));
  if (((~uint32_t{wanted} & ~ascii) | (found ^ later)) & inside) return false;
  characters = _mm_mask_mov_epi16(characters, static_cast<__mmask8>(spaces), few16(blank));
  const uint32_t taken = ascii | ((found | spaces) & ~katakana);
  const size_t end = smaller(count, lanesBefore(~uint64_t{taken}));
  const uint32_t single = _mm_testn_epi16_mask(characters, few16(0xFF)) | ascii;
  // What has one byte has it in the lower half of its lane.
  __m128i lanes = _mm_mask_srli_epi16(characters, static_cast<__mmask8>(single), characters, 8);
  lanes = _mm_mask_mov_epi16(lanes, static_cast<__mmask8>(ascii), units);
  const auto kept = static_cast<__mmask16>(_pdep_u32(first8(end), 0x5555) | _pdep_u32(first8(end) & ~single, 0xAAAA));
  const size_t size = countOf(kept);
  if (size > room) return false;
  _mm_mask_storeu_epi8(out, first16(size), _mm_maskz_compress_epi8(kept, lanes));
  run = {end, size};
  return true;
}

}  // namespace

}  // namespace veldnls::avx512
