// How wide characters show.
#pragma once

#include <cstddef>
#include <string_view>

namespace veld {

// The columns of a terminal that a character of one or two units takes: 2 for wide ideographs, kana and syllables, 0
// for marks that show on the character in front. Controls and half pairs take 1, as what stands for them does.
size_t displayWidth(std::u16string_view character);

}  // namespace veld
