// What the stages that keep the form of a UTF-16 or UTF-32 text share: how much goes out, in whole units. And the run
// of those that hold nothing, copies of any text among them.
#pragma once

#include <algorithm>
#include <cstdint>

#include "core/text/blanks.h"
#include "core/text/run_input.h"
#include "core/text/units.h"
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
  const uint32_t length = wholeUnits(inputLength, outputSize, utf32UnitBytes);
  if (length == inputLength) return {length, 0};
  return {length, resumable && inputLength - length < utf32UnitBytes ? nlsIncompleteInput : nlsOutputTruncated};
}

using ExtentRule = Extent (*)(const uint8_t* input, uint32_t inputLength, uint32_t outputSize, bool resumable);
// Writes `length` bytes.
using UnitMove = void (*)(uint8_t* output, const uint8_t* input, size_t length);

// A run that writes the whole units of its input, by a move that needn't take ranges which overlap. The arguments
// behind `blank` are those of NlsUnicodeStage.
template <ExtentRule rule, UnitMove move>
NlsStatus moveUnits(Blank blank, TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                    uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                    const TranscodeOptions* options) {
  beginRun(outputLength, progress);
  RunInput<runScratchSize> work(pipeline->nls->pool);
  if (!work.open(input, inputLength, output, outputSize, progress)) return nlsNoMemory;
  const RunText& text = work.text();
  const Extent extent = rule(text.bytes, text.length, outputSize, progress != nullptr);
  if (extent.length != 0) move(static_cast<uint8_t*>(output), text.bytes, extent.length);
  reportLength(outputLength, extent.length);
  NlsStatus status = extent.status;
  if (status == nlsOutputTruncated) {
    // The rest of held bytes and input, joined: behind held bytes, places in the caller's input would be others.
    status = statusOfRest(mayDropBlanks(pipeline->options, options), text.bytes + extent.length,
                          text.length - extent.length, blank);
  }
  if (progress != nullptr) settle(*progress, text, extent.length, status);
  return status;
}

// A run that moves what fits in whole units of `unit` bytes, at any overlap, holds nothing and leaves held bytes alone.
template <uint32_t unit, UnitMove move>
NlsStatus moveFitting(Blank blank, TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                      uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                      const TranscodeOptions* options) {
  if (const auto ended = beginOrEnd(inputLength, outputSize, 0, outputLength, progress)) return *ended;
  const uint32_t length = wholeUnits(inputLength, outputSize, unit);
  const auto* text = static_cast<const uint8_t*>(input);
  // Asked before the move, which may write on what is left when the ranges overlap.
  const NlsStatus status =
      statusOfRest(mayDropBlanks(pipeline->options, options), text + length, inputLength - length, blank);
  if (length != 0) move(static_cast<uint8_t*>(output), text, length);
  reportLength(outputLength, length);
  if (progress != nullptr) progress->consumed = length;
  return status;
}

}  // namespace veldnls
