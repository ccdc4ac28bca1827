#include "core/kernels/avx2/functions.h"
#include "core/kernels/avx2/lanes.h"
#include "core/kernels/units.h"
#include "core/kernels/utf8_sequence.h"

namespace veldnls::avx2 {

namespace {

constexpr uint32_t firstSupplementary = 0x10000;

struct ToUtf16 {
  static constexpr uint8_t lastLead = 0xF3;

  static size_t size(uint32_t value) { return value < firstSupplementary ? 1 : 2; }

  static void put(uint8_t* out, size_t index, uint32_t value) {
    if (value < firstSupplementary) return putUnit16(out, index, value);
    putUnit16(out, index, 0xD800 + ((value - firstSupplementary) >> 10));
    putUnit16(out, index + 1, 0xDC00 | (value & 0x3FF));
  }

  static void putAscii(uint8_t* out, size_t index, const uint8_t* in) { putWide16(out + 2 * index, load(in)); }
};

struct ToUtf32 {
  static constexpr uint8_t lastLead = 0xF4;

  static size_t size(uint32_t) { return 1; }
  static void put(uint8_t* out, size_t index, uint32_t value) { putUnit32(out, index, value); }
  static void putAscii(uint8_t* out, size_t index, const uint8_t* in) { putWide32(out + 4 * index, in); }
};

bool isAsciiBlock(const uint8_t* in) { return _mm256_movemask_epi8(load(in)) == 0; }

// Blocks of ASCII at once, the others sequence by sequence.
template <class Target>
KernelRun fromUtf8(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  KernelRun run{0, 0};
  while (run.read < count) {
    if (count - run.read >= blockBytes && room - run.written >= blockBytes && isAsciiBlock(in + run.read)) {
      Target::putAscii(out, run.written, in + run.read);
      run = {run.read + blockBytes, run.written + blockBytes};
      continue;
    }
    const size_t blockEnd = count - run.read > blockBytes ? run.read + blockBytes : count;
    while (run.read < blockEnd) {
      const uint8_t* at = in + run.read;
      const size_t length = validSequence(at, count - run.read);
      if (length == 0 || at[0] > Target::lastLead) return run;
      const uint32_t value = sequenceValue(at, length);
      if (room - run.written < Target::size(value)) return run;
      Target::put(out, run.written, value);
      run = {run.read + length, run.written + Target::size(value)};
    }
  }
  return run;
}

}  // namespace

size_t utf8Valid(const uint8_t* in, size_t count) {
  size_t read = 0;
  while (read < count) {
    if (count - read >= blockBytes && isAsciiBlock(in + read)) {
      read += blockBytes;
      continue;
    }
    const size_t blockEnd = count - read > blockBytes ? read + blockBytes : count;
    while (read < blockEnd) {
      const size_t length = validSequence(in + read, count - read);
      if (length == 0) return read;
      read += length;
    }
  }
  return read;
}

KernelRun utf8ToUtf16(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  return fromUtf8<ToUtf16>(in, count, out, room);
}

KernelRun utf8ToUtf32(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  return fromUtf8<ToUtf32>(in, count, out, room);
}

}  // namespace veldnls::avx2
