// Tables of the multi-byte encodings: double-byte sets in both directions, single-byte tables, half-width katakana, the
// byte maps and euro codes of single-byte routes. Constant and shared.
#pragma once

#include <cstdint>

#include "core/kernels/double_byte.h"
#include "veldnls/pipeline.h"

namespace veldnls {

// A 16-bit value that holds an output character has its two code bytes in the order in which they are written: the one
// at the lower address first. A zero first byte means a single-byte result, which is the second.

inline constexpr int doubleByteSetCount = 21;
inline constexpr int singleByteSetCount = 7;

// One double-byte set, code to UTF-16 unit. A key of `table` is first byte times 256 plus second byte, a value the
// unit; `codes` answers the same without a search. `table` is the first member, so that a pointer to it leads to the
// record.
struct ToUnicodeSet {
  NlsPairTable table;
  CodeRows codes;

  // The unit, or 0. REQUIRES: both bytes are 0 to 255.
  char16_t lookUp(uint32_t first, uint32_t second) const { return codes.lookUp(first, second); }
};

// One double-byte set, UTF-16 unit to output character. A key of `table` is the unit, a value the character; `codes`
// answers the same without a search. `table` is the first member, so that a pointer to it leads to the record.
struct FromUnicodeSet {
  NlsPairTable table;
  UnitCodes codes;

  // The character, or 0.
  uint16_t lookUp(char16_t unit) const { return codes.lookUp(unit); }
};

// By doubleByteSet. 0, 10, 11 and 12 are empty; 7 and 8, 13 and 14, 18 and 20 share their tables.
extern const ToUnicodeSet toUnicodeSets[doubleByteSetCount];
extern const FromUnicodeSet fromUnicodeSets[doubleByteSetCount];

// By singleByteSet: 256 units by byte, and 256 bytes by code point, of which those from 0x9F on are never asked for.
extern const char16_t* const singleToUnicode[singleByteSetCount];
extern const uint8_t* const singleFromUnicode[singleByteSetCount];

// By singleByteSet: 63 output characters for U+FF61 to U+FF9F. Those of euc-jp and dec-jp are 8E A1 to 8E DF.
extern const uint16_t* const halfWidthKatakana[singleByteSetCount];
extern const uint16_t* const eucHalfWidthKatakana;

// Maps of single-byte routes, 256 bytes each.
extern const uint8_t identity[256];
extern const uint8_t asciiPassthrough[256];  // 80 to FF become 20
extern const uint8_t ebcdicToAscii[256];     // what ASCII lacks becomes 20
extern const uint8_t asciiToEbcdic[256];     // 80 to FF become 40

// Euro signs of single-byte routes, to be looked through in this order.
struct EuroByte {
  CEI cei;
  uint8_t byte;
};
struct EuroCode {
  CEI cei;
  uint16_t code;  // first byte times 256 plus second; below 0x100 a single byte
};
inline constexpr int singleByteEuroCount = 12;
inline constexpr int multiByteEuroCount = 15;
extern const EuroByte singleByteEuros[singleByteEuroCount];
extern const EuroCode multiByteEuros[multiByteEuroCount];

}  // namespace veldnls
