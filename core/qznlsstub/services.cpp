// Host services: the host's own where it has replaced them, otherwise constants, and assertion stubs for calls that
// need a kernel behind them.
#include "core/qznlsstub/services.h"

#include "core/qznlsstub.h"
#include "core/session.h"

namespace veldnls {

namespace {

// The unit name and lines in the stubs' message are fixed texts: support staff know them.
constexpr char unit[] = "hs/src/qznlsstub";
constexpr int lockAcquireLine = 357;
constexpr int lockReleaseLine = 368;
constexpr int treeSearchLine = 409;
constexpr int treeInsertLine = 439;
constexpr int getOptionLine = 456;
constexpr int openMessageBundleLine = 562;

// Ends a list or a lock: nothing to do for null and the marker.
NlsStatus destroyHandle(void* handle) {
  if (handle == nullptr || handle == NLS_MARKER_HANDLE) return 0;
  return static_cast<NlsHandle*>(handle)->destroy(handle);
}

}  // namespace

void* nlsListCreate(void* host, const int32_t* params, void* journal, const char* name) {
  const auto service = hostService(&NlsHostServices::listCreate);
  return service != nullptr ? service(host, params, journal, name) : NLS_MARKER_HANDLE;
}

NlsStatus nlsListDestroy(void* list) { return destroyHandle(list); }

void* nlsLockCreate(void* host, const int32_t* params, void* journal, const char* name) {
  const auto service = hostService(&NlsHostServices::lockCreate);
  return service != nullptr ? service(host, params, journal, name) : NLS_MARKER_HANDLE;
}

NlsStatus nlsLockDestroy(void* lock) { return destroyHandle(lock); }

NlsStatus nlsTreeSetOption(void* tree, int32_t option, int32_t value) {
  const auto service = hostService(&NlsHostServices::treeSetOption);
  return service != nullptr ? service(tree, option, value) : 0;
}

NlsStatus nlsLockAcquire(void* lock, int32_t exclusive, int32_t wait) {
  const auto service = hostService(&NlsHostServices::lockAcquire);
  if (service == nullptr) assertionStub(unit, lockAcquireLine);
  return service(lock, exclusive, wait);
}

NlsStatus nlsLockRelease(void* lock) {
  const auto service = hostService(&NlsHostServices::lockRelease);
  if (service == nullptr) assertionStub(unit, lockReleaseLine);
  return service(lock);
}

void* nlsTreeSearch(void* tree, const void* key, int32_t keyLength) {
  const auto service = hostService(&NlsHostServices::treeSearch);
  if (service == nullptr) assertionStub(unit, treeSearchLine);
  return service(tree, nullptr, nullptr, key, keyLength);
}

NlsStatus nlsTreeInsert(void* tree, void* value, const void* key, int32_t keyLength) {
  const auto service = hostService(&NlsHostServices::treeInsert);
  if (service == nullptr) assertionStub(unit, treeInsertLine);
  return service(tree, nullptr, nullptr, value, 0, key, keyLength, 0);
}

NlsStatus nlsGetOption(void* host, const char16_t* name, int32_t nameLength, int32_t type, void* buffer,
                       int32_t* size) {
  const auto service = hostService(&NlsHostServices::getOption);
  if (service == nullptr) assertionStub(unit, getOptionLine);
  return service(host, name, nameLength, type, buffer, size);
}

NlsStatus nlsOpenMessageBundle(void* bundle, int32_t code, void* data, int32_t size) {
  const auto service = hostService(&NlsHostServices::openMessageBundle);
  if (service == nullptr) assertionStub(unit, openMessageBundleLine);
  return service(bundle, code, data, size);
}

int32_t nlsHostCodePage() {
  const auto service = hostService(&NlsHostServices::hostCodePage);
  return service != nullptr ? service() : environmentCodePage();
}

uint32_t nlsHostLocaleId() {
  const auto service = hostService(&NlsHostServices::hostLocaleId);
  return service != nullptr ? service() : environmentLocaleId();
}

}  // namespace veldnls
