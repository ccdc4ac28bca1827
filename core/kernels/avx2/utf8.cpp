#include "core/kernels/avx2/functions.h"
#include "core/kernels/avx2/lanes.h"
#include "core/kernels/avx2/utf8_units.h"
#include "core/kernels/avx2/utf8_window.h"
#include "core/kernels/tiers.h"
#include "core/kernels/utf8_sequence.h"

namespace veldnls::avx2 {

namespace {

// Less than this goes sequence by sequence.
constexpr size_t shortestFront = groupLanes;
// In front of these last positions of a window the longest sequence is whole.
constexpr size_t lastDecided = blockBytes - longestSequence;
// Whole windows are written as long as so much is left.
constexpr size_t wholeBytes = blockBytes + windowBytes;

bool isAsciiBlock(const uint8_t* in) { return signs(load(in)) == 0; }

template <class Target>
size_t asciiBlocks(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  const size_t most = smaller(count, room);
  size_t i = 0;
  for (; most - i >= blockBytes && isAsciiBlock(in + i); i += blockBytes) {
    Target::putAscii(out + Target::unitBytes * i, load(in + i));
  }
  return i;
}

// A window's groups are stored whole, though not all eight units of the last are of use: up to six are written over
// by the window behind, which must therefore be known to give as many. A right one gives nine or more, of which its
// last sequence may fall away; at least seven in UTF-32. Where room ends, a pair may leave one unit of it.
template <class Target>
KernelRun wholeWindows(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  using Masks = typename Target::Masks;
  size_t at = 0;
  size_t written = 0;
  Masks now(load(in), load(in + 1), 0);
  while (count - at >= wholeBytes && room - written > blockBytes) {
    uint8_t* target = out + Target::unitBytes * written;
    if ((now.nonAscii | now.carried) == 0) {
      const size_t ascii = asciiBlocks<Target>(in + at, count - at - wholeBytes + blockBytes, target, room - written);
      at += ascii;
      written += ascii;
      now = Masks(load(in + at), load(in + at + 1), 0);
      continue;
    }
    if (now.wrong()) break;
    const size_t end = Target::ending(now);
    const uint8_t* behind = in + at + end;
    const Masks next(load(behind), load(behind + 1), end == blockBytes ? now.carriedOn() : 0);
    if (next.wrong()) break;
    const uint32_t kept = Target::giving(now) & first32(end);
    Target::put(target, Window(in + at), now.longer3, kept);
    at += end;
    written += countOf(kept);
    now = next;
  }
  // What is carried to a window was tested along with it.
  return {at + lanesBefore(~now.carried), written};
}

// `count` bytes below 0x80, at least eight, and nothing behind them.
template <class Target>
void putAsciiFront(uint8_t* out, const uint8_t* in, size_t count) {
  const auto eight = [&](size_t i) { Target::put8(out + Target::unitBytes * i, _mm_cvtepu8_epi16(load8(in + i))); };
  for (size_t i = 0; i + groupLanes < count; i += groupLanes) eight(i);
  eight(count - groupLanes);
}

// What is kept of 16 positions, and nothing behind it.
template <class Target>
void putShort(uint8_t* out, const Lanes& lanes, uint32_t kept) {
  constexpr size_t laneBytes = 2;
  const __m128i first = packed(_mm256_castsi256_si128(lanes.first), kept & 0xFF);
  const __m128i second = packed(_mm256_castsi256_si128(lanes.second), kept >> 8);
  const size_t firstCount = countOf(kept & 0xFF);
  const size_t count = countOf(kept);
  if (count >= groupLanes) {
    const size_t rest = count - groupLanes;
    Target::put8(out, first);
    Target::put8(out + Target::unitBytes * rest,
                 _mm_or_si128(movedDown(first, laneBytes * rest), movedUp(second, laneBytes * (firstCount - rest))));
    return;
  }
  const __m128i all = _mm_or_si128(first, movedUp(second, laneBytes * firstCount));
  constexpr size_t half = groupLanes / 2;
  if (count >= half) {
    Target::put4(out, all);
    Target::put4(out + Target::unitBytes * (count - half), movedDown(all, laneBytes * (count - half)));
    return;
  }
  uint8_t units[Target::unitBytes * half];
  Target::put4(units, all);
  for (size_t i = 0; i < Target::unitBytes * count; ++i) out[i] = units[i];
}

// What is kept of a window, and nothing behind it.
template <class Target>
void putExactly(uint8_t* out, const Window& window, uint32_t longer3, uint32_t kept) {
  if (kept >> 16 == 0 && longer3 == 0) return putShort<Target>(out, SpreadWindow(window).units(), kept);
  alignas(32) uint8_t units[Target::unitBytes * blockBytes];
  Target::put(units, window, longer3, kept);
  copy(out, units, Target::unitBytes * countOf(kept));
}

// The sequences that are whole in the block at the front, as far as the room goes. Returns false if the text ends
// there, or the room, or the plain text.
template <class Target>
bool takeFront(const uint8_t* in, size_t count, uint8_t* out, size_t room, KernelRun& run) {
  in += run.read;
  out += Target::unitBytes * run.written;
  room -= run.written;
  const size_t length = smaller(count - run.read, blockBytes);
  const Window window(loadFront(in, length));
  const typename Target::Masks sequences(window.at, window.second, 0);
  if (sequences.nonAscii == 0 && length <= room) {
    putAsciiFront<Target>(out, in, length);
    run = {run.read + length, run.written + length};
    return length == blockBytes;
  }
  size_t end = smaller(sequences.end(), length);
  bool goesOn = length == blockBytes && end > lastDecided;
  uint32_t kept = Target::giving(sequences) & first32(end);
  if (countOf(kept) > room) {
    // The position of the first unit that has no room. That of a pair's second has its first in front.
    end = lanesBefore(_pdep_u32(uint32_t{1} << room, kept));
    if ((sequences.starts() >> end & 1) == 0) --end;
    kept &= first32(end);
    goesOn = false;
  }
  putExactly<Target>(out, window, sequences.longer3, kept);
  run = {run.read + end, run.written + countOf(kept)};
  return goesOn;
}

template <class Target>
KernelRun fromUtf8(const uint8_t* in, size_t count, uint8_t* out, size_t room, TextKernel* exact) {
  const size_t ascii = asciiBlocks<Target>(in, count, out, room);
  KernelRun run{ascii, ascii};
  if (count - ascii >= wholeBytes) {
    run = wholeWindows<Target>(in + ascii, count - ascii, out + Target::unitBytes * ascii, room - ascii);
    run = {run.read + ascii, run.written + ascii};
  }
  while (count - run.read >= shortestFront) {
    if (!takeFront<Target>(in, count, out, room, run)) return run;
  }
  const KernelRun rest =
      exact(in + run.read, count - run.read, out + Target::unitBytes * run.written, room - run.written);
  return {run.read + rest.read, run.written + rest.written};
}

}  // namespace

size_t utf8Valid(const uint8_t* in, size_t count) {
  using Masks = Sequences<0xF5>;
  size_t read = 0;
  uint32_t carried = 0;
  while (count - read > blockBytes) {
    const Masks sequences(load(in + read), load(in + read + 1), carried);
    if (sequences.wrong()) break;
    carried = sequences.carriedOn();
    read += blockBytes;
  }
  // What goes on from the windows before is begun again.
  if (carried != 0) {
    while (isTrail(in[--read])) continue;
  }
  while (count - read >= shortestFront) {
    const size_t length = smaller(count - read, blockBytes);
    const Window window(loadFront(in + read, length));
    const size_t end = smaller(Masks(window.at, window.second, 0).end(), length);
    read += end;
    if (length < blockBytes || end <= lastDecided) return read;
  }
  return read + scalarKernels.utf8Valid(in + read, count - read);
}

KernelRun utf8ToUtf16(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  return fromUtf8<ToUtf16>(in, count, out, room, scalarKernels.utf8ToUtf16);
}

KernelRun utf8ToUtf32(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  return fromUtf8<ToUtf32>(in, count, out, room, scalarKernels.utf8ToUtf32);
}

}  // namespace veldnls::avx2
