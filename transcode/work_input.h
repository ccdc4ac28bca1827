// What a run reads: the caller's input, or a private copy of it when bytes held from the call before go ahead of it or
// when the output overlaps it. And what a run leaves behind in the caller's progress record.
#pragma once

#include <cstdint>

#include "core/scratch.h"
#include "veldnls/pipeline.h"

namespace veldnls {

// Work buffers of a run up to this size stand on the stack.
inline constexpr uint32_t runScratchSize = 2048;

// What every resumable run sets on entry. Both may be null.
void beginRun(uint32_t* outputLength, TranscodeProgress* progress);

class WorkInput {
 public:
  explicit WorkInput(XmPool* pool) : scratch_(pool) {}

  // Takes the held bytes out of `progress` (may be null) and puts them ahead of the input. Returns false when the pool
  // is exhausted; `progress` is then as it was. Called once.
  bool prepare(const void* input, uint32_t inputLength, const void* output, uint32_t outputSize,
               TranscodeProgress* progress);

  const uint8_t* data() const { return data_; }
  // At most what an input can have; a longer sum of both is refused by prepare.
  uint32_t length() const { return length_; }

  // Ends a run: `progress.consumed` holds how much of data() was read. If the input ended inside a character the rest
  // is held and counts as consumed. If not even the bytes of the call before were read, they are held again. Afterwards
  // `consumed` counts bytes of the caller's input only.
  void settle(TranscodeProgress& progress, NlsStatus status) const;

 private:
  void hold(TranscodeProgress& progress, uint32_t from, uint32_t to) const;

  Scratch<runScratchSize> scratch_;
  const uint8_t* data_ = nullptr;
  uint32_t length_ = 0;
  uint32_t prefixed_ = 0;
};

}  // namespace veldnls
