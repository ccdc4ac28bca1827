// Routes to a code page whose source is decoded to UTF-16 first.
#pragma once

#include "modules/qznlssb/run_input.h"
#include "veldnls/nls.h"
#include "veldnls/pipeline.h"

namespace veldnls {

// Decodes `text` through `decode`, a slot of the pipeline's object, and converts the units. Of the progress record,
// which may be null, everything is reported; a substitution only sets its bit in `flags`. With a progress record the
// text is read again when there is output already, so it must not overlap the output.
NlsStatus decodedToByte(TranscodingPipeline* pipeline, const RunText& text, NlsConvertResumable decode, void* output,
                        uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                        const TranscodeOptions* options);

}  // namespace veldnls
