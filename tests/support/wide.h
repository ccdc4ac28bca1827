// ASCII text to 16-bit units and back.
#pragma once

#include <string>

namespace test {

inline std::u16string widen(const std::string& text) { return {text.begin(), text.end()}; }

inline std::string narrow(const char16_t* text, int length) {
  std::string result;
  for (int i = 0; i < length; ++i) result += static_cast<char>(text[i]);
  return result;
}

}  // namespace test
