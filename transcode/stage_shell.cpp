#include "transcode/stage_shell.h"

#include "core/text/run_input.h"
#include "core/text/swap.h"
#include "veldnls/nls.h"

namespace veldnls {

void swapInPlace(uint8_t* text, size_t length, uint32_t unit) {
  if (unit == utf16UnitBytes) swapUnits16(text, text, length);
  if (unit == utf32UnitBytes) swapUnits32(text, text, length);
}

NlsStatus runStage(const StageRow& row, const StageForm& form, KernelRun done, TranscodingPipeline* pipeline,
                   const void* input, uint32_t inputLength, void* output, uint32_t outputSize, uint32_t* outputLength,
                   TranscodeProgress* progress, const TranscodeOptions* options) {
  RunInput<runScratchSize> work(pipeline->nls->pool);
  if (!work.open(input, inputLength, output, outputSize, progress)) return nlsNoMemory;
  const RunText& source = work.text();

  StageText text{source.bytes, source.length, static_cast<uint8_t*>(output), outputSize, done.read, done.written};
  if (text.read == 0) text.skip(form.plain);
  if (!text.atEnd()) text = form.loop(text);
  NlsStatus status = text.status;
  // Without a record there is nowhere to keep an incomplete character: it counts as replaced, by nothing.
  if (status == nlsIncompleteInput && progress == nullptr) status = nlsSubstituted;
  if (status == nlsOutputTruncated) {
    status = statusOfRest(mayDropBlanks(pipeline->options, options), text.position(), text.remaining(), form.blank);
  }

  reportLength(outputLength, static_cast<uint32_t>(text.written));
  if (progress != nullptr) {
    if (text.substituted) progress->flags |= NLS_PROGRESS_SUBSTITUTED;
    settle(*progress, source, static_cast<uint32_t>(text.read), status);
  }
  if (pipeline->source.swapOutput != 0) swapInPlace(text.output, text.written, row.targetUnit);
  return status;
}

}  // namespace veldnls
