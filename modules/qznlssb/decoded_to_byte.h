// Routes to a code page whose source is decoded to UTF-16 first.
#pragma once

#include "core/text/run_input.h"
#include "veldnls/nls.h"
#include "veldnls/pipeline.h"

namespace veldnls {

// Opens the input of such a route; false when the pool is exhausted. Without a progress record the input isn't looked
// at any more once there is output, so that they may overlap.
inline bool openDecoded(RunInput<runScratchSize>& work, const void* input, uint32_t inputLength, const void* output,
                        uint32_t outputSize, const TranscodeProgress* progress) {
  return work.open(input, inputLength, output, progress != nullptr ? outputSize : 0, progress);
}

// Decodes a text through `decode`, a slot of the pipeline's object, and converts the units. `readable` is the text in
// the byte order that `decode` takes, as long as `text`; what is held comes from `text`, as the caller gave it. Of the
// progress record, which may be null, everything is reported; a substitution only sets its bit in `flags`. With a
// progress record both are read again when there is output already, so they must not overlap the output.
NlsStatus decodedToByte(TranscodingPipeline* pipeline, const RunText& text, const uint8_t* readable,
                        NlsConvertResumable decode, void* output, uint32_t outputSize, uint32_t* outputLength,
                        TranscodeProgress* progress, const TranscodeOptions* options);

}  // namespace veldnls
