// The record in the head of a free block, and the chain that these records make in a chunk.
#pragma once

#include <algorithm>
#include <limits>

#include "hs/src/poison.h"
#include "hs/src/pool.h"

namespace veldnls::hs {

// `next` is an offset from the chunk's start; 0 ends the chain, since a block at the start follows none.
struct FreeBlock {
  uint32_t size;
  uint32_t next;
};
static_assert(sizeof(FreeBlock) == blockAlignment, "the smallest block holds the record");

// A place in the chain of a chunk. `before` is null at its head, `at` past its end.
struct ChainStep {
  uint8_t* before = nullptr;
  uint8_t* at = nullptr;
};

inline FreeBlock readFree(const uint8_t* at) { return readClosed<FreeBlock>(at); }

// Addresses ascend and stay in the chunk. Where callers' errors have spoilt that, the chain ends, so that every walk
// does.
inline uint8_t* nextOf(const XmChunk* chunk, const uint8_t* at, FreeBlock block) {
  const auto size = static_cast<size_t>(chunk->end - chunk->start);
  const auto offset = static_cast<size_t>(at - chunk->start);
  return block.next > offset && block.next <= size - sizeof(FreeBlock) ? chunk->start + block.next : nullptr;
}

inline uint8_t* nextOf(const XmChunk* chunk, const uint8_t* at) { return nextOf(chunk, at, readFree(at)); }

// The first free block when `before` is null.
inline uint8_t* nextAfter(const XmChunk* chunk, const uint8_t* before) {
  return before != nullptr ? nextOf(chunk, before) : chunk->freeChain;
}

// A caller's error can link a block that reaches past the end of its chunk.
inline uint32_t sizeInChunk(const XmChunk* chunk, const uint8_t* at, FreeBlock block) {
  const auto room = static_cast<uint64_t>(chunk->end - at);
  return static_cast<uint32_t>(std::min<uint64_t>(block.size, room - room % blockAlignment));
}

// Lengths that overlap more than there is can add up past 32 bits.
inline void writeFree(const XmChunk* chunk, uint8_t* at, uint64_t size, const uint8_t* next) {
  constexpr uint64_t largest = std::numeric_limits<uint32_t>::max();
  const auto offset = next != nullptr ? static_cast<uint32_t>(next - chunk->start) : 0;
  writeClosed(at, FreeBlock{static_cast<uint32_t>(std::min(size, largest)), offset});
}

// Makes `target` the block that follows `before`, or the first one when `before` is null.
inline void setNext(XmChunk* chunk, uint8_t* before, uint8_t* target) {
  if (before == nullptr) {
    chunk->freeChain = target;
  } else {
    writeFree(chunk, before, readFree(before).size, target);
  }
}

}  // namespace veldnls::hs
