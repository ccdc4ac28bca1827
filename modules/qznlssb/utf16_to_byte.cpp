#include "core/text/blanks.h"
#include "core/text/run_input.h"
#include "core/text/swap.h"
#include "modules/qznlssb/run_functions.h"
#include "modules/qznlssb/units.h"
#include "modules/qznlssb/units_to_byte.h"
#include "veldnls/nls.h"

namespace veldnls {

NlsStatus utf16ToByte(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                      uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                      const TranscodeOptions* options) {
  if (const auto ended = beginOrEnd(inputLength, outputSize, 1, outputLength, progress)) return *ended;
  XmPool* pool = pipeline->nls->pool;
  RunInput<runScratchSize> work(pool);
  if (!work.open(input, inputLength, output, outputSize, progress)) return nlsNoMemory;
  const RunText& text = work.text();
  const uint32_t count = text.length / utf16UnitBytes;
  const uint8_t* units = text.bytes;
  Scratch<unitScratchSize> scratch(pool);
  if (pipeline->source.swapInput != 0) {
    uint8_t* swapped = scratch.reserve(text.length);
    if (swapped == nullptr) return nlsNoMemory;
    swapUnits16(swapped, text.bytes, text.length);
    units = swapped;
  }

  const UnitRun run = unitsToByte(*pipeline, units, count, static_cast<uint8_t*>(output), outputSize,
                                  mayDropBlanks(pipeline->options, options));
  reportLength(outputLength, run.written);
  if (progress == nullptr) return run.status;
  progress->flags = run.substituted ? NLS_PROGRESS_SUBSTITUTED : 0;
  const uint32_t halfUnit = text.length % utf16UnitBytes;
  if (halfUnit != 0 && run.status != nlsOutputTruncated) {
    settle(*progress, text, text.length - halfUnit, nlsIncompleteInput);
    return nlsIncompleteInput;
  }
  settle(*progress, text, run.read * utf16UnitBytes, run.status);
  return run.status;
}

}  // namespace veldnls
