// What the environment variables say of the user's locale. Only the environment is read, never the C library's locale,
// which is state of the host.
#pragma once

#include <string_view>

namespace veldnls {

// Value of LC_ALL, or of `category`, or of LANG: the first that is set and not empty, without its "@modifier". Empty if
// there is none. The text stays valid until the environment changes.
std::string_view environmentLocale(const char* category);

}  // namespace veldnls
