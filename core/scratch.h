// Scratch memory of a run: on the stack up to N bytes, a zero-filled pool block above that.
#pragma once

#include <cstdint>

#include "core/qznlsstub.h"

namespace veldnls {

template <uint32_t N>
class Scratch {
 public:
  explicit Scratch(XmPool* pool) : pool_(pool) {}
  ~Scratch() {
    if (block_ != nullptr) nlsPoolFree(pool_, block_);
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  // Room for `size` bytes, or null when the pool is exhausted. Called once. The stack form isn't cleared.
  uint8_t* reserve(uint64_t size) {
    if (size <= N) return local_;
    if (size > 0xFFFFFFFFu) return nullptr;
    block_ = nlsPoolAlloc(pool_, static_cast<uint32_t>(size), zeroFill);
    return static_cast<uint8_t*>(block_);
  }

 private:
  XmPool* pool_;
  void* block_ = nullptr;
  alignas(8) uint8_t local_[N];
};

// True when either range starts inside the other. Empty ranges overlap nothing.
inline bool rangesOverlap(const void* a, uint64_t lengthA, const void* b, uint64_t lengthB) {
  const auto startA = reinterpret_cast<uintptr_t>(a);
  const auto startB = reinterpret_cast<uintptr_t>(b);
  if (lengthA == 0 || lengthB == 0) return false;
  return startA <= startB ? startB - startA < lengthA : startA - startB < lengthB;
}

}  // namespace veldnls
