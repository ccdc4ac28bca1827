// What the stages that keep the form of a UTF-32 text share: how much goes out, in whole units.
#pragma once

#include <algorithm>
#include <cstdint>

#include "transcode/blanks.h"
#include "transcode/work_input.h"
#include "veldnls/nls.h"
#include "veldnls/status.h"

namespace veldnls {

struct Extent {
  uint32_t length;  // bytes read and written
  NlsStatus status;
};

inline uint32_t wholeUnits(uint32_t inputLength, uint32_t outputSize, uint32_t unit) {
  return std::min(inputLength, outputSize) / unit * unit;
}

// How much of an input goes out. A rest of a whole unit and more is a short output; a smaller one, with a progress
// record, an incomplete character.
inline Extent extent32(const uint8_t*, uint32_t inputLength, uint32_t outputSize, bool resumable) {
  const uint32_t length = wholeUnits(inputLength, outputSize, 4);
  if (length == inputLength) return {length, 0};
  return {length, resumable && inputLength - length < 4 ? nlsIncompleteInput : nlsOutputTruncated};
}

using ExtentRule = Extent (*)(const uint8_t* input, uint32_t inputLength, uint32_t outputSize, bool resumable);
// Writes `length` bytes; the ranges don't overlap.
using UnitMove = void (*)(uint8_t* output, const uint8_t* input, size_t length);

// A run that writes the whole units of its input. The arguments behind `blank` are those of NlsUnicodeStage.
template <ExtentRule rule, UnitMove move>
NlsStatus moveUnits(Blank blank, TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                    uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                    const TranscodeOptions* options) {
  beginRun(outputLength, progress);
  WorkInput work(pipeline->nls->pool);
  if (!work.prepare(input, inputLength, output, outputSize, progress)) return nlsNoMemory;
  const Extent extent = rule(work.data(), work.length(), outputSize, progress != nullptr);
  if (extent.length != 0) move(static_cast<uint8_t*>(output), work.data(), extent.length);
  if (outputLength != nullptr) *outputLength = extent.length;
  if (progress != nullptr) {
    progress->consumed = extent.length;
    work.settle(*progress, extent.status);
  }
  return applyBlankRule(extent.status, pipeline, options, work.data() + extent.length, work.length() - extent.length,
                        blank);
}

}  // namespace veldnls
