// Bytes that a pipeline goes on waiting on, though no character begins so.
#pragma once

#include <vector>

#include "character_form.h"

namespace veld {

// How many bytes at the start of a text can't begin a character, whatever follows; 0 when they can. Knows the encodings
// of which the library waits for more than two bytes: utf-8, gb18030 and UTF-16.
size_t brokenStart(const CharacterForm& form, Bytes text);

// A text of such an encoding that becomes what the library puts in place of malformed bytes.
std::vector<uint8_t> brokenSubstitute(const CharacterForm& form);

}  // namespace veld
