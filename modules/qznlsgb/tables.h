// The mappings between GB18030 and UTF-16. A code is its one, two or four bytes read big-endian. Constant and shared.
#pragma once

#include <cstdint>

#include "core/kernels/double_byte.h"

namespace veldnls {

inline constexpr int gbRowCount = 30861;
inline constexpr uint32_t gbNotFound = 0x20;

struct GbFromUnicodeRow {
  uint16_t unit;
  uint32_t code;
};
struct GbToUnicodeRow {
  uint32_t code;
  uint16_t unit;
};

// The same mappings twice, ascending by unit and by code.
extern const GbFromUnicodeRow gbFromUnicodeTable[gbRowCount];
extern const GbToUnicodeRow gbToUnicodeTable[gbRowCount];

// Answers what gbFromUnicodeTable holds, without a search.
struct GbFromUnicodeIndex {
  const uint16_t* blocks;     // 1,024, by the high ten bits of the unit: where its 64 cells begin
  const uint16_t* cells;      // a code of two bytes, or, below 0x8000, a place in longCodes
  const uint32_t* longCodes;  // all other codes, and ahead of them gbNotFound

  // The code, or gbNotFound.
  uint32_t lookUp(char16_t unit) const {
    const uint32_t cell = cells[blocks[unit >> 6] + (unit & 0x3Fu)];
    return cell >= 0x8000 ? cell : longCodes[cell];
  }
};

// Answers what gbToUnicodeTable holds, without a search.
struct GbToUnicodeIndex {
  CodeRows doubles;
  const uint16_t* blocks;  // by the high bits of a four-byte code's place: where its 64 units begin
  const char16_t* units;   // gbNotFound: no such code

  // The unit of a code, or gbNotFound.
  char16_t lookUp(uint32_t code) const {
    if (code < 0x80) return static_cast<char16_t>(code);
    if (code < 0x10000) return lookUpDouble(code >> 8, code & 0xFF);
    return lookUpFour(code >> 24, code >> 16 & 0xFF, code >> 8 & 0xFF, code & 0xFF);
  }

  // The unit of a code of two bytes, or gbNotFound. REQUIRES: both are 0 to 255.
  char16_t lookUpDouble(uint32_t first, uint32_t second) const {
    const char16_t unit = doubles.lookUp(first, second);
    return unit != 0 ? unit : static_cast<char16_t>(gbNotFound);
  }

  // The unit of a code of four bytes, or gbNotFound. REQUIRES: all are 0 to 255.
  char16_t lookUpFour(uint32_t first, uint32_t second, uint32_t third, uint32_t fourth) const {
    const uint32_t lead = first - 0x81;
    const uint32_t digit = second - 0x30;
    const uint32_t middle = third - 0x81;
    const uint32_t last = fourth - 0x30;
    const bool inRange = lead <= 0x84 - 0x81 && digit <= 9 && middle <= 0xFE - 0x81 && last <= 9;
    if (!inRange) return static_cast<char16_t>(gbNotFound);
    const uint32_t place = ((lead * 10 + digit) * 126 + middle) * 10 + last;
    return units[blocks[place >> 6] + (place & 0x3F)];
  }
};

extern const GbFromUnicodeIndex gbFromUnicodeIndex;
extern const GbToUnicodeIndex gbToUnicodeIndex;

}  // namespace veldnls
