#include "failure.h"

#include <cstring>
#include <iostream>

namespace veld {

void requireStandardOutput() {
  if (!std::cout) throw Failure("standard output can't be written; is its device full?");
}

Failure systemFailure(const std::string& file, const std::string& action, int error, const std::string& cure) {
  return Failure(file + ": " + action + ": " + std::strerror(error) + "; " + cure);
}

}  // namespace veld
