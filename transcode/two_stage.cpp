#include "transcode/two_stage.h"

#include "core/text/run_input.h"
#include "transcode/pipeline.h"
#include "veldnls/cei.h"
#include "veldnls/status.h"

namespace veldnls {

namespace {

// The end of a run that lacks memory, whatever was done: nothing counts as converted, and what was held is held again.
NlsStatus withoutMemory(const RunText& text, const TranscodeProgress& before, uint32_t* outputLength,
                        TranscodeProgress* progress) {
  reportLength(outputLength, 0);
  if (progress == nullptr) return nlsNoMemory;
  *progress = before;
  settle(*progress, text, 0, nlsNoMemory);
  return nlsNoMemory;
}

}  // namespace

NlsStatus runTwoStages(CEI estimateSource, NlsUnicodeStage first, NlsUnicodeStage second, TranscodingPipeline* pipeline,
                       const void* input, uint32_t inputLength, void* output, uint32_t outputSize,
                       uint32_t* outputLength, TranscodeProgress* progress, const TranscodeOptions* options) {
  beginRun(outputLength, progress);
  QZNLS* nls = pipeline->nls;
  // The input is read again when the output stands, so that a copy is needed where they overlap.
  RunInput<runScratchSize> work(nls->pool);
  if (!work.open(input, inputLength, output, outputSize, progress)) return nlsNoMemory;
  const RunText& text = work.text();

  uint32_t middleSize = 0;
  estimateOutputLength(nls, estimateSource, text.bytes, text.length, U_L_UNICODE_CE, &middleSize);
  Scratch<runScratchSize> scratch(nls->pool);
  uint8_t* middle = scratch.reserve(middleSize);
  if (middle == nullptr) return nlsNoMemory;
  if (progress != nullptr) takeHeld(*progress, text);

  TranscodeOptions ownOptions = options != nullptr ? *options : TranscodeOptions{};
  ownOptions.words[0] &= ~NLS_SWAPPED_INPUT;
  const TranscodeProgress before = progress != nullptr ? *progress : TranscodeProgress{};
  TranscodeProgress secondProgress{};

  uint32_t middleLength = 0;
  const NlsStatus firstStatus =
      first(pipeline, text.bytes, text.length, middle, middleSize, &middleLength, progress, &ownOptions);
  uint32_t written = 0;
  NlsStatus status = second(pipeline, middle, middleLength, output, outputSize, &written, &secondProgress, &ownOptions);
  if (firstStatus == nlsNoMemory || status == nlsNoMemory) return withoutMemory(text, before, outputLength, progress);
  // The intermediate text ends with half a surrogate pair. There is no call to come for it: it was replaced by nothing.
  const bool halfPair = status == nlsIncompleteInput;
  if (halfPair) {
    status = nlsSubstituted;
    secondProgress.flags |= NLS_PROGRESS_SUBSTITUTED;
  }
  reportLength(outputLength, written);
  if (progress == nullptr) return status;

  // What the first stage did stands if the second took all of it: then shifts and the start of a character behind the
  // last one are read. Half a pair counts as taken.
  NlsStatus takenStatus = firstStatus;
  if (secondProgress.consumed != middleLength && !halfPair) {
    TranscodeProgress again = before;
    uint32_t middleUsed = 0;
    takenStatus =
        first(pipeline, text.bytes, text.length, middle, secondProgress.consumed, &middleUsed, &again, &ownOptions);
    if (takenStatus == nlsNoMemory) return withoutMemory(text, before, outputLength, progress);
    // A replacement in the limited run, of a character or of half a pair at its end, would hide that the text goes on.
    const bool whole = again.consumed == text.length;
    if (status == nlsOutputTruncated && takenStatus == nlsSubstituted && !whole) takenStatus = nlsOutputTruncated;
    *progress = again;
  }
  progress->flags |= secondProgress.flags;
  settle(*progress, text, progress->consumed, takenStatus);

  // A substitution by the second stage stands, unless the input ended inside a character.
  if (status != nlsSubstituted || takenStatus == nlsIncompleteInput) status = takenStatus;
  return status;
}

NlsStatus runTwoStagesByPieces(NlsUnicodeStage first, NlsUnicodeStage second, TranscodingPipeline* pipeline,
                               const void* input, uint32_t inputLength, void* output, uint32_t outputSize,
                               uint32_t* outputLength, const TranscodeOptions* options) {
  beginRun(outputLength, nullptr);
  RunInput<runScratchSize> work(pipeline->nls->pool);
  if (!work.open(input, inputLength, output, outputSize, nullptr)) return nlsNoMemory;
  const RunText& text = work.text();
  TranscodeOptions ownOptions = options != nullptr ? *options : TranscodeOptions{};
  ownOptions.words[0] &= ~NLS_SWAPPED_INPUT;

  alignas(8) uint8_t middle[runScratchSize];
  auto* const out = static_cast<uint8_t*>(output);
  TranscodeProgress state{};  // carries the first stage's shift state from piece to piece
  NlsStatus result = 0;
  uint32_t read = 0;
  uint32_t written = 0;
  while (read < text.length) {
    uint32_t middleLength = 0;
    const NlsStatus firstStatus = first(pipeline, text.bytes + read, text.length - read, middle, sizeof middle,
                                        &middleLength, &state, &ownOptions);
    TranscodeProgress pieceProgress{};
    uint32_t pieceWritten = 0;
    const NlsStatus status = second(pipeline, middle, middleLength, out + written, outputSize - written, &pieceWritten,
                                    &pieceProgress, &ownOptions);
    if (firstStatus == nlsNoMemory || status == nlsNoMemory) return nlsNoMemory;
    read += state.consumed;
    written += pieceWritten;
    if (status != 0) result = status == nlsIncompleteInput ? NlsStatus{nlsSubstituted} : status;
    // A character that isn't whole ends the text, as does one that has no room.
    if (firstStatus == nlsIncompleteInput || status == nlsOutputTruncated || state.consumed == 0) break;
  }
  reportLength(outputLength, written);
  return result;
}

}  // namespace veldnls
