// The adaptation layer: how all code of the library reaches pools, extensions, journals, host services and the trace.
// Pools and the trace are the host layer's; lists, locks, trees, options and message bundles are services that the host
// may replace (NlsHostServices), with constants and assertion stubs as defaults.
#pragma once

#include "veldnls/host.h"
#include "veldnls/status.h"
#include "veldnls/types.h"

namespace veldnls {

// The four support records of the host, as the export stored them. Element 1 is the module's copy.
const VeldInputVector* hostRecords();

// Takes over the host's records; null elements stay null. Makes the memory context when the host brings none.
// Returns false when that fails.
bool storeHostRecords(const VeldInputVector& records);

// Tell when calls of the export and objects begin and end. While there are any that another thread may be using, the
// module's own memory context stays, even if the module is unloaded or the process exits meanwhile.
void beginCall();
void endCall();
void countObject();
void forgetObject();

// ---- Pools ----

// Bit 31 of nlsPoolCreate's params[0] and of nlsPoolAlloc's flags: memory is zero-filled.
inline constexpr uint32_t zeroFill = 0x80000000;

// Returns a pool, or null. `host`, `journal`, `name` and the other words of `params` are not looked at.
XmPool* nlsPoolCreate(void* host, const int32_t* params, void* journal, const char* name);
NlsStatus nlsPoolDestroy(XmPool* pool);
// Returns memory aligned to 8 bytes, or null; a size of 0 gives the address 1, which isn't memory.
void* nlsPoolAlloc(XmPool* pool, uint32_t size, uint32_t flags);
NlsStatus nlsPoolFree(XmPool* pool, void* address);

// A zero-filled T from a pool, or null.
template <class T>
T* nlsPoolNew(XmPool* pool) {
  static_assert(alignof(T) <= 8, "pool blocks are aligned to 8 bytes");
  return static_cast<T*>(nlsPoolAlloc(pool, static_cast<uint32_t>(sizeof(T)), zeroFill));
}

// ---- Extensions ----

using NlsExtensionConstructor = NlsExtension* (*)(void* host, void* journal);

// One name that the loader knows. A null constructor is a name that answers null.
struct ExtensionRow {
  const char16_t* name;
  int32_t nameLength;
  NlsExtensionConstructor construct;
};

// The loader's table: the folder that may include all others defines it (core/hsnlsmain/extensions.cpp).
inline constexpr int extensionRowCount = 14;
extern const ExtensionRow extensionRows[extensionRowCount];

// Returns the handle with `destroy` set to nlsExtensionDestroy, or null. Names compare without regard to case.
NlsExtension* nlsLoadExtension(void* host, const char16_t* name, int32_t nameLength, void* journal);
// Calls the handle's `release`.
NlsStatus nlsExtensionDestroy(void* handle);

// For tests: while set, the loader answers null for this name of the table. Null shows all again.
void hideExtension(const char16_t* name);

// ---- Journal ----

inline constexpr int32_t journalError = 4;

NlsStatus qzlStatusToJnl(void* journal, int32_t level, NlsStatus status);
// Prints a fixed line; the format and its arguments never reach the output.
NlsStatus QzlMessageToJnl(void* journal, int32_t level, const char16_t* format, uint32_t flags, ...);

// ---- Host services ----

void* nlsListCreate(void* host, const int32_t* params, void* journal, const char* name);
NlsStatus nlsListDestroy(void* list);
void* nlsLockCreate(void* host, const int32_t* params, void* journal, const char* name);
NlsStatus nlsLockDestroy(void* lock);
NlsStatus nlsTreeSetOption(void* tree, int32_t option, int32_t value);
NlsStatus nlsLockAcquire(void* lock, int32_t exclusive, int32_t wait);
NlsStatus nlsLockRelease(void* lock);
void* nlsTreeSearch(void* tree, const void* key, int32_t keyLength);
NlsStatus nlsTreeInsert(void* tree, void* value, const void* key, int32_t keyLength);
NlsStatus nlsGetOption(void* host, const char16_t* name, int32_t nameLength, int32_t type, void* buffer, int32_t* size);
NlsStatus nlsOpenMessageBundle(void* bundle, int32_t code, void* data, int32_t size);
int32_t nlsHostCodePage();
uint32_t nlsHostLocaleId();

// ---- Shared bodies of handles ----

// The slots `versionQuery` and `minimumVersionQuery` of every handle.
NlsStatus versionQuery(const void* handle, int32_t* major, int32_t* minor, int32_t* patch);
NlsStatus minimumVersionQuery(const void* handle, int32_t* major, int32_t* minor, int32_t* patch);

// Writes "nevo" to `magic`.
void setMagic(uint8_t (&magic)[4]);

// Makes the private pool and the zero-filled record of an extension and fills its header. Null, with nothing left
// behind and nlsNoMemory in the journal, when memory fails.
template <class Module>
Module* createExtension(void* host, void* journal, const char* poolName, NlsDestroy release) {
  const int32_t params[3] = {};
  XmPool* pool = nlsPoolCreate(host, params, journal, poolName);
  Module* module = pool != nullptr ? nlsPoolNew<Module>(pool) : nullptr;
  if (module == nullptr) {
    if (journal != nullptr) qzlStatusToJnl(journal, journalError, nlsNoMemory);
    if (pool != nullptr) nlsPoolDestroy(pool);
    return nullptr;
  }
  setMagic(module->magic);
  module->versionQuery = versionQuery;
  module->minimumVersionQuery = minimumVersionQuery;
  module->host = host;
  module->release = release;
  module->pool = pool;
  return module;
}

// Ends the process: prints the assertion line of a stub on the trace output, then stores to address 1.
[[noreturn]] void assertionStub(const char* unit, int line);
// Ends the process by a store to address 0.
[[noreturn]] void fatalStore();

}  // namespace veldnls
