#include "transcode/two_stage.h"

#include "core/scratch.h"
#include "transcode/pipeline.h"
#include "transcode/work_input.h"
#include "veldnls/cei.h"
#include "veldnls/status.h"

namespace veldnls {

NlsStatus runTwoStages(CEI estimateSource, NlsUnicodeStage first, NlsUnicodeStage second, TranscodingPipeline* pipeline,
                       const void* input, uint32_t inputLength, void* output, uint32_t outputSize,
                       uint32_t* outputLength, TranscodeProgress* progress, const TranscodeOptions* options) {
  beginRun(outputLength, progress);
  QZNLS* nls = pipeline->nls;
  // The input is read again when the output stands, so that a copy is needed where they overlap.
  WorkInput work(nls->pool);
  if (!work.prepare(input, inputLength, output, outputSize, progress)) return nlsNoMemory;

  uint32_t middleSize = 0;
  estimateOutputLength(nls, estimateSource, work.data(), work.length(), U_L_UNICODE_CE, &middleSize);
  Scratch<runScratchSize> scratch(nls->pool);
  uint8_t* middle = scratch.reserve(middleSize);
  if (middle == nullptr) {
    if (progress != nullptr) work.settle(*progress, nlsNoMemory);
    return nlsNoMemory;
  }

  TranscodeOptions ownOptions = options != nullptr ? *options : TranscodeOptions{};
  ownOptions.words[0] &= ~NLS_SWAPPED_INPUT;
  TranscodeProgress again = progress != nullptr ? *progress : TranscodeProgress{};
  TranscodeProgress secondProgress{};

  uint32_t middleLength = 0;
  const NlsStatus firstStatus =
      first(pipeline, work.data(), work.length(), middle, middleSize, &middleLength, progress, &ownOptions);
  uint32_t written = 0;
  NlsStatus status = second(pipeline, middle, middleLength, output, outputSize, &written, &secondProgress, &ownOptions);
  if (firstStatus == nlsNoMemory || status == nlsNoMemory) {
    if (progress != nullptr) {
      *progress = again;
      work.settle(*progress, nlsNoMemory);
    }
    return nlsNoMemory;
  }
  if (outputLength != nullptr) *outputLength = written;
  if (progress == nullptr) return status;

  uint32_t middleUsed = 0;
  NlsStatus takenStatus =
      first(pipeline, work.data(), work.length(), middle, secondProgress.consumed, &middleUsed, &again, &ownOptions);
  // When all that came before an incomplete character was taken, the limited run may have had no room to see that one.
  if (firstStatus == nlsIncompleteInput && middleLength == middleUsed) takenStatus = nlsIncompleteInput;
  again.flags |= secondProgress.flags;
  *progress = again;
  work.settle(*progress, takenStatus);

  // A substitution by the second stage stands, unless the input ended inside a character.
  if (status != nlsSubstituted || takenStatus == nlsIncompleteInput) status = takenStatus;
  return status;
}

}  // namespace veldnls
