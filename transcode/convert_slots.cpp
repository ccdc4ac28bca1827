#include "transcode/convert_slots.h"

namespace veldnls {

namespace {

template <int pipelineIndex>
NlsStatus convertResumable(QZNLS* nls, const void* input, uint32_t inputLength, void* output, uint32_t outputSize,
                           uint32_t* outputLength, TranscodeProgress* progress, const TranscodeOptions* options) {
  TranscodingPipeline* pipeline = &nls->prebuiltPipelines[pipelineIndex];
  return pipeline->transcodeResumable(pipeline, input, inputLength, output, outputSize, outputLength, progress,
                                      options);
}

template <int pipelineIndex>
NlsStatus convert(QZNLS* nls, const void* input, uint32_t inputLength, void* output, uint32_t outputSize,
                  uint32_t* outputLength, const TranscodeOptions* options) {
  return convertResumable<pipelineIndex>(nls, input, inputLength, output, outputSize, outputLength, nullptr, options);
}

}  // namespace

void installConvertSlots(QZNLS* nls) {
  nls->convertUtf16ToUtf32 = convert<NLS_PREBUILT_UTF16_TO_UTF32>;
  nls->convertUtf32ToUtf16 = convert<NLS_PREBUILT_UTF32_TO_UTF16>;
  nls->convertUtf16ToUtf8 = convert<NLS_PREBUILT_UTF16_TO_UTF8>;
  nls->convertUtf8ToUtf16 = convert<NLS_PREBUILT_UTF8_TO_UTF16>;
  nls->convertUtf16ToUtfEbcdic = convert<NLS_PREBUILT_UTF16_TO_UTFE>;
  nls->convertUtfEbcdicToUtf16 = convert<NLS_PREBUILT_UTFE_TO_UTF16>;
  nls->convertUtf16ToUtf32Resumable = convertResumable<NLS_PREBUILT_UTF16_TO_UTF32>;
  nls->convertUtf32ToUtf16Resumable = convertResumable<NLS_PREBUILT_UTF32_TO_UTF16>;
  nls->convertUtf16ToUtf8Resumable = convertResumable<NLS_PREBUILT_UTF16_TO_UTF8>;
  nls->convertUtf8ToUtf16Resumable = convertResumable<NLS_PREBUILT_UTF8_TO_UTF16>;
  nls->convertUtf16ToUtfEbcdicResumable = convertResumable<NLS_PREBUILT_UTF16_TO_UTFE>;
  nls->convertUtfEbcdicToUtf16Resumable = convertResumable<NLS_PREBUILT_UTFE_TO_UTF16>;
}

}  // namespace veldnls
