#include "locale/qznlsldb.h"

#include "core/qznlsstub.h"

namespace veldnls {

namespace {

// No locale has data yet, so that no name leads to a record.
NlsStatus loadLocaleRecord(LocaleRecord*, const char16_t*, int32_t) { return nlsLocaleNameUnknown; }

NlsStatus releaseLocaleDatabase(void* handle) { return nlsPoolDestroy(static_cast<LocaleDatabase*>(handle)->pool); }

}  // namespace

NlsExtension* createLocaleDatabase(void* host, void* journal) {
  auto* database = createExtension<LocaleDatabase>(host, journal, "qznlsldb pool", releaseLocaleDatabase);
  if (database == nullptr) return nullptr;
  database->loadLocaleRecord = loadLocaleRecord;
  return reinterpret_cast<NlsExtension*>(database);
}

}  // namespace veldnls
