// A host whose options name a double-byte language, which the encodings that stand for a type of encoding ask for.
#pragma once

#include <utility>

#include "support/host_options.h"

namespace test {

// While one lives, the host's option names this language, and no session encoding has a value. With "UNKNOWN" every
// double-byte type but UTF-16 and UTF-8 stands for itself. One at a time.
struct DbcsLanguage : HostOptions {
  DbcsLanguage(HostRecords& host, std::u16string language) : HostOptions(host, std::nullopt, std::move(language)) {}
};

}  // namespace test
