// The index beside the free chain of a chunk: it tells for each group of addresses which free blocks begin there, so
// that no walk goes through more than a group. It knows nothing that the chain doesn't say, and a chunk does without it
// when there is no memory for it. REQUIRE, all: the lock of the chunk's pool.
#pragma once

#include "hs/src/free_block.h"

namespace veldnls::hs {

struct ChainIndex;

// The index of a chunk, or null.
ChainIndex* chainIndexOf(const XmChunk* chunk);

// Gives a chunk its index, if it may have one and there is memory.
void addChainIndex(const XmPool* pool, XmChunk* chunk);

// Ends a chunk's index. It may get a new one.
void dropChainIndex(XmContext* context, XmChunk* chunk);

// Ends a chunk's index, and lets it have none until it is dropped: the chain no longer has blocks apart from each
// other.
void forbidChainIndex(XmContext* context, XmChunk* chunk);

// Ends the index of a chunk that has outgrown it.
void fitChainIndex(XmContext* context, XmChunk* chunk);

// ---- Questions ----

// The first block of at least `size` bytes; `at` is null if there is none.
ChainStep firstFit(const XmChunk* chunk, const ChainIndex* index, uint32_t size);
// The last block; `at` is null in an empty chain.
ChainStep lastBlock(const XmChunk* chunk, const ChainIndex* index);
// The last free block at or below an address, and the first one above it.
ChainStep placeOf(const XmChunk* chunk, const ChainIndex* index, const uint8_t* address);
// What a chain has at most, and what it has last.
struct ChainSummary {
  uint32_t largest = 0;
  uint8_t* last = nullptr;
  uint32_t lastSize = 0;
};
ChainSummary summaryOf(const XmChunk* chunk, const ChainIndex* index);

// ---- Changes, told when the chain has them ----

// The block at `at` has left the chain, and `rest`, if not null, a block in its end, has come in its place. `next` is
// the block that follows.
void noteTaken(const XmChunk* chunk, ChainIndex* index, const uint8_t* at, uint8_t* rest, uint8_t* next);
// A block has come or grown, and `absorbed`, if not null, has become part of it. `next` is the block that follows.
void noteGiven(const XmChunk* chunk, ChainIndex* index, uint8_t* block, const uint8_t* absorbed, uint8_t* next);

}  // namespace veldnls::hs
