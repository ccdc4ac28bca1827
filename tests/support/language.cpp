#include "support/language.h"

#include <cstring>
#include <utility>

namespace test {

namespace {

std::u16string optionLanguage;

// No session encoding; the language.
NlsStatus getOption(void*, const char16_t* name, int32_t nameLength, int32_t, void* buffer, int32_t* size) {
  const std::u16string option(name, static_cast<size_t>(nameLength));
  if (option != u"QZNLS.DBCSLANG") return 1;
  const size_t bytes = optionLanguage.size() * sizeof(char16_t);
  std::memcpy(buffer, optionLanguage.data(), bytes);
  *size = static_cast<int32_t>(bytes);
  return 0;
}

const NlsHostServices services = [] {
  NlsHostServices made{};
  made.size = sizeof made;
  made.getOption = getOption;
  return made;
}();

}  // namespace

DbcsLanguage::DbcsLanguage(HostRecords& host, std::u16string language) : host_(host) {
  optionLanguage = std::move(language);
  host_.memory.services = &services;
}

DbcsLanguage::~DbcsLanguage() { host_.memory.services = nullptr; }

}  // namespace test
