// Chunks of high and of executable memory: whole pages of the system.
#include <atomic>
#include <cerrno>
#include <cstdlib>

#include "hs/src/platform/platform.h"
#include "hs/src/poison.h"
#include "hs/src/pool.h"
#include "veldnls/hostlib/hs.h"
#include "veldnls/hostlib/opt.h"

namespace veldnls::hs {

namespace {

constexpr const char* unitName = "hs/src/hsmem";
constexpr const char* highMemoryOption = "HIMEMENABLE";

// Values of XmContext.highMemoryState; above `pages` all but `tracedPages` are as `pages`.
constexpr int32_t stateUnknown = -1;
constexpr int32_t statePlain = 0;
constexpr int32_t statePages = 1;
constexpr int32_t stateTracedPages = 2;

long asLong(uint32_t size) { return static_cast<long>(size); }
unsigned long asLong(const void* address) { return static_cast<unsigned long>(reinterpret_cast<uintptr_t>(address)); }

void requireMutex(const VeldInputVector* host, const char* failure, int error, int line) {
  if (error == 0) return;
  hsTrace(host, "%s: %d file=%s line=%d: \n", failure, error, unitName, line);
  std::abort();
}

int32_t configuredState(const VeldInputVector* host) {
  int32_t value = 0;
  if (optReadInteger(host, highMemoryOption, &value) != 0) return statePages;
  return value < 0 ? statePlain : value;
}

int32_t highMemoryState(const VeldInputVector* host, XmContext* context) {
  const std::atomic_ref<int32_t> state(context->highMemoryState);
  const int32_t known = state.load(std::memory_order_acquire);
  if (known != stateUnknown) return known;
  HtMutex* mutex = &blockOf(context)->highMemoryLock;
  requireMutex(host, "mutex_lock failed", htMutexLock(mutex), __LINE__);
  int32_t value = state.load(std::memory_order_relaxed);
  if (value == stateUnknown) {
    value = configuredState(host);
    state.store(value, std::memory_order_release);
  }
  requireMutex(host, "mutex_unlockfailed", htMutexUnlock(mutex), __LINE__);
  return value;
}

void* takePages(const VeldInputVector* host, uint32_t size, bool executable, int* error) {
  *error = ENOMEM;
  return mayAllocate(host, size) ? platform::mapPages(size, executable, error) : nullptr;
}

// The system takes pages back in one step: what isn't pages at all can't be decommitted, anything else that is refused
// can't be released.
void givePages(const VeldInputVector* host, const char* call, const char* addressName, const char* sizeName,
               void* address, uint32_t size) {
  openMemory(address, size);
  const int error = platform::releasePages(address, size);
  if (error == 0) return;
  hsTrace(host, "%s: %s error: %s=0x%lx %s=%ld error=%d\n", call, error == EINVAL ? "MEM_DECOMMIT" : "MEM_RELEASE",
          addressName, asLong(address), sizeName, asLong(size), error);
  std::exit(EXIT_FAILURE);
}

}  // namespace

void openHighMemory(const VeldInputVector* host, ContextBlock* block) {
  requireMutex(host, "mutex_init failed", htMutexInit(&block->highMemoryLock, nullptr), __LINE__);
  block->context.highMemoryState = stateUnknown;
}

void* takeHigh(const VeldInputVector* host, XmContext* context, uint32_t size) {
  const int32_t state = highMemoryState(host, context);
  if (state == statePlain) return takeSystem(host, context, size, nullptr);
  int error = 0;
  void* memory = takePages(host, size, false, &error);
  if (state != stateTracedPages) return memory;
  if (memory != nullptr) {
    hsTrace(host, "hshimalloc: maddr=0x%lx msize=%ld\n", asLong(memory), asLong(size));
  } else {
    hsTrace(host, "hshimalloc: allocation failed: msize=%ld error=%d\n", asLong(size), error);
  }
  return memory;
}

void giveHigh(const VeldInputVector* host, XmContext* context, void* address, uint32_t size) {
  const int32_t state = std::atomic_ref<int32_t>(context->highMemoryState).load(std::memory_order_acquire);
  if (state == statePlain) {
    giveSystem(context, address, size);
    return;
  }
  if (state == stateTracedPages) hsTrace(host, "hshifree: maddr=0x%lx msize=%ld\n", asLong(address), asLong(size));
  givePages(host, "hshifree", "maddr", "msize", address, size);
}

}  // namespace veldnls::hs

using namespace veldnls::hs;

void* hshimalloc(const VeldInputVector* host, uint32_t size) {
  XmContext* context = contextOf(host);
  return context != nullptr ? takeHigh(host, context, size) : nullptr;
}

void hshifree(const VeldInputVector* host, void* address, uint32_t size) {
  XmContext* context = contextOf(host);
  if (context != nullptr) giveHigh(host, context, address, size);
}

void* hscgmalloc(const VeldInputVector* host, uint32_t size, int* zero) {
  int error = 0;
  void* memory = takePages(host, size, true, &error);
  if (memory == nullptr) {
    hsTrace(host, "hscgmalloc: VirtualAlloc failed: size=%ld errno=%d\n", asLong(size), error);
    return nullptr;
  }
  if (zero != nullptr) *zero = 1;
  return memory;
}

void hscgfree(const VeldInputVector* host, void* address, uint32_t size) {
  givePages(host, "hscgfree", "addr", "size", address, size);
}

void hsmemterm(const VeldInputVector* host, const void* handle) {
  XmContext* context = contextOf(host);
  if (context == nullptr || handle != context) {
    hsTrace(host, "Aborting from invalid hsmemterm request\n");
    std::abort();
  }
  requireMutex(host, "mutex_destroy failed", htMutexDestroy(&blockOf(context)->highMemoryLock), __LINE__);
  // Plain memory that is still out must go back to where it came from.
  const std::atomic_ref<int32_t> state(context->highMemoryState);
  if (state.load(std::memory_order_acquire) != statePlain) state.store(stateUnknown, std::memory_order_release);
}
