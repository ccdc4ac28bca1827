// What this program ends with.
#pragma once

#include <stdexcept>
#include <string>

namespace veld {

inline constexpr int exitWhole = 0;    // all of the text came over
inline constexpr int exitLoss = 1;     // something was substituted, malformed or cut
inline constexpr int exitNotDone = 2;  // wrong usage, or a file, the module or the system refused

// Ends the work with exitNotDone. The text is a whole sentence that names the cure.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

inline constexpr const char* memoryShort = "memory is exhausted; close other programs and try again";

// Throws Failure where something written to std::cout was lost. To be asked now and then in a loop that may have no
// end.
void requireStandardOutput();

// The failure of a system call on a file, with the system's own words, and the cure.
Failure systemFailure(const std::string& file, const std::string& action, int error, const std::string& cure);

}  // namespace veld
