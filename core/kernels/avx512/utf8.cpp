#include "core/kernels/avx512/functions.h"
#include "core/kernels/avx512/lanes.h"

namespace veldnls::avx512 {

namespace {

constexpr size_t longestTail = 3;

__m512i all8(int value) { return _mm512_set1_epi8(static_cast<char>(value)); }
__m512i all16(int value) { return _mm512_set1_epi16(static_cast<int16_t>(value)); }

uint64_t atLeast(__m512i bytes, int value) { return _mm512_cmpge_epu8_mask(bytes, all8(value)); }
uint64_t below(__m512i bytes, int value) { return _mm512_cmplt_epu8_mask(bytes, all8(value)); }
uint64_t equal(__m512i bytes, int value) { return _mm512_cmpeq_epi8_mask(bytes, all8(value)); }
// 80 to BF, which as signed numbers are the lowest.
uint64_t trails(__m512i bytes) { return _mm512_cmplt_epi8_mask(bytes, all8(0xC0)); }

// 64 positions of a text: the byte at each, and those behind it, which may lie in the 64 positions that follow. Outside
// of the text there are zeros.
struct Window {
  Window(const uint8_t* in, size_t remaining) : length(smaller(remaining, blockBytes)) {
    if (remaining >= blockBytes + longestTail) {
      at = _mm512_loadu_si512(in);
      second = _mm512_loadu_si512(in + 1);
      third = _mm512_loadu_si512(in + 2);
      fourth = _mm512_loadu_si512(in + 3);
    } else {
      at = loadBytes(in, length);
      second = behind(in, remaining, 1);
      third = behind(in, remaining, 2);
      fourth = behind(in, remaining, 3);
    }
  }

  static __m512i behind(const uint8_t* in, size_t remaining, size_t distance) {
    const size_t before = smaller(distance, remaining);
    return loadBytes(in + before, smaller(remaining - before, blockBytes));
  }

  __m512i at;
  __m512i second;
  __m512i third;
  __m512i fourth;
  size_t length;
};

// Which positions begin a sequence, and what is wrong. A sequence belongs to the window in which it starts, and is
// tested there to its end; `carried` are the positions at the front that belong to one of the window before.
struct Sequences {
  Sequences(const Window& window, uint64_t carried) {
    const uint64_t trail = trails(window.at);
    const uint64_t leads = _mm512_movepi8_mask(window.at) & ~trail;
    starts = ~trail & first64(window.length);
    longer1 = leads;
    longer2 = atLeast(window.at, 0xE0);
    longer3 = atLeast(window.at, 0xF0);
    const uint64_t expected = carried | leads << 1 | longer2 << 2 | longer3 << 3;
    bad = (leads & ~trails(window.second)) | (longer2 & ~trails(window.third)) | (trail & ~expected) |
          (leads & below(window.at, 0xC2));
    if (longer2 != 0) {
      bad |= _mm512_mask_cmplt_epu8_mask(equal(window.at, 0xE0), window.second, all8(0xA0)) |
             _mm512_mask_cmpge_epu8_mask(equal(window.at, 0xED), window.second, all8(0xA0));
    }
    if (longer3 != 0) {
      bad |= (longer3 & ~trails(window.fourth)) | atLeast(window.at, 0xF5) |
             _mm512_mask_cmplt_epu8_mask(equal(window.at, 0xF0), window.second, all8(0x90));
    }
  }

  uint64_t carriedOn() const { return longer1 >> 63 | longer2 >> 62 | longer3 >> 61; }

  uint64_t starts;
  uint64_t longer1;  // of two bytes and more; three; four
  uint64_t longer2;
  uint64_t longer3;
  uint64_t bad;  // the first of them is where the text stops being plain
};

// Position 2i of a register of units is byte i of `at`, position 2i + 1 byte i of `second`.
alignas(64) constexpr auto pairIndices = [] {
  struct Indices {
    uint8_t at[64];
  } indices{};
  for (int i = 0; i < 64; ++i) indices.at[i] = static_cast<uint8_t>(i / 2 + (i % 2) * 64);
  return indices;
}();

// Half of a window in lanes of 16 bits: the UTF-16 unit that each position begins, if it begins one.
struct HalfWindow {
  HalfWindow(const Window& window, bool upper) {
    const __m512i front = _mm512_load_si512(pairIndices.at);
    const __m512i indices = upper ? _mm512_add_epi8(front, all8(32)) : front;
    pairs = _mm512_permutex2var_epi8(window.at, indices, window.second);
    const __m512i thirds = _mm512_maskz_permutexvar_epi8(0x5555555555555555, indices, window.third);
    // Five bits of the first byte and six of the second; then six more, which leave four of the first.
    two = _mm512_maddubs_epi16(_mm512_and_si512(pairs, all16(0x3F1F)), all16(0x0140));
    third = _mm512_and_si512(thirds, all16(0x3F));
    three = _mm512_or_si512(_mm512_slli_epi16(two, 6), third);
  }

  __m512i units(__mmask32 longer1, __mmask32 longer2) const {
    const __m512i one = _mm512_and_si512(pairs, all16(0xFF));
    return _mm512_mask_mov_epi16(_mm512_mask_mov_epi16(one, longer1, two), longer2, three);
  }

  // Of a sequence of four bytes the first gives the high surrogate. The lead's mark (bit 4) stands for 0x1000 in it.
  __m512i highs() const {
    const __m512i value = _mm512_add_epi16(_mm512_slli_epi16(two, 2), _mm512_srli_epi16(third, 4));
    return _mm512_add_epi16(value, all16(0xD800 - (0x10000 >> 10) - 0x1000));
  }
  // The second gives the low one: four bits of the third byte, six of the fourth.
  __m512i lows() const { return _mm512_or_si512(_mm512_and_si512(three, all16(0x3FF)), all16(0xDC00)); }

  __m512i pairs;
  __m512i two;
  __m512i third;
  __m512i three;
};

__mmask32 half(uint64_t mask, bool upper) { return static_cast<__mmask32>(upper ? mask >> 32 : mask); }

struct ToUtf16 {
  static constexpr size_t unitBytes = 2;
  static constexpr int firstDoubtful = 0xF4;

  // The positions that give a unit: starts, and the second bytes of sequences of four.
  static uint64_t giving(const Sequences& sequences, uint64_t inside) {
    return (sequences.starts & inside) | (sequences.longer3 & inside) << 1;
  }

  static void put(uint8_t* out, const Window& window, const Sequences& sequences, uint64_t kept) {
    const size_t units = putHalf(out, window, sequences, kept, false);
    if (kept >> blockUnits16 != 0) putHalf(out + unitBytes * units, window, sequences, kept, true);
  }

  static size_t putHalf(uint8_t* out, const Window& window, const Sequences& sequences, uint64_t kept, bool upper) {
    const HalfWindow lanes(window, upper);
    __m512i units = lanes.units(half(sequences.longer1, upper), half(sequences.longer2, upper));
    if (sequences.longer3 != 0) {
      units = _mm512_mask_mov_epi16(units, half(sequences.longer3, upper), lanes.highs());
      units = _mm512_mask_mov_epi16(units, half(sequences.longer3 << 1, upper), lanes.lows());
    }
    const __mmask32 lanesKept = half(kept, upper);
    const size_t count = countOf(lanesKept);
    storeUnits16(out, _mm512_maskz_compress_epi16(lanesKept, units), count);
    return count;
  }

  static void putAscii(uint8_t* out, const Window& window) {
    storeUnits16(out, _mm512_cvtepu8_epi16(lowerHalf(window.at)), smaller(window.length, blockUnits16));
    if (window.length > blockUnits16) {
      storeUnits16(out + blockBytes, _mm512_cvtepu8_epi16(upperHalf(window.at)), window.length - blockUnits16);
    }
  }
};

struct ToUtf32 {
  static constexpr size_t unitBytes = 4;
  static constexpr int firstDoubtful = 0xF5;

  static uint64_t giving(const Sequences& sequences, uint64_t inside) { return sequences.starts & inside; }

  static void put(uint8_t* out, const Window& window, const Sequences& sequences, uint64_t kept) {
    if (sequences.longer3 != 0) return putWide(out, window, sequences, kept);
    const size_t units = putHalf(out, window, sequences, kept, false);
    if (kept >> blockUnits16 != 0) putHalf(out + unitBytes * units, window, sequences, kept, true);
  }

  static size_t putHalf(uint8_t* out, const Window& window, const Sequences& sequences, uint64_t kept, bool upper) {
    const __m512i units =
        HalfWindow(window, upper).units(half(sequences.longer1, upper), half(sequences.longer2, upper));
    const __mmask32 lanesKept = half(kept, upper);
    const size_t count = countOf(lanesKept);
    const __m512i packed = _mm512_maskz_compress_epi16(lanesKept, units);
    storeUnits32(out, _mm512_cvtepu16_epi32(lowerHalf(packed)), smaller(count, blockUnits32));
    if (count > blockUnits32) {
      storeUnits32(out + blockBytes, _mm512_cvtepu16_epi32(upperHalf(packed)), count - blockUnits32);
    }
    return count;
  }

  // In lanes of 32 bits, which values of four bytes need. A lead's marks are cut off where they don't fall out.
  static void putWide(uint8_t* out, const Window& window, const Sequences& sequences, uint64_t kept) {
    alignas(64) uint8_t bytes[4][blockBytes];
    _mm512_store_si512(bytes[0], window.at);
    _mm512_store_si512(bytes[1], window.second);
    _mm512_store_si512(bytes[2], window.third);
    _mm512_store_si512(bytes[3], window.fourth);
    const __m512i sixBits = _mm512_set1_epi32(0x3F);
    for (unsigned i = 0; i < blockBytes; i += blockUnits32) {
      const auto lanes = [&bytes, i](int which) {
        return _mm512_cvtepu8_epi32(_mm_load_si128(reinterpret_cast<const __m128i*>(bytes[which] + i)));
      };
      const auto mask = [i](uint64_t positions) { return static_cast<__mmask16>(positions >> i); };
      const auto append = [sixBits](__m512i value, __m512i byte) {
        return _mm512_or_si512(_mm512_slli_epi32(value, 6), _mm512_and_si512(byte, sixBits));
      };
      const __m512i one = lanes(0);
      const __m512i two = append(_mm512_and_si512(one, _mm512_set1_epi32(0x1F)), lanes(1));
      const __m512i three = append(two, lanes(2));
      const __m512i four = append(three, lanes(3));
      __m512i units = _mm512_mask_mov_epi32(one, mask(sequences.longer1), two);
      units = _mm512_mask_and_epi32(units, mask(sequences.longer2), three, _mm512_set1_epi32(0xFFFF));
      units = _mm512_mask_and_epi32(units, mask(sequences.longer3), four, _mm512_set1_epi32(0x1FFFFF));
      const __mmask16 lanesKept = mask(kept);
      const size_t count = countOf(lanesKept);
      storeUnits32(out, _mm512_maskz_compress_epi32(lanesKept, units), count);
      out += unitBytes * count;
    }
  }

  static void putAscii(uint8_t* out, const Window& window) {
    alignas(64) uint8_t bytes[blockBytes];
    _mm512_store_si512(bytes, window.at);
    for (size_t i = 0; i < window.length; i += blockUnits32) {
      const __m128i quarter = _mm_load_si128(reinterpret_cast<const __m128i*>(bytes + i));
      storeUnits32(out + unitBytes * i, _mm512_cvtepu8_epi32(quarter), smaller(window.length - i, blockUnits32));
    }
  }
};

template <class Target>
KernelRun fromUtf8(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  KernelRun run{0, 0};
  uint64_t carried = 0;
  size_t at = 0;  // of the window; run.read is behind the last whole sequence
  while (at < count) {
    const Window window(in + at, count - at);
    uint8_t* target = out + Target::unitBytes * run.written;
    if ((_mm512_movepi8_mask(window.at) | carried) == 0) {
      if (room - run.written < window.length) break;
      Target::putAscii(target, window);
      at += window.length;
      run = {at, run.written + window.length};
      continue;
    }
    const Sequences sequences(window, carried);
    size_t end = window.length;
    uint64_t bad = sequences.bad;
    if (sequences.longer3 != 0) {
      bad |= atLeast(window.at, Target::firstDoubtful);
      // A sequence of four bytes isn't parted from its second unit.
      if (end == blockBytes && sequences.longer3 >> 63 != 0) end = blockBytes - 1;
    }
    const bool stops = bad != 0 && lanesBefore(bad) < end;
    if (stops) end = lanesBefore(bad);
    const uint64_t kept = Target::giving(sequences, first64(end));
    const size_t units = countOf(kept);
    if (room - run.written < units) break;
    Target::put(target, window, sequences, kept);
    run.written += units;
    at += end;
    run.read = at;
    if (stops) break;
    carried = end == blockBytes ? sequences.carriedOn() : 0;
    run.read += lanesBefore(~carried);
  }
  return run;
}

constexpr size_t shortBytes = 16;

// A text that ends within one register of 16 bytes, none of them a lead of four: the same tests and sums with less
// around them, for a field is over before the windows' price comes in again. `run` tells how far it goes.
__m256i shortToUtf16(__m128i bytes, size_t count, KernelRun& run) {
  const auto all = [](int value) { return _mm_set1_epi8(static_cast<char>(value)); };
  const auto from = [bytes, all](int value) -> uint32_t { return _mm_cmpge_epu8_mask(bytes, all(value)); };
  const uint32_t nonAscii = _mm_movepi8_mask(bytes);
  const uint32_t trail = _mm_cmplt_epi8_mask(bytes, all(0xC0));
  const uint32_t leads = nonAscii & ~trail;
  const uint32_t longer2 = from(0xE0);
  const uint32_t high = from(0xA0);
  uint32_t bad = (leads & ~(trail >> 1)) | (longer2 & ~(trail >> 2)) | (trail & ~(leads << 1 | longer2 << 2)) |
                 (leads & ~from(0xC2));
  bad |= (_mm_cmpeq_epi8_mask(bytes, all(0xE0)) & ~(high >> 1)) | (_mm_cmpeq_epi8_mask(bytes, all(0xED)) & (high >> 1));
  const size_t end = smaller(lanesBefore(bad), count);
  const auto kept = static_cast<__mmask16>(~trail & first16(end));
  run = {end, countOf(kept)};
  const auto fields = [](__m128i lanes, int mask) {
    return _mm256_and_si256(_mm256_cvtepu8_epi16(lanes), _mm256_set1_epi16(static_cast<int16_t>(mask)));
  };
  const __m256i first = fields(bytes, 0x1F);
  const __m256i two = _mm256_or_si256(_mm256_slli_epi16(first, 6), fields(_mm_bsrli_si128(bytes, 1), 0x3F));
  const __m256i three = _mm256_or_si256(_mm256_slli_epi16(two, 6), fields(_mm_bsrli_si128(bytes, 2), 0x3F));
  __m256i lanes = _mm256_mask_mov_epi16(_mm256_cvtepu8_epi16(bytes), static_cast<__mmask16>(leads), two);
  lanes = _mm256_mask_mov_epi16(lanes, static_cast<__mmask16>(longer2), three);
  return _mm256_maskz_compress_epi16(kept, lanes);
}

bool hasFours(__m128i bytes) { return _mm_cmpge_epu8_mask(bytes, _mm_set1_epi8(static_cast<char>(0xF0))) != 0; }

}  // namespace

size_t utf8Valid(const uint8_t* in, size_t count) {
  uint64_t carried = 0;
  for (size_t i = 0; i < count; i += blockBytes) {
    const Window window(in + i, count - i);
    if ((_mm512_movepi8_mask(window.at) | carried) == 0) continue;
    const Sequences sequences(window, carried);
    if (sequences.bad != 0) return i + lanesBefore(sequences.bad);
    carried = sequences.carriedOn();
  }
  return count;
}

KernelRun utf8ToUtf16(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  if (count <= shortBytes) {
    const __m128i bytes = _mm_maskz_loadu_epi8(first16(count), in);
    if (!hasFours(bytes)) {
      KernelRun run;
      const __m256i units = shortToUtf16(bytes, count, run);
      if (run.written > room) return {0, 0};
      _mm256_mask_storeu_epi16(out, first16(run.written), units);
      return run;
    }
  }
  return fromUtf8<ToUtf16>(in, count, out, room);
}

KernelRun utf8ToUtf32(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  return fromUtf8<ToUtf32>(in, count, out, room);
}

}  // namespace veldnls::avx512
