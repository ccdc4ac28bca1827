// Messages of a locale, over a host's locks, lists and modules of any kind, against a model of what was loaded.
//
// Input: the locale, then three bytes for each call: which modules there are and what they answer, what lock and list
// answer, and the room for the text.
#include <map>
#include <string>

#include "fuzz/support/locales.h"
#include "veldnls/nls.h"
#include "veldnls/status.h"

namespace fuzz {

namespace {

constexpr NlsStatus otherStatus = 0x12345;
constexpr size_t mostCalls = 40;

struct MessageModule {
  NLS_EXTENSION_FIELDS
  bool exists = false;
  NlsStatus status = 0;
};

// What the services do in a call, and have done.
struct Services {
  MessageModule own;
  MessageModule english;
  std::map<std::u16string, void*> listed;
  std::u16string language;
  NlsStatus acquireStatus = 0;
  NlsStatus insertStatus = 0;
  int held = 0;
  int released = 0;
};
Services services;

struct Handle {
  NLS_HANDLE_FIELDS
};

NlsStatus endHandle(void* handle) {
  delete static_cast<Handle*>(handle);
  return 0;
}

void* createHandle(void*, const int32_t*, void*, const char* name) {
  auto* handle = new Handle();
  handle->name = name;
  handle->destroy = endHandle;
  return handle;
}

NlsStatus setOption(void*, int32_t, int32_t) { return 0; }

NlsStatus acquire(void*, int32_t, int32_t) {
  require(services.held == 0, "the lock is taken once");
  if (services.acquireStatus == 0) ++services.held;
  return services.acquireStatus;
}

NlsStatus release(void*) {
  require(services.held == 1, "the lock is given back once");
  --services.held;
  return 0;
}

std::u16string keyOf(const void* key, int32_t bytes) {
  require(bytes == 12, "a key has six units");
  return {static_cast<const char16_t*>(key), 6};
}

void* search(void*, void*, void*, const void* key, int32_t bytes) {
  const auto found = services.listed.find(keyOf(key, bytes));
  return found == services.listed.end() ? nullptr : found->second;
}

NlsStatus insert(void*, void*, void*, void* value, int32_t, const void* key, int32_t bytes, int32_t) {
  require(services.held == 1, "modules are listed under the lock");
  if (services.insertStatus != 0) return services.insertStatus;
  require(services.listed.emplace(keyOf(key, bytes), value).second, "a module is listed once");
  return 0;
}

NlsStatus releaseModule(void*) {
  ++services.released;
  return 0;
}

void* load(void*, const char16_t* name, int32_t length, void*) {
  require(services.held == 1, "modules are loaded under the lock");
  require(length == 6 && std::u16string_view(name, 4) == u"t0a0", "the name of a module");
  const std::u16string_view language(name + 4, 2);
  require(language == services.language || language == u"en", "the language of a module");
  MessageModule& module = language == u"en" ? services.english : services.own;
  return module.exists ? &module : nullptr;
}

NlsStatus ask(void* bundle, int32_t code, void* data, int32_t size) {
  require(services.held == 0, "modules are asked without the lock");
  require(code == 0, "modules are asked for 0");
  const auto* module = static_cast<MessageModule*>(bundle);
  if (module->status == 0) std::fill_n(static_cast<char16_t*>(data), size, module == &services.own ? u'o' : u'e');
  return module->status;
}

constexpr NlsHostServices table = [] {
  NlsHostServices all{};
  all.size = sizeof all;
  all.listCreate = createHandle;
  all.lockCreate = createHandle;
  all.treeSetOption = setOption;
  all.lockAcquire = acquire;
  all.lockRelease = release;
  all.treeSearch = search;
  all.treeInsert = insert;
  all.openMessageBundle = ask;
  all.loadExtension = load;
  return all;
}();

// ---- The model ----

struct Answer {
  NlsStatus status;
  char16_t text;  // 0 for none

  bool operator==(const Answer&) const = default;
};

struct Model {
  std::u16string language;
  std::map<std::u16string, bool> loaded;

  Answer call() {
    NlsStatus last = nlsMessageNotFound;
    for (const std::u16string& wanted : {language, std::u16string(u"en")}) {
      if (loaded[wanted]) continue;
      if (services.acquireStatus != 0) return {services.acquireStatus, 0};
      const MessageModule& module = wanted == u"en" ? services.english : services.own;
      if (!module.exists) continue;
      if (services.insertStatus != 0) return {nlsMessageTrackFailed, 0};
      loaded[wanted] = true;
      last = module.status;
      if (last == 0) return {0, wanted == u"en" ? u'e' : u'o'};
    }
    return {last, 0};
  }
};

// ---- Cases ----

void setModule(MessageModule& module, unsigned choice) {
  module.release = releaseModule;
  module.exists = (choice & 3) != 0;
  module.status = (choice & 3) == 2 ? otherStatus : (choice & 3) == 3 ? otherStatus + 1 : 0;
}

void checkCall(QZLocale* locale, Model& model, Input& input) {
  const unsigned modules = input.byte();
  const unsigned failures = input.byte();
  const int32_t capacity = input.byte() % 40 + 1;
  setModule(services.own, modules);
  setModule(services.english, modules >> 2);
  services.acquireStatus = failures % 16 == 1 ? otherStatus + 2 : 0;
  services.insertStatus = failures / 16 == 1 ? otherStatus + 3 : 0;
  services.released = 0;
  const Answer expected = model.call();
  const Written result = writtenAt(At::end, capacity, [&](char16_t* output, int32_t room, int32_t*) {
    return locale->getLocaleMessage(locale, failures, output, room);
  });
  require(result.status == expected.status, "a message has the status of the model");
  require(
      result.units == std::u16string(static_cast<size_t>(capacity), expected.text != 0 ? expected.text : untouchedUnit),
      "a message has the text of the model");
  require(services.held == 0, "no lock is kept");
  require(services.released == (expected.status == nlsMessageTrackFailed ? 1 : 0), "a module that isn't listed ends");
}

void check(Input input) {
  const std::u16string_view name = viewOf(chooseLocale(input)->record->identity.posixName);
  host().memory.services = &table;
  services = {};
  services.language = name.substr(0, 2);
  QZLocale* locale = host().nls->createLocale(host().nls, name.data(), lengthOf(name));
  require(locale != nullptr, "a locale is made");
  Model model{services.language, {}};
  for (size_t calls = 0; !input.empty() && calls < mostCalls; ++calls) checkCall(locale, model, input);
  require(locale->destroy(locale) == 0, "a locale ends");
  host().memory.services = nullptr;
}

}  // namespace

}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::check(fuzz::Input(data, size));
  return 0;
}
