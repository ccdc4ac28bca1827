// Texts of every kind and of an exact length, made from seeds: the same seed gives the same text.
#pragma once

#include <cstddef>
#include <cstdint>

#include "reference/reference.h"

namespace bounds_test {

using transcode_test::Bytes;
using transcode_test::Span;

enum class TextKind {
  bytes,
  utf8,
  utfEbcdic,
  utf16le,
  utf16be,
  utf32le,
  utf32be,
  shiftJis,
  eucJp,
  gb18030,
  ibm939,
  hitachiJp,
  iso2022jp,
  iso2022kr,
  encodingName,
  localeName,
  number,
  moment,
  real,
  ms950
};

// The encoding of a kind of multi-byte text; -1 for the others.
CEI multiByteCei(TextKind kind);

// Whole texts are runs of characters of one length and, with an odd seed, a tail of blanks; at the end, where no
// character fits, stand bytes of an incomplete one. Basic texts are whole ones of characters below U+10000. In damaged
// texts every eighth byte or so is one at which some form begins, ends or breaks. Multi-byte text changes its mode
// every few characters, and some of it ends inside a character or a shift sequence.
enum class Condition { whole, basic, damaged };

Bytes makeText(TextKind kind, Condition condition, uint32_t seed, size_t length);

}  // namespace bounds_test
