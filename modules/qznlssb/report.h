// What a run writes to the caller's output length and progress record.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "modules/qznlssb/run_input.h"
#include "veldnls/pipeline.h"
#include "veldnls/status.h"

namespace veldnls {

// The state that every run begins with. Both pointers may be null.
inline void beginReport(uint32_t* outputLength, TranscodeProgress* progress) {
  if (outputLength != nullptr) *outputLength = 0;
  if (progress == nullptr) return;
  progress->flags &= ~NLS_PROGRESS_SUBSTITUTED;
  progress->consumed = 0;
}

inline void reportLength(uint32_t* outputLength, uint32_t written) {
  if (outputLength != nullptr) *outputLength = written;
}

// Keeps bytes for the next call.
inline void hold(TranscodeProgress& progress, const uint8_t* bytes, uint32_t count) {
  progress.heldCount = std::min(count, heldCapacity);
  progress.pending = 1;
  std::memcpy(progress.held, bytes, progress.heldCount);
}

// The run took the first `taken` bytes of `text`. When the output was too small even for the bytes that were held
// before, what is left of them is held again, so that the caller goes on from its own input.
inline void reportTaken(TranscodeProgress& progress, const RunText& text, uint32_t taken, NlsStatus status) {
  progress.pending = 0;
  progress.heldCount = 0;
  if (taken >= text.prefixed) {
    progress.consumed = taken - text.prefixed;
    return;
  }
  progress.consumed = 0;
  if (status == nlsOutputTruncated) hold(progress, text.bytes + taken, text.prefixed - taken);
}

// The run took all of `text` and the last `heldCount` bytes of it are the beginning of a character.
inline void reportIncomplete(TranscodeProgress& progress, const RunText& text, uint32_t heldCount) {
  hold(progress, text.bytes + (text.length - heldCount), heldCount);
  progress.consumed = text.length - text.prefixed;
}

}  // namespace veldnls
