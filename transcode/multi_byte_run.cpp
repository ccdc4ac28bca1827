#include "core/text/run_input.h"
#include "transcode/module_load.h"
#include "transcode/stages.h"
#include "transcode/two_stage.h"
#include "veldnls/cei.h"
#include "veldnls/nls.h"

namespace veldnls {

namespace {

// The module stage of each side, in the form of a Unicode stage.
NlsStatus runSourceStage(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                         uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                         const TranscodeOptions* options) {
  return pipeline->source.stage(loadedMultiByteModule(pipeline->nls), &pipeline->source, input, inputLength, output,
                                outputSize, outputLength, progress, options);
}

NlsStatus runTargetStage(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                         uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                         const TranscodeOptions* options) {
  return pipeline->target.stage(loadedMultiByteModule(pipeline->nls), &pipeline->target, input, inputLength, output,
                                outputSize, outputLength, progress, options);
}

}  // namespace

NlsStatus multiByteTranscodeResumable(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength,
                                      void* output, uint32_t outputSize, uint32_t* outputLength,
                                      TranscodeProgress* progress, const TranscodeOptions* options) {
  beginRun(outputLength, progress);
  RunInput<runScratchSize> work(pipeline->nls->pool);
  if (!work.open(input, inputLength, output, outputSize, progress)) return nlsNoMemory;
  const RunText& text = work.text();
  if (progress != nullptr) takeHeld(*progress, text);
  TranscodeOptions ownOptions = options != nullptr ? *options : TranscodeOptions{};
  ownOptions.words[0] &= ~NLS_SWAPPED_INPUT;
  if (pipeline->source.swapInput != 0) ownOptions.words[0] |= NLS_SWAPPED_INPUT;
  const NlsStatus status =
      runSourceStage(pipeline, text.bytes, text.length, output, outputSize, outputLength, progress, &ownOptions);
  if (progress != nullptr) settle(*progress, text, progress->consumed, status);
  return status;
}

NlsStatus twoStageTranscodeResumable(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength,
                                     void* output, uint32_t outputSize, uint32_t* outputLength,
                                     TranscodeProgress* progress, const TranscodeOptions* options) {
  // A text of any encoding is one of the target's here, and its own estimate would be its length.
  const CEI textCei = pipeline->sourceCei == U_ANY_CE ? pipeline->targetCei : pipeline->sourceCei;
  return runTwoStages(textCei, runSourceStage, runTargetStage, pipeline, input, inputLength, output, outputSize,
                      outputLength, progress, options);
}

}  // namespace veldnls
