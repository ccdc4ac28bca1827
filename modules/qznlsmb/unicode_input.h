// The Unicode forms as sources: the next character, and characters and runs that need no decision.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "core/kernels/kernels.h"
#include "core/text/blanks.h"
#include "core/text/i8.h"
#include "core/text/units.h"
#include "core/text/utf8.h"
#include "modules/qznlsmb/ascii.h"
#include "modules/qznlsmb/scanners.h"
#include "veldnls/encoding.h"

namespace veldnls {

struct UnicodeCharacter {
  uint32_t value;
  uint32_t length;  // 0: the input ends inside of it
  bool invalid;     // the value replaces what stands there
};

inline constexpr UnicodeCharacter incompleteCharacter{0, 0, false};

// Each form:
//   read(at, left)                  the character at the front of `left` bytes, at least 1
//   toUtf16(at, left, units, room)  makes little-endian UTF-16 of valid characters off the front, as far as they and
//                                   the room go; returns bytes read and units written
//   narrowAscii(in, count, out, room)
//                                   writes characters below 0x80 off the front as bytes, as far as they and the room
//                                   go; returns bytes read and written
//   sizeOf(units, count)            how many bytes the characters of these units take, which are no surrogates
//   blank(row)                      the blank of the blank rule

template <std::endian order>
struct Utf16Input {
  static constexpr size_t unitBytes = utf16UnitBytes;

  // A low surrogate that stands alone is taken as it is.
  static UnicodeCharacter read(const uint8_t* at, size_t left) {
    if (left < 2) return incompleteCharacter;
    const uint32_t unit = load16<order>(at);
    if (!isHighSurrogate(unit)) return {unit, 2, false};
    if (left < 4) return incompleteCharacter;
    const uint32_t second = load16<order>(at + 2);
    if (!isLowSurrogate(second)) return {replacementCharacter, 2, true};
    return {pairValue(unit, second), 4, false};
  }

  static KernelRun toUtf16(const uint8_t* at, size_t left, uint8_t* units, size_t room) {
    const size_t count = std::min(left / utf16UnitBytes, room);
    if constexpr (order == std::endian::little) {
      std::memcpy(units, at, utf16UnitBytes * count);
    } else {
      kernels().swap16(at, units, count);
    }
    return {utf16UnitBytes * count, count};
  }

  // The length of a unit. A surrogate has no code, which ends a run.
  static size_t plain(const uint8_t* at, const uint8_t* /*end*/, uint32_t& unit) {
    unit = load16<order>(at);
    return utf16UnitBytes;
  }

  // Writes four characters below 0x80 as bytes and returns how many, or 0 if others are among them.
  static size_t writeAsciiBlock(uint8_t* out, uint64_t block) {
    if ((block & nonAsciiUnits) != 0) return 0;
    narrowBlock(out, block);
    return sizeof block / utf16UnitBytes;
  }

  static KernelRun narrowAscii(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
    const size_t ascii = kernels().narrowAscii16.template of<order>()(in, out, std::min(count / utf16UnitBytes, room));
    return {utf16UnitBytes * ascii, ascii};
  }

  static size_t sizeOf(const uint8_t* /*units*/, size_t count) { return utf16UnitBytes * count; }

  static Blank blank(const EncodingDescriptor& /*row*/) {
    return order == std::endian::little ? utf16Blank : utf16BigEndianBlank;
  }
};

template <std::endian order>
struct Utf32Input {
  static UnicodeCharacter read(const uint8_t* at, size_t left) {
    if (left < 4) return incompleteCharacter;
    return {load32<order>(at), 4, false};
  }

  static KernelRun toUtf16(const uint8_t* at, size_t left, uint8_t* units, size_t room) {
    const KernelRun run = kernels().utf32ToUtf16.template of<order>()(at, left / utf32UnitBytes, units, room);
    return {utf32UnitBytes * run.read, run.written};
  }

  static KernelRun narrowAscii(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
    const size_t ascii = kernels().narrowAscii32.template of<order>()(in, out, std::min(count / utf32UnitBytes, room));
    return {utf32UnitBytes * ascii, ascii};
  }

  static size_t sizeOf(const uint8_t* /*units*/, size_t count) { return utf32UnitBytes * count; }

  static Blank blank(const EncodingDescriptor& /*row*/) {
    return order == std::endian::little ? utf32Blank : utf32BigEndianBlank;
  }
};

struct Utf8Input {
  static constexpr size_t unitBytes = 1;

  static UnicodeCharacter read(const uint8_t* at, size_t left) {
    if (left <= utf8TrailCount[*at]) return incompleteCharacter;
    const Utf8Sequence sequence = readUtf8(at, left);
    if (sequence.value == invalidUtf8) return {replacementCharacter, sequence.length, true};
    return {sequence.value, sequence.length, false};
  }

  static KernelRun toUtf16(const uint8_t* at, size_t left, uint8_t* units, size_t room) {
    return kernels().utf8ToUtf16(at, left, units, room);
  }

  // The length of the valid character of plane 0 at the front, whose value it writes; 0: there is another there. A
  // surrogate counts as one, for it has no code, which ends a run.
  static size_t plain(const uint8_t* at, const uint8_t* end, uint32_t& unit) {
    const uint32_t lead = at[0];
    unit = lead;
    if (lead < 0x80) return 1;
    if (lead >= 0xE0) {
      if (end - at < 3) return 0;
      const uint32_t second = at[1] ^ 0x80u;
      const uint32_t third = at[2] ^ 0x80u;
      unit = (lead & 0xF) << 12 | second << 6 | third;
      return ((lead < 0xF0) & ((second | third) < 0x40) & (unit >= 0x800)) ? 3 : 0;
    }
    if (end - at < 2) return 0;
    unit = (lead & 0x1F) << 6 | (at[1] & 0x3Fu);
    return lead >= 0xC2 && isUtf8Trail(at[1]) ? 2 : 0;
  }

  // Writes eight characters below 0x80 and returns their size, or 0 if others are among them.
  static size_t writeAsciiBlock(uint8_t* out, uint64_t block) {
    if ((block & UINT64_C(0x8080808080808080)) != 0) return 0;
    std::memcpy(out, &block, sizeof block);
    return sizeof block;
  }

  static KernelRun narrowAscii(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
    const size_t ascii = copyAscii(in, out, std::min(count, room));
    return {ascii, ascii};
  }

  static size_t sizeOf(const uint8_t* units, size_t count) {
    size_t size = 0;
    for (size_t i = 0; i < count; ++i) size += utf8Length(load16<std::endian::little>(units + utf16UnitBytes * i));
    return size;
  }

  static Blank blank(const EncodingDescriptor& row) { return {1, row.padChar & 0xFF}; }
};

struct UtfEbcdicInput {
  // By the report: all bits of a lead byte count, also those of the two-byte leads, which Unicode stages leave out. As
  // there, trailing bytes aren't tested and a byte that begins no sequence is U+0000.
  static UnicodeCharacter read(const uint8_t* at, size_t left) {
    auto length = static_cast<uint32_t>(std::min<size_t>(left, 8));
    NlsBool8 unused = 0;
    scanUtfe(nullptr, at, &length, &unused);
    if (length == 0) return incompleteCharacter;
    const uint8_t lead = ebcdicToI8[at[0]];
    uint32_t value = length == 2 ? lead & 0x1Fu : uint32_t{lead} & i8LeadMask[lead];
    for (uint32_t i = 1; i < length; ++i) value = value << 5 | (ebcdicToI8[at[i]] & 0x1Fu);
    return {value, length, false};
  }

  // There is no inner loop for this form.
  static KernelRun toUtf16(const uint8_t* /*at*/, size_t /*left*/, uint8_t* /*units*/, size_t /*room*/) {
    return {0, 0};
  }
  static KernelRun narrowAscii(const uint8_t* /*in*/, size_t /*count*/, uint8_t* /*out*/, size_t /*room*/) {
    return {0, 0};
  }
  static size_t sizeOf(const uint8_t* /*units*/, size_t /*count*/) { return 0; }

  static Blank blank(const EncodingDescriptor& row) { return {1, row.padChar & 0xFF}; }
};

}  // namespace veldnls
