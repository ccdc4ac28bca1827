// The look-up of messages in the modules of languages.
#include <initializer_list>
#include <iterator>

#include "core/qznlsstub.h"
#include "locale/locale_object.h"

namespace veldnls {
namespace {

// The name of a module: "t0a0" for the catalogue with number 0, and the language.
struct ModuleKey {
  char16_t text[6] = {u't', u'0', u'a', u'0', u'e', u'n'};

  char16_t* language() { return text + 4; }
};
constexpr int32_t keyUnits = std::size(ModuleKey().text);
constexpr int32_t keyBytes = sizeof(ModuleKey);

bool isListed(const QZLocale* locale, const ModuleKey& key) {
  return nlsTreeSearch(locale->messageTrack, key.text, keyBytes) != nullptr;
}

// Loads and lists a module. `*module` is null when it was listed before or can't be had.
NlsStatus takeModule(const QZLocale* locale, const ModuleKey& key, NlsExtension** module) {
  *module = nullptr;
  if (isListed(locale, key)) return 0;
  const NlsStatus status = nlsLockAcquire(locale->messageLock, 1, 1);
  if (status != 0) return status;
  // Another thread may have been faster.
  NlsExtension* loaded =
      isListed(locale, key) ? nullptr : nlsLoadExtension(locale->owner->host, key.text, keyUnits, nullptr);
  const bool lost = loaded != nullptr && nlsTreeInsert(locale->messageTrack, loaded, key.text, keyBytes) != 0;
  nlsLockRelease(locale->messageLock);
  if (lost) {
    loaded->destroy(loaded);
    return nlsMessageTrackFailed;
  }
  *module = loaded;
  return 0;
}

}  // namespace

// Only the call that loads a module asks it. Later ones find it listed and go on without: those for a language other
// than English get the English text then, if that module isn't loaded yet, and afterwards none.
NlsStatus getLocaleMessage(QZLocale* locale, uint32_t /*code*/, char16_t* output, int32_t capacity) {
  ModuleKey own;
  getLanguage(locale, own.language(), nullptr);
  NlsStatus answer = nlsMessageNotFound;
  for (const ModuleKey& key : {own, ModuleKey()}) {
    NlsExtension* module;
    const NlsStatus status = takeModule(locale, key, &module);
    if (status != 0) return status;
    if (module == nullptr) continue;
    answer = nlsOpenMessageBundle(module, 0, output, capacity);
    if (answer == 0) return 0;
  }
  return answer;
}

}  // namespace veldnls
