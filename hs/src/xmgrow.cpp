// Chunks: how a pool gets and gives back its memory, and where their descriptors come from.
#include <cstring>
#include <limits>
#include <new>

#include "hs/src/chain_index.h"
#include "hs/src/chunk_directory.h"
#include "hs/src/poison.h"
#include "hs/src/pool.h"
#include "hs/src/rounding.h"

namespace veldnls::hs {

namespace {

size_t sizeOf(const XmChunk* chunk) { return static_cast<size_t>(chunk->end - chunk->start); }

XmChunk** tailOf(XmPool* pool) {
  if (const ChunkDirectory* directory = directoryOf(pool); directory != nullptr) return &lastChunk(directory)->next;
  XmChunk** tail = &pool->chunks;
  while (*tail != nullptr) tail = &(*tail)->next;
  return tail;
}

// New chunks of mark-style pools come to the head.
void linkChunk(XmPool* pool, XmChunk* chunk) {
  XmChunk** link = pool->kind == XM_KIND_MARK ? &pool->chunks : tailOf(pool);
  chunk->next = *link;
  *link = chunk;
  noteNewChunk(pool, chunk);
}

// Gives the pool of descriptors a chunk whose own descriptor stands in its head, so that growing asks for no descriptor
// of another chunk. Returns the cell behind that descriptor, or null.
uint8_t* addDescriptorChunk(const VeldInputVector* host, XmPool* pool) {
  const bool first = pool->chunks == nullptr;
  const uint32_t size = first ? pool->initialSize : pool->extensionSize;
  auto* memory = static_cast<uint8_t*>(takeSystem(host, pool->context, size, nullptr));
  if (memory == nullptr) return nullptr;
  closeMemory(memory, size);
  openMemory(memory, sizeof(XmChunk));
  auto* chunk = new (memory) XmChunk{};
  chunk->state = first ? XM_CHUNK_FIRST : 0;
  chunk->start = memory;
  chunk->end = memory + size;
  chunk->bump = memory + 2 * sizeof(XmChunk);
  chunk->owner = pool;
  linkChunk(pool, chunk);
  return memory + sizeof(XmChunk);
}

XmChunk* takeDescriptor(const VeldInputVector* host, XmContext* context) {
  XmPool* pool = &context->chunkDescriptors;
  const PoolLock lock(pool);
  if (!mayAllocate(host, sizeof(XmChunk))) return nullptr;
  uint8_t* cell = takeExistingCell(pool).at;
  if (cell == nullptr) cell = addDescriptorChunk(host, pool);
  if (cell == nullptr) return nullptr;
  openMemory(cell, sizeof(XmChunk));
  return new (cell) XmChunk{};
}

void giveDescriptor(XmContext* context, XmChunk* descriptor) {
  std::memset(static_cast<void*>(descriptor), deadByte, sizeof *descriptor);
  const PoolLock lock(&context->chunkDescriptors);
  giveCell(&context->chunkDescriptors, reinterpret_cast<uint8_t*>(descriptor));
}

// `*zero` tells whether zeroed memory is wanted, and then whether it is zero.
void* takeChunkMemory(const VeldInputVector* host, XmPool* pool, uint32_t size, int* zero) {
  if ((pool->flags & XM_HIGH_MEMORY) != 0) {
    *zero = 0;
    return takeHigh(host, pool->context, size);
  }
  if ((pool->flags & XM_EXECUTABLE) != 0) return hscgmalloc(host, size, zero);
  return takeSystem(host, pool->context, size, zero);
}

void giveChunkMemory(const VeldInputVector* host, XmPool* pool, const XmChunk* chunk) {
  const auto size = static_cast<uint32_t>(sizeOf(chunk));
  if ((pool->flags & XM_HIGH_MEMORY) != 0) {
    giveHigh(host, pool->context, chunk->start, size);
  } else if ((pool->flags & XM_EXECUTABLE) != 0) {
    hscgfree(host, chunk->start, size);
  } else {
    giveSystem(pool->context, chunk->start, size);
  }
}

// The chunk that new memory continues, or null. Offsets in a chunk are 32 bits.
XmChunk* chunkBefore(const XmPool* pool, const uint8_t* memory, uint32_t size) {
  XmChunk* chunk = chunkOf(pool, memory - 1);
  if (chunk == nullptr || (chunk->state & XM_CHUNK_FIRST) != 0) return nullptr;
  return sizeOf(chunk) + uint64_t{size} <= std::numeric_limits<uint32_t>::max() ? chunk : nullptr;
}

void clearFromBump(XmChunk* chunk) {
  const size_t room = roomOf(chunk);
  openMemory(chunk->bump, room);
  std::memset(chunk->bump, 0, room);
  closeMemory(chunk->bump, room);
}

void extendChunk(XmChunk* chunk, uint32_t size, uint32_t zeroBit) {
  if (chunk->bump == nullptr) {
    chunk->bump = chunk->end;
    chunk->state = (chunk->state & ~XM_CHUNK_ZERO) | zeroBit;
  } else if (zeroBit == 0) {
    chunk->state &= ~XM_CHUNK_ZERO;
  } else if ((chunk->state & XM_CHUNK_ZERO) == 0) {
    clearFromBump(chunk);
    chunk->state |= XM_CHUNK_ZERO;
  }
  chunk->end += size;
}

}  // namespace

XmChunk* growPool(const VeldInputVector* host, XmPool* pool, uint32_t size) {
  if (size == 0) return nullptr;
  XmChunk* chunk = takeDescriptor(host, pool->context);
  if (chunk == nullptr) return nullptr;
  int zero = (pool->flags & XM_ZERO) != 0 ? 1 : 0;
  auto* memory = static_cast<uint8_t*>(takeChunkMemory(host, pool, size, &zero));
  if (memory == nullptr) {
    giveDescriptor(pool->context, chunk);
    return nullptr;
  }
  closeMemory(memory, size);
  const uint32_t zeroBit = zero != 0 ? XM_CHUNK_ZERO : 0;
  if (XmChunk* old = chunkBefore(pool, memory, size); old != nullptr) {
    extendChunk(old, size, zeroBit);
    fitChainIndex(pool->context, old);
    noteGrownChunk(pool, old);
    giveDescriptor(pool->context, chunk);
    return old;
  }
  chunk->state = zeroBit;
  chunk->start = memory;
  chunk->end = memory + size;
  chunk->bump = memory;
  linkChunk(pool, chunk);
  return chunk;
}

uint32_t growthFor(const XmPool* pool, uint64_t size) {
  if (pool->extensionSize == 0) return 0;
  const uint64_t step = roundUp(size, pool->extensionSize);
  return step <= std::numeric_limits<uint32_t>::max() ? static_cast<uint32_t>(step) : 0;
}

void releaseChunk(const VeldInputVector* host, XmPool* pool, XmChunk* chunk) {
  dropChainIndex(pool->context, chunk);
  giveChunkMemory(host, pool, chunk);
  giveDescriptor(pool->context, chunk);
}

XmChunk* chunkOf(const XmPool* pool, const uint8_t* address) {
  if (const ChunkDirectory* directory = directoryOf(pool); directory != nullptr) return chunkAt(directory, address);
  XmChunk* chunk = pool->chunks;
  while (chunk != nullptr && (address < chunk->start || address >= chunk->end)) chunk = chunk->next;
  return chunk;
}

uint64_t roomOf(const XmChunk* chunk) {
  return chunk->bump != nullptr ? static_cast<uint64_t>(chunk->end - chunk->bump) : 0;
}

Taken takeAtBump(XmChunk* chunk, uint64_t size) {
  const Taken taken{chunk->bump, (chunk->state & XM_CHUNK_ZERO) != 0};
  chunk->bump += size;
  if (chunk->bump == chunk->end) chunk->bump = nullptr;
  return taken;
}

}  // namespace veldnls::hs
