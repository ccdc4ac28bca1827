#include <cstring>

#include "core/text/units.h"
#include "transcode/stages.h"
#include "transcode/whole_units.h"

namespace veldnls {

namespace {

// More than one character outside is a short output; within that, a last unit that reads as a big-endian high
// surrogate is held back with what follows it, and an odd byte is held.
Extent extent16(const uint8_t* input, uint32_t inputLength, uint32_t outputSize, bool resumable) {
  const uint32_t length = wholeUnits(inputLength, outputSize, 2);
  const uint32_t rest = inputLength - length;
  if (!resumable || rest >= 4) return {length, rest != 0 ? nlsOutputTruncated : 0};
  if (length != 0 && isHighSurrogate(load16<std::endian::big>(input + length - 2))) {
    return {length - 2, nlsIncompleteInput};
  }
  if (inputLength % 2 != 0) return {length, nlsIncompleteInput};
  return {length, rest != 0 ? nlsOutputTruncated : 0};
}

void copyUnits(uint8_t* output, const uint8_t* input, size_t length) { std::memcpy(output, input, length); }

}  // namespace

NlsStatus utf16Check(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                     uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                     const TranscodeOptions* options) {
  return moveUnits<extent16, copyUnits>(utf16Blank, pipeline, input, inputLength, output, outputSize, outputLength,
                                        progress, options);
}

NlsStatus utf32Check(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                     uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                     const TranscodeOptions* options) {
  return moveUnits<extent32, copyUnits>(utf32Blank, pipeline, input, inputLength, output, outputSize, outputLength,
                                        progress, options);
}

}  // namespace veldnls
