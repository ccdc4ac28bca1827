#include "core/kernels/avx2/functions.h"
#include "core/kernels/avx2/lanes.h"
#include "core/kernels/tiers.h"

namespace veldnls::avx2 {

namespace {

// Below these a table costs more to prepare than it saves.
constexpr size_t shortestMap = 128;
constexpr size_t shortestExpansion = 128;

constexpr int rows = 16;
constexpr size_t asciiBytes = 128;

// A table of 256 bytes as 16 rows for shuffles, which look up four bits and give zero where bit 7 of an index is set.
// Each row of a half holds what changes from the row before: at the n-th step indices are 16 n less, those of row n
// and above are not yet negative, and all that was added up till then is the entry.
class ByteTable {
 public:
  explicit ByteTable(const uint8_t* table) {
    __m128i before = _mm_setzero_si128();
    for (int row = 0; row < rows; ++row) {
      if (row == rows / 2) before = _mm_setzero_si128();
      const __m128i entries = load16(table + 16 * row);
      changes_[row] = _mm256_broadcastsi128_si256(_mm_xor_si128(entries, before));
      before = entries;
    }
  }

  __m256i operator[](__m256i indices) const {
    const __m256i step = _mm256_set1_epi8(16);
    __m256i low = indices;
    __m256i high = _mm256_xor_si256(indices, _mm256_set1_epi8(static_cast<char>(0x80)));
    __m256i entries = _mm256_setzero_si256();
    for (int row = 0; row < rows / 2; ++row) {
      entries = _mm256_xor_si256(entries, _mm256_shuffle_epi8(changes_[row], low));
      entries = _mm256_xor_si256(entries, _mm256_shuffle_epi8(changes_[row + rows / 2], high));
      low = stepDown(low, step);
      high = stepDown(high, step);
    }
    return entries;
  }

 private:
  // Indices that are negative stay so.
  static __m256i stepDown(__m256i indices, __m256i step) { return _mm256_subs_epi8(indices, step); }

  __m256i changes_[rows];
};

bool keepsAscii(const char16_t* table) {
  __m256i differences = _mm256_setzero_si256();
  __m256i expected = _mm256_set_epi16(15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0);
  for (size_t i = 0; i < asciiBytes; i += blockUnits16) {
    const __m256i units = load(reinterpret_cast<const uint8_t*>(table + i));
    differences = _mm256_or_si256(differences, _mm256_xor_si256(units, expected));
    expected = _mm256_add_epi16(expected, _mm256_set1_epi16(blockUnits16));
  }
  return _mm256_testz_si256(differences, differences) != 0;
}

}  // namespace

void byteMap(const uint8_t* table, const uint8_t* in, uint8_t* out, size_t count) {
  size_t i = 0;
  if (count >= shortestMap) {
    const ByteTable bytes(table);
    for (; i + blockBytes <= count; i += blockBytes) store(out + i, bytes[load(in + i)]);
  }
  scalarKernels.byteMap(table, in + i, out + i, count - i);
}

// Only ASCII in a page that keeps it is faster than the look-up of each byte.
void expand(const char16_t* table, const uint8_t* in, uint8_t* out, size_t count) {
  size_t i = 0;
  if (count >= shortestExpansion && keepsAscii(table)) {
    for (; i + blockBytes <= count; i += blockBytes) {
      const __m256i bytes = load(in + i);
      if (_mm256_movemask_epi8(bytes) == 0) {
        putWide16(out + 2 * i, bytes);
      } else {
        scalarKernels.expand(table, in + i, out + 2 * i, blockBytes);
      }
    }
  }
  scalarKernels.expand(table, in + i, out + 2 * i, count - i);
}

size_t pagesToBytes(const uint8_t* const* pages, const uint8_t* in, uint8_t* out, size_t count) {
  return scalarKernels.pagesToBytes(pages, in, out, count);
}

}  // namespace veldnls::avx2
