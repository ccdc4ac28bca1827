#include "hs/src/chunk_directory.h"

#include <algorithm>
#include <limits>
#include <new>

#include "hs/src/index_memory.h"
#include "hs/src/max_tree.h"

namespace veldnls::hs {

namespace {

struct Entry {
  const uint8_t* start;
  uint32_t place;
};

constexpr uint32_t noBound = std::numeric_limits<uint32_t>::max();

}  // namespace

// Stands at the head of its memory. Behind it: the chunks by place, the entries by address, the tree's numbers.
struct ChunkDirectory {
  MaxTree bounds;
  uint32_t count;
  uint32_t capacity;
  size_t bytes;  // of all its memory
  XmChunk** chunks;
  Entry* entries;
};

namespace {

ChunkDirectory* makeDirectory(XmContext* context, uint32_t capacity) {
  const size_t chunkBytes = capacity * sizeof(XmChunk*);
  const size_t entryBytes = capacity * sizeof(Entry);
  const size_t bytes = sizeof(ChunkDirectory) + chunkBytes + entryBytes + MaxTree::bytesFor(capacity);
  uint8_t* memory = takeIndexMemory(context, bytes);
  if (memory == nullptr) return nullptr;
  auto* directory = new (memory) ChunkDirectory{};
  uint8_t* behind = memory + sizeof(ChunkDirectory);
  directory->chunks = reinterpret_cast<XmChunk**>(behind);
  directory->entries = reinterpret_cast<Entry*>(behind + chunkBytes);
  directory->bounds.open(reinterpret_cast<uint32_t*>(behind + chunkBytes + entryBytes), capacity);
  directory->capacity = capacity;
  directory->bytes = bytes;
  return directory;
}

// The first entry whose chunk begins above an address.
Entry* entryAbove(const ChunkDirectory* directory, const uint8_t* address) {
  return std::upper_bound(directory->entries, directory->entries + directory->count, address,
                          [](const uint8_t* value, const Entry& entry) { return value < entry.start; });
}

void append(ChunkDirectory* directory, XmChunk* chunk) {
  const uint32_t place = directory->count;
  Entry* entry = entryAbove(directory, chunk->start);
  std::copy_backward(entry, directory->entries + place, directory->entries + place + 1);
  *entry = {chunk->start, place};
  directory->chunks[place] = chunk;
  directory->bounds.set(place, noBound);
  ++directory->count;
}

}  // namespace

ChunkDirectory* directoryOf(const XmPool* pool) { return static_cast<ChunkDirectory*>(pool->index); }

void addDirectory(XmPool* pool) {
  if (pool->index != nullptr) return;
  uint32_t count = 0;
  for (const XmChunk* chunk = pool->chunks; chunk != nullptr; chunk = chunk->next) ++count;
  ChunkDirectory* directory = makeDirectory(pool->context, 2 * count);
  if (directory == nullptr) return;
  for (XmChunk* chunk = pool->chunks; chunk != nullptr; chunk = chunk->next) append(directory, chunk);
  pool->index = directory;
}

void dropDirectory(XmPool* pool) {
  ChunkDirectory* directory = directoryOf(pool);
  if (directory == nullptr) return;
  giveIndexMemory(pool->context, reinterpret_cast<uint8_t*>(directory), directory->bytes);
  pool->index = nullptr;
}

XmChunk* chunkAt(const ChunkDirectory* directory, const uint8_t* address) {
  const Entry* above = entryAbove(directory, address);
  if (above == directory->entries) return nullptr;
  XmChunk* chunk = directory->chunks[above[-1].place];
  return address < chunk->end ? chunk : nullptr;
}

ChunkPlace firstCandidate(const ChunkDirectory* directory, uint32_t size) {
  const uint32_t place = directory->bounds.firstFrom(size);
  return place != MaxTree::nowhere ? ChunkPlace{directory->chunks[place], place} : ChunkPlace{nullptr, place};
}

void lowerBound(ChunkDirectory* directory, ChunkPlace chunk, uint32_t bytes) {
  directory->bounds.set(chunk.place, bytes);
}

void raiseBound(ChunkDirectory* directory, const XmChunk* chunk, uint32_t bytes) {
  const uint32_t place = entryAbove(directory, chunk->start)[-1].place;
  if (directory->bounds.at(place) < bytes) directory->bounds.set(place, bytes);
}

void noteNewChunk(XmPool* pool, XmChunk* chunk) {
  ChunkDirectory* directory = directoryOf(pool);
  if (directory == nullptr) return;
  if (directory->count < directory->capacity) {
    append(directory, chunk);
  } else {
    dropDirectory(pool);
  }
}

void noteGrownChunk(XmPool* pool, const XmChunk* chunk) {
  if (ChunkDirectory* directory = directoryOf(pool); directory != nullptr) raiseBound(directory, chunk, noBound);
}

}  // namespace veldnls::hs
