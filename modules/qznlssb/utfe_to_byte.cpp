#include "modules/qznlssb/decoded_to_byte.h"
#include "modules/qznlssb/report.h"
#include "modules/qznlssb/run_functions.h"
#include "modules/qznlssb/run_input.h"
#include "veldnls/cei.h"

namespace veldnls {

namespace {

constexpr uint32_t inputScratch = 2048;

}  // namespace

NlsStatus utfeToByte(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                     uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                     const TranscodeOptions* options) {
  beginReport(outputLength, progress);
  if (inputLength == 0) return 0;
  if (outputSize == 0) return nlsOutputTruncated;
  QZNLS* nls = pipeline->nls;
  RunInput<inputScratch> work(nls->pool);
  // Without a progress record the input isn't looked at any more once there is output, so that they may overlap.
  if (!work.open(input, inputLength, output, progress != nullptr ? outputSize : 0, progress)) return nlsNoMemory;
  const NlsConvertResumable decode =
      pipeline->source.cei == U_UTFE_CE ? nls->convertUtfEbcdicToUtf16Resumable : nls->convertUtf8ToUtf16Resumable;
  return decodedToByte(pipeline, work.text(), decode, output, outputSize, outputLength, progress, options);
}

}  // namespace veldnls
