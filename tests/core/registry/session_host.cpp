#include "session_host.h"

#include <utility>

#include "core/qznlsstub.h"

namespace test {

namespace {

HostRecords& records() {
  static HostRecords host;
  static const bool stored = veldnls::storeHostRecords(host.vector);
  (void)stored;
  return host;
}

}  // namespace

SessionOptions::SessionOptions(CEI sessionCei, std::u16string language)
    : HostOptions(records(), sessionCei, std::move(language)) {}

}  // namespace test
