// I8, the intermediate form of UTF-EBCDIC: sequences of up to five bytes, each trailing byte with five bits of the
// value.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "core/text/utf_ebcdic.h"

namespace veldnls {

// Trailing bytes that a lead byte promises; -1 for bytes that begin no sequence.
inline constexpr std::array<int8_t, 256> i8TrailCount = [] {
  std::array<int8_t, 256> counts{};
  for (size_t lead = 0; lead < counts.size(); ++lead) {
    counts[lead] = lead < 0xA0   ? 0
                   : lead < 0xC0 ? -1
                   : lead < 0xE0 ? 1
                   : lead < 0xF0 ? 2
                   : lead < 0xF8 ? 3
                   : lead < 0xFA ? 4
                                 : -1;
  }
  return counts;
}();

// The bits of a lead byte that count where a Unicode stage decodes. Those of the leads C0 to DF don't: a two-byte
// sequence decodes to its trailing bits alone, so that U+00E9, which encodes to C7 A9, decodes to U+0009. (The
// multi-byte module reads these sequences by the report, with all bits.)
inline constexpr std::array<uint8_t, 256> i8LeadMask = [] {
  std::array<uint8_t, 256> masks{};
  for (size_t lead = 0; lead < masks.size(); ++lead) {
    masks[lead] = lead < 0xA0   ? 0xFF
                  : lead < 0xE0 ? 0
                  : lead < 0xF0 ? 0x0F
                  : lead < 0xF8 ? 0x07
                  : lead < 0xFA ? 0x01
                                : 0;
  }
  return masks;
}();

// Bytes of a value's sequence, 1 to 5.
inline size_t i8Length(uint32_t value) {
  return value < 0xA0 ? 1 : value < 0x400 ? 2 : value < 0x4000 ? 3 : value < 0x40000 ? 4 : 5;
}

// Writes a value whose i8Length is `length`, as UTF-EBCDIC. Values above five bytes' worth of bits keep what the lead
// byte can hold.
inline void writeUtfEbcdic(uint8_t* at, uint32_t value, size_t length) {
  constexpr std::array<uint8_t, 6> leadMarks = {0, 0, 0xC0, 0xE0, 0xF0, 0xF8};
  for (size_t i = length - 1; i > 0; --i, value >>= 5) at[i] = i8ToEbcdic[(value & 0x1F) | 0xA0];
  at[0] = i8ToEbcdic[static_cast<uint8_t>(leadMarks[length] | value)];
}

}  // namespace veldnls
