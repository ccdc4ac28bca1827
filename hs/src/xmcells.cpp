// Fixed cells. A free cell links the next one in its second word.
#include "hs/src/chunk_directory.h"
#include "hs/src/poison.h"
#include "hs/src/pool.h"

namespace veldnls::hs {

namespace {

uint8_t* linkOf(uint8_t* cell) { return cell + sizeof(uint8_t*); }

// The last cell of a chunk is never handed out: when just one more would fit, the chunk counts as used up.
Taken takeFreshCell(XmChunk* chunk, uint32_t cellSize) {
  const Taken taken = takeAtBump(chunk, cellSize);
  const uint64_t room = roomOf(chunk);
  if (room >= cellSize && room < 2 * uint64_t{cellSize}) chunk->bump = nullptr;
  return taken;
}

// The address is that of a cell. Cells begin anew in each step by which a chunk grew.
bool isCell(const XmPool* pool, const XmChunk* chunk, const uint8_t* address) {
  const uint32_t step = (chunk->state & XM_CHUNK_FIRST) != 0 ? pool->initialSize : pool->extensionSize;
  const size_t offset = static_cast<size_t>(address - chunk->start) % step;
  return offset % pool->cellSize == 0 && step - offset >= pool->cellSize;
}

Taken takeFromChunk(const XmPool* pool, XmChunk* chunk) {
  if (uint8_t* cell = chunk->freeChain; cell != nullptr) {
    chunk->freeChain = readClosed<uint8_t*>(linkOf(cell));
    return {cell, false};
  }
  return roomOf(chunk) >= pool->cellSize ? takeFreshCell(chunk, pool->cellSize) : Taken{nullptr, false};
}

Taken takeByDirectory(const XmPool* pool, ChunkDirectory* directory) {
  for (;;) {
    const ChunkPlace candidate = firstCandidate(directory, pool->cellSize);
    if (candidate.chunk == nullptr) return {nullptr, false};
    const Taken cell = takeFromChunk(pool, candidate.chunk);
    if (cell.at != nullptr) return cell;
    lowerBound(directory, candidate, 0);
  }
}

}  // namespace

Taken takeExistingCell(XmPool* pool) {
  if (ChunkDirectory* directory = directoryOf(pool); directory != nullptr) return takeByDirectory(pool, directory);
  int passed = 0;
  for (XmChunk* chunk = pool->chunks; chunk != nullptr; chunk = chunk->next) {
    const Taken cell = takeFromChunk(pool, chunk);
    if (cell.at != nullptr) return cell;
    if (++passed == manyChunks) addDirectory(pool);
  }
  return {nullptr, false};
}

Taken takeCell(const VeldInputVector* host, XmPool* pool) {
  const Taken cell = takeExistingCell(pool);
  if (cell.at != nullptr) return cell;
  XmChunk* chunk = growPool(host, pool, pool->extensionSize);
  return chunk != nullptr ? takeFreshCell(chunk, pool->cellSize) : Taken{nullptr, false};
}

void giveCell(XmPool* pool, uint8_t* cell) {
  XmChunk* chunk = chunkOf(pool, cell);
  if (chunk == nullptr || !isCell(pool, chunk, cell)) return;
  closeMemory(cell, pool->cellSize);
  writeClosed(linkOf(cell), chunk->freeChain);
  chunk->freeChain = cell;
  if (ChunkDirectory* directory = directoryOf(pool); directory != nullptr) raiseBound(directory, chunk, pool->cellSize);
}

}  // namespace veldnls::hs
