// "qznlsldb": the locale database, and the look-up of locales by name.
#pragma once

#include "veldnls/modules.h"
#include "veldnls/nls.h"

namespace veldnls {

NlsExtension* createLocaleDatabase(void* host, void* journal);

NlsStatus findLocaleEntry(QZNLS* nls, const char16_t* name, int32_t length, uint16_t mode, const LocaleNameRow** row);

// Exact, case-sensitive match of a five-unit name. Returns 0 or nlsLocaleNameUnknown with `*localeId` untouched.
NlsStatus findLocaleIdByName(const char16_t* name, int32_t length, int32_t* localeId);

}  // namespace veldnls
