#include "transcode/work_input.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "veldnls/status.h"

namespace veldnls {

namespace {

constexpr uint32_t heldCapacity = sizeof(TranscodeProgress::held);

// The count is the caller's memory: it isn't trusted beyond the field's size.
uint32_t heldBytes(const TranscodeProgress* progress) {
  if (progress == nullptr || progress->pending == 0) return 0;
  return std::min(progress->heldCount, heldCapacity);
}

}  // namespace

void beginRun(uint32_t* outputLength, TranscodeProgress* progress) {
  if (outputLength != nullptr) *outputLength = 0;
  if (progress == nullptr) return;
  progress->flags &= ~NLS_PROGRESS_SUBSTITUTED;
  progress->consumed = 0;
}

bool WorkInput::prepare(const void* input, uint32_t inputLength, const void* output, uint32_t outputSize,
                        TranscodeProgress* progress) {
  const uint32_t held = heldBytes(progress);
  if (held == 0 && !rangesOverlap(input, inputLength, output, outputSize)) {
    data_ = static_cast<const uint8_t*>(input);
    length_ = inputLength;
    return true;
  }
  if (inputLength > std::numeric_limits<uint32_t>::max() - held) return false;
  uint8_t* copy = scratch_.reserve(uint64_t{inputLength} + held);
  if (copy == nullptr) return false;
  if (held != 0) {
    std::memcpy(copy, progress->held, held);
    progress->heldCount = 0;
    progress->pending = 0;
  }
  if (inputLength != 0) std::memcpy(copy + held, input, inputLength);
  data_ = copy;
  length_ = inputLength + held;
  prefixed_ = held;
  return true;
}

void WorkInput::settle(TranscodeProgress& progress, NlsStatus status) const {
  if (status == nlsIncompleteInput) {
    if (progress.consumed != length_) hold(progress, progress.consumed, length_);
    progress.consumed = length_;
    progress.pending = 1;
  } else if (progress.consumed < prefixed_) {
    hold(progress, progress.consumed, prefixed_);
    progress.consumed = prefixed_;
    progress.pending = 1;
  } else {
    progress.pending = 0;
  }
  progress.consumed -= prefixed_;
}

void WorkInput::hold(TranscodeProgress& progress, uint32_t from, uint32_t to) const {
  progress.heldCount = std::min(to - from, heldCapacity);
  std::memcpy(progress.held, data_ + from, progress.heldCount);
}

}  // namespace veldnls
