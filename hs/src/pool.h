// The inside of the pool allocator, as its units share it. Behind the first section, which tells what the host's
// records mean, functions take real pools, never special handles, and the context from the pool.
#pragma once

#include "veldnls/host.h"
#include "veldnls/hostlib/ht.h"
#include "veldnls/hostlib/xm.h"

namespace veldnls::hs {

// What xminit makes. Only XmContext is public.
struct ContextBlock {
  XmContext context;
  HtMutex highMemoryLock;  // guards the first setting of XmContext.highMemoryState
  XmRange* indexRanges;    // memory of indexes; guarded by XmContext.lock
};

inline ContextBlock* blockOf(XmContext* context) { return reinterpret_cast<ContextBlock*>(context); }

// ---- Host and context (xmcontext.cpp) ----

// The context of the host's memory record, or null.
XmContext* contextOf(const VeldInputVector* host);

// The pool that a handle means, or null.
XmPool* resolvePool(const VeldInputVector* host, XmPool* handle);

// Whether the host lets an allocation of this size go on.
bool mayAllocate(const VeldInputVector* host, uint32_t size);

class PoolLock {
 public:
  explicit PoolLock(XmPool* pool) : pool_(pool) { xmpoollock(pool_); }
  ~PoolLock() { xmpoolunlock(pool_); }
  PoolLock(const PoolLock&) = delete;
  PoolLock& operator=(const PoolLock&) = delete;

 private:
  XmPool* pool_;
};

class ContextLock {
 public:
  explicit ContextLock(XmContext* context) : context_(context) { htMutexLock(&context_->lock); }
  ~ContextLock() { htMutexUnlock(&context_->lock); }
  ContextLock(const ContextLock&) = delete;
  ContextLock& operator=(const ContextLock&) = delete;

 private:
  XmContext* context_;
};

// ---- Pools (xmpool.cpp) ----

// Gives a pool its first chunk, of `initialSize` rounded up to the granule.
bool addFirstChunk(const VeldInputVector* host, XmPool* pool);

// xmcreate in a context that the host's record needn't name yet.
XmPool* createPool(const VeldInputVector* host, XmContext* context, uint32_t initialSize, uint32_t extensionSize,
                   uint32_t flags);

// ---- Memory from the system (xmsys.cpp, hsmem.cpp) ----

// xmsysalloc and its kin for a given context.
void* takeSystem(const VeldInputVector* host, XmContext* context, uint32_t size, int* zero);
void giveSystem(XmContext* context, void* address, uint32_t size);
void* takeHigh(const VeldInputVector* host, XmContext* context, uint32_t size);
void giveHigh(const VeldInputVector* host, XmContext* context, void* address, uint32_t size);

// Sets the high-memory state up with its mutex.
void openHighMemory(const VeldInputVector* host, ContextBlock* block);

// ---- Chunks (xmgrow.cpp) ----

// Adds `size` bytes to a pool, and returns the chunk that has them: a new one, or an old one that they continue. Null,
// with nothing changed, when memory fails, or for 0 bytes. REQUIRES: the pool's lock, or a pool that no one else knows.
XmChunk* growPool(const VeldInputVector* host, XmPool* pool, uint32_t size);

// The step by which a pool grows to hold `size` more bytes; 0 when it can't.
uint32_t growthFor(const XmPool* pool, uint64_t size);

// Gives back the memory of a chunk, by the flags of its pool, and its descriptor, filled with 0x11.
void releaseChunk(const VeldInputVector* host, XmPool* pool, XmChunk* chunk);

// The chunk of the pool in which an address lies, or null.
XmChunk* chunkOf(const XmPool* pool, const uint8_t* address);

// Bytes from `bump` to the end of the chunk; 0 when nothing remains.
uint64_t roomOf(const XmChunk* chunk);

// Memory that an allocation got. It is closed still (poison.h).
struct Taken {
  uint8_t* at;  // null: none
  bool zero;    // it is known to be zero
};

// Takes bytes at `bump`. REQUIRES: there is room for them.
Taken takeAtBump(XmChunk* chunk, uint64_t size);

// ---- Kinds of pool (xmblocks.cpp, xmcells.cpp, xmmark.cpp). REQUIRE: the pool's lock. ----

// Sizes and addresses of blocks are multiples of this.
inline constexpr uint32_t blockAlignment = 8;

// A block of exactly `size` bytes, a multiple of `blockAlignment`.
Taken takeBlock(const VeldInputVector* host, XmPool* pool, uint32_t size);
// Frees a block of `size` bytes, a multiple of `blockAlignment`, that begins in the chunk.
void giveBlock(XmPool* pool, XmChunk* chunk, uint8_t* block, uint32_t size);

// A cell, without growing.
Taken takeExistingCell(XmPool* pool);
Taken takeCell(const VeldInputVector* host, XmPool* pool);
// Ignores what isn't the address of a cell.
void giveCell(XmPool* pool, uint8_t* cell);

// `size` bytes, a multiple of `blockAlignment`.
Taken takeMark(const VeldInputVector* host, XmPool* pool, uint32_t size);

// Records that die are filled with this byte, so that a use after their end shows in a dump.
inline constexpr int deadByte = 0x11;

}  // namespace veldnls::hs
