#include "session_host.h"

#include <cstring>

#include "core/qznlsstub.h"
#include "support/host.h"

namespace test {

namespace {

CEI optionCei;
std::u16string optionLanguage;
int optionCalls;

NlsStatus getOption(void*, const char16_t* name, int32_t nameLength, int32_t, void* buffer, int32_t* size) {
  ++optionCalls;
  const std::u16string option(name, static_cast<size_t>(nameLength));
  if (option == u"QZNLS.XPA_SESSION_CEI") {
    std::memcpy(buffer, &optionCei, sizeof optionCei);
    return 0;
  }
  if (option == u"QZNLS.DBCSLANG" && !optionLanguage.empty()) {
    const size_t bytes = optionLanguage.size() * sizeof(char16_t);
    std::memcpy(buffer, optionLanguage.data(), bytes);
    *size = static_cast<int32_t>(bytes);
    return 0;
  }
  return 1;
}

HostRecords& records() {
  static HostRecords host;
  static const bool stored = veldnls::storeHostRecords(host.vector);
  (void)stored;
  return host;
}

const NlsHostServices services = [] {
  NlsHostServices made{};
  made.size = sizeof made;
  made.getOption = getOption;
  return made;
}();

}  // namespace

SessionOptions::SessionOptions(CEI sessionCei, std::u16string language) {
  optionCei = sessionCei;
  optionLanguage = std::move(language);
  optionCalls = 0;
  records().memory.services = &services;
}

SessionOptions::~SessionOptions() { records().memory.services = nullptr; }

int SessionOptions::asked() const { return optionCalls; }

}  // namespace test
