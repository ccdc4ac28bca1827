#include "core/kernels/scalar_codes.h"

#include <bit>

#include "core/kernels/units.h"
#include "core/kernels/utf8_sequence.h"

namespace veldnls::scalar {

namespace {

constexpr uint32_t firstNonAscii = 0x80;
constexpr uint32_t firstOfTable = 0x9F;
constexpr uint32_t firstTwoByteCell = 0x8000;

bool isSingle(uint32_t code) { return (code & 0xFF) == 0; }

// An output character as it stands in memory; 0: the unit has none.
uint32_t codeOf(const UnitCodes& codes, uint32_t blank, uint32_t unit) {
  if (unit < firstOfTable || unit - firstHalfWidthKatakana < halfWidthKatakanaCount) return 0;
  return unit == ideographicSpace ? blank : codes.lookUp(static_cast<char16_t>(unit));
}

uint32_t codeOf(const UnitCells& codes, uint32_t unit) {
  const uint32_t cell = codes.cells[codes.blocks[unit >> 6] + (unit & 0x3Fu)];
  return cell < firstTwoByteCell ? 0 : cell >> 8 | (cell & 0xFF) << 8;
}

// Writes the character of a unit and returns its length, or 0 if it has none or no room. `code` is that of a unit from
// 0x80 on.
size_t putCode(uint32_t unit, uint32_t code, uint8_t* out, size_t room) {
  if (unit < firstNonAscii) code = unit << 8;
  if (code == 0 && unit != 0) return 0;
  const size_t length = isSingle(code) ? 1 : 2;
  if (room < length) return 0;
  if (length == 2) *out++ = static_cast<uint8_t>(code);
  *out = static_cast<uint8_t>(code >> 8);
  return length;
}

// `codeAt` answers the output character of a unit.
template <class CodeAt>
KernelRun fromUnits(CodeAt codeAt, const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  KernelRun run{0, 0};
  for (; run.read < count; ++run.read) {
    const uint32_t unit = unit16<std::endian::little>(in, run.read);
    const size_t length = putCode(unit, codeAt(unit), out + run.written, room - run.written);
    if (length == 0) break;
    run.written += length;
  }
  return run;
}

// The unit of a two-byte code, or 0.
uint32_t unitOf(const CodeRows& rows, uint32_t blank, const uint8_t* at) {
  return at[0] * 256u + at[1] == blank ? ideographicSpace : rows.lookUp(at[0], at[1]);
}

// `put` takes a unit and what was written before, and returns how much it wrote, or 0 when it can't.
template <class Put>
KernelRun fromCodes(const CodeRows& rows, uint32_t blank, const uint8_t* in, size_t count, Put put) {
  KernelRun run{0, 0};
  while (run.read < count) {
    const uint8_t* at = in + run.read;
    uint32_t unit = at[0];
    const size_t length = unit < firstNonAscii ? 1 : 2;
    if (length == 2) {
      if (count - run.read < 2) break;
      unit = unitOf(rows, blank, at);
      if (unit == 0) break;
    }
    const size_t written = put(unit, run.written);
    if (written == 0) break;
    run = {run.read + length, run.written + written};
  }
  return run;
}

}  // namespace

KernelRun unitsToCodes(const UnitCodes& codes, uint32_t blank, const uint8_t* in, size_t count, uint8_t* out,
                       size_t room) {
  return fromUnits([&](uint32_t unit) { return codeOf(codes, blank, unit); }, in, count, out, room);
}

KernelRun unitsToDoubles(const UnitCodes& codes, uint32_t blank, const uint8_t* in, size_t count, uint8_t* out,
                         size_t room) {
  KernelRun run{0, 0};
  for (; run.read < count && room - run.written >= 2; ++run.read) {
    const uint32_t code = codeOf(codes, blank, unit16<std::endian::little>(in, run.read));
    if (isSingle(code)) break;
    putUnit16(out, run.read, code);
    run.written += 2;
  }
  return run;
}

KernelRun unitsToCells(const UnitCells& codes, const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  return fromUnits([&](uint32_t unit) { return codeOf(codes, unit); }, in, count, out, room);
}

KernelRun codesToUnits(const CodeRows& rows, const LeadBytes& leads, uint32_t blank, const uint8_t* in, size_t count,
                       uint8_t* out, size_t room) {
  KernelRun run{0, 0};
  for (; run.read < count && run.written < room; ++run.written) {
    const uint8_t* at = in + run.read;
    if (at[0] < firstNonAscii) {
      putUnit16(out, run.written, at[0]);
      ++run.read;
      continue;
    }
    if (!leads.has(at[0]) || count - run.read < 2 || doublesToUnits(rows, blank, at, out + 2 * run.written, 1) == 0) {
      break;
    }
    run.read += 2;
  }
  return run;
}

KernelRun codesToUtf8(const CodeRows& rows, uint32_t blank, const uint8_t* in, size_t count, uint8_t* out,
                      size_t room) {
  return fromCodes(rows, blank, in, count, [&](uint32_t unit, size_t written) -> size_t {
    const size_t length = sequenceLength(unit);
    if (length > room - written) return 0;
    putSequence(out + written, unit, length);
    return length;
  });
}

KernelRun codesToCodes(const CodeRows& rows, uint32_t blank, const UnitCodes& codes, uint32_t targetBlank,
                       const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  return fromCodes(rows, blank, in, count, [&](uint32_t unit, size_t written) {
    return putCode(unit, codeOf(codes, targetBlank, unit), out + written, room - written);
  });
}

KernelRun codesToCells(const CodeRows& rows, uint32_t blank, const UnitCells& codes, const uint8_t* in, size_t count,
                       uint8_t* out, size_t room) {
  return fromCodes(rows, blank, in, count, [&](uint32_t unit, size_t written) {
    return putCode(unit, codeOf(codes, unit), out + written, room - written);
  });
}

size_t doublesToUnits(const CodeRows& rows, uint32_t blank, const uint8_t* in, uint8_t* out, size_t count) {
  for (size_t i = 0; i < count; ++i) {
    const uint32_t unit = unitOf(rows, blank, in + 2 * i);
    if (unit == 0) return i;
    putUnit16(out, i, unit);
  }
  return count;
}

KernelRun shiftedToUnits(const ShiftedSource& source, bool& inDouble, const uint8_t* in, size_t count, uint8_t* out,
                         size_t room) {
  KernelRun run{0, 0};
  while (run.read < count) {
    const uint8_t* at = in + run.read;
    const bool shiftsOut = at[0] == source.shiftOut;
    if (shiftsOut || at[0] == source.shiftIn) {
      if (shiftsOut == inDouble) break;
      inDouble = shiftsOut;
      ++run.read;
      continue;
    }
    if (run.written == room) break;
    uint8_t* target = out + 2 * run.written;
    if (!inDouble) {
      putUnit16(target, 0, at[0] == source.euro ? euroSign : source.singles[at[0]]);
      ++run.read;
    } else {
      if (count - run.read < 2 || doublesToUnits(source.rows, source.blank, at, target, 1) == 0) break;
      run.read += 2;
    }
    ++run.written;
  }
  if (run.read != 0 && in[run.read - 1] == source.shiftOut) {
    inDouble = false;
    --run.read;
  }
  return run;
}

KernelRun unitsToShifted(const ShiftedTarget& target, bool& inDouble, const uint8_t* in, size_t count, uint8_t* out,
                         size_t room) {
  KernelRun run{0, 0};
  for (; run.read < count; ++run.read) {
    const uint32_t unit = unit16<std::endian::little>(in, run.read);
    const uint32_t code =
        unit < firstOfTable ? uint32_t{target.singles[unit]} << 8 : codeOf(target.codes, target.blank, unit);
    if (code == 0 && unit >= firstOfTable) break;
    const bool isDouble = !isSingle(code);
    const size_t length = (isDouble ? 2 : 1) + (isDouble != inDouble ? 1 : 0);
    if (room - run.written < length + target.spare) break;
    if (isDouble != inDouble) out[run.written++] = isDouble ? target.shiftOut : target.shiftIn;
    inDouble = isDouble;
    if (isDouble) out[run.written++] = static_cast<uint8_t>(code);
    out[run.written++] = static_cast<uint8_t>(code >> 8);
  }
  return run;
}

size_t runWithout(const uint8_t* four, const uint8_t* in, size_t count) {
  size_t i = 0;
  while (i < count && in[i] != four[0] && in[i] != four[1] && in[i] != four[2] && in[i] != four[3]) ++i;
  return i;
}

}  // namespace veldnls::scalar
