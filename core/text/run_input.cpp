#include "core/text/run_input.h"

#include <algorithm>
#include <cstring>

#include "veldnls/status.h"

namespace veldnls {

namespace {

constexpr uint32_t heldCapacity = sizeof(TranscodeProgress::held);

// Holds what stands at `bytes`, as much as the field takes, and returns how much that is.
uint32_t hold(TranscodeProgress& progress, const uint8_t* bytes, uint32_t count) {
  progress.heldCount = std::min(count, heldCapacity);
  std::memcpy(progress.held, bytes, progress.heldCount);
  progress.pending = 1;
  return progress.heldCount;
}

void releaseHeld(TranscodeProgress& progress) {
  progress.heldCount = 0;
  progress.pending = 0;
}

}  // namespace

RunText joinHeld(uint8_t* copy, const TranscodeProgress* progress, uint32_t held, const void* input,
                 uint32_t inputLength) {
  if (held != 0) std::memcpy(copy, progress->held, held);
  if (inputLength != 0) std::memcpy(copy + held, input, inputLength);
  return {copy, held + inputLength, held};
}

void takeHeld(TranscodeProgress& progress, const RunText& text) {
  if (text.prefixed != 0) releaseHeld(progress);
}

void settle(TranscodeProgress& progress, const RunText& text, uint32_t taken, NlsStatus status) {
  if (status == nlsIncompleteInput) {
    uint32_t held = 0;
    if (taken != text.length) held = hold(progress, text.bytes + taken, text.length - taken);
    progress.consumed = taken + held - text.prefixed;
    progress.pending = 1;
  } else if (taken < text.prefixed && (status == nlsOutputTruncated || status == nlsNoMemory)) {
    hold(progress, text.bytes + taken, text.prefixed - taken);
    progress.consumed = 0;
  } else {
    releaseHeld(progress);
    progress.consumed = taken - std::min(taken, text.prefixed);
  }
}

}  // namespace veldnls
