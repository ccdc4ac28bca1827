// ISO 2022 text, which is written in the eight-bit form of its set and then made one of seven bits.
#pragma once

#include "veldnls/pipeline.h"
#include "veldnls/status.h"

namespace veldnls {

// Makes the double-byte characters among `length` bytes ones of seven bits, in place. A character that has no such form
// becomes the blank. Returns whether there was one.
bool clearHighBits(const PipelineSide& side, uint8_t* text, uint32_t length);

// The stage `wide`, and then the step above. What is replaced in that outweighs every status but nlsIncompleteInput:
// also a lack of room, which then only `consumed` tells.
template <NlsModuleStage wide>
NlsStatus inSevenBits(CodePageModule* module, PipelineSide* side, const void* input, uint32_t inputLength, void* output,
                      uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                      const TranscodeOptions* options) {
  uint32_t written = 0;
  const NlsStatus status = wide(module, side, input, inputLength, output, outputSize, &written, progress, options);
  if (outputLength != nullptr) *outputLength = written;
  if (!clearHighBits(*side, static_cast<uint8_t*>(output), written)) return status;
  if (progress != nullptr) progress->flags |= NLS_PROGRESS_SUBSTITUTED;
  return status == nlsIncompleteInput ? status : NlsStatus{nlsSubstituted};
}

}  // namespace veldnls
