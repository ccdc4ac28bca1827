#include "modules/qznlssb/decoded_to_byte.h"
#include "modules/qznlssb/run_functions.h"
#include "veldnls/cei.h"

namespace veldnls {

NlsStatus utfeToByte(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                     uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                     const TranscodeOptions* options) {
  if (const auto ended = beginOrEnd(inputLength, outputSize, 1, outputLength, progress)) return *ended;
  QZNLS* nls = pipeline->nls;
  RunInput<runScratchSize> work(nls->pool);
  if (!openDecoded(work, input, inputLength, output, outputSize, progress)) return nlsNoMemory;
  const NlsConvertResumable decode =
      pipeline->source.cei == U_UTFE_CE ? nls->convertUtfEbcdicToUtf16Resumable : nls->convertUtf8ToUtf16Resumable;
  return decodedToByte(pipeline, work.text(), work.text().bytes, decode, output, outputSize, outputLength, progress,
                       options);
}

}  // namespace veldnls
