// Mutexes, thread identity and thread-local values over the platform's.
#include "hs/src/platform/platform.h"
#include "veldnls/hostlib/ht.h"

namespace platform = veldnls::platform;

int32_t htMutexInit(HtMutex* mutex, const void* attributes) {
  return attributes == nullptr ? platform::mutexInit(mutex) : -1;
}

int32_t htMutexLock(HtMutex* mutex) { return platform::mutexLock(mutex); }

int32_t htMutexUnlock(HtMutex* mutex) { return platform::mutexUnlock(mutex); }

int32_t htMutexDestroy(HtMutex* mutex) { return platform::mutexDestroy(mutex); }

HtThreadId htThreadSelf() { return platform::currentThread(); }

int32_t htSingleThread() { return platform::isSingleThread() ? 1 : 0; }

int32_t htTlsCreate(uint32_t* index) { return platform::tlsCreate(index) == 0 ? 0 : -1; }

void* htTlsGet(uint32_t index) { return index == 0 ? nullptr : platform::tlsGet(index); }

int32_t htTlsSet(uint32_t index, void* value) { return index != 0 && platform::tlsSet(index, value) == 0 ? 0 : -1; }

int32_t htTlsDelete(uint32_t index) { return index != 0 && platform::tlsDelete(index) == 0 ? 0 : -1; }
