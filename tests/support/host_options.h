// A host whose options say what its session is: the encoding, and the language that encodings ask for which stand for a
// type of encoding.
#pragma once

#include <optional>
#include <string>

#include "support/host.h"

namespace test {

// While one lives, the host's two options have these values; without a value, or for another option, the answer is a
// status. One at a time.
class HostOptions {
 public:
  HostOptions(HostRecords& host, std::optional<CEI> sessionCei, std::u16string language);
  ~HostOptions();
  HostOptions(const HostOptions&) = delete;
  HostOptions& operator=(const HostOptions&) = delete;

  // How often an option was asked for.
  int asked() const;

 private:
  HostRecords& host_;
};

}  // namespace test
