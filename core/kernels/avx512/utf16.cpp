#include "core/kernels/avx512/functions.h"
#include "core/kernels/avx512/lanes.h"
#include "core/kernels/avx512/utf8_output.h"

namespace veldnls::avx512 {

namespace {

using std::endian;

__m512i all16(int value) { return _mm512_set1_epi16(static_cast<int16_t>(value)); }

__mmask32 inRange(__m512i units, int mask, int first) {
  return _mm512_cmpeq_epi16_mask(_mm512_and_si512(units, all16(mask)), all16(first));
}

// Up to 32 units, cut in front of a surrogate without its partner, and so that no pair is parted.
template <endian order>
struct Window {
  Window(const uint8_t* in, size_t remaining) : length(smaller(remaining, blockUnits16)) {
    units = loadUnits16<order>(in, length);
    surrogates = inRange(units, 0xF800, 0xD800);
    if (surrogates == 0) return;
    highs = inRange(units, 0xFC00, 0xD800);
    const __mmask32 lows = surrogates & ~highs;
    const __mmask32 alone = (lows & ~(highs << 1)) | (highs & ~(lows >> 1));
    stops = alone != 0;
    if (!stops) return;
    length = lanesBefore(alone);
    // A pair may go on in the next window.
    if (length == blockUnits16 - 1 && remaining > blockUnits16 && highs >> length != 0) stops = false;
  }

  __m512i units;
  __mmask32 surrogates = 0;
  __mmask32 highs = 0;
  size_t length;
  bool stops = false;
};

// Half of a window as characters, each in the lane of its first unit; `starts` are those lanes.
struct Characters {
  __m512i values;
  __mmask16 starts;
};

template <endian order>
Characters charactersOf(const Window<order>& window, bool upper) {
  const auto half = [upper](__m512i lanes) {
    return _mm512_cvtepu16_epi32(upper ? upperHalf(lanes) : lowerHalf(lanes));
  };
  const unsigned shift = upper ? blockUnits16 / 2 : 0;
  const __mmask32 inside = first32(window.length);
  Characters characters{half(window.units), static_cast<__mmask16>(inside >> shift)};
  if (window.surrogates == 0) return characters;
  const __mmask32 lows = window.surrogates & ~window.highs;
  characters.starts = static_cast<__mmask16>((inside & ~lows) >> shift);
  const auto highs = static_cast<__mmask16>(window.highs >> shift);
  // Lane i of `next` is unit i + 1.
  alignas(64) constexpr struct Next {
    constexpr Next() {
      for (int i = 0; i < 32; ++i) at[i] = static_cast<uint16_t>((i + 1) % 32);
    }
    uint16_t at[32] = {};
  } next;
  const __m512i second = half(_mm512_permutexvar_epi16(_mm512_load_si512(next.at), window.units));
  const __m512i marks = _mm512_set1_epi32(0x10000 - (0xD800 << 10) - 0xDC00);
  const __m512i pairs = _mm512_add_epi32(_mm512_add_epi32(_mm512_slli_epi32(characters.values, 10), second), marks);
  characters.values = _mm512_mask_mov_epi32(characters.values, highs, pairs);
  return characters;
}

// All units are below 0x800: two bytes in the lane of each.
KernelRun putShort(__m512i units, __mmask32 nonAscii, size_t length, uint8_t* out, size_t room) {
  const __m512i shifts = _mm512_set1_epi64(0x3036202610160006);
  constexpr int aAndBOrC = 0xEA;
  const __m512i two =
      _mm512_ternarylogic_epi32(_mm512_multishift_epi64_epi8(shifts, units), all16(0x3F1F), all16(0x80C0), aAndBOrC);
  const __m512i bytes = _mm512_mask_mov_epi16(units, nonAscii, two);
  const __mmask32 inside = first32(length);
  const uint64_t kept = _pdep_u64(inside, 0x5555555555555555) | _pdep_u64(nonAscii & inside, 0xAAAAAAAAAAAAAAAA);
  if (countOf(kept) > room) return {0, 0};
  putLanes(out, {bytes, kept});
  return {length, countOf(kept)};
}

// Any characters. Returns nothing read if they don't fit.
template <endian order>
KernelRun putLong(const Window<order>& window, uint8_t* out, size_t room) {
  const Characters front = charactersOf(window, false);
  const Utf8Lanes first = toUtf8Lanes(front.values, front.starts);
  const size_t middle = countOf(first.kept);
  if (window.length <= blockUnits16 / 2) {
    if (middle > room) return {0, 0};
    putLanes(out, first);
    return {window.length, middle};
  }
  const Characters back = charactersOf(window, true);
  const Utf8Lanes last = toUtf8Lanes(back.values, back.starts);
  const size_t total = middle + countOf(last.kept);
  if (total > room) return {0, 0};
  putLanes(out, first);
  putLanes(out + middle, last);
  return {window.length, total};
}

// Units that are no surrogates.
void putPlain32(uint8_t* out, __m512i units, size_t length) {
  storeUnits32(out, _mm512_cvtepu16_epi32(lowerHalf(units)), smaller(length, blockUnits32));
  if (length <= blockUnits32) return;
  storeUnits32(out + blockBytes, _mm512_cvtepu16_epi32(upperHalf(units)), length - blockUnits32);
}

}  // namespace

template <endian order>
KernelRun utf16ToUtf8(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  KernelRun run{0, 0};
  while (run.read < count) {
    Window<order> window(in + 2 * run.read, count - run.read);
    if (order == endian::big && window.surrogates != 0) {
      window.length = lanesBefore(window.surrogates);
      window.stops = true;
    }
    if (window.length == 0) break;
    uint8_t* target = out + run.written;
    const size_t left = room - run.written;
    const __mmask32 nonAscii = _mm512_test_epi16_mask(window.units, all16(0xFF80));
    if (nonAscii == 0) {
      if (left < window.length) break;
      _mm256_mask_storeu_epi8(target, first32(window.length), _mm512_cvtepi16_epi8(window.units));
      run = {run.read + window.length, run.written + window.length};
      continue;
    }
    const bool isShort = _mm512_test_epi16_mask(window.units, all16(0xF800)) == 0;
    const KernelRun part =
        isShort ? putShort(window.units, nonAscii, window.length, target, left) : putLong(window, target, left);
    if (part.read == 0) break;
    run = {run.read + part.read, run.written + part.written};
    if (window.stops) break;
  }
  return run;
}

template <endian order>
KernelRun utf16ToUtf32(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  KernelRun run{0, 0};
  while (run.read < count) {
    const Window<order> window(in + 2 * run.read, count - run.read);
    if (window.surrogates == 0) {
      if (window.length > room - run.written) break;
      putPlain32(out + 4 * run.written, window.units, window.length);
      run = {run.read + window.length, run.written + window.length};
      continue;
    }
    const Characters front = charactersOf(window, false);
    const Characters back = charactersOf(window, true);
    const size_t middle = countOf(front.starts);
    const size_t total = middle + countOf(back.starts);
    if (total == 0 || total > room - run.written) break;
    uint8_t* target = out + 4 * run.written;
    storeUnits32(target, _mm512_maskz_compress_epi32(front.starts, front.values), middle);
    storeUnits32(target + 4 * middle, _mm512_maskz_compress_epi32(back.starts, back.values), total - middle);
    run = {run.read + window.length, run.written + total};
    if (window.stops) break;
  }
  return run;
}

template TextKernel utf16ToUtf8<endian::little>;
template TextKernel utf16ToUtf8<endian::big>;
template TextKernel utf16ToUtf32<endian::little>;
template TextKernel utf16ToUtf32<endian::big>;

}  // namespace veldnls::avx512
