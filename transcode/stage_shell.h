// The shell that every converting stage runs in, written once; a stage is a row that names its loops and a few facts.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/kernels/kernels.h"
#include "core/text/blanks.h"
#include "core/text/run_input.h"
#include "core/text/units.h"
#include "veldnls/nls.h"
#include "veldnls/pipeline.h"
#include "veldnls/status.h"

namespace veldnls {

// What converts a stage's plain text: whole characters that have room and change no status.
struct PlainText {
  size_t kernel;         // where its kernel stands in the record of kernels; 0: there is none
  unsigned sourceShift;  // a source unit has 1 << sourceShift bytes
  unsigned targetShift;

  // Converts what is plain at the front, and returns the bytes read and written.
  KernelRun convert(const uint8_t* input, size_t inputLength, uint8_t* output, size_t outputSize) const {
    if (kernel == 0) return {0, 0};
    TextKernel* const* slot = reinterpret_cast<TextKernel* const*>(reinterpret_cast<const char*>(&kernels()) + kernel);
    const KernelRun run = (*slot)(input, inputLength >> sourceShift, output, outputSize >> targetShift);
    return {run.read << sourceShift, run.written << targetShift};
  }
};

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

  // Goes over the plain text at position(); returns how many bytes it read.
  size_t skip(const PlainText& plain) {
    const KernelRun run = plain.convert(position(), remaining(), output + written, outputSize - written);
    read += run.read;
    written += run.written;
    return run.read;
  }

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

struct StageForm {
  StageLoop loop;
  PlainText plain;
  Blank blank;  // of the source, for the blank rule
};

struct StageRow {
  uint32_t minimumOutput;  // below this the input isn't looked at
  uint32_t targetUnit;     // 1, 2 or 4 bytes: what a target of the opposite byte order is turned around by
  StageForm straight;
  StageForm swapped;  // with NLS_SWAPPED_INPUT
};

// Runs a stage; `done` bytes of it, at the front, were converted and are whole characters. `form` is the one of `row`
// that `options` ask for; the arguments behind it are those of NlsUnicodeStage.
NlsStatus runStage(const StageRow& row, const StageForm& form, KernelRun done, TranscodingPipeline* pipeline,
                   const void* input, uint32_t inputLength, void* output, uint32_t outputSize, uint32_t* outputLength,
                   TranscodeProgress* progress, const TranscodeOptions* options);

// Turns the units of a text around.
void swapInPlace(uint8_t* text, size_t length, uint32_t unit);

// The stage of a row, as pipelines hold it. A call with plain text and without a progress record, as most are, ends
// here; what is done for it is all that a short text's call costs.
template <const StageRow& row>
NlsStatus stage(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                const TranscodeOptions* options) {
  if (const auto ended = beginOrEnd(inputLength, outputSize, row.minimumOutput, outputLength, progress)) return *ended;
  const bool swapped = options != nullptr && (options->words[0] & NLS_SWAPPED_INPUT) != 0;
  const StageForm& form = swapped ? row.swapped : row.straight;
  KernelRun done{0, 0};
  if (progress == nullptr && !rangesOverlap(input, inputLength, output, outputSize)) {
    auto* const written = static_cast<uint8_t*>(output);
    done = form.plain.convert(static_cast<const uint8_t*>(input), inputLength, written, outputSize);
    if (done.read == inputLength) {
      reportLength(outputLength, static_cast<uint32_t>(done.written));
      if (pipeline->source.swapOutput != 0) swapInPlace(written, done.written, row.targetUnit);
      return 0;
    }
  }
  return runStage(row, form, done, pipeline, input, inputLength, output, outputSize, outputLength, progress, options);
}

}  // namespace veldnls
