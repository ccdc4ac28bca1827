// The directory of a pool with many chunks: which chunk holds an address, which is the first of the list that may serve
// a size, and where the list ends. A pool does without it when there is no memory for it. REQUIRE, all: the pool's
// lock.
#pragma once

#include "hs/src/pool.h"

namespace veldnls::hs {

struct ChunkDirectory;

// A walk that passes so many chunks shows that a directory would pay.
inline constexpr int manyChunks = 16;

// The directory of a pool, or null.
ChunkDirectory* directoryOf(const XmPool* pool);

// Gives a pool, which has chunks, a directory, if there is memory.
void addDirectory(XmPool* pool);
void dropDirectory(XmPool* pool);

// The chunk in which an address lies, or null.
XmChunk* chunkAt(const ChunkDirectory* directory, const uint8_t* address);

// The chunk at the end of the list. Not of a mark-style pool.
XmChunk* lastChunk(const ChunkDirectory* directory);

// A chunk by its place; places ascend along the pool's list. Null for none.
struct ChunkPlace {
  XmChunk* chunk;
  uint32_t place;
};

// For each chunk there is a bound: it can't serve a larger size. New chunks, and chunks that grew, have none yet.
// `size` isn't below the alignment of blocks.
ChunkPlace firstCandidate(const ChunkDirectory* directory, uint32_t size);
// The chunk has been found to serve no more than `bytes`.
void lowerBound(ChunkDirectory* directory, ChunkPlace chunk, uint32_t bytes);
// The chunk may now serve `bytes`.
void raiseBound(ChunkDirectory* directory, const XmChunk* chunk, uint32_t bytes);

// A chunk has come into the list: in a mark-style pool at the head, else at the end.
void noteNewChunk(XmPool* pool, XmChunk* chunk);
// A chunk has got more memory at its end.
void noteGrownChunk(XmPool* pool, const XmChunk* chunk);

// Moves a chunk of a mark-style pool to the head of the list. REQUIRES: it isn't there, and `chunk` is what
// firstCandidate has just given.
void moveToHead(XmPool* pool, ChunkPlace chunk);

}  // namespace veldnls::hs
