// The bytes that a run reads: the caller's input; or a private copy, when bytes held from the call before go ahead of
// it, or when the output would overwrite it.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "core/scratch.h"
#include "veldnls/pipeline.h"

namespace veldnls {

struct RunText {
  const uint8_t* bytes = nullptr;
  uint32_t length = 0;
  uint32_t prefixed = 0;  // how many of them were held from the call before
};

inline constexpr uint32_t heldCapacity = sizeof(TranscodeProgress::held);

// Up to N bytes a copy stands on the stack.
template <uint32_t N>
class RunInput {
 public:
  explicit RunInput(XmPool* pool) : scratch_(pool) {}

  // `progress` may be null and isn't changed, so that a run which fails later has lost nothing. Returns false when
  // memory for a copy is exhausted. Called once.
  bool open(const void* input, uint32_t inputLength, const void* output, uint32_t outputSize,
            const TranscodeProgress* progress) {
    const bool holds = progress != nullptr && progress->pending != 0;
    const uint32_t held = holds ? std::min(progress->heldCount, heldCapacity) : 0;
    text_ = {static_cast<const uint8_t*>(input), inputLength, held};
    if (held == 0 && !rangesOverlap(input, inputLength, output, outputSize)) return true;
    const uint64_t total = uint64_t{held} + inputLength;
    uint8_t* copy = scratch_.reserve(total);
    if (copy == nullptr) return false;
    if (held != 0) std::memcpy(copy, progress->held, held);
    std::memcpy(copy + held, input, inputLength);
    text_.bytes = copy;
    text_.length = static_cast<uint32_t>(total);
    return true;
  }

  const RunText& text() const { return text_; }

 private:
  Scratch<N> scratch_;
  RunText text_;
};

}  // namespace veldnls
