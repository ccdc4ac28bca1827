// The sections of a locale's record.
#pragma once

#include "json_report.h"
#include "locale_handle.h"

namespace veld {

// Keys are the fields of the record. Texts of the item table have their escapes turned into characters.
Json localeSections(QZNLS& nls, Locale& locale);

}  // namespace veld
