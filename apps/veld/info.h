// veld info: what is loaded, and what the library found out about its host.
#pragma once

#include <string>

#include "module.h"

namespace veld {

// What --version prints.
std::string versionLine();

void printInfo(const Library& library);

}  // namespace veld
