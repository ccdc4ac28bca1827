// Two-byte codes and UTF-16 units: how tables of them are laid out for look-ups without a search, which the kernels of
// multi-byte text share with those who own the tables.
//
// A code has a first and a second byte. A 16-bit value that holds an output character has its two bytes in the order in
// which they are written, the first one low; a first byte of 0 means the single byte in the second.
#pragma once

#include <cstdint>

namespace veldnls {

// Characters that tables of two-byte codes don't decide: the blank of a row, half-width katakana, and the euro sign.
inline constexpr uint16_t ideographicSpace = 0x3000;
inline constexpr uint16_t firstHalfWidthKatakana = 0xFF61;
inline constexpr uint16_t lastHalfWidthKatakana = 0xFF9F;
inline constexpr uint16_t halfWidthKatakanaCount = 63;
inline constexpr uint16_t euroSign = 0x20AC;

// The codes of a first byte that have a second byte of 20 to 9F, or of A0 to FF. Sets that leave out the middle of a
// row, or one half of it, so take no room for that.
struct CodeRow {
  uint16_t start;  // of the row in `units`
  uint8_t first;   // second byte of its first unit
  uint8_t span;    // second byte of its last unit, less `first`
};

// A loop over text does best with a copy of this record of its own, which it can keep in registers.
struct CodeRows {
  const CodeRow* rows;    // a row without codes is the one unit 0 of second byte 0
  const char16_t* units;  // 0: no such code; the first is 0

  // The unit, or 0. REQUIRES: both bytes are 0 to 255.
  char16_t lookUp(uint32_t first, uint32_t second) const {
    const CodeRow row = rows[(first * 0x100 + second + 0x60) >> 7];
    const uint32_t place = second - row.first;
    return place <= row.span ? units[row.start + place] : u'\0';
  }
};

// Sixteen neighbouring units: which of them have a value, and where the first such value stands.
struct UnitGroup {
  uint16_t bits;  // by the low four bits of the unit
  uint16_t rank;  // values of all groups ahead
};

// A loop over text does best with a copy of this record of its own, which it can keep in registers.
struct UnitCodes {
  const uint8_t* blocks;    // 256, by high byte of the unit: which sixteen of the groups
  const UnitGroup* groups;  // the first sixteen are those of a high byte without values
  const uint16_t* values;   // output characters in the order of units; at least two, if there are any

  // The character, or 0.
  uint16_t lookUp(char16_t unit) const {
    const UnitGroup group = groups[blocks[unit >> 8] * 16u + (unit >> 4 & 0xFu)];
    const uint32_t bit = 1u << (unit & 0xF);
    return (group.bits & bit) != 0 ? values[group.rank + countOf15Bits(group.bits & (bit - 1))] : uint16_t{0};
  }

 private:
  // Ones among the low 15 bits, the others being 0, without the instruction that not every processor has: of four
  // copies each bit is kept once, at the foot of a nibble of its own; the second product sums all nibbles up in the
  // highest.
  static uint32_t countOf15Bits(uint32_t bits) {
    const uint64_t nibbles = bits * UINT64_C(0x200040008001) & UINT64_C(0x1111111111111111);
    return static_cast<uint32_t>(nibbles * UINT64_C(0x1111111111111111) >> 60);
  }
};

// The same for a set so full that ranks don't pay.
struct UnitCells {
  const uint16_t* blocks;  // 1,024, by the high ten bits of the unit: where its 64 cells begin
  const uint16_t* cells;   // first byte times 256 plus second; below 0x8000: no code of two bytes
};

// An encoding with shift sequences of one byte each, as a source. No code has a shift as its first or second byte.
struct ShiftedSource {
  CodeRows rows;
  const char16_t* singles;  // 256
  uint32_t blank;           // code of U+3000
  uint32_t euro;            // the single byte that means the euro sign, whatever `singles` says; 0x100: none
  uint8_t shiftOut;
  uint8_t shiftIn;
};

// And as a target.
struct ShiftedTarget {
  UnitCodes codes;
  const uint8_t* singles;  // 256, of which those for U+0000 to U+009E are asked for
  uint32_t blank;          // output character of U+3000
  uint32_t spare;          // room that is left behind each character
  uint8_t shiftOut;
  uint8_t shiftIn;
};

// First bytes of two-byte codes, in two ranges.
struct LeadBytes {
  uint32_t low0 = 0x100, span0 = 0, low1 = 0x100, span1 = 0;

  bool has(uint32_t byte) const { return (byte - low0 <= span0) | (byte - low1 <= span1); }
};

}  // namespace veldnls
