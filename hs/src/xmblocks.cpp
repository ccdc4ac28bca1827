// Blocks of any size. The free blocks of a chunk form a chain by ascending address, each with its record in its head.
#include <algorithm>

#include "hs/src/chain_index.h"
#include "hs/src/chunk_directory.h"
#include "hs/src/free_block.h"
#include "hs/src/platform/platform.h"
#include "hs/src/poison.h"
#include "hs/src/pool.h"

namespace veldnls::hs {

namespace {

constexpr char overlapMessage[] = "xmfree() ERROR: free chain overlap detected!";

// A walk along the chain that takes more steps than this shows that an index would pay.
constexpr int longWalk = 8;

// Where the chain of a chunk serves a size.
struct Fit {
  ChainStep step;  // the first block that is large enough; else the last block, if any
  bool isLarge;    // it is large enough
};

Fit walkToFit(XmPool* pool, XmChunk* chunk, uint32_t size) {
  ChainStep step{nullptr, chunk->freeChain};
  bool isLarge = false;
  int steps = 0;
  while (step.at != nullptr) {
    const FreeBlock block = readFree(step.at);
    isLarge = sizeInChunk(chunk, step.at, block) >= size;
    uint8_t* next = nextOf(chunk, step.at, block);
    if (isLarge || next == nullptr) break;
    step = {step.at, next};
    ++steps;
  }
  if (steps > longWalk) addChainIndex(pool, chunk);
  return {step, isLarge};
}

Fit findFit(XmPool* pool, XmChunk* chunk, uint32_t size) {
  const ChainIndex* index = chainIndexOf(chunk);
  if (index == nullptr) return walkToFit(pool, chunk, size);
  const ChainStep step = firstFit(chunk, index, size);
  return step.at != nullptr ? Fit{step, true} : Fit{lastBlock(chunk, index), false};
}

ChainStep walkToPlace(XmPool* pool, XmChunk* chunk, const uint8_t* address) {
  ChainStep step{nullptr, chunk->freeChain};
  int steps = 0;
  for (; step.at != nullptr && step.at <= address; ++steps) step = {step.at, nextOf(chunk, step.at)};
  if (steps > longWalk) addChainIndex(pool, chunk);
  return step;
}

ChainStep findPlace(XmPool* pool, XmChunk* chunk, const uint8_t* address) {
  const ChainIndex* index = chainIndexOf(chunk);
  return index != nullptr ? placeOf(chunk, index, address) : walkToPlace(pool, chunk, address);
}

// Takes the front of a block; the remainder takes its place in the chain.
uint8_t* cutBlock(XmChunk* chunk, ChainStep step, uint32_t size) {
  const FreeBlock block = readFree(step.at);
  const uint32_t blockSize = sizeInChunk(chunk, step.at, block);
  uint8_t* next = nextOf(chunk, step.at, block);
  uint8_t* rest = blockSize > size ? step.at + size : nullptr;
  if (rest != nullptr) writeFree(chunk, rest, blockSize - size, next);
  setNext(chunk, step.before, rest != nullptr ? rest : next);
  if (ChainIndex* index = chainIndexOf(chunk); index != nullptr) noteTaken(chunk, index, step.at, rest, next);
  return step.at;
}

// Takes the last block of the chain with what it lacks from `bump`, if they touch and there is room.
uint8_t* takeWithBump(XmChunk* chunk, ChainStep step, uint32_t size) {
  const uint32_t blockSize = sizeInChunk(chunk, step.at, readFree(step.at));
  const uint32_t missing = size - blockSize;
  if (step.at + blockSize != chunk->bump || missing > roomOf(chunk)) return nullptr;
  setNext(chunk, step.before, nullptr);
  if (ChainIndex* index = chainIndexOf(chunk); index != nullptr) noteTaken(chunk, index, step.at, nullptr, nullptr);
  takeAtBump(chunk, missing);
  return step.at;
}

// The first block that is large enough, cut to size, or null.
uint8_t* takeFromChain(XmPool* pool, XmChunk* chunk, uint32_t size) {
  const Fit fit = findFit(pool, chunk, size);
  if (fit.step.at == nullptr) return nullptr;
  return fit.isLarge ? cutBlock(chunk, fit.step, size) : takeWithBump(chunk, fit.step, size);
}

Taken takeFromChunk(XmPool* pool, XmChunk* chunk, uint32_t size) {
  if (uint8_t* block = takeFromChain(pool, chunk, size); block != nullptr) return {block, false};
  return size <= roomOf(chunk) ? takeAtBump(chunk, size) : Taken{nullptr, false};
}

ChainSummary walkToSummary(const XmChunk* chunk) {
  ChainSummary summary;
  for (uint8_t* at = chunk->freeChain; at != nullptr;) {
    const FreeBlock block = readFree(at);
    summary.last = at;
    summary.lastSize = sizeInChunk(chunk, at, block);
    summary.largest = std::max(summary.largest, summary.lastSize);
    at = nextOf(chunk, at, block);
  }
  return summary;
}

// The largest size that the chunk can serve.
uint64_t capacityOf(const XmChunk* chunk) {
  const ChainIndex* index = chainIndexOf(chunk);
  const ChainSummary chain = index != nullptr ? summaryOf(chunk, index) : walkToSummary(chunk);
  const bool touches = chain.last != nullptr && chain.last + chain.lastSize == chunk->bump;
  return std::max<uint64_t>(chain.largest, roomOf(chunk) + (touches ? chain.lastSize : 0));
}

Taken takeByDirectory(XmPool* pool, ChunkDirectory* directory, uint32_t size) {
  for (;;) {
    const ChunkPlace candidate = firstCandidate(directory, size);
    if (candidate.chunk == nullptr) return {nullptr, false};
    const Taken block = takeFromChunk(pool, candidate.chunk, size);
    if (block.at != nullptr) return block;
    lowerBound(directory, candidate, static_cast<uint32_t>(std::min<uint64_t>(capacityOf(candidate.chunk), size - 1)));
  }
}

Taken takeFromChunks(XmPool* pool, uint32_t size) {
  if (ChunkDirectory* directory = directoryOf(pool); directory != nullptr) {
    return takeByDirectory(pool, directory, size);
  }
  int passed = 0;
  for (XmChunk* chunk = pool->chunks; chunk != nullptr; chunk = chunk->next) {
    const Taken block = takeFromChunk(pool, chunk, size);
    if (block.at != nullptr) return block;
    if (++passed == manyChunks) addDirectory(pool);
  }
  return {nullptr, false};
}

// A free block that a given one has become, or become part of.
struct Linked {
  uint8_t* at;
  uint64_t size;
};

// Links a block between the two, and makes one block of those that touch.
Linked linkFree(XmChunk* chunk, ChainStep place, uint8_t* block, uint64_t size) {
  Linked linked{block, size};
  uint8_t* next = place.at;
  const uint8_t* absorbed = nullptr;
  if (next != nullptr && block + size == next) {
    const FreeBlock record = readFree(next);
    linked.size += record.size;
    absorbed = next;
    next = nextOf(chunk, next, record);
  }
  if (place.before != nullptr) {
    const uint32_t beforeSize = readFree(place.before).size;
    if (place.before + beforeSize == block) linked = {place.before, beforeSize + linked.size};
  }
  writeFree(chunk, linked.at, linked.size, next);
  if (linked.at == block) setNext(chunk, place.before, block);
  if (ChainIndex* index = chainIndexOf(chunk); index != nullptr) noteGiven(chunk, index, linked.at, absorbed, next);
  return linked;
}

// What the chunk can serve may have become more.
void noteCapacity(const XmPool* pool, const XmChunk* chunk, Linked linked) {
  ChunkDirectory* directory = directoryOf(pool);
  if (directory == nullptr) return;
  constexpr uint64_t largest = std::numeric_limits<uint32_t>::max();
  const uint64_t room = linked.at + linked.size == chunk->bump ? roomOf(chunk) : 0;
  raiseBound(directory, chunk, static_cast<uint32_t>(std::min(linked.size + room, largest)));
}

bool isPlace(const XmChunk* chunk, const uint8_t* block) {
  return static_cast<size_t>(block - chunk->start) % blockAlignment == 0;
}

}  // namespace

Taken takeBlock(const VeldInputVector* host, XmPool* pool, uint32_t size) {
  const Taken block = takeFromChunks(pool, size);
  if (block.at != nullptr) return block;
  XmChunk* chunk = growPool(host, pool, growthFor(pool, size));
  return chunk != nullptr ? takeAtBump(chunk, size) : Taken{nullptr, false};
}

void giveBlock(XmPool* pool, XmChunk* chunk, uint8_t* block, uint32_t size) {
  const ChainStep place = findPlace(pool, chunk, block);
  const uint8_t* end = block + size;
  const uint8_t* beforeEnd = place.before != nullptr ? place.before + readFree(place.before).size : nullptr;
  const bool overlaps = beforeEnd > block || (place.at != nullptr && place.at < end) || end > chunk->end;
  if (overlaps) {
    platform::writeError(overlapMessage, sizeof overlapMessage - 1);
    // A block inside a free one is on the chain already: linked again, it would come to follow itself.
    if (place.before == block || beforeEnd >= end) return;
    // The record of a block that begins in the last bytes wouldn't fit.
    if (chunk->end - block < ptrdiff_t{sizeof(FreeBlock)}) return;
  }
  if (overlaps || !isPlace(chunk, block)) forbidChainIndex(pool->context, chunk);
  closeMemory(block, static_cast<size_t>(std::min<const uint8_t*>(end, chunk->end) - block));
  noteCapacity(pool, chunk, linkFree(chunk, place, block, size));
}

}  // namespace veldnls::hs
