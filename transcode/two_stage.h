// A conversion in two steps with UTF-16LE between them.
#pragma once

#include "veldnls/pipeline.h"

namespace veldnls {

// Runs `first` from the input into an intermediate text, whose size is the estimate from `estimateSource` to UTF-16,
// and `second` from there to the output. The further arguments are those of NlsUnicodeStage. With a progress record
// `first` runs again when `second` didn't take all, limited to what it took, to find how much input that was.
NlsStatus runTwoStages(CEI estimateSource, NlsUnicodeStage first, NlsUnicodeStage second, TranscodingPipeline* pipeline,
                       const void* input, uint32_t inputLength, void* output, uint32_t outputSize,
                       uint32_t* outputLength, TranscodeProgress* progress, const TranscodeOptions* options);

// The same without a progress record, for stages that know nothing of a text but the character at hand: `first` never
// writes half a surrogate pair, `second` writes no shifts, and no blanks may be dropped. The text goes through a piece
// at a time, so that no intermediate text of any length is needed.
NlsStatus runTwoStagesByPieces(NlsUnicodeStage first, NlsUnicodeStage second, TranscodingPipeline* pipeline,
                               const void* input, uint32_t inputLength, void* output, uint32_t outputSize,
                               uint32_t* outputLength, const TranscodeOptions* options);

}  // namespace veldnls
