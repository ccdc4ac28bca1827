#include "transcode/module_load.h"
#include "transcode/stages.h"
#include "transcode/two_stage.h"
#include "transcode/work_input.h"
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
  WorkInput work(pipeline->nls->pool);
  if (!work.prepare(input, inputLength, output, outputSize, progress)) return nlsNoMemory;
  TranscodeOptions ownOptions = options != nullptr ? *options : TranscodeOptions{};
  if (pipeline->source.swapInput != 0) ownOptions.words[0] |= NLS_SWAPPED_INPUT;
  const NlsStatus status =
      runSourceStage(pipeline, work.data(), work.length(), output, outputSize, outputLength, progress, &ownOptions);
  if (progress != nullptr) work.settle(*progress, status);
  return status;
}

NlsStatus twoStageTranscodeResumable(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength,
                                     void* output, uint32_t outputSize, uint32_t* outputLength,
                                     TranscodeProgress* progress, const TranscodeOptions* options) {
  return runTwoStages(pipeline->sourceCei, runSourceStage, runTargetStage, pipeline, input, inputLength, output,
                      outputSize, outputLength, progress, options);
}

}  // namespace veldnls
