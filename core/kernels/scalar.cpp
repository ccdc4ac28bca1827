// What the kernels mean, in plain loops.
#include <bit>

#include "core/kernels/scalar_codes.h"
#include "core/kernels/tiers.h"
#include "core/kernels/units.h"
#include "core/kernels/utf8_sequence.h"

namespace veldnls {

namespace {

using std::endian;

constexpr uint32_t firstNonAscii = 0x80;
constexpr uint32_t firstFiveByteValue = 0x200000;
constexpr uint8_t lastPlanesLead = 0xF4;

void byteMap(const uint8_t* table, const uint8_t* in, uint8_t* out, size_t count) {
  for (size_t i = 0; i < count; ++i) out[i] = table[in[i]];
}

void expand(const char16_t* table, const uint8_t* in, uint8_t* out, size_t count) {
  for (size_t i = 0; i < count; ++i) putUnit16(out, i, table[in[i]]);
}

size_t pagesToBytes(const uint8_t* const* pages, const uint8_t* in, uint8_t* out, size_t count) {
  for (size_t i = 0; i < count; ++i) {
    const uint32_t unit = unit16<endian::little>(in, i);
    const uint8_t* page = pages[unit >> 8];
    if (page == nullptr) return i;
    const uint8_t byte = page[unit & 0xFF];
    if (byte == 0 && unit != 0) return i;
    out[i] = byte;
  }
  return count;
}

size_t asciiRun(const uint8_t* in, size_t count) {
  size_t i = 0;
  while (i < count && in[i] < firstNonAscii) ++i;
  return i;
}

template <endian order>
size_t asciiRun16(const uint8_t* in, size_t count) {
  size_t i = 0;
  while (i < count && unit16<order>(in, i) < firstNonAscii) ++i;
  return i;
}

size_t widenAscii16(const uint8_t* in, uint8_t* out, size_t count) {
  size_t i = 0;
  for (; i < count && in[i] < firstNonAscii; ++i) putUnit16(out, i, in[i]);
  return i;
}

size_t widenAscii32(const uint8_t* in, uint8_t* out, size_t count) {
  size_t i = 0;
  for (; i < count && in[i] < firstNonAscii; ++i) putUnit32(out, i, in[i]);
  return i;
}

template <uint32_t (*unitAt)(const uint8_t*, size_t)>
size_t narrowAscii(const uint8_t* in, uint8_t* out, size_t count) {
  size_t i = 0;
  for (; i < count && unitAt(in, i) < firstNonAscii; ++i) out[i] = static_cast<uint8_t>(unitAt(in, i));
  return i;
}

void swap16(const uint8_t* in, uint8_t* out, size_t count) {
  for (size_t i = 0; i < count; ++i) putUnit16(out, i, unit16<endian::big>(in, i));
}

void swap32(const uint8_t* in, uint8_t* out, size_t count) {
  for (size_t i = 0; i < count; ++i) putUnit32(out, i, unit32<endian::big>(in, i));
}

size_t utf8Valid(const uint8_t* in, size_t count) {
  size_t read = 0;
  while (read < count) {
    const size_t length = validSequence(in + read, count - read);
    if (length == 0) break;
    read += length;
  }
  return read;
}

void putPair(uint8_t* out, size_t index, uint32_t value) {
  putUnit16(out, index, 0xD800 + ((value - firstSupplementary) >> 10));
  putUnit16(out, index + 1, 0xDC00 | (value & 0x3FF));
}

KernelRun utf8ToUtf16(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  KernelRun run{0, 0};
  while (run.read < count && run.written < room) {
    const uint8_t* at = in + run.read;
    const size_t length = validSequence(at, count - run.read);
    if (length == 0 || at[0] == lastPlanesLead) break;
    const uint32_t value = sequenceValue(at, length);
    if (value < firstSupplementary) {
      putUnit16(out, run.written++, value);
    } else {
      if (room - run.written < 2) break;
      putPair(out, run.written, value);
      run.written += 2;
    }
    run.read += length;
  }
  return run;
}

KernelRun utf8ToUtf32(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  KernelRun run{0, 0};
  while (run.read < count && run.written < room) {
    const uint8_t* at = in + run.read;
    const size_t length = validSequence(at, count - run.read);
    if (length == 0) break;
    putUnit32(out, run.written++, sequenceValue(at, length));
    run.read += length;
  }
  return run;
}

// A whole character of UTF-16 at `index`: its units, 0 if it is a surrogate without its partner.
template <endian order>
size_t characterAt(const uint8_t* in, size_t index, size_t count, uint32_t& value) {
  value = unit16<order>(in, index);
  if (!isSurrogateUnit(value)) return 1;
  if (!isHigh(value) || count - index < 2) return 0;
  const uint32_t low = unit16<order>(in, index + 1);
  if (!isLow(low)) return 0;
  value = firstSupplementary + ((value & 0x3FF) << 10 | (low & 0x3FF));
  return 2;
}

template <endian order>
KernelRun utf16ToUtf8(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  KernelRun run{0, 0};
  while (run.read < count) {
    uint32_t value = 0;
    const size_t units = characterAt<order>(in, run.read, count, value);
    if (units == 0 || (order == endian::big && units == 2)) break;
    const size_t length = sequenceLength(value);
    if (room - run.written < length) break;
    putSequence(out + run.written, value, length);
    run.written += length;
    run.read += units;
  }
  return run;
}

template <endian order>
KernelRun utf16ToUtf32(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  KernelRun run{0, 0};
  while (run.read < count && run.written < room) {
    uint32_t value = 0;
    const size_t units = characterAt<order>(in, run.read, count, value);
    if (units == 0) break;
    putUnit32(out, run.written++, value);
    run.read += units;
  }
  return run;
}

template <endian order>
KernelRun utf32ToUtf8(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  KernelRun run{0, 0};
  for (; run.read < count; ++run.read) {
    const uint32_t value = unit32<order>(in, run.read);
    if (value >= firstFiveByteValue) break;
    const size_t length = sequenceLength(value);
    if (room - run.written < length) break;
    putSequence(out + run.written, value, length);
    run.written += length;
  }
  return run;
}

template <endian order>
KernelRun utf32ToUtf16(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  KernelRun run{0, 0};
  for (; run.read < count && run.written < room; ++run.read) {
    const uint32_t value = unit32<order>(in, run.read);
    if (isSurrogateUnit(value) || value > lastCodePoint) break;
    if (value < firstSupplementary) {
      putUnit16(out, run.written++, value);
    } else {
      if (room - run.written < 2) break;
      putPair(out, run.written, value);
      run.written += 2;
    }
  }
  return run;
}

}  // namespace

constinit const Kernels scalarKernels{
    .tier = KernelTier::scalar,
    .fieldBytes = 0,
    .byteMap = byteMap,
    .expand = expand,
    .pagesToBytes = pagesToBytes,
    .asciiRun = asciiRun,
    .asciiRun16 = {asciiRun16<endian::little>, asciiRun16<endian::big>},
    .widenAscii16 = widenAscii16,
    .widenAscii32 = widenAscii32,
    .narrowAscii16 = {narrowAscii<unit16<endian::little>>, narrowAscii<unit16<endian::big>>},
    .narrowAscii32 = {narrowAscii<unit32<endian::little>>, narrowAscii<unit32<endian::big>>},
    .swap16 = swap16,
    .swap32 = swap32,
    .utf8Valid = utf8Valid,
    .utf8ToUtf16 = utf8ToUtf16,
    .utf8ToUtf32 = utf8ToUtf32,
    .utf16ToUtf8 = {utf16ToUtf8<endian::little>, utf16ToUtf8<endian::big>},
    .utf16ToUtf32 = {utf16ToUtf32<endian::little>, utf16ToUtf32<endian::big>},
    .utf32ToUtf8 = {utf32ToUtf8<endian::little>, utf32ToUtf8<endian::big>},
    .utf32ToUtf16 = {utf32ToUtf16<endian::little>, utf32ToUtf16<endian::big>},
    .unitsToCodes = scalar::unitsToCodes,
    .unitsToDoubles = scalar::unitsToDoubles,
    .unitsToCells = scalar::unitsToCells,
    .codesToUnits = scalar::codesToUnits,
    .codesToUtf8 = scalar::codesToUtf8,
    .codesToCodes = scalar::codesToCodes,
    .codesToCells = scalar::codesToCells,
    .doublesToUnits = scalar::doublesToUnits,
    .shiftedToUnits = scalar::shiftedToUnits,
    .unitsToShifted = scalar::unitsToShifted,
    .runWithout = scalar::runWithout,
};

}  // namespace veldnls
