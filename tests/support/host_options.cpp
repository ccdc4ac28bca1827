#include "support/host_options.h"

#include <cstring>
#include <utility>

namespace test {

namespace {

std::optional<CEI> optionCei;
std::u16string optionLanguage;
int optionCalls;

NlsStatus getOption(void*, const char16_t* name, int32_t nameLength, int32_t, void* buffer, int32_t* size) {
  ++optionCalls;
  const std::u16string option(name, static_cast<size_t>(nameLength));
  if (option == u"QZNLS.XPA_SESSION_CEI" && optionCei) {
    std::memcpy(buffer, &*optionCei, sizeof *optionCei);
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

const NlsHostServices services = [] {
  NlsHostServices made{};
  made.size = sizeof made;
  made.getOption = getOption;
  return made;
}();

}  // namespace

HostOptions::HostOptions(HostRecords& host, std::optional<CEI> sessionCei, std::u16string language) : host_(host) {
  optionCei = sessionCei;
  optionLanguage = std::move(language);
  optionCalls = 0;
  host_.memory.services = &services;
}

HostOptions::~HostOptions() { host_.memory.services = nullptr; }

int HostOptions::asked() const { return optionCalls; }

}  // namespace test
