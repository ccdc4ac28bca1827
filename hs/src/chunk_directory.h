// The directory of a pool of variable blocks with many chunks: which chunk holds an address, and which is the first
// that may serve a size. A pool does without it when there is no memory for it. REQUIRE, all: the pool's lock.
#pragma once

#include "hs/src/pool.h"

namespace veldnls::hs {

struct ChunkDirectory;

// The directory of a pool, or null.
ChunkDirectory* directoryOf(const XmPool* pool);

// Gives a pool a directory, if there is memory.
void addDirectory(XmPool* pool);
void dropDirectory(XmPool* pool);

// The chunk in which an address lies, or null.
XmChunk* chunkAt(const ChunkDirectory* directory, const uint8_t* address);

// A chunk by its place in the pool's list; null for none.
struct ChunkPlace {
  XmChunk* chunk;
  uint32_t place;
};

// For each chunk there is a bound: it can't serve a larger size. New chunks, and chunks that grew, have none yet.
ChunkPlace firstCandidate(const ChunkDirectory* directory, uint32_t size);
// The chunk has been found to serve no more than `bytes`.
void lowerBound(ChunkDirectory* directory, ChunkPlace chunk, uint32_t bytes);
// The chunk may now serve `bytes`.
void raiseBound(ChunkDirectory* directory, const XmChunk* chunk, uint32_t bytes);

// A chunk has come to the end of the list.
void noteNewChunk(XmPool* pool, XmChunk* chunk);
// A chunk has got more memory at its end.
void noteGrownChunk(XmPool* pool, const XmChunk* chunk);

}  // namespace veldnls::hs
