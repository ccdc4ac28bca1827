#include "core/text/swap.h"
#include "modules/qznlssb/decoded_to_byte.h"
#include "modules/qznlssb/run_functions.h"

namespace veldnls {

namespace {

// For a source of the opposite byte order. An incomplete last unit isn't swapped: of its bytes only the number counts.
NlsStatus swapAndConvert(TranscodingPipeline* pipeline, const RunText& text, void* output, uint32_t outputSize,
                         uint32_t* outputLength, TranscodeProgress* progress, const TranscodeOptions* options) {
  QZNLS* nls = pipeline->nls;
  Scratch<runScratchSize> scratch(nls->pool);
  uint8_t* swapped = scratch.reserve(text.length);
  if (swapped == nullptr) return nlsNoMemory;
  swapUnits32(swapped, text.bytes, text.length);
  return decodedToByte(pipeline, text, swapped, nls->convertUtf32ToUtf16Resumable, output, outputSize, outputLength,
                       progress, options);
}

}  // namespace

NlsStatus utf32ToByte(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                      uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                      const TranscodeOptions* options) {
  if (const auto ended = beginOrEnd(inputLength, outputSize, 1, outputLength, progress)) return *ended;
  QZNLS* nls = pipeline->nls;
  RunInput<runScratchSize> work(nls->pool);
  if (!openDecoded(work, input, inputLength, output, outputSize, progress)) return nlsNoMemory;
  const RunText& text = work.text();
  const NlsStatus status = pipeline->source.swapInput != 0
                               ? swapAndConvert(pipeline, text, output, outputSize, outputLength, progress, options)
                               : decodedToByte(pipeline, text, text.bytes, nls->convertUtf32ToUtf16Resumable, output,
                                               outputSize, outputLength, progress, options);
  if (progress != nullptr && status != nlsNoMemory) progress->flags &= NLS_PROGRESS_SUBSTITUTED;
  return status;
}

}  // namespace veldnls
