// Encodings by name.
#pragma once

#include <string>
#include <vector>

#include "veldnls/nls.h"

namespace veld {

// The name by which this program knows encoding 0, the session's.
inline constexpr const char* sessionName = "session";

// The encoding of a name: any that the library's any-name look-up answers, or sessionName.
// Throws Failure, with the nearest known names, for an unknown one.
CEI findEncoding(QZNLS& nls, const std::string& name);

// The row of an encoding that the library knows.
const EncodingDescriptor& rowOf(QZNLS& nls, CEI cei);

// What to call an encoding: its primary name, or where that is empty its short name, or "encoding 17".
std::string displayName(QZNLS& nls, CEI cei);

// The texts of a row's columns, each once, that the any-name look-up answers with this row.
std::vector<std::string> knownNames(QZNLS& nls, const EncodingDescriptor& row);

// The known names that differ least from `name`, at most `suggestions` of different encodings, nearest first.
std::vector<std::string> nearestNames(QZNLS& nls, const std::string& name);

}  // namespace veld
