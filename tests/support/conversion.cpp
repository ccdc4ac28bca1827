#include "support/conversion.h"

#include <cstdio>
#include <cstdlib>

namespace test {

Pipeline::Pipeline(QZNLS* nls, CEI source, CEI target, const TranscodeOptions* options)
    : pipeline_(nls->createPipeline(nls, source, target, options, nullptr)) {}

Pipeline::~Pipeline() {
  if (pipeline_ == nullptr || pipeline_->destroy(pipeline_) == 0) return;
  std::fputs("broken: a pipeline ends\n", stderr);
  std::abort();
}

Converted convertWhole(TranscodingPipeline* pipeline, std::span<const uint8_t> text) {
  Converted converted;
  converted.bytes.resize(8 * text.size() + 64);
  uint32_t written = 0;
  TranscodeProgress progress{};
  converted.status =
      pipeline->transcodeResumable(pipeline, text.data(), static_cast<uint32_t>(text.size()), converted.bytes.data(),
                                   static_cast<uint32_t>(converted.bytes.size()), &written, &progress, nullptr);
  converted.bytes.resize(written);
  converted.substituted = (progress.flags & NLS_PROGRESS_SUBSTITUTED) != 0;
  return converted;
}

}  // namespace test
