// A host whose options name a double-byte language, which the encodings that stand for a type of encoding ask for.
#pragma once

#include <string>

#include "support/host.h"

namespace test {

// While one lives, the host's option names this language. With "UNKNOWN" every double-byte type but UTF-16 and UTF-8
// stands for itself. One at a time.
class DbcsLanguage {
 public:
  DbcsLanguage(HostRecords& host, std::u16string language);
  ~DbcsLanguage();
  DbcsLanguage(const DbcsLanguage&) = delete;
  DbcsLanguage& operator=(const DbcsLanguage&) = delete;

 private:
  HostRecords& host_;
};

}  // namespace test
