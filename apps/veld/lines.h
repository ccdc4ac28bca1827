// The lines of standard input.
#pragma once

#include <functional>
#include <string>

namespace veld {

// Calls `take` with each line as soon as it is there, without its LF or CR LF. Throws Failure.
void forEachInputLine(const std::function<void(const std::string& line)>& take);

}  // namespace veld
