#include "core/kernels/avx512/code_lanes.h"
#include "core/kernels/avx512/field.h"
#include "core/kernels/avx512/functions.h"
#include "core/kernels/avx512/lanes.h"
#include "core/kernels/avx512/utf8_output.h"

namespace veldnls::avx512 {

namespace {

using std::endian;

class Cells {
 public:
  explicit Cells(const UnitCells& codes) : blocks_(codes.blocks), cells_(codes.cells) {}

  Characters operator()(__m512i units, size_t length) const {
    Characters characters = bothHalves(length, [&](bool upper) { return ofHalf(widened(halfOf(units, upper))); });
    characters.codes = bytesTurnedInUnits16(characters.codes);
    return characters;
  }

 private:
  HalfCharacters ofHalf(__m512i units) const {
    const __mmask16 nonAscii = _mm512_cmpge_epu32_mask(units, all32(0x80));
    const __m512i starts = _mm512_and_si512(items16(nonAscii, _mm512_srli_epi32(units, 6), blocks_), all32(0xFFFF));
    const __m512i places = _mm512_add_epi32(starts, _mm512_and_si512(units, all32(0x3F)));
    const __m512i cells = items16(nonAscii, places, cells_);
    return {_mm512_cvtepi32_epi16(cells), _mm512_mask_test_epi32_mask(nonAscii, cells, all32(0x8000))};
  }

  const uint16_t* blocks_;
  const uint16_t* cells_;
};

template <bool onlyDoubles, class LookUp>
KernelRun fromUnits(const LookUp& lookUp, const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  KernelRun run{0, 0};
  while (run.read < count) {
    const size_t length = smaller(count - run.read, blockUnits16);
    const __m512i units = loadUnits16<endian::little>(in + 2 * run.read, length);
    uint8_t* target = out + run.written;
    const size_t left = room - run.written;
    const __mmask32 ascii = onlyDoubles ? 0 : _mm512_testn_epi16_mask(units, all16(0xFF80));
    if ((~ascii & first32(length)) == 0) {
      if (length > left) break;
      _mm256_mask_storeu_epi8(target, first32(length), _mm512_cvtepi16_epi8(units));
      run = {run.read + length, run.written + length};
      continue;
    }
    const Characters characters = lookUp(units, length);
    const __mmask32 single = characters.found & _mm512_testn_epi16_mask(characters.codes, all16(0xFF));
    const __mmask32 taken = onlyDoubles ? characters.found & ~single : ascii | characters.found;
    const size_t end = smaller(length, lanesBefore(~uint64_t{taken}));
    const __mmask32 inside = first32(end);
    const __mmask32 ofOneByte = (ascii | single) & inside;
    const size_t size = 2 * end - countOf(ofOneByte);
    if (size > left) break;
    if (ofOneByte == 0) {
      storeUnits16(target, characters.codes, end);
    } else {
      // What has one byte has it in the lower half of its lane.
      __m512i lanes = _mm512_mask_mov_epi16(characters.codes, ascii, units);
      lanes = _mm512_mask_srli_epi16(lanes, single & ~ascii, lanes, 8);
      const uint64_t kept = _pdep_u64(inside, 0x5555555555555555) | _pdep_u64(inside & ~ofOneByte, 0xAAAAAAAAAAAAAAAA);
      storeBytes(target, _mm512_maskz_compress_epi8(kept, lanes), size);
    }
    run = {run.read + end, run.written + size};
    if (end < length) break;
  }
  return run;
}

void widenAscii(uint8_t* out, __m512i bytes, size_t length) {
  storeUnits16(out, _mm512_cvtepu8_epi16(lowerHalf(bytes)), smaller(length, blockUnits16));
  if (length > blockUnits16) {
    storeUnits16(out + blockBytes, _mm512_cvtepu8_epi16(upperHalf(bytes)), length - blockUnits16);
  }
}

// The characters of a window, packed: first and second byte of each, and which have a second one.
struct Packed {
  Packed(__m512i bytes, __m512i behind, uint64_t starts, uint64_t leads)
      : doubles(_pext_u64(leads, starts)), count(countOf(starts)) {
    _mm512_store_si512(firsts, _mm512_maskz_compress_epi8(starts, bytes));
    _mm512_store_si512(seconds, _mm512_maskz_compress_epi8(starts, behind));
  }

  static __m512i lanes(const uint8_t* bytes) {
    return _mm512_cvtepu8_epi32(_mm_load_si128(reinterpret_cast<const __m128i*>(bytes)));
  }

  // Writes the units up to the first code without one, and returns how many.
  size_t put(const Rows& rows, uint8_t* out) const {
    for (size_t i = 0; i < count; i += blockUnits32) {
      const auto wanted = static_cast<__mmask16>(doubles >> i);
      const __m512i first = lanes(firsts + i);
      const __m512i units = _mm512_mask_mov_epi32(first, wanted, rows(wanted, first, lanes(seconds + i)));
      const __mmask16 without = _mm512_mask_testn_epi32_mask(wanted, units, units);
      const size_t length = smaller(count - i, blockUnits32);
      const size_t end = smaller(length, lanesBefore(without));
      storeLanes(out + 2 * i, units, end);
      if (end < length) return i + end;
    }
    return count;
  }

  alignas(64) uint8_t firsts[blockBytes];
  alignas(64) uint8_t seconds[blockBytes];
  uint64_t doubles;
  size_t count;
};

}  // namespace

KernelRun unitsToCodes(const UnitCodes& codes, uint32_t blank, const uint8_t* in, size_t count, uint8_t* out,
                       size_t room) {
  if (count <= fieldUnits) {
    KernelRun run;
    if (fieldToCodes(codes, blank, in, count, out, room, run)) return run;
  }
  return fromUnits<false>(Ranks(codes, blank), in, count, out, room);
}

KernelRun unitsToDoubles(const UnitCodes& codes, uint32_t blank, const uint8_t* in, size_t count, uint8_t* out,
                         size_t room) {
  return fromUnits<true>(Ranks(codes, blank), in, count, out, room);
}

KernelRun unitsToCells(const UnitCells& codes, const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  return fromUnits<false>(Cells(codes), in, count, out, room);
}

KernelRun codesToUnits(const CodeRows& codeRows, const LeadBytes& /*leads*/, uint32_t blank, const uint8_t* in,
                       size_t count, uint8_t* out, size_t room) {
  if (count <= fieldBytes) {
    KernelRun run;
    const __m256i units = unitsOfField(codeRows, blank, in, count, run);
    if (run.written > room) return {0, 0};
    _mm256_mask_storeu_epi16(out, first16(run.written), units);
    return run;
  }
  const Rows rows(codeRows, blank);
  KernelRun run{0, 0};
  uint64_t carried = 0;
  size_t at = 0;  // of the window; run.read is behind the last whole character
  while (at < count) {
    const size_t remaining = count - at;
    size_t length = smaller(remaining, blockBytes);
    const __m512i bytes = loadBytes(in + at, length);
    uint8_t* target = out + 2 * run.written;
    const uint64_t nonAscii = _mm512_movepi8_mask(bytes);
    if ((nonAscii | carried) == 0) {
      if (length > room - run.written) break;
      widenAscii(target, bytes, length);
      at += length;
      run = {at, run.written + length};
      continue;
    }
    const __m512i behind = loadBytes(in + at + 1, smaller(remaining - 1, blockBytes));
    uint64_t starts = ~secondBytes(nonAscii, carried) & first64(length);
    // The text's last byte is no lead.
    const uint64_t bad = remaining <= blockBytes ? starts & nonAscii & uint64_t{1} << (length - 1) : 0;
    const bool stops = bad != 0;
    if (stops) length = lanesBefore(bad);
    starts &= first64(length);
    const Packed characters(bytes, behind, starts, nonAscii);
    if (characters.count > room - run.written) break;
    const size_t written = characters.put(rows, target);
    run.written += written;
    if (written < characters.count) {
      run.read = at + lanesBefore(_pdep_u64(uint64_t{1} << written, starts));
      break;
    }
    carried = (starts & nonAscii) >> (blockBytes - 1);
    at += length;
    run.read = at + carried;
    if (stops) break;
  }
  return run;
}

KernelRun codesToUtf8(const CodeRows& rows, uint32_t blank, const uint8_t* in, size_t count, uint8_t* out,
                      size_t room) {
  KernelRun run{0, 0};
  while (run.read < count) {
    const size_t length = smaller(count - run.read, fieldBytes);
    KernelRun field;
    const __m256i units = unitsOfField(rows, blank, in + run.read, length, field);
    const Utf8Lanes lanes = toUtf8Lanes(widened(units), first16(field.written));
    const size_t size = countOf(lanes.kept);
    if (size > room - run.written) break;
    putLanes(out + run.written, lanes);
    run = {run.read + field.read, run.written + size};
    // A lead at the end of a field is the next one's, if there is one.
    if (field.read + 1 < length || field.read == 0) break;
  }
  return run;
}

size_t doublesToUnits(const CodeRows& codeRows, uint32_t blank, const uint8_t* in, uint8_t* out, size_t count) {
  const Rows rows(codeRows, blank);
  for (size_t i = 0; i < count; i += blockUnits32) {
    const size_t length = smaller(count - i, blockUnits32);
    const __mmask16 inside = first16(length);
    const __m512i codes = widened(_mm256_maskz_loadu_epi16(inside, in + 2 * i));
    const __m512i units = rows(inside, _mm512_and_si512(codes, all32(0xFF)), _mm512_srli_epi32(codes, 8));
    const size_t end = smaller(length, lanesBefore(_mm512_mask_testn_epi32_mask(inside, units, units)));
    storeLanes(out + 2 * i, units, end);
    if (end < length) return i + end;
  }
  return count;
}

size_t runWithout(const uint8_t* four, const uint8_t* in, size_t count) {
  const auto is = [](__m512i bytes, uint8_t byte) {
    return _mm512_cmpeq_epi8_mask(bytes, _mm512_set1_epi8(static_cast<char>(byte)));
  };
  for (size_t i = 0; i < count; i += blockBytes) {
    const size_t n = smaller(count - i, blockBytes);
    const __m512i bytes = loadBytes(in + i, n);
    const uint64_t found = is(bytes, four[0]) | is(bytes, four[1]) | is(bytes, four[2]) | is(bytes, four[3]);
    const size_t end = smaller(n, lanesBefore(found));
    if (end < n) return i + end;
  }
  return count;
}

}  // namespace veldnls::avx512
