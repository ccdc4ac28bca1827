#include "transcode/stages.h"
#include "transcode/two_stage.h"
#include "veldnls/cei.h"

namespace veldnls {

// The intermediate text is twice the input whatever the pipeline's source CEI is: the forms may stand for an encoding
// that needs no conversion to them.

NlsStatus utf8RoundTrip(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                        uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                        const TranscodeOptions* options) {
  return runTwoStages(U_UTF8_CE, utf8ToUtf16, utf16ToUtf8, pipeline, input, inputLength, output, outputSize,
                      outputLength, progress, options);
}

NlsStatus utfEbcdicRoundTrip(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                             uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                             const TranscodeOptions* options) {
  return runTwoStages(U_UTFE_CE, utfEbcdicToUtf16, utf16ToUtfEbcdic, pipeline, input, inputLength, output, outputSize,
                      outputLength, progress, options);
}

NlsStatus utfEbcdicToUtf8(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                          uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                          const TranscodeOptions* options) {
  return runTwoStages(U_UTFE_CE, utfEbcdicToUtf16, utf16ToUtf8, pipeline, input, inputLength, output, outputSize,
                      outputLength, progress, options);
}

NlsStatus utf8ToUtfEbcdic(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                          uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                          const TranscodeOptions* options) {
  return runTwoStages(U_UTF8_CE, utf8ToUtf16, utf16ToUtfEbcdic, pipeline, input, inputLength, output, outputSize,
                      outputLength, progress, options);
}

}  // namespace veldnls
