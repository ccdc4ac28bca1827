// Which known names a mistyped one may mean.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace veld {

std::string lowerAscii(std::string text);

// Insertions, removals and replacements that lead from one text to the other.
size_t editDistance(std::string_view a, std::string_view b);

// How many names are offered.
inline constexpr size_t suggestions = 3;

// "a, b, c".
std::string listed(const std::vector<std::string>& names);

}  // namespace veld
