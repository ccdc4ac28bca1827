// What a conversion from or to a multi-byte encoding gives, written a second time from the rows' text: character by
// character, with no line of the library and no table but those of data/.
#pragma once

#include "reference/encoding_text.h"
#include "reference/reference.h"

namespace transcode_test {

// What a run of a stage does with the progress record, and what its options say.
struct RunState {
  bool resumable = false;   // there is a progress record
  bool doubleMode = false;  // its shift state on entry
  bool mayDropBlanks = false;
  bool gbLoaded = false;  // when the pipeline was made, the GB18030 module was there
};

struct MultiByteOutcome {
  Outcome outcome;
  bool doubleMode = false;  // of the record; false without one

  bool operator==(const MultiByteOutcome&) const = default;
};

void PrintTo(const MultiByteOutcome& outcome, std::ostream* stream);

// Where the next character of a text stands.
struct Scanned {
  size_t skipped = 0;  // shift sequences and designators ahead of it
  size_t length = 0;   // 0: more bytes are needed
  bool isDouble = false;
};

// How the characters of a row are told apart. A piece is a text behind which more may come. In routes to single-byte
// encodings GB18030 has no rule of its own. REQUIRES: the text isn't empty.
Scanned scan(const EncodingText& row, Span text, bool doubleMode, bool isPiece, bool toByte);

// True if `transcode` copies the bytes of this pair.
bool isCopied(CEI source, CEI target);

// The outcome of `transcodeResumable` for a pair of which at least one has a multi-byte class, with a fresh record but
// for its shift state.
MultiByteOutcome expectedMultiByte(CEI source, CEI target, Span input, size_t capacity, const RunState& state);

}  // namespace transcode_test
