// The library as this program holds it: the loaded module, the support records, and the object made with them.
#pragma once

#include <string>

#include "veldnls/host.h"
#include "veldnls/nls.h"

namespace veld {

class Library {
 public:
  // Loads `modulePath`, or, when that is empty, the module from the folder of this program or else from the install
  // folder, by the name that it has in all versions this program can use, and makes the object. Throws Failure.
  explicit Library(const std::string& modulePath);
  ~Library();
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  QZNLS& nls() const { return *nls_; }
  const std::string& modulePath() const { return modulePath_; }

 private:
  void makeObject();

  std::string modulePath_;
  void* module_ = nullptr;
  VeldMemoryRecord memory_{};
  VeldThreadBlock threadBlock_{};
  VeldThreadRecord threads_{};
  VeldFileRecord files_{};
  VeldInputVector vector_{};
  QZNLS* nls_ = nullptr;
};

}  // namespace veld
