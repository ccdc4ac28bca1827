// All that the host layer asks of the system. Results that are error numbers are 0 on success and the system's else.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>

#include "veldnls/host.h"

namespace veldnls::platform {

size_t pageSize();

// ---- Pages. Addresses are page boundaries; sizes are rounded up to pages by the system. ----

// Address space without access, or null.
void* reservePages(size_t size);
// Makes reserved pages readable and writable; they are zero at first. Returns false when the system has no memory.
bool commitPages(void* address, size_t size);
// Tells the system that the contents aren't needed. The pages stay accessible; they may read as zero or as they were.
void decommitPages(void* address, size_t size);
// Readable and writable zero pages, on request executable; null with the error number in `*error`.
void* mapPages(size_t size, bool executable, int* error);
// Gives back pages of reservePages or mapPages, or of several neighbours at once.
int releasePages(void* address, size_t size);

// ---- Threads ----

// Makes a re-entrant mutex.
int mutexInit(HtMutex* mutex);
int mutexLock(HtMutex* mutex);
int mutexUnlock(HtMutex* mutex);
int mutexDestroy(HtMutex* mutex);

HtThreadId currentThread();
// Whether the system knows that there is no other thread. Once there was one, it may not know any more.
bool isSingleThread();

// Indexes begin with 1.
int tlsCreate(uint32_t* index);
void* tlsGet(uint32_t index);
int tlsSet(uint32_t index, void* value);
int tlsDelete(uint32_t index);

// ---- Process ----

int processId();
void localTime(std::tm* now);
// Writes to descriptor 2 past all buffers.
void writeError(const char* text, size_t length);

}  // namespace veldnls::platform
