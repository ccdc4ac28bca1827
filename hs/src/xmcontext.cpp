// The context of all pools: its making, its end, and what a handle means in it.
#include <array>
#include <atomic>
#include <cstring>
#include <new>

#include "hs/src/platform/platform.h"
#include "hs/src/pool.h"
#include "hs/src/range.h"

namespace veldnls::hs {

namespace {

constexpr uint32_t initialLimit = 0x7FFFFFFF;

constexpr uint32_t cellPoolInitial = 0x8000;
constexpr uint32_t cellPoolExtension = 0x4000;
constexpr uint32_t supervisorInitial = 0x10000;
constexpr uint32_t supervisorExtension = 0x100000;
constexpr uint32_t defaultPoolInitial = 0x2000;
constexpr uint32_t defaultPoolExtension = 0x1000;

void setBuiltIn(XmContext* context, XmPool* pool, const char* eyeCatcher, int32_t kind, uint32_t cellSize) {
  std::memcpy(pool->eyeCatcher, eyeCatcher, sizeof pool->eyeCatcher);
  pool->kind = kind;
  pool->cellSize = cellSize;
  pool->initialSize = kind == XM_KIND_CELLS ? cellPoolInitial : supervisorInitial;
  pool->extensionSize = kind == XM_KIND_CELLS ? cellPoolExtension : supervisorExtension;
  pool->creator = htThreadSelf();
  pool->context = context;
}

void setContext(XmContext* context) {
  context->pageSize = static_cast<int32_t>(platform::pageSize());
  context->granule = XM_GRANULE;
  context->limit = initialLimit;
  context->limit2 = initialLimit;
  setBuiltIn(context, &context->poolHeaders, "POOH", XM_KIND_CELLS, sizeof(XmPool));
  setBuiltIn(context, &context->chunkDescriptors, "PUDL", XM_KIND_CELLS, sizeof(XmChunk));
  setBuiltIn(context, &context->supervisor, "SUPV", XM_KIND_VARIABLE, 0);
  context->supervisor.flags = XM_LENGTH_HEADER;
}

// The first descriptor that is asked for gives the pool of descriptors its own first chunk.
bool addPools(const VeldInputVector* host, XmContext* context) {
  if (!addFirstChunk(host, &context->poolHeaders) || !addFirstChunk(host, &context->supervisor)) return false;
  context->defaultPool = createPool(host, context, defaultPoolInitial, defaultPoolExtension, XM_LENGTH_HEADER);
  return context->defaultPool != nullptr;
}

std::array<HtMutex*, 4> locksOf(XmContext* context) {
  return {&context->lock, &context->poolHeaders.lock, &context->chunkDescriptors.lock, &context->supervisor.lock};
}

// All of them, or none.
bool makeLocks(XmContext* context) {
  const auto locks = locksOf(context);
  for (size_t made = 0; made < locks.size(); ++made) {
    if (htMutexInit(locks[made], nullptr) == 0) continue;
    while (made > 0) htMutexDestroy(locks[--made]);
    return false;
  }
  return true;
}

// The chunks of the built-in pools end with the ranges.
void closeContext(XmContext* context) {
  for (HtMutex* lock : locksOf(context)) htMutexDestroy(lock);
  endRanges(&context->ranges);
  endRanges(&blockOf(context)->indexRanges);
}

bool openContext(const VeldInputVector* host, XmContext* context) {
  setContext(context);
  if (!makeLocks(context)) return false;
  if (addPools(host, context)) return true;
  closeContext(context);
  return false;
}

XmPool* supervisorOf(XmContext* context) { return context != nullptr ? &context->supervisor : nullptr; }

// What the calling thread's record holds, or null.
XmPool* threadPool(const VeldInputVector* host) {
  if (host->threadBlock == nullptr) return nullptr;
  const auto* record = static_cast<const VeldThreadMemory*>(htTlsGet(host->threadBlock->threadKey));
  return record != nullptr ? record->pool : nullptr;
}

}  // namespace

XmContext* contextOf(const VeldInputVector* host) {
  return host != nullptr && host->memory != nullptr ? host->memory->context : nullptr;
}

XmPool* resolvePool(const VeldInputVector* host, XmPool* handle) {
  if (handle != XM_THREAD_POOL && handle != XM_SUPERVISOR_POOL) return handle;
  XmContext* context = contextOf(host);
  if (handle == XM_SUPERVISOR_POOL) return supervisorOf(context);
  XmPool* own = host != nullptr ? threadPool(host) : nullptr;
  if (own == XM_SUPERVISOR_POOL) return supervisorOf(context);
  if (own != nullptr && own != XM_THREAD_POOL) return own;
  return context != nullptr ? context->defaultPool : nullptr;
}

bool mayAllocate(const VeldInputVector* host, uint32_t size) {
  if (host == nullptr || host->memory == nullptr || host->memory->allowAllocation == nullptr) return true;
  return host->memory->allowAllocation(size) != 0;
}

}  // namespace veldnls::hs

using namespace veldnls::hs;

XmContext* xminit(VeldInputVector* host) {
  if (host == nullptr || host->memory == nullptr) return nullptr;
  if (host->memory->context != nullptr) return host->memory->context;
  if (!mayAllocate(host, sizeof(ContextBlock))) return nullptr;
  int error = 0;
  void* pages = veldnls::platform::mapPages(sizeof(ContextBlock), false, &error);
  if (pages == nullptr) return nullptr;
  auto* block = new (pages) ContextBlock{};
  XmContext* context = &block->context;
  openHighMemory(host, block);
  if (!openContext(host, context)) {
    htMutexDestroy(&block->highMemoryLock);
    veldnls::platform::releasePages(block, sizeof(ContextBlock));
    return nullptr;
  }
  context->initialised = 1;
  host->memory->context = context;
  return context;
}

void xmterm(VeldInputVector* host, XmContext* context) {
  if (context == nullptr) return;
  xmdestroy(host, context->defaultPool);
  closeContext(context);
  veldnls::platform::releasePages(context, sizeof(ContextBlock));
  if (host != nullptr && host->memory != nullptr && host->memory->context == context) host->memory->context = nullptr;
}

uint32_t xmsetlimit(const VeldInputVector* host, uint32_t bytes) {
  XmContext* context = contextOf(host);
  if (context == nullptr) return 0;
  const ContextLock lock(context);
  context->limit = bytes;
  return 0;
}

// Only the holder can see its own identity in `owner`, so the test needs no lock.
void xmpoollock(XmPool* pool) {
  const HtThreadId self = htThreadSelf();
  const std::atomic_ref<HtThreadId> owner(pool->owner);
  if (owner.load(std::memory_order_relaxed) != self) {
    htMutexLock(&pool->lock);
    owner.store(self, std::memory_order_relaxed);
  }
  ++pool->lockDepth;
}

void xmpoolunlock(XmPool* pool) {
  if (--pool->lockDepth != 0) return;
  std::atomic_ref<HtThreadId>(pool->owner).store(0, std::memory_order_relaxed);
  htMutexUnlock(&pool->lock);
}
