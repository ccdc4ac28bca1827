// Examples of what a locale formats.
#pragma once

#include "json_report.h"
#include "veldnls/nls.h"

namespace veld {

// For each kind of value, values in plain form and the texts that they have in the locale. The examples are made by the
// same calls as those of "veld format".
Json localeExamples(QZNLS& nls, const std::string& locale);

}  // namespace veld
