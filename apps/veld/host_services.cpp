#include "host_services.h"

#include <pthread.h>

#include <cerrno>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>

#include "veldnls/status.h"

namespace veld {

namespace {

// The library asks for options without an object of the host, so they belong to the program.
struct SessionOptions {
  std::optional<CEI> encoding;
  std::u16string language;
};

SessionOptions& sessionOptions() {
  static SessionOptions options;
  return options;
}

void fillHeader(NlsHandle& header, const char* name, NlsDestroy destroy) {
  std::memcpy(header.magic, "nevo", sizeof header.magic);
  header.name = name;
  header.destroy = destroy;
}

// A lock for one writer or many readers. The header comes first: the library ends a lock through it.
struct Lock {
  NlsHandle header{};
  pthread_rwlock_t lock = PTHREAD_RWLOCK_INITIALIZER;
};

NlsStatus destroyLock(void* handle) {
  auto* lock = static_cast<Lock*>(handle);
  pthread_rwlock_destroy(&lock->lock);
  delete lock;
  return 0;
}

void* createLock(void*, const int32_t*, void*, const char* name) {
  auto lock = std::make_unique<Lock>();
  fillHeader(lock->header, name, destroyLock);
  return lock.release();
}

NlsStatus acquireLock(void* handle, int32_t exclusive, int32_t wait) {
  pthread_rwlock_t* lock = &static_cast<Lock*>(handle)->lock;
  int result;
  if (exclusive != 0) {
    result = wait != 0 ? pthread_rwlock_wrlock(lock) : pthread_rwlock_trywrlock(lock);
  } else {
    result = wait != 0 ? pthread_rwlock_rdlock(lock) : pthread_rwlock_tryrdlock(lock);
  }
  return result == 0 ? 0 : nlsBadArgument;
}

NlsStatus releaseLock(void* handle) {
  return pthread_rwlock_unlock(&static_cast<Lock*>(handle)->lock) == 0 ? 0 : nlsBadArgument;
}

// A list whose entries are found by key. Values stay their owner's.
struct KeyedList {
  NlsHandle header{};
  std::mutex mutex;
  std::map<std::string, void*, std::less<>> entries;
};

NlsStatus destroyList(void* handle) {
  delete static_cast<KeyedList*>(handle);
  return 0;
}

void* createList(void*, const int32_t*, void*, const char* name) {
  auto list = std::make_unique<KeyedList>();
  fillHeader(list->header, name, destroyList);
  return list.release();
}

// Keys compare by their bytes, in any order of growth: there is nothing to choose.
NlsStatus setTreeOption(void*, int32_t, int32_t) { return 0; }

std::string_view keyBytes(const void* key, int32_t length) {
  return {static_cast<const char*>(key), static_cast<size_t>(length)};
}

void* searchTree(void* tree, void*, void*, const void* key, int32_t keyLength) {
  auto* list = static_cast<KeyedList*>(tree);
  const std::lock_guard guard(list->mutex);
  const auto entry = list->entries.find(keyBytes(key, keyLength));
  return entry != list->entries.end() ? entry->second : nullptr;
}

// A key that stands in the list keeps its value.
NlsStatus insertInTree(void* tree, void*, void*, void* value, int32_t, const void* key, int32_t keyLength, int32_t) {
  auto* list = static_cast<KeyedList*>(tree);
  const std::lock_guard guard(list->mutex);
  const bool entered = list->entries.emplace(keyBytes(key, keyLength), value).second;
  return entered ? 0 : nlsBadArgument;
}

NlsStatus copyOption(const void* value, size_t bytes, void* buffer, int32_t* size) {
  if (*size < 0 || static_cast<size_t>(*size) < bytes) return nlsOutputTruncated;
  if (bytes != 0) std::memcpy(buffer, value, bytes);
  *size = static_cast<int32_t>(bytes);
  return 0;
}

NlsStatus readOption(void*, const char16_t* name, int32_t nameLength, int32_t type, void* buffer, int32_t* size) {
  const std::u16string_view asked(name, static_cast<size_t>(nameLength));
  const SessionOptions& options = sessionOptions();
  if (asked == u"QZNLS.XPA_SESSION_CEI" && type == NLS_OPTION_INTEGER && options.encoding) {
    return copyOption(&*options.encoding, sizeof *options.encoding, buffer, size);
  }
  if (asked == u"QZNLS.DBCSLANG" && type == NLS_OPTION_TEXT && !options.language.empty()) {
    return copyOption(options.language.data(), options.language.size() * sizeof(char16_t), buffer, size);
  }
  return nlsBadArgument;
}

// This program has no message modules.
NlsStatus openMessageBundle(void*, int32_t, void*, int32_t) { return nlsMessageNotFound; }

constexpr NlsHostServices services{
    .size = sizeof(NlsHostServices),
    .listCreate = createList,
    .lockCreate = createLock,
    .treeSetOption = setTreeOption,
    .lockAcquire = acquireLock,
    .lockRelease = releaseLock,
    .treeSearch = searchTree,
    .treeInsert = insertInTree,
    .getOption = readOption,
    .openMessageBundle = openMessageBundle,
    .loadExtension = nullptr,
    .hostCodePage = nullptr,
    .hostLocaleId = nullptr,
};

}  // namespace

const NlsHostServices& hostServices() { return services; }

void setSessionEncoding(CEI cei) { sessionOptions().encoding = cei; }

void setSessionLanguage(std::u16string language) { sessionOptions().language = std::move(language); }

}  // namespace veld
