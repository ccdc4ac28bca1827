// A host whose two session options the tests set.
#pragma once

#include <string>

#include "support/host_options.h"
#include "veldnls/nls.h"

namespace test {

// While one lives, the options have these values; without one, asking for an option ends the process.
class SessionOptions : public HostOptions {
 public:
  explicit SessionOptions(CEI sessionCei, std::u16string language = u"");

  QZNLS* nls() { return &nls_; }

 private:
  QZNLS nls_{};
};

}  // namespace test
