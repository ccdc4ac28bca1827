// Mark-style pools: blocks are cut off one after the other and end with the pool.
#include "hs/src/pool.h"

namespace veldnls::hs {

namespace {

// The chunk that has room, moved to the head of the pool; or null.
XmChunk* bringToHead(XmPool* pool, uint32_t size) {
  for (XmChunk** link = &pool->chunks; *link != nullptr; link = &(*link)->next) {
    XmChunk* chunk = *link;
    if (roomOf(chunk) < size) continue;
    *link = chunk->next;
    chunk->next = pool->chunks;
    pool->chunks = chunk;
    return chunk;
  }
  return nullptr;
}

}  // namespace

Taken takeMark(const VeldInputVector* host, XmPool* pool, uint32_t size) {
  XmChunk* chunk = bringToHead(pool, size);
  if (chunk == nullptr) chunk = growPool(host, pool, growthFor(pool, size));
  return chunk != nullptr ? takeAtBump(chunk, size) : Taken{nullptr, false};
}

}  // namespace veldnls::hs
