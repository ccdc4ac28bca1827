// veld diff: on which characters two encodings differ.
#pragma once

#include <string>

#include "encodings.h"

namespace veld {

// Prints the characters that only one of the encodings has, and the codes that stand for different characters, and
// returns exitWhole where there are none, else exitLoss. Codes are bytes and pairs of bytes, in shifted encodings those
// of either mode, and four bytes where one encoding is gb18030; they aren't compared with Unicode forms. Throws
// Failure.
int diff(QZNLS& nls, const std::string& nameA, const std::string& nameB, Format format);

}  // namespace veld
