// How a multi-byte target writes Unicode characters.
#pragma once

#include <cstdint>

#include "modules/qznlsmb/tables.h"
#include "veldnls/pipeline.h"

namespace veldnls {

// Below this a character is a single byte, of a table without gaps; from here on it goes through the pairs.
inline constexpr uint32_t firstOfPairs = 0x9F;

// An output character: its two bytes in the order in which they are written, the first one low; a first byte of 0 means
// the single byte in the second.
struct OutputCode {
  uint32_t bytes;
  bool substituted;
};

inline bool isSingle(uint32_t code) { return (code & 0xFF) == 0; }
inline uint8_t singleOf(uint32_t code) { return static_cast<uint8_t>(code >> 8); }

// What has no code becomes the double-byte blank.
OutputCode codeOf(const PipelineSide& side, uint32_t codePoint);

inline const FromUnicodeSet& fromUnicodeSetOf(const PipelineSide& side) {
  // `table` is the first member of the record.
  return *reinterpret_cast<const FromUnicodeSet*>(side.pairs);
}

// The double-byte blank as an output character.
inline uint32_t blankCode(const PipelineSide& side) {
  const uint8_t* blank = side.targetProfile->doubleBlank;
  return blank[0] | uint32_t{blank[1]} << 8;
}

// Of a unit from `firstOfPairs` on, by the module's own tables; 0: it has none.
uint32_t codeWithoutUsers(const PipelineSide& side, uint32_t unit);

}  // namespace veldnls
