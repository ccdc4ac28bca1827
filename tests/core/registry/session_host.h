// A host whose two session options the tests set.
#pragma once

#include <string>

#include "veldnls/nls.h"

namespace test {

// While one lives, the options have these values; without one, asking for an option ends the process.
class SessionOptions {
 public:
  explicit SessionOptions(CEI sessionCei, std::u16string language = u"");
  ~SessionOptions();
  SessionOptions(const SessionOptions&) = delete;
  SessionOptions& operator=(const SessionOptions&) = delete;

  QZNLS* nls() { return &nls_; }
  // How often an option was asked for.
  int asked() const;

 private:
  QZNLS nls_{};
};

}  // namespace test
