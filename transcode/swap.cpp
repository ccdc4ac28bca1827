#include "core/text/swap.h"

#include "transcode/stages.h"
#include "transcode/whole_units.h"

namespace veldnls {

NlsStatus utf16Swap(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                    uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                    const TranscodeOptions* options) {
  return moveFitting<utf16UnitBytes, swapUnits16>(Blank{2, pipeline->source.padChar & 0xFFFF}, pipeline, input,
                                                  inputLength, output, outputSize, outputLength, progress, options);
}

NlsStatus utf32Swap(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                    uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                    const TranscodeOptions* options) {
  return moveUnits<extent32, swapUnits32>(Blank{4, pipeline->source.padChar}, pipeline, input, inputLength, output,
                                          outputSize, outputLength, progress, options);
}

}  // namespace veldnls
