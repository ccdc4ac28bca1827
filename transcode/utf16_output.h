// What loops with 16-bit and 32-bit targets share.
#pragma once

#include "transcode/stage_shell.h"

namespace veldnls {

// Whether the decoders of UTF-8 and UTF-EBCDIC write a value as a surrogate pair. Only bits 16 to 19 are looked at:
// plane 16 (U+100000 to U+10FFFF), which has none of them set, comes out as one unit, its low 16 bits. The opposite
// directions and UTF-32 know plane 16.
inline bool needsPair(uint32_t value) { return (value & 0xF0000) != 0; }

// Bytes of the output that a loop doesn't count as room: while less than the rest is written, one unit fits.
inline constexpr size_t utf16Reserve = 1;
inline constexpr size_t utf32Reserve = 3;

// Writes a surrogate pair. Where only one unit has room, U+FFFD takes it, the character counts as read and the run
// ends: returns false.
inline bool putPairOrReplacement(StageText& text, uint32_t value) {
  if (text.written + 2 >= text.outputSize - utf16Reserve) {
    text.substitute();
    text.put16(replacementCharacter);
    return false;
  }
  text.putPair(value);
  return true;
}

}  // namespace veldnls
