#include "transcode/stage_shell.h"

#include "transcode/swap.h"
#include "transcode/work_input.h"
#include "veldnls/nls.h"

namespace veldnls {

namespace {

void swapInPlace(uint8_t* text, size_t length, uint32_t unit) {
  if (unit == 2) swapUnits16(text, text, length);
  if (unit == 4) swapUnits32(text, text, length);
}

}  // namespace

NlsStatus runStage(const StageRow& row, TranscodingPipeline* pipeline, const void* input, uint32_t inputLength,
                   void* output, uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                   const TranscodeOptions* options) {
  beginRun(outputLength, progress);
  if (inputLength == 0) return 0;
  if (outputSize < row.minimumOutput) return nlsOutputTruncated;
  WorkInput work(pipeline->nls->pool);
  if (!work.prepare(input, inputLength, output, outputSize, progress)) return nlsNoMemory;

  const bool swapped = options != nullptr && (options->words[0] & NLS_SWAPPED_INPUT) != 0;
  const StageForm& form = swapped ? row.swapped : row.straight;
  const StageText text = form.loop({work.data(), work.length(), static_cast<uint8_t*>(output), outputSize});
  NlsStatus status = text.status;
  // Without a record there is nowhere to keep an incomplete character: it counts as replaced, by nothing.
  if (status == nlsIncompleteInput && progress == nullptr) status = nlsSubstituted;

  if (outputLength != nullptr) *outputLength = static_cast<uint32_t>(text.written);
  if (progress != nullptr) {
    if (text.substituted) progress->flags |= NLS_PROGRESS_SUBSTITUTED;
    progress->consumed = static_cast<uint32_t>(text.read);
    work.settle(*progress, status);
  }
  if (pipeline->source.swapOutput != 0) swapInPlace(text.output, text.written, row.targetUnit);
  return applyBlankRule(status, pipeline, options, text.position(), text.remaining(), form.blank);
}

}  // namespace veldnls
