#include "info.h"

#include <iomanip>
#include <iostream>

#include "locale_handle.h"
#include "names.h"
#include "status_names.h"
#include "text.h"
#include "veldnls/status.h"

namespace veld {

namespace {

void printLine(const std::string& heading, const std::string& value) {
  std::cout << std::left << std::setw(16) << heading << value << '\n';
}

std::string versionText(NlsVersionQuery query) {
  int32_t major = 0;
  int32_t minor = 0;
  int32_t patch = 0;
  query(nullptr, &major, &minor, &patch);
  return std::to_string(major) + '.' + std::to_string(minor) + '.' + std::to_string(patch);
}

std::string foundText(NlsStatus status) {
  const std::string number = " (status " + statusNumber(status);
  switch (status) {
    case 0:
      return number + ", found)";
    case nlsUnknownEncoding:
      return number + ", the host's code page is unknown, a default stands in)";
    case nlsLocaleNotFound:
      return number + ", the host's locale is unknown, a default stands in)";
    default:
      return number + ")";
  }
}

std::string hostEncodingText(QZNLS& nls) {
  CEI cei = 0;
  const NlsStatus status = nls.getHostEncoding(&nls, &cei);
  return displayName(nls, cei) + foundText(status);
}

std::string hostLocaleText(QZNLS& nls) {
  char16_t name[localeNameRoom];
  int32_t length = 0;
  const NlsStatus status = nls.getHostLocaleName(&nls, name, &length);
  return toUtf8(nls, {name, static_cast<size_t>(length)}) + foundText(status);
}

}  // namespace

std::string versionLine() { return "veld " VELD_VERSION; }

void printInfo(const Library& library) {
  QZNLS& nls = library.nls();
  printLine("program", VELD_VERSION);
  printLine("module", onOneLine(library.modulePath()));
  printLine("library", versionText(nls.versionQuery));
  printLine("compatible from", versionText(nls.minimumVersionQuery));
  printLine("system encoding", displayName(nls, nls.osCei));
  printLine("host encoding", hostEncodingText(nls));
  printLine("host locale", hostLocaleText(nls));
}

}  // namespace veld
