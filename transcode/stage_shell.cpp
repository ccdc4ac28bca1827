#include "transcode/stage_shell.h"

#include "core/text/run_input.h"
#include "core/text/swap.h"
#include "veldnls/nls.h"

namespace veldnls {

namespace {

void swapInPlace(uint8_t* text, size_t length, uint32_t unit) {
  if (unit == utf16UnitBytes) swapUnits16(text, text, length);
  if (unit == utf32UnitBytes) swapUnits32(text, text, length);
}

}  // namespace

NlsStatus runStage(const StageRow& row, TranscodingPipeline* pipeline, const void* input, uint32_t inputLength,
                   void* output, uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                   const TranscodeOptions* options) {
  if (const auto ended = beginOrEnd(inputLength, outputSize, row.minimumOutput, outputLength, progress)) return *ended;
  RunInput<runScratchSize> work(pipeline->nls->pool);
  if (!work.open(input, inputLength, output, outputSize, progress)) return nlsNoMemory;
  const RunText& source = work.text();

  const bool swapped = options != nullptr && (options->words[0] & NLS_SWAPPED_INPUT) != 0;
  const StageForm& form = swapped ? row.swapped : row.straight;
  StageText text{source.bytes, source.length, static_cast<uint8_t*>(output), outputSize};
  // Most texts end here.
  form.skip(text);
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
