// Fills the record of a locale.
#pragma once

#include "veldnls/modules.h"

namespace veldnls {

// The slot of "qznlsldb"; its contract stands at NlsLoadLocaleRecord.
NlsStatus loadLocaleRecord(LocaleRecord* record, const char16_t* name, int32_t length);

// The same by locale identifier. An identifier without data gives the data of en_US.
void fillLocaleRecord(LocaleRecord* record, int32_t localeId);

}  // namespace veldnls
