// The blank rule: blanks that the output can't take may be dropped without a status.
#pragma once

#include <cstdint>

#include "veldnls/pipeline.h"
#include "veldnls/status.h"

namespace veldnls {

inline constexpr char16_t unicodeBlank = 0x20;

// The permission counts if the pipeline or the call gives it.
inline bool mayDropBlanks(const TranscodingPipeline& pipeline, const TranscodeOptions* options) {
  const uint32_t given = pipeline.options.words[0] | (options != nullptr ? options->words[0] : 0);
  return (given & NLS_ALLOW_BLANK_TRUNCATION) != 0;
}

// The outcome of a run whose output took `taken` of `total` items: 0 if nothing remains, or only blanks that may be
// dropped; else nlsOutputTruncated. `isBlank(i)` tells of item i.
template <class IsBlank>
NlsStatus statusOfRest(bool dropBlanks, uint32_t taken, uint32_t total, IsBlank isBlank) {
  if (taken == total) return 0;
  if (!dropBlanks) return nlsOutputTruncated;
  for (uint32_t i = total; i > taken; --i) {
    if (!isBlank(i - 1)) return nlsOutputTruncated;
  }
  return 0;
}

}  // namespace veldnls
