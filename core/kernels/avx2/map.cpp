#include "core/kernels/avx2/functions.h"
#include "core/kernels/avx2/lanes.h"
#include "core/kernels/tiers.h"

namespace veldnls::avx2 {

namespace {

// Below these a table costs more to prepare than it saves.
constexpr size_t shortestMap = 128;
constexpr size_t shortestExpansion = 128;
constexpr size_t shortestPaging = 128;
constexpr size_t unitsAhead = 32;

constexpr size_t asciiBytes = 128;
constexpr size_t groupBytes = 4 * blockBytes;

// Half of a table of bytes, 128 of them, as rows for shuffles, which look up four bits and give zero where bit 7 of an
// index is set. A row holds what changes from the row before: at the n-th step indices are 16 n less, those of row n
// and above are not yet negative, and all that was added up till then is the entry.
class HalfTable {
 public:
  static constexpr int rows = 8;

  // Rows come one after the other.
  void add(int row, __m128i entries) {
    changes_[row] = _mm256_broadcastsi128_si256(_mm_xor_si128(entries, before_));
    before_ = entries;
  }

  // Zero for indices from 128 on.
  __m256i operator[](__m256i indices) const {
    __m256i entries = _mm256_setzero_si256();
    for (const __m256i& change : changes_) {
      entries = _mm256_xor_si256(entries, _mm256_shuffle_epi8(change, indices));
      indices = _mm256_subs_epi8(indices, _mm256_set1_epi8(16));
    }
    return entries;
  }

 private:
  __m256i changes_[rows];
  __m128i before_ = _mm_setzero_si128();
};

__m256i fromUpperHalf(__m256i indices) {
  return _mm256_xor_si256(indices, _mm256_set1_epi8(static_cast<char>(asciiBytes)));
}

HalfTable halfOf(const uint8_t* table) {
  HalfTable half;
  for (int row = 0; row < HalfTable::rows; ++row) half.add(row, load16(table + 16 * row));
  return half;
}

class ByteTable {
 public:
  explicit ByteTable(const uint8_t* table) : lower_(halfOf(table)), upper_(halfOf(table + asciiBytes)) {}

  __m256i operator[](__m256i indices) const { return _mm256_or_si256(lower_[indices], upper_[fromUpperHalf(indices)]); }

 private:
  HalfTable lower_;
  HalfTable upper_;
};

// A table that keeps what is below 0x80.
class AsciiTable {
 public:
  explicit AsciiTable(const uint8_t* table) : upper_(halfOf(table + asciiBytes)) {}

  __m256i operator[](__m256i indices) const {
    return _mm256_blendv_epi8(indices, upper_[fromUpperHalf(indices)], indices);
  }

 private:
  HalfTable upper_;
};

// The same of units: their low and their high bytes.
class AsciiUnits {
 public:
  explicit AsciiUnits(const char16_t* table) {
    for (int row = 0; row < HalfTable::rows; ++row) {
      const auto* at = reinterpret_cast<const uint8_t*>(table + asciiBytes) + 32 * row;
      const __m128i first = load16(at);
      const __m128i second = load16(at + 16);
      const __m128i lowByte = _mm_set1_epi16(0xFF);
      low_.add(row, _mm_packus_epi16(_mm_and_si128(first, lowByte), _mm_and_si128(second, lowByte)));
      high_.add(row, _mm_packus_epi16(_mm_srli_epi16(first, 8), _mm_srli_epi16(second, 8)));
    }
  }

  // Four blocks, which often are ASCII in one language and seldom in another; that of one block is harder to foresee.
  void putGroup(uint8_t* out, const uint8_t* in) const {
    const __m256i front = _mm256_or_si256(load(in), load(in + blockBytes));
    const __m256i back = _mm256_or_si256(load(in + 2 * blockBytes), load(in + 3 * blockBytes));
    const bool isAscii = _mm256_movemask_epi8(_mm256_or_si256(front, back)) == 0;
    for (size_t i = 0; i < groupBytes; i += blockBytes) {
      if (isAscii) {
        putWide16(out + 2 * i, load(in + i));
      } else {
        put(out + 2 * i, load(in + i));
      }
    }
  }

  void put(uint8_t* out, __m256i bytes) const {
    const __m256i indices = fromUpperHalf(bytes);
    const __m256i low = _mm256_blendv_epi8(bytes, low_[indices], bytes);
    const __m256i high = high_[indices];
    const __m256i even = _mm256_unpacklo_epi8(low, high);
    const __m256i odd = _mm256_unpackhi_epi8(low, high);
    store(out, _mm256_permute2x128_si256(even, odd, 0x20));
    store(out + blockBytes, _mm256_permute2x128_si256(even, odd, 0x31));
  }

 private:
  HalfTable low_;
  HalfTable high_;
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

bool keepsAscii(const uint8_t* table) {
  __m256i differences = _mm256_setzero_si256();
  __m256i expected = _mm256_set_epi8(31, 30, 29, 28, 27, 26, 25, 24, 23, 22, 21, 20, 19, 18, 17, 16,  //
                                     15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0);
  for (size_t i = 0; i < asciiBytes; i += blockBytes) {
    differences = _mm256_or_si256(differences, _mm256_xor_si256(load(table + i), expected));
    expected = _mm256_add_epi8(expected, _mm256_set1_epi8(blockBytes));
  }
  return _mm256_testz_si256(differences, differences) != 0;
}

// Two pages as tables, the first and one that the text uses much; units of further pages go one by one.
template <class FirstTable>
class PagePair {
 public:
  explicit PagePair(const uint8_t* const* pages) : pages_(pages), first_(pages[0]), other_(pages[0]) {}

  // 32 units to bytes. Does nothing if one has no byte, or too many are of further pages.
  bool put(const uint8_t* in, uint8_t* out) {
    const __m256i front = load(in);
    const __m256i back = load(in + blockBytes);
    const __m256i lowByte = _mm256_set1_epi16(0xFF);
    const __m256i low = packed(_mm256_and_si256(front, lowByte), _mm256_and_si256(back, lowByte));
    const __m256i high = packed(_mm256_srli_epi16(front, 8), _mm256_srli_epi16(back, 8));
    uint32_t further = ~lanesOf(high, _mm256_setzero_si256());
    __m256i bytes = first_[low];
    if (onesOf(further) > mostFurther) {
      if (onesOf(further & ~ofOther(high)) > mostFurther) {
        if (!takePage(in[2 * _tzcnt_u32(further & ~ofOther(high)) + 1])) return false;
        if (onesOf(further & ~ofOther(high)) > mostFurther) return false;
      }
      further &= ~ofOther(high);
      bytes = _mm256_blendv_epi8(bytes, other_[low], _mm256_cmpeq_epi8(high, otherHigh()));
    }
    const uint32_t nulls = lanesOf(_mm256_or_si256(low, high), _mm256_setzero_si256());
    if ((lanesOf(bytes, _mm256_setzero_si256()) & ~nulls & ~further) != 0) return false;
    if (further != 0) return putFurther(in, bytes, further, out);
    store(out, bytes);
    return true;
  }

 private:
  static constexpr uint32_t mostFurther = 4;

  static uint32_t onesOf(uint32_t lanes) { return static_cast<uint32_t>(_mm_popcnt_u32(lanes)); }
  static uint32_t lanesOf(__m256i bytes, __m256i value) {
    return static_cast<uint32_t>(_mm256_movemask_epi8(_mm256_cmpeq_epi8(bytes, value)));
  }
  // Units below 0x100 as bytes.
  static __m256i packed(__m256i front, __m256i back) {
    return _mm256_permute4x64_epi64(_mm256_packus_epi16(front, back), _MM_SHUFFLE(3, 1, 2, 0));
  }

  __m256i otherHigh() const { return _mm256_set1_epi8(static_cast<char>(otherHigh_)); }
  uint32_t ofOther(__m256i high) const { return lanesOf(high, otherHigh()); }

  bool takePage(uint8_t high) {
    if (pages_[high] == nullptr) return false;
    other_ = ByteTable(pages_[high]);
    otherHigh_ = high;
    return true;
  }

  bool putFurther(const uint8_t* in, __m256i bytes, uint32_t further, uint8_t* out) const {
    alignas(32) uint8_t patched[blockBytes];
    store(patched, bytes);
    for (; further != 0; further &= further - 1) {
      const auto place = static_cast<size_t>(_tzcnt_u32(further));
      const uint8_t* page = pages_[in[2 * place + 1]];
      if (page == nullptr || page[in[2 * place]] == 0) return false;
      patched[place] = page[in[2 * place]];
    }
    store(out, load(patched));
    return true;
  }

  const uint8_t* const* pages_;
  FirstTable first_;
  ByteTable other_;
  uint8_t otherHigh_ = 0;  // the first page until there is another
};

template <class FirstTable>
size_t restToBytes(const uint8_t* const* given, const uint8_t* in, uint8_t* out, size_t count) {
  PagePair<FirstTable> pages(given);
  size_t i = 0;
  for (; i + blockBytes <= count; i += blockBytes) {
    if (pages.put(in + 2 * i, out + i)) continue;
    const size_t taken = scalarKernels.pagesToBytes(given, in + 2 * i, out + i, blockBytes);
    if (taken < blockBytes) return i + taken;
  }
  return i + scalarKernels.pagesToBytes(given, in + 2 * i, out + i, count - i);
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

// Where a page keeps ASCII half of it is looked up, which is faster than each byte; all of it isn't.
void expand(const char16_t* table, const uint8_t* in, uint8_t* out, size_t count) {
  size_t i = 0;
  if (count >= shortestExpansion && keepsAscii(table)) {
    const AsciiUnits units(table);
    for (; i + groupBytes <= count; i += groupBytes) units.putGroup(out + 2 * i, in + i);
    for (; i + blockBytes <= count; i += blockBytes) units.put(out + 2 * i, load(in + i));
  }
  scalarKernels.expand(table, in + i, out + 2 * i, count - i);
}

// The first units go one by one: where they aren't all converted, as when every few need a decision of the caller, no
// tables are prepared.
size_t pagesToBytes(const uint8_t* const* pages, const uint8_t* in, uint8_t* out, size_t count) {
  if (count < shortestPaging || pages[0] == nullptr) return scalarKernels.pagesToBytes(pages, in, out, count);
  const size_t done = scalarKernels.pagesToBytes(pages, in, out, unitsAhead);
  if (done < unitsAhead) return done;
  const auto rest = keepsAscii(pages[0]) ? restToBytes<AsciiTable> : restToBytes<ByteTable>;
  return done + rest(pages, in + 2 * done, out + done, count - done);
}

}  // namespace veldnls::avx2
