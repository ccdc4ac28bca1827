#include "modules/qznlsmb/skip_source.h"

#include <algorithm>
#include <cstring>

#include "core/text/units.h"
#include "modules/qznlsgb/tables.h"
#include "modules/qznlsmb/source_tables.h"

namespace veldnls {

namespace {

// For fewer bytes a kernel doesn't pay.
constexpr size_t kernelBytes = 24;
// So many characters a loop does itself before a kernel that got nowhere is asked again.
constexpr size_t kernelPause = 16;
constexpr size_t longestCharacter = 4;

bool isShort(size_t count, size_t room) { return count < kernelBytes && room >= count; }

// How far a loop got. Small, and its own copy in each function: what is written through a byte pointer might be
// anything that stands in memory.
struct UnitCursor {
  const uint8_t* at;
  const uint8_t* const end;
  uint8_t* out;

  void put(uint32_t unit, size_t bytes) {
    store16(out, unit);
    out += utf16UnitBytes;
    at += bytes;
  }
  // Takes eight bytes below 0x80, if that many stand at the front.
  bool putAsciiBlock() {
    uint64_t block;
    if (end - at < static_cast<std::ptrdiff_t>(sizeof block)) return false;
    std::memcpy(&block, at, sizeof block);
    if ((block & UINT64_C(0x8080808080808080)) != 0) return false;
    spread(out, static_cast<uint32_t>(block));
    spread(out + sizeof block, static_cast<uint32_t>(block >> 32));
    at += sizeof block;
    out += utf16UnitBytes * sizeof block;
    return true;
  }
  // Four bytes as four units.
  static void spread(uint8_t* units, uint64_t bytes) {
    bytes = (bytes | bytes << 16) & UINT64_C(0x0000FFFF0000FFFF);
    bytes = (bytes | bytes << 8) & UINT64_C(0x00FF00FF00FF00FF);
    std::memcpy(units, &bytes, sizeof bytes);
  }
  KernelRun since(const uint8_t* in, const uint8_t* units) const {
    return {static_cast<size_t>(at - in), static_cast<size_t>(out - units) / utf16UnitBytes};
  }
};

uint32_t blankOf(const PipelineSide& side) {
  return side.sourceProfile->doubleBlank[0] * 256u + side.sourceProfile->doubleBlank[1];
}

const CodeRows& codesOf(const PipelineSide& side) { return toUnicodeSetOf(side).codes; }

// A text on its way, of which `some` takes a few characters and `kernel` many. Both take what is left, and room for as
// many units, and return what they read and wrote; for `some` there is room for each byte.
template <class Some, class Kernel>
KernelRun inTurns(const uint8_t* in, size_t count, uint8_t* units, size_t room, const Some& some,
                  const Kernel& kernel) {
  KernelRun run{0, 0};
  while (run.read != count) {
    size_t most = kernelBytes;
    if (count - run.read >= kernelBytes) {
      const KernelRun taken =
          kernel(in + run.read, count - run.read, units + utf16UnitBytes * run.written, room - run.written);
      run = {run.read + taken.read, run.written + taken.written};
      most = taken.written < kernelPause ? 2 * kernelPause : longestCharacter;
    }
    const size_t bytes = std::min({count - run.read, room - run.written, most});
    const KernelRun taken = some(in + run.read, bytes, units + utf16UnitBytes * run.written);
    run = {run.read + taken.read, run.written + taken.written};
    // It has stopped at what it can't take, and not at a character cut by `most`.
    if (taken.read == 0 || bytes - taken.read >= longestCharacter) break;
  }
  return run;
}

LeadBytes leadsOf(const MultiByteProfile& profile) {
  const NlsByteRange* ranges = profile.leadRanges;
  if (ranges[0].low == 0) return {};
  LeadBytes leads{ranges[0].low, static_cast<uint32_t>(ranges[0].high - ranges[0].low)};
  if (ranges[1].low != 0) {
    leads.low1 = ranges[1].low;
    leads.span1 = static_cast<uint32_t>(ranges[1].high - ranges[1].low);
  }
  return leads;
}

KernelRun someLeadBytes(const PipelineSide& side, const LeadBytes leads, const uint8_t* in, size_t count,
                        uint8_t* units) {
  const CodeRows codes = codesOf(side);
  const uint32_t blank = blankOf(side);
  UnitCursor text{in, in + count, units};
  while (text.at != text.end) {
    const uint32_t first = *text.at;
    if (first < 0x80) {
      if (!text.putAsciiBlock()) text.put(first, 1);
    } else if (leads.has(first)) {
      if (text.end - text.at < 2) break;
      const uint32_t second = text.at[1];
      uint32_t unit = codes.lookUp(first, second);
      if (unit == 0) {
        if (first * 256 + second != blank) break;
        unit = ideographicSpace;
      }
      text.put(unit, 2);
    } else {
      text.put(unitOfSingle(side, static_cast<uint8_t>(first)), 1);
    }
  }
  return text.since(in, units);
}

KernelRun longLeadBytes(const PipelineSide& side, const LeadBytes leads, const uint8_t* in, size_t count,
                        uint8_t* units, size_t room) {
  return inTurns(
      in, count, units, room,
      [&](const uint8_t* text, size_t left, uint8_t* out) { return someLeadBytes(side, leads, text, left, out); },
      [&](const uint8_t* text, size_t left, uint8_t* out, size_t outRoom) {
        return kernels().codesToUnits(codesOf(side), leads, blankOf(side), text, left, out, outRoom);
      });
}

[[gnu::always_inline]] inline KernelRun leadBytes(const PipelineSide& side, const LeadBytes leads, const uint8_t* in,
                                                  size_t count, uint8_t* units, size_t room) {
  if (side.overlay != nullptr) return {0, 0};
  if (isShort(count, room)) return someLeadBytes(side, leads, in, count, units);
  return longLeadBytes(side, leads, in, count, units, room);
}

}  // namespace

bool hasInnerLoop(const EncodingDescriptor& row) {
  const MultiByteProfile& profile = row.profile;
  if (row.encodingClass == NLS_CLASS_SHIFTED) return true;
  const auto isNoneOrAbove = [&](int range) {
    return profile.leadRanges[range].low == 0 || profile.leadRanges[range].low >= 0x80;
  };
  const bool isAscii = profile.singleByteSet <= 1 || profile.singleByteSet == 3;
  return isAscii && isNoneOrAbove(0) && isNoneOrAbove(1) && profile.leadRanges[2].low == 0;
}

KernelRun plainLeadBytes(const PipelineSide& side, NlsBool8& /*inDouble*/, const uint8_t* in, size_t count,
                         uint8_t* units, size_t room) {
  return leadBytes(side, leadsOf(*side.sourceProfile), in, count, units, room);
}

KernelRun plainHighBits(const PipelineSide& side, NlsBool8& /*inDouble*/, const uint8_t* in, size_t count,
                        uint8_t* units, size_t room) {
  return leadBytes(side, LeadBytes{0x80, 0x7F}, in, count, units, room);
}

namespace {

// The bytes that may begin a sequence, and one of them again.
struct SequenceBytes {
  SequenceBytes(const MultiByteProfile& profile, uint8_t escape)
      : bytes{profile.shiftOut[0], profile.shiftIn[0], escape, escape} {}
  SequenceBytes(const MultiByteProfile& profile) : SequenceBytes(profile, profile.shiftIn[0]) {}

  uint8_t shiftOut() const { return bytes[0]; }
  uint8_t shiftIn() const { return bytes[1]; }
  bool has(uint32_t byte) const { return (byte == bytes[0]) | (byte == bytes[1]) | (byte == bytes[2]); }

  uint8_t bytes[4];
};

// Single bytes up to one that may begin a sequence.
KernelRun someSingles(const PipelineSide& side, const SequenceBytes sequences, const uint8_t* in, size_t count,
                      uint8_t* units) {
  const char16_t* const single = side.toUnicode;
  const uint32_t euro = oneByteEuro(side);
  UnitCursor text{in, in + count, units};
  while (text.at != text.end) {
    const uint32_t byte = *text.at;
    if (sequences.has(byte)) break;
    text.put(byte == euro ? euroSign : single[byte], 1);
  }
  return text.since(in, units);
}

// Characters of two bytes up to one without a unit. No set has codes whose first byte may begin a sequence, but where
// they are found with the high bits put on.
template <bool masked>
KernelRun someDoubles(const PipelineSide& side, const SequenceBytes sequences, const uint8_t* in, size_t count,
                      uint8_t* units) {
  const CodeRows codes = codesOf(side);
  const uint32_t blank = blankOf(side);
  UnitCursor text{in, in + count / 2 * 2, units};
  while (text.at != text.end) {
    const uint32_t first = text.at[0];
    const uint32_t second = text.at[1];
    uint32_t unit = 0;
    if constexpr (masked) {
      if (sequences.has(first)) break;
      if (first * 256 + second != blank) unit = codes.lookUp(first | 0x80, second | 0x80);
    } else {
      unit = codes.lookUp(first, second);
    }
    if (unit == 0) {
      if (first * 256 + second != blank) break;
      unit = ideographicSpace;
    }
    text.put(unit, 2);
  }
  return text.since(in, units);
}

// A run of one mode, many of which are short: only one that has gone on for a while is for a kernel.
template <class Some, class Kernel>
KernelRun modeRun(const uint8_t* in, size_t count, uint8_t* units, size_t room, const Some& some,
                  const Kernel& kernel) {
  const size_t front = std::min({count, room, 2 * kernelPause});
  const KernelRun begun = some(in, front, units);
  if (front < 2 * kernelPause || front - begun.read >= longestCharacter) return begun;
  const KernelRun rest = inTurns(in + begun.read, count - begun.read, units + utf16UnitBytes * begun.written,
                                 room - begun.written, some, kernel);
  return {begun.read + rest.read, begun.written + rest.written};
}

KernelRun takeSingles(const PipelineSide& side, const SequenceBytes sequences, const uint8_t* in, size_t count,
                      uint8_t* units, size_t room) {
  const auto some = [&](const uint8_t* text, size_t left, uint8_t* out) {
    return someSingles(side, sequences, text, left, out);
  };
  return modeRun(in, count, units, room, some, [&](const uint8_t* text, size_t left, uint8_t* out, size_t outRoom) {
    // The euro sign isn't of the table.
    SequenceBytes others = sequences;
    others.bytes[3] = static_cast<uint8_t>(oneByteEuro(side));
    const size_t run = kernels().runWithout(others.bytes, text, std::min(left, outRoom));
    kernels().expand(side.toUnicode, text, out, run);
    return KernelRun{run, run};
  });
}

KernelRun takeDoubles(const PipelineSide& side, const SequenceBytes sequences, const uint8_t* in, size_t count,
                      uint8_t* units, size_t room) {
  const auto some = [&](const uint8_t* text, size_t left, uint8_t* out) {
    return someDoubles<false>(side, sequences, text, left, out);
  };
  return modeRun(in, count, units, room, some, [&](const uint8_t* text, size_t left, uint8_t* out, size_t outRoom) {
    const size_t run = kernels().runWithout(sequences.bytes, text, 2 * std::min(left / 2, outRoom)) / 2;
    const size_t taken = kernels().doublesToUnits(codesOf(side), blankOf(side), text, out, run);
    return KernelRun{2 * taken, taken};
  });
}

}  // namespace

namespace {

// Runs of both modes and the shifts between them, which are of one byte each and act in both modes.
KernelRun someShifted(const PipelineSide& side, const SequenceBytes sequences, bool& inDouble, const uint8_t* in,
                      size_t count, uint8_t* units) {
  KernelRun run{0, 0};
  for (;;) {
    const auto some = inDouble ? someDoubles<false> : someSingles;
    const KernelRun taken =
        some(side, sequences, in + run.read, count - run.read, units + utf16UnitBytes * run.written);
    run = {run.read + taken.read, run.written + taken.written};
    if (run.read == count) return run;
    // A text doesn't end well behind a shift-out, which the stage has to tell.
    const bool shiftsIn = in[run.read] == side.sourceProfile->shiftIn[0];
    const bool shiftsOut = in[run.read] == side.sourceProfile->shiftOut[0] && count - run.read >= 2;
    if (!shiftsIn && !shiftsOut) return run;
    inDouble = !shiftsIn;
    ++run.read;
  }
}

KernelRun longShifted(const PipelineSide& side, const SequenceBytes sequences, bool& inDouble, const uint8_t* in,
                      size_t count, uint8_t* units, size_t room) {
  const ShiftedSource source{codesOf(side),     side.toUnicode,       blankOf(side),
                             oneByteEuro(side), sequences.shiftOut(), sequences.shiftIn()};
  return inTurns(
      in, count, units, room,
      [&](const uint8_t* text, size_t left, uint8_t* out) {
        return someShifted(side, sequences, inDouble, text, left, out);
      },
      [&](const uint8_t* text, size_t left, uint8_t* out, size_t outRoom) {
        return kernels().shiftedToUnits(source, inDouble, text, left, out, outRoom);
      });
}

}  // namespace

KernelRun plainShifted(const PipelineSide& side, NlsBool8& inDouble, const uint8_t* in, size_t count, uint8_t* units,
                       size_t room) {
  if (side.overlay != nullptr) return {0, 0};
  const SequenceBytes sequences(*side.sourceProfile);
  // Shifts of two bytes are the stage's.
  if (side.sourceProfile->shiftLength != 1) {
    const auto take = inDouble != 0 ? takeDoubles : takeSingles;
    return take(side, sequences, in, count, units, room);
  }
  bool doubles = inDouble != 0;
  const KernelRun run = isShort(count, room) ? someShifted(side, sequences, doubles, in, count, units)
                                             : longShifted(side, sequences, doubles, in, count, units, room);
  inDouble = doubles ? 1 : 0;
  return run;
}

KernelRun plainIso2022(const PipelineSide& side, NlsBool8& inDouble, const uint8_t* in, size_t count, uint8_t* units,
                       size_t room) {
  constexpr uint8_t escape = 0x1B;
  if (side.overlay != nullptr) return {0, 0};
  const SequenceBytes sequences(*side.sourceProfile, escape);
  if (inDouble == 0) return takeSingles(side, sequences, in, count, units, room);
  if (codeMask(side.cei) == 0) return takeDoubles(side, sequences, in, count, units, room);
  return someDoubles<true>(side, sequences, in, 2 * std::min(count / 2, room), units);
}

namespace {

KernelRun someGb18030(const uint8_t* in, size_t count, uint8_t* units) {
  const GbToUnicodeIndex index = gbToUnicodeIndex;
  UnitCursor text{in, in + count, units};
  while (text.at != text.end) {
    const uint32_t first = *text.at;
    if (first < 0x80) {
      if (!text.putAsciiBlock()) text.put(first, 1);
    } else if (first == 0x80) {
      text.put(euroSign, 1);
    } else {
      if (text.end - text.at < 2) break;
      const uint32_t second = text.at[1];
      const bool four = second < 0x3A;
      if (four && text.end - text.at < 4) break;
      const uint32_t unit =
          four ? index.lookUpFour(first, second, text.at[2], text.at[3]) : index.lookUpDouble(first, second);
      if (unit == gbNotFound) break;
      text.put(unit, four ? 4 : 2);
    }
  }
  return text.since(in, units);
}

}  // namespace

KernelRun plainGb18030(const PipelineSide& /*side*/, NlsBool8& /*inDouble*/, const uint8_t* in, size_t count,
                       uint8_t* units, size_t room) {
  constexpr LeadBytes leads{0x81, 0xFF - 0x81};
  constexpr uint32_t noCode = 0;
  if (isShort(count, room)) return someGb18030(in, count, units);
  return inTurns(in, count, units, room, someGb18030,
                 [&](const uint8_t* text, size_t left, uint8_t* out, size_t outRoom) {
                   return kernels().codesToUnits(gbToUnicodeIndex.doubles, leads, noCode, text, left, out, outRoom);
                 });
}

}  // namespace veldnls
