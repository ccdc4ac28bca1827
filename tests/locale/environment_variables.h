// Sets the environment's locale variables for a scope; those not named are unset, and all come back at its end.
#pragma once

#include <cstdlib>
#include <map>
#include <string>

namespace test {

class EnvironmentVariables {
 public:
  explicit EnvironmentVariables(const std::map<std::string, std::string>& variables) {
    for (const char* name : {"LC_ALL", "LC_CTYPE", "LC_MESSAGES", "LANG"}) {
      if (const char* value = std::getenv(name)) saved_[name] = value;
      unsetenv(name);
    }
    for (const auto& [name, value] : variables) setenv(name.c_str(), value.c_str(), 1);
  }
  ~EnvironmentVariables() {
    for (const char* name : {"LC_ALL", "LC_CTYPE", "LC_MESSAGES", "LANG"}) unsetenv(name);
    for (const auto& [name, value] : saved_) setenv(name.c_str(), value.c_str(), 1);
  }
  EnvironmentVariables(const EnvironmentVariables&) = delete;
  EnvironmentVariables& operator=(const EnvironmentVariables&) = delete;

 private:
  std::map<std::string, std::string> saved_;
};

}  // namespace test
