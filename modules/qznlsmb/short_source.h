// Inner loops of the stages that read multi-byte text, for texts too short for kernels and for the characters between
// them. They are inlined into the stages: short texts feel every call.
//
// Each takes characters off the front of `count` bytes that are whole and mapped by the module's own tables, and writes
// them in a Unicode form, with room for as many characters as there are bytes. It returns bytes read and written, and
// may stop anywhere: a stage knows how to do the rest. The side has no user characters, and its row an inner loop.
#pragma once

#include <cstring>

#include "core/kernels/kernels.h"
#include "modules/qznlsgb/tables.h"
#include "modules/qznlsmb/source_tables.h"
#include "veldnls/encoding.h"

namespace veldnls {

// How far a loop got. Each loop has its own: what is written through a byte pointer might be anything that stands in
// memory.
template <class Form>
struct SourceCursor {
  const uint8_t* at;
  const uint8_t* const end;
  uint8_t* out;

  void put(uint32_t unit, size_t bytes) {
    const size_t size = Form::size(unit);
    Form::write(out, unit, size);
    out += size;
    at += bytes;
  }
  // Takes the byte below 0x80 at the front, and seven more if they are, too.
  void putAscii() {
    uint64_t block;
    if (end - at >= static_cast<std::ptrdiff_t>(sizeof block)) {
      std::memcpy(&block, at, sizeof block);
      if ((block & UINT64_C(0x8080808080808080)) == 0) {
        out += Form::writeAsciiBlock(out, block);
        at += sizeof block;
        return;
      }
    }
    put(*at, 1);
  }
  KernelRun since(const uint8_t* in, const uint8_t* begin) const {
    return {static_cast<size_t>(at - in), static_cast<size_t>(out - begin)};
  }
};

inline uint32_t blankOfSource(const PipelineSide& side) {
  return side.sourceProfile->doubleBlank[0] * 256u + side.sourceProfile->doubleBlank[1];
}

// The lead bytes of a row without shifts.
inline LeadBytes leadsOf(const MultiByteProfile& profile) {
  const NlsByteRange* ranges = profile.leadRanges;
  if (ranges[0].low == 0) return {};
  LeadBytes leads{ranges[0].low, static_cast<uint32_t>(ranges[0].high - ranges[0].low)};
  if (ranges[1].low != 0) {
    leads.low1 = ranges[1].low;
    leads.span1 = static_cast<uint32_t>(ranges[1].high - ranges[1].low);
  }
  return leads;
}

inline constexpr LeadBytes highBitLeads{0x80, 0x7F};

// GB18030, whose index has its blank like any other code.
inline constexpr LeadBytes gb18030Leads{0x81, 0xFF - 0x81};
inline constexpr uint32_t gb18030Blank = 0;

// Text of ASCII, other single bytes and characters of two bytes.
template <class Form>
KernelRun shortLeadBytes(const PipelineSide& side, const LeadBytes leads, const uint8_t* in, size_t count,
                         uint8_t* out) {
  const CodeRows codes = toUnicodeSetOf(side).codes;
  const uint32_t blank = blankOfSource(side);
  SourceCursor<Form> text{in, in + count, out};
  while (text.at != text.end) {
    while (text.end - text.at >= 2 && leads.has(*text.at)) {
      const uint32_t first = text.at[0];
      const uint32_t second = text.at[1];
      uint32_t unit = codes.lookUp(first, second);
      if (unit == 0) {
        if (first * 256 + second != blank) return text.since(in, out);
        unit = ideographicSpace;
      }
      text.put(unit, 2);
    }
    if (text.at == text.end) break;
    const uint8_t byte = *text.at;
    if (byte < 0x80) {
      text.putAscii();
    } else if (!leads.has(byte)) {
      text.put(unitOfSingle(side, byte), 1);
    } else {
      break;
    }
  }
  return text.since(in, out);
}

// Runs of both modes, and shifts of one byte between them, which act in both modes; other shifts end the run. No set of
// a row with shifts has codes that begin like one.
template <class Form>
KernelRun shortShifted(const PipelineSide& side, NlsBool8& inDouble, const uint8_t* in, size_t count, uint8_t* out) {
  const MultiByteProfile& profile = *side.sourceProfile;
  const uint32_t shiftIn = profile.shiftIn[0];
  const uint32_t shiftOut = profile.shiftOut[0];
  const CodeRows codes = toUnicodeSetOf(side).codes;
  const uint32_t blank = blankOfSource(side);
  const uint32_t euro = oneByteEuro(side);
  const char16_t* const single = side.toUnicode;
  bool doubles = inDouble != 0;
  SourceCursor<Form> text{in, in + count, out};
  for (;;) {
    if (doubles) {
      while (text.end - text.at >= 2) {
        const uint32_t first = text.at[0];
        const uint32_t second = text.at[1];
        uint32_t unit = codes.lookUp(first, second);
        if (unit == 0) {
          if (first * 256 + second != blank) break;
          unit = ideographicSpace;
        }
        text.put(unit, 2);
      }
    } else {
      for (; text.at != text.end;) {
        const uint32_t byte = *text.at;
        if ((byte == shiftIn) | (byte == shiftOut)) break;
        text.put(byte == euro ? euroSign : single[byte], 1);
      }
    }
    // A text doesn't end well behind a shift-out, which the stage has to tell.
    if (text.at == text.end || profile.shiftLength != 1) break;
    if (*text.at == shiftIn) {
      doubles = false;
    } else if (*text.at == shiftOut && text.end - text.at >= 2) {
      doubles = true;
    } else {
      break;
    }
    ++text.at;
  }
  inDouble = doubles ? 1 : 0;
  return text.since(in, out);
}

// GB18030, by the index of its module.
template <class Form>
KernelRun shortGb18030(const uint8_t* in, size_t count, uint8_t* out) {
  const GbToUnicodeIndex index = gbToUnicodeIndex;
  SourceCursor<Form> text{in, in + count, out};
  while (text.at != text.end) {
    const uint32_t first = *text.at;
    if (first < 0x80) {
      text.putAscii();
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
  return text.since(in, out);
}

}  // namespace veldnls
