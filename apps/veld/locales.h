// veld locales: the locales, and all about one of them.
#pragma once

#include <optional>
#include <string>

#include "encodings.h"

namespace veld {

// Prints the whole table, one locale a line, or, with a name, the sections of that locale's record and examples of what
// it formats. Throws Failure for an unknown name.
void printLocales(QZNLS& nls, const std::optional<std::string>& name, Format format);

}  // namespace veld
