// The loader of extensions by name. All that the library knows are linked in; a host's service may know more.
#include <atomic>

#include "core/qznlsstub.h"
#include "core/qznlsstub/services.h"
#include "core/text_primitives.h"
#include "core/wide_text.h"

namespace veldnls {

namespace {

std::atomic<const char16_t*> hiddenName{nullptr};

bool isHidden(const ExtensionRow& row) {
  const char16_t* hidden = hiddenName.load(std::memory_order_relaxed);
  return wideEqualNoCase(row.name, row.nameLength, hidden, nlsWideLength(hidden));
}

void* construct(void* host, const char16_t* name, int32_t nameLength, void* journal) {
  for (const ExtensionRow& row : extensionRows) {
    if (!wideEqualNoCase(name, nameLength, row.name, row.nameLength)) continue;
    return row.construct == nullptr || isHidden(row) ? nullptr : row.construct(host, journal);
  }
  const auto service = hostService(&NlsHostServices::loadExtension);
  return service != nullptr ? service(host, name, nameLength, journal) : nullptr;
}

}  // namespace

NlsExtension* nlsLoadExtension(void* host, const char16_t* name, int32_t nameLength, void* journal) {
  auto* extension = static_cast<NlsExtension*>(construct(host, name, nameLength, journal));
  if (extension != nullptr) extension->destroy = nlsExtensionDestroy;
  return extension;
}

NlsStatus nlsExtensionDestroy(void* handle) { return static_cast<NlsExtension*>(handle)->release(handle); }

void hideExtension(const char16_t* name) { hiddenName.store(name, std::memory_order_relaxed); }

}  // namespace veldnls
