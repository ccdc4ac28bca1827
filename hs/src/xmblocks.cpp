// Blocks of any size. The free blocks of a chunk form a chain by ascending address, each with its record in its head.
#include <algorithm>
#include <limits>

#include "hs/src/platform/platform.h"
#include "hs/src/poison.h"
#include "hs/src/pool.h"

namespace veldnls::hs {

namespace {

// `next` is an offset from the chunk's start; 0 ends the chain, since a block at the start follows none.
struct FreeBlock {
  uint32_t size;
  uint32_t next;
};
static_assert(sizeof(FreeBlock) == 8, "the smallest block holds the record");

constexpr char overlapMessage[] = "xmfree() ERROR: free chain overlap detected!";

// A step along the chain of a chunk. `at` is null past the end.
struct ChainStep {
  uint8_t* before = nullptr;
  uint8_t* at = nullptr;
};

FreeBlock readFree(const uint8_t* at) { return readClosed<FreeBlock>(at); }

uint8_t* nextOf(const XmChunk* chunk, FreeBlock block) { return block.next != 0 ? chunk->start + block.next : nullptr; }

uint32_t offsetOf(const XmChunk* chunk, const uint8_t* at) {
  return at != nullptr ? static_cast<uint32_t>(at - chunk->start) : 0;
}

// Lengths that overlap more than there is can add up past 32 bits.
void writeFree(const XmChunk* chunk, uint8_t* at, uint64_t size, const uint8_t* next) {
  constexpr uint64_t largest = std::numeric_limits<uint32_t>::max();
  writeClosed(at, FreeBlock{static_cast<uint32_t>(std::min(size, largest)), offsetOf(chunk, next)});
}

// Makes `target` the block that follows `before`, or the first one when `before` is null.
void setNext(XmChunk* chunk, uint8_t* before, uint8_t* target) {
  if (before == nullptr) {
    chunk->freeChain = target;
  } else {
    writeFree(chunk, before, readFree(before).size, target);
  }
}

// Takes the last block of the chain with what it lacks from `bump`, if they touch and there is room.
bool takeWithBump(XmChunk* chunk, ChainStep step, uint32_t blockSize, uint32_t size) {
  const uint32_t missing = size - blockSize;
  if (step.at + blockSize != chunk->bump || missing > roomOf(chunk)) return false;
  setNext(chunk, step.before, nullptr);
  takeAtBump(chunk, missing);
  return true;
}

// The first block that is large enough, cut to size, or null.
uint8_t* takeFromChain(XmChunk* chunk, uint32_t size) {
  ChainStep step{nullptr, chunk->freeChain};
  while (step.at != nullptr) {
    const FreeBlock block = readFree(step.at);
    uint8_t* next = nextOf(chunk, block);
    if (block.size == size) {
      setNext(chunk, step.before, next);
      return step.at;
    }
    if (block.size > size) {
      uint8_t* rest = step.at + size;
      writeFree(chunk, rest, block.size - size, next);
      setNext(chunk, step.before, rest);
      return step.at;
    }
    if (next == nullptr && takeWithBump(chunk, step, block.size, size)) return step.at;
    step = {step.at, next};
  }
  return nullptr;
}

// The last free block at or below an address, and the first one above it.
ChainStep findPlace(const XmChunk* chunk, const uint8_t* address) {
  ChainStep step{nullptr, chunk->freeChain};
  while (step.at != nullptr && step.at <= address) step = {step.at, nextOf(chunk, readFree(step.at))};
  return step;
}

// Links a block between the two, and makes one block of those that touch.
void linkFree(XmChunk* chunk, ChainStep place, uint8_t* block, uint64_t size) {
  uint64_t merged = size;
  uint8_t* next = place.at;
  if (next != nullptr && block + size == next) {
    const FreeBlock absorbed = readFree(next);
    merged += absorbed.size;
    next = nextOf(chunk, absorbed);
  }
  if (place.before != nullptr) {
    const uint32_t beforeSize = readFree(place.before).size;
    if (place.before + beforeSize == block) {
      writeFree(chunk, place.before, beforeSize + merged, next);
      return;
    }
  }
  writeFree(chunk, block, merged, next);
  setNext(chunk, place.before, block);
}

}  // namespace

Taken takeBlock(const VeldInputVector* host, XmPool* pool, uint32_t size) {
  for (XmChunk* chunk = pool->chunks; chunk != nullptr; chunk = chunk->next) {
    if (uint8_t* block = takeFromChain(chunk, size); block != nullptr) return {block, false};
    if (size <= roomOf(chunk)) return takeAtBump(chunk, size);
  }
  XmChunk* chunk = growPool(host, pool, growthFor(pool, size));
  return chunk != nullptr ? takeAtBump(chunk, size) : Taken{nullptr, false};
}

void giveBlock(XmPool* pool, uint8_t* block, uint32_t size) {
  XmChunk* chunk = chunkOf(pool, block);
  if (chunk == nullptr) return;
  const ChainStep place = findPlace(chunk, block);
  const uint8_t* end = block + size;
  const uint8_t* beforeEnd = place.before != nullptr ? place.before + readFree(place.before).size : nullptr;
  if (beforeEnd > block || (place.at != nullptr && place.at < end) || end > chunk->end) {
    platform::writeError(overlapMessage, sizeof overlapMessage - 1);
    // A block inside a free one is on the chain already: linked again, it would come to follow itself.
    if (place.before == block || beforeEnd >= end) return;
  }
  closeMemory(block, static_cast<size_t>(std::min<const uint8_t*>(end, chunk->end) - block));
  linkFree(chunk, place, block, size);
}

}  // namespace veldnls::hs
