#include "support/conversion.h"

namespace test {

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
