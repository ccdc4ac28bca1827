#include "core/kernels/avx2/functions.h"
#include "core/kernels/avx2/lanes.h"
#include "core/kernels/tiers.h"

namespace veldnls::avx2 {

namespace {

using std::endian;

template <endian order>
struct ToUtf8 {
  static constexpr size_t unitBytes = 1;

  static bool isPlain(__m256i units) { return allAscii32(units); }
  static void put(uint8_t* out, __m256i units) { store8(out, narrowed32(units)); }
  static TextKernel* characters() { return scalarKernels.utf32ToUtf8.of<order>(); }
};

template <endian order>
struct ToUtf16 {
  static constexpr size_t unitBytes = 2;

  // Below 0x10000 and no surrogate.
  static bool isPlain(__m256i units) {
    const __m256i surrogates =
        _mm256_cmpeq_epi32(_mm256_and_si256(units, _mm256_set1_epi32(~0x7FF)), _mm256_set1_epi32(0xD800));
    return _mm256_testz_si256(units, _mm256_set1_epi32(~0xFFFF)) != 0 && _mm256_movemask_epi8(surrogates) == 0;
  }
  static void put(uint8_t* out, __m256i units) {
    store16(out, _mm_packus_epi32(_mm256_castsi256_si128(units), _mm256_extracti128_si256(units, 1)));
  }
  static TextKernel* characters() { return scalarKernels.utf32ToUtf16.of<order>(); }
};

// Plain blocks at once, the others character by character.
template <class Target, endian order>
KernelRun fromUtf32(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  KernelRun run{0, 0};
  while (run.read < count) {
    const uint8_t* at = in + 4 * run.read;
    uint8_t* target = out + Target::unitBytes * run.written;
    const size_t length = count - run.read < blockUnits32 ? count - run.read : blockUnits32;
    const size_t left = room - run.written;
    if (length == blockUnits32 && left >= blockUnits32) {
      const __m256i units = loadUnits32<order>(at);
      if (Target::isPlain(units)) {
        Target::put(target, units);
        run = {run.read + blockUnits32, run.written + blockUnits32};
        continue;
      }
    }
    const KernelRun part = Target::characters()(at, length, target, left);
    run = {run.read + part.read, run.written + part.written};
    if (part.read < length) break;
  }
  return run;
}

}  // namespace

template <endian order>
KernelRun utf32ToUtf8(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  return fromUtf32<ToUtf8<order>, order>(in, count, out, room);
}

template <endian order>
KernelRun utf32ToUtf16(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  return fromUtf32<ToUtf16<order>, order>(in, count, out, room);
}

template TextKernel utf32ToUtf8<endian::little>;
template TextKernel utf32ToUtf8<endian::big>;
template TextKernel utf32ToUtf16<endian::little>;
template TextKernel utf32ToUtf16<endian::big>;

}  // namespace veldnls::avx2
