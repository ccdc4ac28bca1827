// The library's statuses by name.
#pragma once

#include <string>

#include "veldnls/types.h"

namespace veld {

// "nlsNoDigits"; empty for a number that the library doesn't raise.
std::string statusName(NlsStatus status);

// "0x803FE810".
std::string statusNumber(NlsStatus status);

// "nlsNoDigits (0x803FE810)".
std::string statusText(NlsStatus status);

}  // namespace veld
