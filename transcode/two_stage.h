// A conversion in two steps with UTF-16LE between them.
#pragma once

#include "veldnls/pipeline.h"

namespace veldnls {

// Runs `first` from the input into an intermediate text, whose size is the estimate from `estimateSource` to UTF-16,
// and `second` from there to the output. The further arguments are those of NlsUnicodeStage. With a progress record
// `first` runs again, limited to what `second` took, to find how much input that was.
NlsStatus runTwoStages(CEI estimateSource, NlsUnicodeStage first, NlsUnicodeStage second, TranscodingPipeline* pipeline,
                       const void* input, uint32_t inputLength, void* output, uint32_t outputSize,
                       uint32_t* outputLength, TranscodeProgress* progress, const TranscodeOptions* options);

}  // namespace veldnls
