// What loops with 16-bit and 32-bit targets share.
#pragma once

#include "transcode/stage_shell.h"

namespace veldnls {

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
