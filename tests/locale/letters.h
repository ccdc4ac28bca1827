// Upper and lower case of ASCII, whatever the locale of the process is: in a Turkish one, toupper leaves "i" as it is.
#pragma once

#include <string>

namespace test {

inline std::string upper(std::string text) {
  for (char& c : text) c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
  return text;
}

inline std::string lower(std::string text) {
  for (char& c : text) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
  return text;
}

}  // namespace test
