// A run that reads multi-byte text: its scanner and shift state, and how it ends.
#pragma once

#include "modules/qznlsmb/scanners.h"
#include "modules/qznlsmb/stage_run.h"

namespace veldnls {

struct SourceRun : StageRun {
  // A record (may be null) brings the shift state of the call before.
  SourceRun(const PipelineSide& source, const void* input, uint32_t inputLength, void* output, uint32_t outputSize,
            const TranscodeProgress* progress)
      : StageRun(input, inputLength, output, outputSize),
        side(source),
        scan(scannerOf(source, progress)),
        inDouble(modeOf(progress)) {}

  // The shift state that a record brings.
  static NlsBool8 modeOf(const TranscodeProgress* progress) {
    return progress != nullptr && (progress->flags & NLS_PROGRESS_DOUBLE_MODE) != 0 ? 1 : 0;
  }

  // Leaves it in the record, if the row has shifts.
  static void keepMode(const PipelineSide& side, NlsBool8 inDouble, TranscodeProgress& progress);

  const PipelineSide& side;
  NlsScanCharacter scan;
  NlsBool8 inDouble;  // on entry to a scan, the shift state; then, how to read the character

  // Steps to the next character and returns its length; 0 at the end of the input or when that comes inside of it.
  // REQUIRES: something is left.
  uint32_t next() {
    auto length = static_cast<uint32_t>(left());
    at = scan(&side, at, &length, &inDouble);
    incomplete = length == 0;
    return atEnd() ? 0 : length;
  }

  // Reports the run, leaves the shift state in the record and returns the status. `blank` is what may be dropped; in
  // double-byte mode nothing may.
  NlsStatus finish(uint8_t blank, uint32_t* outputLength, TranscodeProgress* progress,
                   const TranscodeOptions* options) const {
    report(outputLength, progress);
    if (progress != nullptr) keepMode(side, inDouble, *progress);
    return endsWell() ? 0 : statusOfEnd(blank, progress, options);
  }

 private:
  // With a record the input may be a piece of a longer text.
  static NlsScanCharacter scannerOf(const PipelineSide& side, const TranscodeProgress* progress) {
    return progress != nullptr && side.scan == scanIso2022 ? scanIso2022Piece : side.scan;
  }

  NlsStatus statusOfEnd(uint8_t blank, const TranscodeProgress* progress, const TranscodeOptions* options) const;
};

}  // namespace veldnls
