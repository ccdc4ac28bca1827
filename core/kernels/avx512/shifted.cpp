#include "core/kernels/avx512/code_lanes.h"
#include "core/kernels/avx512/functions.h"
#include "core/kernels/avx512/lanes.h"

namespace veldnls::avx512 {

namespace {

using std::endian;

constexpr uint64_t evenPlaces = 0x5555555555555555;

uint64_t equal(__m512i bytes, uint32_t value) {
  return _mm512_cmpeq_epi8_mask(bytes, _mm512_set1_epi8(static_cast<char>(value)));
}

// Each bit exclusive or all below it.
uint64_t parityUpTo(uint64_t bits) {
  for (unsigned distance = 1; distance < 64; distance *= 2) bits ^= bits << distance;
  return bits;
}

// What stands where in a window of shifted text that begins with a character or a shift.
struct Modes {
  // `atTextEnd`: nothing follows the window.
  Modes(const ShiftedSource& source, __m512i bytes, size_t length, bool inDouble, bool atTextEnd) {
    const uint64_t inside = first64(length);
    outs = equal(bytes, source.shiftOut) & inside;
    const uint64_t shifts = outs | (equal(bytes, source.shiftIn) & inside);
    doubleMode = parityUpTo(shifts) ^ (inDouble ? ~uint64_t{0} : 0);
    // Each shift is to change the mode.
    uint64_t bad = (outs & ~doubleMode) | (shifts & ~outs & doubleMode);
    const uint64_t last = uint64_t{1} << (length - 1);
    // Of a run of double mode every other byte from its beginning is a first one. A sum runs through the runs that
    // begin at an even place and takes them away.
    const uint64_t run = doubleMode & ~shifts & inside;
    const uint64_t begins = run & ~(run << 1);
    const uint64_t odd = run & (run + (begins & evenPlaces));
    firsts = (run & ~odd & evenPlaces) | (odd & ~evenPlaces);
    const uint64_t halves = firsts & ~((run & ~firsts) >> 1);
    // The last byte may be a first one whose second stands in the next window.
    bad |= atTextEnd ? halves : halves & ~last;
    end = smaller(length, lanesBefore(bad));
    if (end == length && (halves & last) != 0) --end;
    stops = bad != 0 && end == lanesBefore(bad);
    end = aheadOfShiftOut(end);
    singles = ~doubleMode & ~shifts & first64(end);
    firsts &= first64(end);
  }

  // A shift-out isn't taken without the character behind it.
  size_t aheadOfShiftOut(size_t place) const {
    return place != 0 && (outs >> (place - 1) & 1) != 0 ? place - 1 : place;
  }

  bool inDoubleAt(size_t place, bool before) const {
    return place == 0 ? before : (doubleMode >> (place - 1) & 1) != 0;
  }

  uint64_t outs;
  uint64_t doubleMode;
  uint64_t firsts;
  uint64_t singles;
  size_t end;
  bool stops;
};

// The units of single bytes, in lanes of 32 bits.
class Singles {
 public:
  explicit Singles(const ShiftedSource& source) : units_(source.singles), euro_(all32(static_cast<int>(source.euro))) {}

  __m512i operator()(__mmask16 wanted, __m512i bytes) const {
    const __mmask16 euros = _mm512_cmpeq_epi32_mask(bytes, euro_);
    return _mm512_mask_mov_epi32(items16(wanted, bytes, units_), euros, all32(euroSign));
  }

 private:
  const char16_t* units_;
  __m512i euro_;
};

__m512i bytesInLanes(const uint8_t* bytes) {
  return _mm512_cvtepu8_epi32(_mm_load_si128(reinterpret_cast<const __m128i*>(bytes)));
}

}  // namespace

KernelRun shiftedToUnits(const ShiftedSource& source, bool& inDouble, const uint8_t* in, size_t count, uint8_t* out,
                         size_t room) {
  const Rows rows(source.rows, source.blank);
  const Singles singles(source);
  const auto euro = static_cast<uint8_t>(source.euro > 0xFF ? source.shiftOut : source.euro);
  KernelRun run{0, 0};
  while (run.read < count) {
    const uint8_t* at = in + run.read;
    const size_t remaining = count - run.read;
    const size_t length = smaller(remaining, blockBytes);
    const __m512i bytes = loadBytes(at, length);
    if (!inDouble && (equal(bytes, source.shiftOut) | equal(bytes, source.shiftIn) | equal(bytes, euro)) == 0) {
      // Text without double mode is a page's.
      const uint8_t ends[] = {source.shiftOut, source.shiftIn, euro, euro};
      const size_t alone = smaller(runWithout(ends, at, remaining), room - run.written);
      if (alone == 0) break;
      expand(source.singles, at, out + 2 * run.written, alone);
      run = {run.read + alone, run.written + alone};
      continue;
    }
    const Modes modes(source, bytes, length, inDouble, remaining <= blockBytes);
    const uint64_t starts = modes.firsts | modes.singles;
    const size_t characters = countOf(starts);
    if (characters > room - run.written) break;
    alignas(64) uint8_t firsts[blockBytes];
    alignas(64) uint8_t seconds[blockBytes];
    _mm512_store_si512(firsts, _mm512_maskz_compress_epi8(starts, bytes));
    _mm512_store_si512(seconds,
                       _mm512_maskz_compress_epi8(starts, loadBytes(at + 1, smaller(remaining - 1, blockBytes))));
    const uint64_t doubles = _pext_u64(modes.firsts, starts);
    size_t end = modes.end;
    bool stops = modes.stops;
    for (size_t i = 0; i < characters; i += blockUnits32) {
      const auto wanted = static_cast<__mmask16>(doubles >> i);
      const __m512i first = bytesInLanes(firsts + i);
      __m512i units = rows(wanted, first, bytesInLanes(seconds + i));
      const __mmask16 without = _mm512_mask_testn_epi32_mask(wanted, units, units);
      const size_t here = smaller(characters - i, blockUnits32);
      const __mmask16 single = first16(here) & ~wanted;
      if (single != 0) units = _mm512_mask_mov_epi32(units, single, singles(single, first));
      const size_t mapped = smaller(here, lanesBefore(without));
      storeLanes(out + 2 * run.written, units, mapped);
      run.written += mapped;
      if (mapped < here) {
        end = modes.aheadOfShiftOut(lanesBefore(_pdep_u64(uint64_t{1} << (i + mapped), starts)));
        stops = true;
        break;
      }
    }
    inDouble = modes.inDoubleAt(end, inDouble);
    run.read += end;
    if (stops || end == 0) break;
  }
  return run;
}

KernelRun unitsToShifted(const ShiftedTarget& target, bool& inDouble, const uint8_t* in, size_t count, uint8_t* out,
                         size_t room) {
  const Ranks ranks(target.codes, target.blank);
  const ByteTable singles(target.singles);
  KernelRun run{0, 0};
  while (run.read < count) {
    const size_t most = smaller(count - run.read, blockUnits16);
    const __m512i units = loadUnits16<endian::little>(in + 2 * run.read, most);
    const __mmask32 allLow = _mm512_cmplt_epu16_mask(units, all16(0x9F));
    if (!inDouble && (~allLow & first32(most)) == 0) {
      if (most + target.spare > room - run.written) break;
      _mm256_mask_storeu_epi8(out + run.written, first32(most), _mm512_cvtepi16_epi8(singles[units]));
      run = {run.read + most, run.written + most};
      continue;
    }
    const size_t length = smaller(most, blockUnits32);
    const auto low = static_cast<__mmask16>(allLow);
    Characters characters = ranks(units, length);
    // A single byte is the upper half of a character.
    characters.codes = _mm512_mask_slli_epi16(characters.codes, low, singles[units], 8);
    const __m512i codes = widened(lowerHalf(characters.codes));
    const auto taken = static_cast<__mmask16>(characters.found | low);
    const size_t end = smaller(length, lanesBefore(~uint64_t{taken}));
    const uint32_t inside = first16(end);
    if (inside == 0) break;
    const uint32_t isDouble = _mm512_test_epi32_mask(codes, all32(0xFF));
    const uint32_t changes = (isDouble ^ (isDouble << 1 | (inDouble ? 1 : 0))) & inside;
    // In a lane: the shift, then one byte or two; and which of them are written.
    const __m512i shift =
        _mm512_mask_mov_epi32(all32(target.shiftIn), static_cast<__mmask16>(isDouble), all32(target.shiftOut));
    const __m512i bytes = _mm512_mask_slli_epi32(codes, static_cast<__mmask16>(isDouble), codes, 8);
    const __m512i lanes = _mm512_or_si512(shift, bytes);
    const uint64_t kept = _pdep_u64(changes, 0x1111111111111111) | _pdep_u64(inside, 0x2222222222222222) |
                          _pdep_u64(inside & isDouble, 0x4444444444444444);
    const size_t size = countOf(kept);
    if (size + target.spare > room - run.written) break;
    storeBytes(out + run.written, _mm512_maskz_compress_epi8(kept, lanes), size);
    inDouble = (isDouble >> (end - 1) & 1) != 0;
    run = {run.read + end, run.written + size};
    if (end < length) break;
  }
  return run;
}

}  // namespace veldnls::avx512
