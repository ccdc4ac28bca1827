// veld info: what is loaded, and what the library found out about its host.
#pragma once

#include "module.h"

namespace veld {

void printInfo(const Library& library);

}  // namespace veld
