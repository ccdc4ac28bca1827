// Text between the command line (UTF-8) and the library (UTF-16), converted by the library itself but for characters
// of plane 16, which it doesn't read whole.
#pragma once

#include <string>
#include <string_view>

#include "veldnls/nls.h"

namespace veld {

// Bytes that are no UTF-8 become U+FFFD.
std::u16string toUtf16(QZNLS& nls, std::string_view text);
std::string toUtf8(QZNLS& nls, std::u16string_view text);

// Whether a character controls how a line is shown: C0 and C1, ends of lines, and what turns the direction of writing.
bool isControl(char32_t character);

// A message in which names may stand as they were given: control characters become escapes, as \n, \x1B and \u202E, and
// so do bytes that are no UTF-8 and one of C1 on other terminals.
std::string onOneLine(std::string_view text);

// JSON on one line, of which control characters become its own escapes.
std::string withoutControls(std::string_view json);

// The number as "803FE809", or "0x803FE809", with at least `digits` digits.
std::string hexDigits(uint32_t value, int digits);
std::string hexNumber(uint32_t value, int digits);

}  // namespace veld
