#include "failure.h"

#include <cstring>

namespace veld {

Failure systemFailure(const std::string& file, const std::string& action, int error, const std::string& cure) {
  return Failure(file + ": " + action + ": " + std::strerror(error) + "; " + cure);
}

}  // namespace veld
