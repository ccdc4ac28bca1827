#include "modules/qznlssb/decoded_to_byte.h"
#include "modules/qznlssb/report.h"
#include "modules/qznlssb/run_functions.h"
#include "modules/qznlssb/run_input.h"
#include "modules/qznlssb/swap.h"

namespace veldnls {

namespace {

constexpr uint32_t inputScratch = 2048;

// For a source of the opposite byte order. The bytes of an incomplete last unit keep theirs, for they may be held.
NlsStatus swapAndConvert(TranscodingPipeline* pipeline, const RunText& text, void* output, uint32_t outputSize,
                         uint32_t* outputLength, TranscodeProgress* progress, const TranscodeOptions* options) {
  QZNLS* nls = pipeline->nls;
  Scratch<inputScratch> scratch(nls->pool);
  uint8_t* swapped = scratch.reserve(text.length);
  if (swapped == nullptr) return nlsNoMemory;
  swapUtf32(text.bytes, text.length, swapped);
  return decodedToByte(pipeline, {swapped, text.length, text.prefixed}, nls->convertUtf32ToUtf16Resumable, output,
                       outputSize, outputLength, progress, options);
}

}  // namespace

NlsStatus utf32ToByte(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                      uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                      const TranscodeOptions* options) {
  beginReport(outputLength, progress);
  if (inputLength == 0) return 0;
  if (outputSize == 0) return nlsOutputTruncated;
  QZNLS* nls = pipeline->nls;
  RunInput<inputScratch> work(nls->pool);
  const bool swaps = pipeline->source.swapInput != 0;
  // The input is looked at again only with a progress record, and then in its swapped copy if there is one.
  const bool readAgain = progress != nullptr && !swaps;
  if (!work.open(input, inputLength, output, readAgain ? outputSize : 0, progress)) return nlsNoMemory;
  const NlsStatus status =
      swaps ? swapAndConvert(pipeline, work.text(), output, outputSize, outputLength, progress, options)
            : decodedToByte(pipeline, work.text(), nls->convertUtf32ToUtf16Resumable, output, outputSize, outputLength,
                            progress, options);
  if (progress != nullptr) progress->flags &= NLS_PROGRESS_SUBSTITUTED;
  return status;
}

}  // namespace veldnls
