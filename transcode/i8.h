// I8, the intermediate form of UTF-EBCDIC, as the stages read and write it: sequences of up to five bytes, each
// trailing byte with five bits of the value.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "transcode/skip_ahead.h"
#include "transcode/utf_ebcdic.h"

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

// The bits of a lead byte that count. Those of the leads C0 to DF don't: a two-byte sequence decodes to its trailing
// bits alone, so that U+00E9, which encodes to C7 A9, decodes to U+0009.
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

// UTF-EBCDIC as a target.
struct UtfEbcdicTarget {
  static constexpr size_t replacementRoom = 0;

  template <std::endian>
  static constexpr StageSkip fromUtf16 = skipNothing;
  template <std::endian>
  static constexpr StageSkip fromUtf32 = skipNothing;

  static size_t size(uint32_t value) {
    return value < 0xA0 ? 1 : value < 0x400 ? 2 : value < 0x4000 ? 3 : value < 0x40000 ? 4 : 5;
  }

  // Values above five bytes' worth of bits keep what the lead byte can hold.
  static void write(uint8_t* at, uint32_t value, size_t size) {
    constexpr std::array<uint8_t, 6> leadMarks = {0, 0, 0xC0, 0xE0, 0xF0, 0xF8};
    for (size_t i = size - 1; i > 0; --i, value >>= 5) at[i] = i8ToEbcdic[(value & 0x1F) | 0xA0];
    at[0] = i8ToEbcdic[static_cast<uint8_t>(leadMarks[size] | value)];
  }
};

}  // namespace veldnls
