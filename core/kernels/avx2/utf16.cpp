#include "core/kernels/avx2/functions.h"
#include "core/kernels/avx2/lanes.h"
#include "core/kernels/avx2/utf16_output.h"
#include "core/kernels/tiers.h"
#include "core/kernels/units.h"
#include "core/kernels/utf8_sequence.h"

namespace veldnls::avx2 {

namespace {

using std::endian;

// Where 16 units can't be converted at once, up to eight are.
constexpr size_t halfBlock = blockUnits16 / 2;
constexpr size_t fewestUnits = 4;

KernelRun sum(KernelRun a, KernelRun b) { return {a.read + b.read, a.written + b.written}; }

// Characters of `length` units, the last of which may go on behind them.
template <endian order>
KernelRun toUtf8OneByOne(const uint8_t* in, size_t length, size_t count, uint8_t* out, size_t room) {
  size_t read = 0;
  uint8_t* to = out;
  uint8_t* const end = out + room;
  while (read < length) {
    const uint32_t unit = unit16<order>(in, read);
    const auto left = static_cast<size_t>(end - to);
    if (unit < 0x80) {
      if (left < 1) break;
      *to++ = static_cast<uint8_t>(unit);
      ++read;
      continue;
    }
    if (!isSurrogateUnit(unit)) {
      const size_t bytes = unit < 0x800 ? 2 : 3;
      if (left < bytes) break;
      putSequence(to, unit, bytes);
      to += bytes;
      ++read;
      continue;
    }
    if (order == endian::big || !isHigh(unit) || count - read < 2 || left < 4) break;
    const uint32_t low = unit16<order>(in, read + 1);
    if (!isLow(low)) break;
    putSequence(to, firstSupplementary + ((unit & 0x3FF) << 10 | (low & 0x3FF)), 4);
    to += 4;
    read += 2;
  }
  return {read, static_cast<size_t>(to - out)};
}

// What is ahead of the end of a text: blocks whose bytes may spill over to where the next block's go.
template <endian order>
KernelRun blocksToUtf8(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  static_assert(looseBytes <= blockUnits16);
  constexpr size_t most = mostSequenceBytes * blockUnits16;
  KernelRun run{0, 0};
  while (count - run.read >= 2 * blockUnits16 && room - run.written >= 2 * most) {
    const uint8_t* at = in + 2 * run.read;
    uint8_t* target = out + run.written;
    const __m256i units = loadUnits16<order>(at);
    const __m256i next = loadUnits16<order>(at + blockBytes);
    if (allAscii16(_mm256_or_si256(units, next))) {
      store16(target, narrowed16(units));
      store16(target + blockUnits16, narrowed16(next));
      run = sum(run, {2 * blockUnits16, 2 * blockUnits16});
      continue;
    }
    if (_mm256_movemask_epi8(_mm256_or_si256(surrogatesOf(units), surrogatesOf(next))) != 0) break;
    run = sum(run, {blockUnits16, putLoose(target, units)});
  }
  return run;
}

// Up to 16 units, and the next if they end within a pair. Converts nothing if it has to stop.
template <endian order>
KernelRun someToUtf8(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  if (count >= blockUnits16 && room >= blockUnits16) {
    const __m256i units = loadUnits16<order>(in);
    if (allAscii16(units)) {
      store16(out, narrowed16(units));
      return {blockUnits16, blockUnits16};
    }
  }
  const size_t some = count < halfBlock ? count : halfBlock;
  if (some >= fewestUnits) {
    const __m256i units = some == halfBlock ? loadUnits16Half<order>(in) : loadSomeUnits16<order>(in, some);
    KernelRun run{0, 0};
    if (!hasSurrogate(units)) {
      run = putPlain(out, room, units, some);
    } else if (order == endian::little) {
      run = putPairs(out, room, units, some);
    }
    if (run.read != 0) return run;
  }
  return toUtf8OneByOne<order>(in, some, count, out, room);
}

}  // namespace

template <endian order>
KernelRun utf16ToUtf8(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  KernelRun run{0, 0};
  while (run.read < count) {
    run = sum(run, blocksToUtf8<order>(in + 2 * run.read, count - run.read, out + run.written, room - run.written));
    const KernelRun part =
        someToUtf8<order>(in + 2 * run.read, count - run.read, out + run.written, room - run.written);
    if (part.read == 0) break;
    run = sum(run, part);
  }
  return run;
}

// Blocks without surrogates at once, the others character by character.
template <endian order>
KernelRun utf16ToUtf32(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  TextKernel* const characters = scalarKernels.utf16ToUtf32.of<order>();
  KernelRun run{0, 0};
  while (run.read < count) {
    const uint8_t* at = in + 2 * run.read;
    uint8_t* target = out + 4 * run.written;
    const size_t remaining = count - run.read;
    const size_t left = room - run.written;
    if (remaining >= blockUnits16 && left >= blockUnits16) {
      const __m256i units = loadUnits16<order>(at);
      if (!hasSurrogate(units)) {
        store(target, _mm256_cvtepu16_epi32(_mm256_castsi256_si128(units)));
        store(target + blockBytes, _mm256_cvtepu16_epi32(_mm256_extracti128_si256(units, 1)));
        run = sum(run, {blockUnits16, blockUnits16});
        continue;
      }
    }
    const size_t length = remaining < blockUnits16 ? remaining : blockUnits16;
    KernelRun part = characters(at, length, target, left);
    // A pair at the block's end may want the unit behind it.
    if (part.read == 0 || (part.read == length - 1 && remaining > length)) {
      part = sum(part, characters(at + 2 * part.read, remaining - part.read < 2 ? 1 : 2, target + 4 * part.written,
                                  left - part.written));
    }
    run = sum(run, part);
    if (part.read < length) break;
  }
  return run;
}

template TextKernel utf16ToUtf8<endian::little>;
template TextKernel utf16ToUtf8<endian::big>;
template TextKernel utf16ToUtf32<endian::little>;
template TextKernel utf16ToUtf32<endian::big>;

}  // namespace veldnls::avx2
