#include "support/message_services.h"

#include <algorithm>

namespace test {

namespace {

constexpr int32_t keyUnits = 6;

MessageServices* services = nullptr;
thread_local int locksHeld = 0;

void require(bool holds, const char* what) {
  if (!holds) services->broken(what);
}

struct MessageModule {
  NLS_EXTENSION_FIELDS
  Messages* messages;
};

template <class Handle>
Handle* makeHandle(const int32_t* params, const char* name, NlsDestroy destroy) {
  auto* handle = new Handle();
  handle->name = name;
  handle->destroy = destroy;
  handle->params.assign(params, params + 4);
  return handle;
}

NlsStatus endLock(void* handle) {
  --services->locks;
  if (services->atEndOfLock) services->atEndOfLock();
  delete static_cast<MessageLock*>(handle);
  return 0;
}

NlsStatus endList(void* handle) {
  --services->lists;
  auto* list = static_cast<MessageList*>(handle);
  for (const auto& [key, module] : list->modules) require(module->destroy(module) == 0, "a module ends");
  delete list;
  return 0;
}

void* createLock(void*, const int32_t* params, void*, const char* name) {
  if (services->refuseLock) return nullptr;
  ++services->locks;
  return makeHandle<MessageLock>(params, name, endLock);
}

void* createList(void*, const int32_t* params, void*, const char* name) {
  if (services->refuseList) return nullptr;
  ++services->lists;
  return makeHandle<MessageList>(params, name, endList);
}

NlsStatus setTreeOption(void* tree, int32_t option, int32_t value) {
  static_cast<MessageList*>(tree)->options.emplace_back(option, value);
  return 0;
}

NlsStatus acquireLock(void* handle, int32_t exclusive, int32_t wait) {
  require(exclusive == 1 && wait == 1, "the lock is exclusive and waited for");
  require(locksHeld == 0, "the lock is taken once");
  if (services->acquireStatus != 0) return services->acquireStatus;
  ++services->acquired;
  static_cast<MessageLock*>(handle)->mutex.lock();
  ++locksHeld;
  return 0;
}

NlsStatus releaseLock(void* handle) {
  require(locksHeld == 1, "the lock is given back once");
  --locksHeld;
  static_cast<MessageLock*>(handle)->mutex.unlock();
  return 0;
}

std::u16string keyOf(const void* key, int32_t length) {
  require(length == keyUnits * static_cast<int32_t>(sizeof(char16_t)), "a key has six units");
  return {static_cast<const char16_t*>(key), keyUnits};
}

void* searchTree(void* tree, void*, void*, const void* key, int32_t length) {
  auto* list = static_cast<MessageList*>(tree);
  const std::lock_guard<std::mutex> guard(list->mutex);
  const auto found = list->modules.find(keyOf(key, length));
  return found == list->modules.end() ? nullptr : found->second;
}

NlsStatus insertInTree(void* tree, void*, void*, void* value, int32_t, const void* key, int32_t length, int32_t) {
  require(locksHeld == 1, "modules are listed under the lock");
  if (services->insertStatus != 0) return services->insertStatus;
  auto* list = static_cast<MessageList*>(tree);
  const std::lock_guard<std::mutex> guard(list->mutex);
  require(list->modules.emplace(keyOf(key, length), static_cast<NlsExtension*>(value)).second,
          "a module is listed once");
  return 0;
}

NlsStatus releaseModule(void* handle) {
  --services->modules;
  delete static_cast<MessageModule*>(handle);
  return 0;
}

void* loadModule(void*, const char16_t* name, int32_t length, void* journal) {
  require(journal == nullptr, "modules are loaded without a journal");
  require(locksHeld == 1, "modules are loaded under the lock");
  if (services->beforeLoad) services->beforeLoad();
  services->loads.emplace_back(name, static_cast<size_t>(length));
  const auto found = services->known.find(services->loads.back());
  if (found == services->known.end() || !found->second.canBeLoaded) return nullptr;
  ++services->modules;
  auto* module = new MessageModule();
  module->release = releaseModule;
  module->messages = &found->second;
  return module;
}

NlsStatus askModule(void* bundle, int32_t code, void* data, int32_t size) {
  require(locksHeld == 0, "modules are asked without the lock");
  require(code == 0, "modules are asked for 0");
  Messages& messages = *static_cast<MessageModule*>(bundle)->messages;
  ++messages.asked;
  if (messages.status == 0) {
    const auto count = std::min(messages.text.size(), static_cast<size_t>(size));
    std::copy_n(messages.text.begin(), count, static_cast<char16_t*>(data));
  }
  return messages.status;
}

}  // namespace

MessageServices::MessageServices(void (*toldOf)(const char* what)) : broken(toldOf) { services = this; }
MessageServices::~MessageServices() { services = nullptr; }

const NlsHostServices MessageServices::table = [] {
  NlsHostServices all{};
  all.size = sizeof all;
  all.listCreate = createList;
  all.lockCreate = createLock;
  all.treeSetOption = setTreeOption;
  all.lockAcquire = acquireLock;
  all.lockRelease = releaseLock;
  all.treeSearch = searchTree;
  all.treeInsert = insertInTree;
  all.openMessageBundle = askModule;
  all.loadExtension = loadModule;
  return all;
}();

}  // namespace test
