// Texts of every kind and of an exact length, made from seeds: the same seed gives the same text.
#pragma once

#include <cstddef>
#include <cstdint>

#include "reference/reference.h"

namespace bounds_test {

using transcode_test::Bytes;
using transcode_test::Span;

enum class TextKind { bytes, utf8, utfEbcdic, utf16le, utf16be, utf32le, utf32be, encodingName, localeName, real };

// Whole texts are runs of characters of one length and, with an odd seed, a tail of blanks; at the end, where no
// character fits, stand bytes of an incomplete one. Basic texts are whole ones of characters below U+10000. In damaged
// texts every eighth byte or so is one at which some form begins, ends or breaks.
enum class Condition { whole, basic, damaged };

Bytes makeText(TextKind kind, Condition condition, uint32_t seed, size_t length);

}  // namespace bounds_test
