#include "failure.h"

#include <cstring>

namespace veld {

Failure systemFailure(const std::string& file, const std::string& action, int error) {
  return Failure(file + ": " + action + ": " + std::strerror(error));
}

}  // namespace veld
