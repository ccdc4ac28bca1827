#include <cstring>

#include "transcode/stages.h"
#include "transcode/whole_units.h"

namespace veldnls {

namespace {

// UTF-16 and UTF-32 sources have blanks of their own width; all others are compared with the target's, since a copy's
// source may be an encoding that stands for any.
Blank copiedBlank(const TranscodingPipeline* pipeline) {
  if (pipeline->source.encodingClass == NLS_CLASS_UTF16) return {2, pipeline->source.padChar & 0xFFFF};
  if (pipeline->source.encodingClass == NLS_CLASS_UTF32) return {4, pipeline->source.padChar};
  return {1, pipeline->target.padChar & 0xFF};
}

void copyBytes(uint8_t* output, const uint8_t* input, size_t length) { std::memmove(output, input, length); }

}  // namespace

NlsStatus copyStage(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                    uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                    const TranscodeOptions* options) {
  return moveFitting<1, copyBytes>(copiedBlank(pipeline), pipeline, input, inputLength, output, outputSize,
                                   outputLength, progress, options);
}

}  // namespace veldnls
