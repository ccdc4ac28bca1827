// What a run reads: the caller's input, or a private copy of it when bytes held from the call before go ahead of it or
// when the output overlaps it. And what a run leaves behind in the caller's output length and progress record.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>

#include "core/scratch.h"
#include "veldnls/pipeline.h"
#include "veldnls/status.h"

namespace veldnls {

// Work buffers of a run stand on the stack up to this size, where nothing else is said.
inline constexpr uint32_t runScratchSize = 2048;

struct RunText {
  const uint8_t* bytes = nullptr;
  uint32_t length = 0;
  uint32_t prefixed = 0;  // how many of them were held from the call before
};

// What every run sets on entry. Both may be null.
inline void beginRun(uint32_t* outputLength, TranscodeProgress* progress) {
  if (outputLength != nullptr) *outputLength = 0;
  if (progress == nullptr) return;
  progress->flags &= ~NLS_PROGRESS_SUBSTITUTED;
  progress->consumed = 0;
}

// The same, for a run that looks at nothing without an input and `smallestOutput` bytes of room: then returns its
// status, and held bytes stay.
inline std::optional<NlsStatus> beginOrEnd(uint32_t inputLength, uint32_t outputSize, uint32_t smallestOutput,
                                           uint32_t* outputLength, TranscodeProgress* progress) {
  beginRun(outputLength, progress);
  if (inputLength == 0) return NlsStatus{0};
  if (outputSize < smallestOutput) return NlsStatus{nlsOutputTruncated};
  return std::nullopt;
}

inline void reportLength(uint32_t* outputLength, uint32_t written) {
  if (outputLength != nullptr) *outputLength = written;
}

// How many bytes `progress` (may be null) holds from the call before. The count is the caller's memory: it isn't
// trusted beyond the field's size.
inline uint32_t heldBytes(const TranscodeProgress* progress) {
  constexpr uint32_t capacity = sizeof(TranscodeProgress::held);
  if (progress == nullptr || progress->pending == 0) return 0;
  return std::min(progress->heldCount, capacity);
}

// Writes the `held` first bytes of the record's, then the input, to `copy`, and returns them as a text.
RunText joinHeld(uint8_t* copy, const TranscodeProgress* progress, uint32_t held, const void* input,
                 uint32_t inputLength);

// Up to N bytes a private copy stands on the stack.
template <uint32_t N>
class RunInput {
 public:
  explicit RunInput(XmPool* pool) : scratch_(pool) {}

  // Puts the bytes that `progress` (may be null) holds ahead of the input. The record isn't changed, so that a run
  // which fails later has lost nothing. A run that has read its input when it begins to write gives an output size of
  // 0. Returns false when the pool is exhausted, or when both together are longer than any input. Called once.
  bool open(const void* input, uint32_t inputLength, const void* output, uint32_t outputSize,
            const TranscodeProgress* progress) {
    const uint32_t held = heldBytes(progress);
    if (held == 0 && !rangesOverlap(input, inputLength, output, outputSize)) {
      text_ = {static_cast<const uint8_t*>(input), inputLength, 0};
      return true;
    }
    uint8_t* copy = scratch_.reserve(uint64_t{held} + inputLength);
    if (copy == nullptr) return false;
    text_ = joinHeld(copy, progress, held, input, inputLength);
    return true;
  }

  // Lives as long as this object and the caller's input.
  const RunText& text() const { return text_; }

 private:
  Scratch<N> scratch_;
  RunText text_;
};

// Takes out of the record what stands ahead of `text`: for runs that hand the record on to a stage, which would put
// those bytes ahead once more.
void takeHeld(TranscodeProgress& progress, const RunText& text);

// Ends a run that has read the first `taken` bytes of its text and returns `status`, the blank rule being applied. If
// the input ended inside a character (nlsIncompleteInput) the rest is held and counts as consumed: no character has
// more than 8 bytes, but of a longer rest the first 8 are held and the others stay unread. Without a rest the bytes
// that an inner stage has held stay. If the run found too little room or memory (nlsOutputTruncated, nlsNoMemory),
// those of the call before that it didn't read are held again. Otherwise nothing is held: what the run left of them are
// blanks that were dropped. `consumed` becomes the count of bytes of the caller's own input.
void settle(TranscodeProgress& progress, const RunText& text, uint32_t taken, NlsStatus status);

}  // namespace veldnls
