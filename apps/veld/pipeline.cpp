#include "pipeline.h"

#include "veldnls/cei.h"

namespace veld {

Pipeline makePipeline(QZNLS& nls, CEI from, CEI to) {
  Pipeline reader;
  if (to == U_GB18030_CE) reader.reset(nls.createToUtf16Pipeline(&nls, to, nullptr, nullptr));
  return Pipeline(nls.createPipeline(&nls, from, to, nullptr, nullptr));
}

Converted convertShort(TranscodingPipeline& pipeline, Bytes text, std::span<uint8_t> output, bool inDouble) {
  TranscodeProgress progress{};
  if (inDouble) progress.flags = NLS_PROGRESS_DOUBLE_MODE;
  uint32_t written = 0;
  const NlsStatus status =
      pipeline.transcodeResumable(&pipeline, text.data(), static_cast<uint32_t>(text.size()), output.data(),
                                  static_cast<uint32_t>(output.size()), &written, &progress, nullptr);
  return {status == 0 && (progress.flags & NLS_PROGRESS_SUBSTITUTED) == 0, written,
          (progress.flags & NLS_PROGRESS_DOUBLE_MODE) != 0};
}

}  // namespace veld
