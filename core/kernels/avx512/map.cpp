#include "core/kernels/avx512/byte_table.h"
#include "core/kernels/avx512/functions.h"
#include "core/kernels/avx512/lanes.h"
#include "core/kernels/tiers.h"

namespace veldnls::avx512 {

namespace {

// Below this a table of units costs more to take apart than it saves.
constexpr size_t shortestExpansion = 32;

// Indices of the low bytes of 64 units in two registers; those of the high bytes are one more.
alignas(64) constexpr auto lowByteIndices = [] {
  struct Indices {
    uint8_t at[64];
  } indices{};
  for (int i = 0; i < 64; ++i) indices.at[i] = static_cast<uint8_t>(2 * i);
  return indices;
}();

// Indices that bring bytes 0 to 31 of two registers together as units; those for bytes 32 to 63 are 32 more.
alignas(64) constexpr auto pairIndices = [] {
  struct Indices {
    uint8_t at[64];
  } indices{};
  for (int i = 0; i < 64; ++i) indices.at[i] = static_cast<uint8_t>(i / 2 + (i % 2) * 64);
  return indices;
}();

struct Planes {
  __m512i low;
  __m512i high;
};

Planes planesOf(__m512i firstUnits, __m512i lastUnits) {
  const __m512i low = _mm512_load_si512(lowByteIndices.at);
  const __m512i high = _mm512_add_epi8(low, _mm512_set1_epi8(1));
  return {_mm512_permutex2var_epi8(firstUnits, low, lastUnits), _mm512_permutex2var_epi8(firstUnits, high, lastUnits)};
}

Planes planesAt(const char16_t* units) { return planesOf(_mm512_loadu_si512(units), _mm512_loadu_si512(units + 32)); }

// A text that uses more pages than this within a block goes faster unit by unit.
constexpr int mostPages = 8;

// The bytes of up to 64 units, of which `left` wait for theirs: page by page. Ends at a null page, with `end` the first
// unit of it, or with the units in `left` for which there are too many pages.
__m512i bytesByPage(const uint8_t* const* pages, const uint8_t* in, const Planes& units, uint64_t& left, size_t& end) {
  __m512i bytes = _mm512_setzero_si512();
  for (int page = 0; page < mostPages && left != 0; ++page) {
    const size_t first = lanesBefore(left);
    const uint8_t high = in[2 * first + 1];
    if (pages[high] == nullptr) {
      end = first;
      left = 0;
      break;
    }
    const uint64_t same = _mm512_mask_cmpeq_epi8_mask(left, units.high, _mm512_set1_epi8(static_cast<char>(high)));
    bytes = _mm512_mask_mov_epi8(bytes, same, ByteTable(pages[high])[units.low]);
    left &= ~same;
  }
  return bytes;
}

}  // namespace

void byteMap(const uint8_t* table, const uint8_t* in, uint8_t* out, size_t count) {
  const ByteTable bytes(table);
  size_t i = 0;
  for (; i + 2 * blockBytes <= count; i += 2 * blockBytes) {
    const __m512i first = bytes[_mm512_loadu_si512(in + i)];
    const __m512i second = bytes[_mm512_loadu_si512(in + i + blockBytes)];
    _mm512_storeu_si512(out + i, first);
    _mm512_storeu_si512(out + i + blockBytes, second);
  }
  for (; i < count; i += blockBytes) {
    const size_t n = smaller(count - i, blockBytes);
    storeBytes(out + i, bytes[loadBytes(in + i, n)], n);
  }
}

void expand(const char16_t* table, const uint8_t* in, uint8_t* out, size_t count) {
  if (count < shortestExpansion) return scalarKernels.expand(table, in, out, count);
  const Planes first = planesAt(table);
  const Planes second = planesAt(table + 64);
  const Planes third = planesAt(table + 128);
  const Planes fourth = planesAt(table + 192);
  const ByteTable low(first.low, second.low, third.low, fourth.low);
  const ByteTable high(first.high, second.high, third.high, fourth.high);
  const __m512i front = _mm512_load_si512(pairIndices.at);
  const __m512i back = _mm512_add_epi8(front, _mm512_set1_epi8(32));
  for (size_t i = 0; i < count; i += blockBytes) {
    const size_t n = smaller(count - i, blockBytes);
    const __m512i bytes = loadBytes(in + i, n);
    const __m512i lowBytes = low[bytes];
    const __m512i highBytes = high[bytes];
    uint8_t* at = out + 2 * i;
    storeUnits16(at, _mm512_permutex2var_epi8(lowBytes, front, highBytes), smaller(n, blockUnits16));
    if (n > blockUnits16) {
      storeUnits16(at + blockBytes, _mm512_permutex2var_epi8(lowBytes, back, highBytes), n - blockUnits16);
    }
  }
}

size_t pagesToBytes(const uint8_t* const* pages, const uint8_t* in, uint8_t* out, size_t count) {
  for (size_t i = 0; i < count; i += blockBytes) {
    const size_t n = smaller(count - i, blockBytes);
    const uint8_t* at = in + 2 * i;
    const __m512i front = _mm512_maskz_loadu_epi16(first32(smaller(n, blockUnits16)), at);
    const __m512i back = n > blockUnits16 ? _mm512_maskz_loadu_epi16(first32(n - blockUnits16), at + blockBytes)
                                          : _mm512_setzero_si512();
    const Planes units = planesOf(front, back);
    size_t end = n;
    uint64_t left = first64(n);
    const __m512i bytes = bytesByPage(pages, at, units, left, end);
    if (left != 0) return i + scalarKernels.pagesToBytes(pages, at, out + i, count - i);
    const uint64_t notNull = _mm512_test_epi8_mask(_mm512_or_si512(units.low, units.high), _mm512_set1_epi8(-1));
    const uint64_t without = _mm512_mask_testn_epi8_mask(notNull & first64(end), bytes, bytes);
    if (without != 0) end = lanesBefore(without);
    storeBytes(out + i, bytes, end);
    if (end < n) return i + end;
  }
  return count;
}

}  // namespace veldnls::avx512
