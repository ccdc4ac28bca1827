// The shell that every converting stage runs in, written once; a stage is a row that names its loops and a few facts.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/text/blanks.h"
#include "core/text/units.h"
#include "veldnls/pipeline.h"
#include "veldnls/status.h"

namespace veldnls {

// The text that a loop works on, and how far it got. Loops take it and give it back by value, which keeps the counters
// in registers although the output is written through a byte pointer.
struct StageText {
  const uint8_t* input;
  size_t inputLength;
  uint8_t* output;
  size_t outputSize;
  size_t read = 0;
  size_t written = 0;
  NlsStatus status = 0;
  bool substituted = false;

  bool atEnd() const { return read == inputLength; }
  const uint8_t* position() const { return input + read; }
  size_t remaining() const { return inputLength - read; }

  // The end of a loop, for one of these reasons: the sequence at position() needs more bytes than remain, or the next
  // character has no room.
  StageText incomplete() const { return ended(nlsIncompleteInput); }
  StageText full() const { return ended(nlsOutputTruncated); }

  // Notes a replacement. The status stays until a later event changes it.
  void substitute() {
    status = nlsSubstituted;
    substituted = true;
  }

  void put16(uint32_t unit) {
    store16(output + written, unit);
    written += 2;
  }
  void put32(uint32_t unit) {
    store32(output + written, unit);
    written += 4;
  }
  void putPair(uint32_t value) {
    storePair(output + written, value);
    written += 4;
  }

 private:
  StageText ended(NlsStatus reason) const {
    StageText text = *this;
    text.status = reason;
    return text;
  }
};

// Converts from `read` until the input ends or an event ends the run. Never writes past outputSize, never reads outside
// the input. Called with input and with at least StageRow::minimumOutput bytes of room.
using StageLoop = StageText (*)(StageText);

// Converts what is plain in front of a text's position: whole characters that have room and change no status. Returns
// how many units it read.
using StageSkip = size_t (*)(StageText&);

struct StageForm {
  StageLoop loop;
  StageSkip skip;
  Blank blank;  // of the source, for the blank rule
};

struct StageRow {
  uint32_t minimumOutput;  // below this the input isn't looked at
  uint32_t targetUnit;     // 1, 2 or 4 bytes: what a target of the opposite byte order is turned around by
  StageForm straight;
  StageForm swapped;  // with NLS_SWAPPED_INPUT
};

// Runs a stage. The arguments behind `row` are those of NlsUnicodeStage.
NlsStatus runStage(const StageRow& row, TranscodingPipeline* pipeline, const void* input, uint32_t inputLength,
                   void* output, uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                   const TranscodeOptions* options);

// The stage of a row, as pipelines hold it.
template <const StageRow& row>
NlsStatus stage(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                const TranscodeOptions* options) {
  return runStage(row, pipeline, input, inputLength, output, outputSize, outputLength, progress, options);
}

}  // namespace veldnls
