#include "locale/qznlsldb.h"

#include "core/qznlsstub.h"
#include "locale/load_locale_record.h"

namespace veldnls {

namespace {

NlsStatus releaseLocaleDatabase(void* handle) { return nlsPoolDestroy(static_cast<LocaleDatabase*>(handle)->pool); }

}  // namespace

NlsExtension* createLocaleDatabase(void* host, void* journal) {
  auto* database = createExtension<LocaleDatabase>(host, journal, "qznlsldb pool", releaseLocaleDatabase);
  if (database == nullptr) return nullptr;
  database->loadLocaleRecord = loadLocaleRecord;
  return reinterpret_cast<NlsExtension*>(database);
}

}  // namespace veldnls
