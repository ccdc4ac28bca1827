#include <pthread.h>
#include <sys/mman.h>
#include <sys/single_threaded.h>
#include <unistd.h>

#include <cerrno>

#include "hs/src/platform/platform.h"

namespace veldnls::platform {

namespace {

static_assert(sizeof(pthread_mutex_t) <= sizeof(HtMutex) && alignof(pthread_mutex_t) <= alignof(HtMutex));
static_assert(sizeof(pthread_t) <= sizeof(HtThreadId));

pthread_mutex_t* native(HtMutex* mutex) { return reinterpret_cast<pthread_mutex_t*>(mutex->opaque); }

pthread_key_t keyOf(uint32_t index) { return static_cast<pthread_key_t>(index - 1); }

}  // namespace

size_t pageSize() { return static_cast<size_t>(sysconf(_SC_PAGESIZE)); }

void* reservePages(size_t size) {
  void* pages = mmap(nullptr, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  return pages == MAP_FAILED ? nullptr : pages;
}

bool commitPages(void* address, size_t size) { return mprotect(address, size, PROT_READ | PROT_WRITE) == 0; }

// Locked pages refuse, and stay as they are.
void decommitPages(void* address, size_t size) { static_cast<void>(madvise(address, size, MADV_DONTNEED)); }

void* mapPages(size_t size, bool executable, int* error) {
  const int protection = PROT_READ | PROT_WRITE | (executable ? PROT_EXEC : 0);
  void* pages = mmap(nullptr, size, protection, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (pages != MAP_FAILED) return pages;
  *error = errno;
  return nullptr;
}

int releasePages(void* address, size_t size) { return munmap(address, size) == 0 ? 0 : errno; }

int mutexInit(HtMutex* mutex) {
  pthread_mutexattr_t attributes;
  int error = pthread_mutexattr_init(&attributes);
  if (error != 0) return error;
  error = pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
  if (error == 0) error = pthread_mutex_init(native(mutex), &attributes);
  pthread_mutexattr_destroy(&attributes);
  return error;
}

int mutexLock(HtMutex* mutex) { return pthread_mutex_lock(native(mutex)); }

int mutexUnlock(HtMutex* mutex) { return pthread_mutex_unlock(native(mutex)); }

int mutexDestroy(HtMutex* mutex) { return pthread_mutex_destroy(native(mutex)); }

HtThreadId currentThread() { return static_cast<HtThreadId>(pthread_self()); }
bool isSingleThread() { return __libc_single_threaded != 0; }

int tlsCreate(uint32_t* index) {
  pthread_key_t key;
  const int error = pthread_key_create(&key, nullptr);
  if (error == 0) *index = static_cast<uint32_t>(key) + 1;
  return error;
}

void* tlsGet(uint32_t index) { return pthread_getspecific(keyOf(index)); }

int tlsSet(uint32_t index, void* value) { return pthread_setspecific(keyOf(index), value); }

int tlsDelete(uint32_t index) { return pthread_key_delete(keyOf(index)); }

int processId() { return static_cast<int>(getpid()); }

void localTime(std::tm* now) {
  const std::time_t seconds = std::time(nullptr);
  if (localtime_r(&seconds, now) == nullptr) *now = std::tm{};
}

void writeError(const char* text, size_t length) {
  while (length > 0) {
    const ssize_t written = write(STDERR_FILENO, text, length);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return;
    text += written;
    length -= static_cast<size_t>(written);
  }
}

}  // namespace veldnls::platform
