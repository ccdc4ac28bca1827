#include <algorithm>
#include <cstring>

#include "modules/qznlssb/blanks.h"
#include "modules/qznlssb/report.h"
#include "modules/qznlssb/run_functions.h"
#include "modules/qznlssb/run_input.h"
#include "modules/qznlssb/swap.h"
#include "modules/qznlssb/units.h"
#include "modules/qznlssb/units_to_byte.h"
#include "veldnls/nls.h"

namespace veldnls {

namespace {

constexpr uint32_t inputScratch = 2048;

}  // namespace

NlsStatus utf16ToByte(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                      uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                      const TranscodeOptions* options) {
  beginReport(outputLength, progress);
  if (inputLength == 0) return 0;
  if (outputSize == 0) return nlsOutputTruncated;
  XmPool* pool = pipeline->nls->pool;
  RunInput<inputScratch> work(pool);
  // Without a progress record the input isn't looked at any more once there is output, so that they may overlap.
  if (!work.open(input, inputLength, output, progress != nullptr ? outputSize : 0, progress)) return nlsNoMemory;
  const RunText& text = work.text();
  Scratch<unitScratch> scratch(pool);
  uint8_t* units = scratch.reserve(std::max(estimateUnitBytes(*pipeline, text.bytes, text.length), text.length));
  if (units == nullptr) return nlsNoMemory;
  const uint32_t count = text.length / unitBytes;
  if (pipeline->source.swapInput != 0) {
    swapUtf16(text.bytes, count * unitBytes, units);
  } else {
    std::memcpy(units, text.bytes, size_t{unitBytes} * count);
  }

  const UnitRun run = unitsToByte(*pipeline, units, count, static_cast<uint8_t*>(output), outputSize,
                                  mayDropBlanks(*pipeline, options));
  reportLength(outputLength, run.written);
  if (progress == nullptr) return run.status;
  progress->flags = run.substituted ? NLS_PROGRESS_SUBSTITUTED : 0;
  const uint32_t halfUnit = text.length % unitBytes;
  if (halfUnit != 0 && run.status != nlsOutputTruncated) {
    reportIncomplete(*progress, text, halfUnit);
    return nlsIncompleteInput;
  }
  reportTaken(*progress, text, run.read * unitBytes, run.status);
  return run.status;
}

}  // namespace veldnls
