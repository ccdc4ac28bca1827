#include "core/registry.h"
#include "core/text/blanks.h"
#include "core/text/run_input.h"
#include "core/text/units.h"
#include "transcode/module_load.h"
#include "transcode/stages.h"
#include "transcode/two_stage.h"
#include "veldnls/cei.h"
#include "veldnls/nls.h"
#include "veldnls/status.h"

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

// Whether the text of a two-stage run is the same when it goes through in pieces. Not so when the target has shifts,
// which would close at the end of each, and when the source has sequences whose meaning hangs on what is left of the
// text: of the encodings with shifts only the hosts' have none.
bool takesPieces(const TranscodingPipeline& pipeline) {
  const EncodingDescriptor& source = *encodingRow(pipeline.sourceCei);
  const bool hostOrWithoutShifts = source.profile.shiftLength == 0 || (source.flags & NLS_ENCODING_EBCDIC) != 0;
  return pipeline.target.targetProfile->shiftLength == 0 && hostOrWithoutShifts;
}

// Both stages over a text whose form in between has room on the stack, with nothing prepared: short texts feel every
// step.
NlsStatus runShortText(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                       uint32_t outputSize, uint32_t* outputLength) {
  static constexpr TranscodeOptions none{};
  alignas(8) uint8_t middle[runScratchSize];
  uint32_t middleLength = 0;
  uint32_t written = 0;
  TranscodeProgress second{};
  const NlsStatus firstStatus =
      runSourceStage(pipeline, input, inputLength, middle, sizeof middle, &middleLength, nullptr, &none);
  NlsStatus status = runTargetStage(pipeline, middle, middleLength, output, outputSize, &written, &second, &none);
  if (firstStatus == nlsNoMemory || status == nlsNoMemory) {
    written = 0;
    status = nlsNoMemory;
  }
  reportLength(outputLength, written);
  // Half a pair at the end of the form in between was replaced by nothing.
  return status == nlsIncompleteInput ? NlsStatus{nlsSubstituted} : status;
}

NlsStatus runOneStage(TranscodingPipeline* pipeline, const RunText& text, void* output, uint32_t outputSize,
                      uint32_t* outputLength, TranscodeProgress* progress, const TranscodeOptions* options) {
  TranscodeOptions ownOptions;
  if (options != nullptr || pipeline->source.swapInput != 0) {
    ownOptions = options != nullptr ? *options : TranscodeOptions{};
    ownOptions.words[0] &= ~NLS_SWAPPED_INPUT;
    if (pipeline->source.swapInput != 0) ownOptions.words[0] |= NLS_SWAPPED_INPUT;
    options = &ownOptions;
  }
  const NlsStatus status =
      runSourceStage(pipeline, text.bytes, text.length, output, outputSize, outputLength, progress, options);
  if (progress == nullptr) return status;
  // A substitution outweighs a short output. What was held before and wasn't read must be held again.
  const bool cutShort = status == nlsSubstituted && progress->consumed < text.prefixed;
  settle(*progress, text, progress->consumed, cutShort ? NlsStatus{nlsOutputTruncated} : status);
  return status;
}

NlsStatus runOneStageOnCopy(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                            uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                            const TranscodeOptions* options) {
  RunInput<runScratchSize> work(pipeline->nls->pool);
  if (!work.open(input, inputLength, output, outputSize, progress)) return nlsNoMemory;
  if (progress != nullptr) takeHeld(*progress, work.text());
  return runOneStage(pipeline, work.text(), output, outputSize, outputLength, progress, options);
}

}  // namespace

NlsStatus multiByteTranscodeResumable(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength,
                                      void* output, uint32_t outputSize, uint32_t* outputLength,
                                      TranscodeProgress* progress, const TranscodeOptions* options) {
  // Short texts feel every step: with nothing to prepare the stage runs at once.
  const bool apart = !rangesOverlap(input, inputLength, output, outputSize);
  if (apart && progress == nullptr && options == nullptr && pipeline->source.swapInput == 0) {
    return runSourceStage(pipeline, input, inputLength, output, outputSize, outputLength, nullptr, nullptr);
  }
  beginRun(outputLength, progress);
  // Most texts stand apart from their output, with nothing held ahead of them.
  if (heldBytes(progress) == 0 && apart) {
    return runOneStage(pipeline, {static_cast<const uint8_t*>(input), inputLength, 0}, output, outputSize, outputLength,
                       progress, options);
  }
  return runOneStageOnCopy(pipeline, input, inputLength, output, outputSize, outputLength, progress, options);
}

NlsStatus twoStageTranscodeResumable(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength,
                                     void* output, uint32_t outputSize, uint32_t* outputLength,
                                     TranscodeProgress* progress, const TranscodeOptions* options) {
  const bool isShort = inputLength <= runScratchSize / utf16UnitBytes;
  if (isShort && progress == nullptr && options == nullptr && !rangesOverlap(input, inputLength, output, outputSize)) {
    return runShortText(pipeline, input, inputLength, output, outputSize, outputLength);
  }
  if (progress == nullptr && takesPieces(*pipeline) && !mayDropBlanks(pipeline->options, options)) {
    return runTwoStagesByPieces(runSourceStage, runTargetStage, pipeline, input, inputLength, output, outputSize,
                                outputLength, options);
  }
  // A text of any encoding is read as single bytes, two bytes each on the way, where its own estimate would be its
  // length.
  const CEI textCei = pipeline->sourceCei == U_ANY_CE ? pipeline->targetCei : pipeline->sourceCei;
  return runTwoStages(textCei, runSourceStage, runTargetStage, pipeline, input, inputLength, output, outputSize,
                      outputLength, progress, options);
}

NlsStatus twoStageTranscode(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                            uint32_t outputSize, uint32_t* outputLength, const TranscodeOptions* options) {
  const NlsDirectRun direct = pipeline->source.direct;
  if (direct != nullptr && options == nullptr && !rangesOverlap(input, inputLength, output, outputSize)) {
    const uint32_t written = direct(&pipeline->source, &pipeline->target, input, inputLength, output, outputSize);
    if (written != 0) {
      reportLength(outputLength, written);
      return 0;
    }
  }
  return twoStageTranscodeResumable(pipeline, input, inputLength, output, outputSize, outputLength, nullptr, options);
}

}  // namespace veldnls
