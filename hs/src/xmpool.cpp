// Pools as a whole: making, ending, emptying.
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

bool isBuiltIn(const XmPool* pool) {
  const XmContext* context = pool->context;
  return pool == &context->poolHeaders || pool == &context->chunkDescriptors || pool == &context->supervisor;
}

XmPool* takeHeader(const VeldInputVector* host, XmContext* context) {
  void* cell = xmalloc(host, &context->poolHeaders, sizeof(XmPool), 0);
  return cell != nullptr ? new (cell) XmPool{} : nullptr;
}

void giveHeader(XmContext* context, XmPool* pool) {
  std::memset(static_cast<void*>(pool), deadByte, sizeof *pool);
  const PoolLock lock(&context->poolHeaders);
  giveCell(&context->poolHeaders, reinterpret_cast<uint8_t*>(pool));
}

void linkPool(XmContext* context, XmPool* pool) {
  const ContextLock lock(context);
  pool->next = context->pools;
  if (pool->next != nullptr) pool->next->previous = pool;
  context->pools = pool;
}

void unlinkPool(XmContext* context, XmPool* pool) {
  const ContextLock lock(context);
  (pool->previous != nullptr ? pool->previous->next : context->pools) = pool->next;
  if (pool->next != nullptr) pool->next->previous = pool->previous;
  if (context->defaultPool == pool) context->defaultPool = nullptr;
}

}  // namespace

bool addFirstChunk(const VeldInputVector* host, XmPool* pool) {
  const uint64_t size = roundUp(pool->initialSize, XM_GRANULE);
  if (size > std::numeric_limits<uint32_t>::max()) return false;
  pool->initialSize = static_cast<uint32_t>(size);
  XmChunk* chunk = growPool(host, pool, pool->initialSize);
  if (chunk == nullptr) return false;
  chunk->state |= XM_CHUNK_FIRST;
  return true;
}

XmPool* createPool(const VeldInputVector* host, XmContext* context, uint32_t initialSize, uint32_t extensionSize,
                   uint32_t flags) {
  // The largest step that is a multiple of the granule stands for all above it.
  constexpr uint32_t largestStep = std::numeric_limits<uint32_t>::max() / XM_GRANULE * XM_GRANULE;
  XmPool* pool = takeHeader(host, context);
  if (pool == nullptr) return nullptr;
  std::memcpy(pool->eyeCatcher, "POOL", sizeof pool->eyeCatcher);
  pool->context = context;
  pool->flags = flags;
  pool->kind = (flags & XM_MARK_STYLE) != 0 ? XM_KIND_MARK : XM_KIND_VARIABLE;
  pool->initialSize = initialSize;
  pool->extensionSize =
      extensionSize > largestStep ? largestStep : static_cast<uint32_t>(roundUp(extensionSize, XM_GRANULE));
  if (htMutexInit(&pool->lock, nullptr) != 0) {
    giveHeader(context, pool);
    return nullptr;
  }
  if (initialSize != 0 && !addFirstChunk(host, pool)) {
    htMutexDestroy(&pool->lock);
    giveHeader(context, pool);
    return nullptr;
  }
  pool->creator = htThreadSelf();
  linkPool(context, pool);
  return pool;
}

}  // namespace veldnls::hs

using namespace veldnls::hs;

XmPool* xmcreate(const VeldInputVector* host, uint32_t initialSize, uint32_t extensionSize, uint32_t flags) {
  XmContext* context = contextOf(host);
  return context != nullptr ? createPool(host, context, initialSize, extensionSize, flags) : nullptr;
}

uint32_t xmcreateChecked(const VeldInputVector* host, XmPool** out, void* /*unused*/, uint32_t initialSize,
                         uint32_t extensionSize, uint32_t flags) {
  *out = xmcreate(host, initialSize, extensionSize, flags);
  return *out != nullptr ? 0 : xmCreateFailed;
}

void xmdestroy(const VeldInputVector* host, XmPool* handle) {
  XmPool* pool = resolvePool(host, handle);
  if (pool == nullptr || isBuiltIn(pool)) return;
  dropDirectory(pool);
  while (pool->chunks != nullptr) {
    XmChunk* chunk = pool->chunks;
    pool->chunks = chunk->next;
    releaseChunk(host, pool, chunk);
  }
  XmContext* context = pool->context;
  unlinkPool(context, pool);
  htMutexDestroy(&pool->lock);
  giveHeader(context, pool);
}

uint32_t xmreset(const VeldInputVector* host, XmPool* handle) {
  XmPool* pool = resolvePool(host, handle);
  if (pool == nullptr) return xmNullPool;
  const PoolLock lock(pool);
  dropDirectory(pool);
  for (XmChunk* chunk = pool->chunks; chunk != nullptr; chunk = chunk->next) {
    chunk->bump = chunk->start;
    chunk->freeChain = nullptr;
    dropChainIndex(pool->context, chunk);
    chunk->state &= ~XM_CHUNK_ZERO;
    closeMemory(chunk->start, static_cast<size_t>(chunk->end - chunk->start));
  }
  return 0;
}
