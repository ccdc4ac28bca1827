#include "transcode/swap.h"

#include <algorithm>
#include <functional>

#include "transcode/stages.h"
#include "transcode/whole_units.h"

namespace veldnls {

namespace {

void swap16(uint8_t* output, const uint8_t* input) { store16(output, load16<std::endian::big>(input)); }
void swap32(uint8_t* output, const uint8_t* input) { store32(output, load32<std::endian::big>(input)); }

// A unit is read whole before it is written. Where the output starts behind the input's start the last unit goes
// first, so that no unit is written on before it is read.
template <size_t unit, void (*swapOne)(uint8_t*, const uint8_t*)>
void swapUnits(uint8_t* output, const uint8_t* input, size_t length) {
  const size_t end = length / unit * unit;
  if (std::less<>{}(input, output)) {
    for (size_t i = end; i != 0; i -= unit) swapOne(output + i - unit, input + i - unit);
  } else {
    for (size_t i = 0; i != end; i += unit) swapOne(output + i, input + i);
  }
}

}  // namespace

void swapUnits16(uint8_t* output, const uint8_t* input, size_t length) { swapUnits<2, swap16>(output, input, length); }
void swapUnits32(uint8_t* output, const uint8_t* input, size_t length) { swapUnits<4, swap32>(output, input, length); }

NlsStatus utf16Swap(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                    uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                    const TranscodeOptions* options) {
  beginRun(outputLength, progress);
  const uint32_t length = wholeUnits(inputLength, outputSize, 2);
  if (inputLength == 0) return 0;
  // Asked before the swap, which may write on what is left when the ranges overlap.
  const auto* text = static_cast<const uint8_t*>(input);
  const Blank blank{2, pipeline->source.padChar & 0xFFFF};
  const NlsStatus status = applyBlankRule(length < inputLength ? nlsOutputTruncated : 0, pipeline, options,
                                          text + length, inputLength - length, blank);
  if (length != 0) swapUnits16(static_cast<uint8_t*>(output), text, length);
  if (outputLength != nullptr) *outputLength = length;
  if (progress != nullptr) progress->consumed = length;
  return status;
}

NlsStatus utf32Swap(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                    uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                    const TranscodeOptions* options) {
  return moveUnits<extent32, swapUnits32>(Blank{4, pipeline->source.padChar}, pipeline, input, inputLength, output,
                                          outputSize, outputLength, progress, options);
}

}  // namespace veldnls
