// veld encodings: the encoding table.
#pragma once

#include <string>

#include "veldnls/nls.h"

namespace veld {

enum class Format { text, json };

// Prints the whole table, one row a line, or, with a name, all about the row that it stands for. Throws Failure for an
// unknown name.
void printEncodings(QZNLS& nls, const std::string& name, Format format);

}  // namespace veld
