#include "core/kernels/avx2/functions.h"
#include "core/kernels/avx2/lanes.h"
#include "core/kernels/tiers.h"

namespace veldnls::avx2 {

namespace {

using std::endian;

bool hasSurrogate(__m256i units) {
  const __m256i marks = _mm256_and_si256(units, _mm256_set1_epi16(static_cast<int16_t>(0xF800)));
  const __m256i surrogates = _mm256_cmpeq_epi16(marks, _mm256_set1_epi16(static_cast<int16_t>(0xD800)));
  return _mm256_movemask_epi8(surrogates) != 0;
}

template <endian order>
struct ToUtf8 {
  static constexpr size_t unitBytes = 1;

  static bool isPlain(__m256i units) { return allAscii16(units); }
  static void put(uint8_t* out, __m256i units) { store16(out, narrowed16(units)); }
  static TextKernel* characters() { return scalarKernels.utf16ToUtf8.of<order>(); }
};

template <endian order>
struct ToUtf32 {
  static constexpr size_t unitBytes = 4;

  static bool isPlain(__m256i units) { return !hasSurrogate(units); }
  static void put(uint8_t* out, __m256i units) {
    store(out, _mm256_cvtepu16_epi32(_mm256_castsi256_si128(units)));
    store(out + blockBytes, _mm256_cvtepu16_epi32(_mm256_extracti128_si256(units, 1)));
  }
  static TextKernel* characters() { return scalarKernels.utf16ToUtf32.of<order>(); }
};

// Plain blocks at once, the others character by character.
template <class Target, endian order>
KernelRun fromUtf16(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  KernelRun run{0, 0};
  while (run.read < count) {
    const uint8_t* at = in + 2 * run.read;
    uint8_t* target = out + Target::unitBytes * run.written;
    const size_t remaining = count - run.read;
    const size_t left = room - run.written;
    if (remaining >= blockUnits16 && left >= blockUnits16) {
      const __m256i units = loadUnits16<order>(at);
      if (Target::isPlain(units)) {
        Target::put(target, units);
        run = {run.read + blockUnits16, run.written + blockUnits16};
        continue;
      }
    }
    const size_t length = remaining < blockUnits16 ? remaining : blockUnits16;
    KernelRun part = Target::characters()(at, length, target, left);
    // A pair at the block's end may want the unit behind it.
    if (part.read == 0 || (part.read == length - 1 && remaining > length)) {
      const KernelRun pair = Target::characters()(at + 2 * part.read, remaining - part.read < 2 ? 1 : 2,
                                                  target + Target::unitBytes * part.written, left - part.written);
      part = {part.read + pair.read, part.written + pair.written};
    }
    run = {run.read + part.read, run.written + part.written};
    if (part.read < length) break;
  }
  return run;
}

}  // namespace

template <endian order>
KernelRun utf16ToUtf8(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  return fromUtf16<ToUtf8<order>, order>(in, count, out, room);
}

template <endian order>
KernelRun utf16ToUtf32(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  return fromUtf16<ToUtf32<order>, order>(in, count, out, room);
}

template TextKernel utf16ToUtf8<endian::little>;
template TextKernel utf16ToUtf8<endian::big>;
template TextKernel utf16ToUtf32<endian::little>;
template TextKernel utf16ToUtf32<endian::big>;

}  // namespace veldnls::avx2
