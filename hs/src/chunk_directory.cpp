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
// Below every size; 0 tells that a place is empty.
constexpr uint32_t leastBound = 1;

}  // namespace

// Stands at the head of its memory. Behind it: the chunks by place, the entries by address, the tree's numbers.
//
// The entries have a gap where the last one was put in: new chunks lie beside each other mostly, if not always above
// all older ones, and so few entries are moved.
struct ChunkDirectory {
  MaxTree bounds;
  uint32_t count;       // of the chunks
  uint32_t gap;         // entries below the gap
  uint32_t freePlaces;  // at the end where new chunks come into the list
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

Entry* gapBegin(const ChunkDirectory* directory) { return directory->entries + directory->gap; }

Entry* gapEnd(const ChunkDirectory* directory) {
  return gapBegin(directory) + (directory->capacity - directory->count);
}

// The first entry on this side of the gap whose chunk begins above an address, or `end`.
Entry* entryAbove(Entry* begin, Entry* end, const uint8_t* address) {
  return std::upper_bound(begin, end, address,
                          [](const uint8_t* value, const Entry& entry) { return value < entry.start; });
}

bool isBelowGap(const ChunkDirectory* directory, const uint8_t* address) {
  return directory->gap > 0 && address < gapBegin(directory)[-1].start;
}

// The last entry whose chunk doesn't begin above an address, or null.
Entry* entryFor(const ChunkDirectory* directory, const uint8_t* address) {
  Entry* begin = gapBegin(directory);
  Entry* end = gapEnd(directory);
  if (!isBelowGap(directory, address)) {
    Entry* above = entryAbove(end, directory->entries + directory->capacity, address);
    if (above != end) return above - 1;
    return directory->gap > 0 ? begin - 1 : nullptr;
  }
  Entry* above = entryAbove(directory->entries, begin, address);
  return above != directory->entries ? above - 1 : nullptr;
}

// Moves the gap to where the entry of a new chunk belongs, and puts it in.
void addEntry(ChunkDirectory* directory, Entry added) {
  Entry* begin = gapBegin(directory);
  Entry* end = gapEnd(directory);
  if (isBelowGap(directory, added.start)) {
    Entry* above = entryAbove(directory->entries, begin, added.start);
    std::copy_backward(above, begin, end);
    begin = above;
  } else {
    Entry* above = entryAbove(end, directory->entries + directory->capacity, added.start);
    begin = std::copy(end, above, begin);
  }
  *begin = added;
  directory->gap = static_cast<uint32_t>(begin - directory->entries) + 1;
  ++directory->count;
}

void setPlace(ChunkDirectory* directory, uint32_t place, XmChunk* chunk, uint32_t bound) {
  directory->chunks[place] = chunk;
  directory->bounds.set(place, bound);
}

bool growsAtHead(const XmPool* pool) { return pool->kind == XM_KIND_MARK; }

// The place for a chunk that comes into the list. REQUIRES: there is a free one.
uint32_t takePlace(ChunkDirectory* directory, const XmPool* pool) {
  return growsAtHead(pool) ? --directory->freePlaces : directory->capacity - directory->freePlaces--;
}

void listChunks(ChunkDirectory* directory, const XmPool* pool, uint32_t count) {
  directory->freePlaces = directory->capacity - count;
  uint32_t place = growsAtHead(pool) ? directory->freePlaces : 0;
  for (XmChunk* chunk = pool->chunks; chunk != nullptr; chunk = chunk->next, ++place) {
    directory->entries[directory->count++] = {chunk->start, place};
    setPlace(directory, place, chunk, noBound);
  }
  directory->gap = count;
  std::sort(directory->entries, gapBegin(directory),
            [](const Entry& left, const Entry& right) { return left.start < right.start; });
}

}  // namespace

ChunkDirectory* directoryOf(const XmPool* pool) { return static_cast<ChunkDirectory*>(pool->index); }

void addDirectory(XmPool* pool) {
  if (pool->index != nullptr) return;
  uint32_t count = 0;
  for (const XmChunk* chunk = pool->chunks; chunk != nullptr; chunk = chunk->next) ++count;
  ChunkDirectory* directory = makeDirectory(pool->context, 2 * count);
  if (directory == nullptr) return;
  listChunks(directory, pool, count);
  pool->index = directory;
}

void dropDirectory(XmPool* pool) {
  ChunkDirectory* directory = directoryOf(pool);
  if (directory == nullptr) return;
  giveIndexMemory(pool->context, reinterpret_cast<uint8_t*>(directory), directory->bytes);
  pool->index = nullptr;
}

XmChunk* chunkAt(const ChunkDirectory* directory, const uint8_t* address) {
  const Entry* entry = entryFor(directory, address);
  if (entry == nullptr) return nullptr;
  XmChunk* chunk = directory->chunks[entry->place];
  return address < chunk->end ? chunk : nullptr;
}

XmChunk* lastChunk(const ChunkDirectory* directory) {
  return directory->chunks[directory->capacity - directory->freePlaces - 1];
}

ChunkPlace firstCandidate(const ChunkDirectory* directory, uint32_t size) {
  const uint32_t place = directory->bounds.firstFrom(size);
  return place != MaxTree::nowhere ? ChunkPlace{directory->chunks[place], place} : ChunkPlace{nullptr, place};
}

void lowerBound(ChunkDirectory* directory, ChunkPlace chunk, uint32_t bytes) {
  directory->bounds.set(chunk.place, std::max(bytes, leastBound));
}

void raiseBound(ChunkDirectory* directory, const XmChunk* chunk, uint32_t bytes) {
  const uint32_t place = entryFor(directory, chunk->start)->place;
  if (directory->bounds.at(place) < bytes) directory->bounds.set(place, bytes);
}

void noteNewChunk(XmPool* pool, XmChunk* chunk) {
  ChunkDirectory* directory = directoryOf(pool);
  if (directory == nullptr) return;
  if (directory->freePlaces == 0) {
    dropDirectory(pool);
    return;
  }
  const uint32_t place = takePlace(directory, pool);
  addEntry(directory, {chunk->start, place});
  setPlace(directory, place, chunk, noBound);
}

void noteGrownChunk(XmPool* pool, const XmChunk* chunk) {
  if (ChunkDirectory* directory = directoryOf(pool); directory != nullptr) raiseBound(directory, chunk, noBound);
}

void moveToHead(XmPool* pool, ChunkPlace moved) {
  ChunkDirectory* directory = directoryOf(pool);
  XmChunk* before = directory->chunks[directory->bounds.lastBefore(moved.place)];
  before->next = moved.chunk->next;
  moved.chunk->next = pool->chunks;
  pool->chunks = moved.chunk;
  if (directory->freePlaces == 0) {
    dropDirectory(pool);
    return;
  }
  const uint32_t place = takePlace(directory, pool);
  entryFor(directory, moved.chunk->start)->place = place;
  setPlace(directory, place, moved.chunk, directory->bounds.at(moved.place));
  setPlace(directory, moved.place, nullptr, 0);
}

}  // namespace veldnls::hs
