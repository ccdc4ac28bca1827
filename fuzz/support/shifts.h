// Targets with shifts: every call leaves double-byte mode at its end, so that every piece of text stands alone.
#pragma once

#include "fuzz/support/input.h"
#include "veldnls/types.h"

namespace fuzz {

// The bytes that enter and leave double-byte mode; empty for encodings without shifts.
Bytes shiftOutOf(CEI cei);
Bytes shiftInOf(CEI cei);

// Takes out of a text every shift-in that a shift-out follows: what pieces end and begin with.
void joinSeams(Bytes& text, CEI cei);

// A shorter text without the shift-in at its end, if it has one.
Span withoutClosing(Span text, CEI cei);

// Whether a text has control characters that the target writes as a byte at which a shift begins: the second look at
// ISO-2022 text, and the joining of seams, take them for one.
bool hasShiftsAsCharacters(CEI source, CEI target, Span text);

}  // namespace fuzz
