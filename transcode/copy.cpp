#include <algorithm>
#include <cstring>

#include "transcode/stages.h"
#include "transcode/work_input.h"

namespace veldnls {

namespace {

// UTF-16 and UTF-32 sources have blanks of their own width; all others are compared with the target's, since a copy's
// source may be an encoding that stands for any.
Blank copiedBlank(const TranscodingPipeline* pipeline) {
  if (pipeline->source.encodingClass == NLS_CLASS_UTF16) return {2, pipeline->source.padChar & 0xFFFF};
  if (pipeline->source.encodingClass == NLS_CLASS_UTF32) return {4, pipeline->source.padChar};
  return {1, pipeline->target.padChar & 0xFF};
}

}  // namespace

NlsStatus copyStage(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                    uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                    const TranscodeOptions* options) {
  beginRun(outputLength, progress);
  const uint32_t length = std::min(inputLength, outputSize);
  if (inputLength == 0) return 0;
  // Asked before the copy, which may write on what is left when the ranges overlap.
  const uint8_t* rest = static_cast<const uint8_t*>(input) + length;
  const NlsStatus status = applyBlankRule(length < inputLength ? nlsOutputTruncated : 0, pipeline, options, rest,
                                          inputLength - length, copiedBlank(pipeline));
  if (length != 0) std::memmove(output, input, length);
  if (outputLength != nullptr) *outputLength = length;
  if (progress != nullptr) progress->consumed = length;
  return status;
}

}  // namespace veldnls
