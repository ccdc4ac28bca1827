// Mark-style pools: blocks are cut off one after the other and end with the pool.
#include "hs/src/chunk_directory.h"
#include "hs/src/pool.h"

namespace veldnls::hs {

namespace {

XmChunk* walkToRoom(XmPool* pool, uint32_t size) {
  int passed = 0;
  XmChunk** link = &pool->chunks;
  for (; *link != nullptr && roomOf(*link) < size; ++passed) link = &(*link)->next;
  XmChunk* chunk = *link;
  if (chunk != nullptr) {
    *link = chunk->next;
    chunk->next = pool->chunks;
    pool->chunks = chunk;
  }
  if (passed >= manyChunks) addDirectory(pool);
  return chunk;
}

// The first chunk that has room, moved to the head of the pool; or null.
XmChunk* bringToHead(XmPool* pool, uint32_t size) {
  ChunkDirectory* directory = directoryOf(pool);
  if (directory == nullptr) return walkToRoom(pool, size);
  if (roomOf(pool->chunks) >= size) return pool->chunks;
  for (;;) {
    const ChunkPlace candidate = firstCandidate(directory, size);
    if (candidate.chunk == nullptr) return nullptr;
    const uint64_t room = roomOf(candidate.chunk);
    if (room >= size) {
      moveToHead(pool, candidate);
      return candidate.chunk;
    }
    lowerBound(directory, candidate, static_cast<uint32_t>(room));
  }
}

}  // namespace

Taken takeMark(const VeldInputVector* host, XmPool* pool, uint32_t size) {
  XmChunk* chunk = bringToHead(pool, size);
  if (chunk == nullptr) chunk = growPool(host, pool, growthFor(pool, size));
  return chunk != nullptr ? takeAtBump(chunk, size) : Taken{nullptr, false};
}

}  // namespace veldnls::hs
