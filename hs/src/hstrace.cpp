// The trace writer, the sink of every failure that no one can handle.
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "hs/src/platform/platform.h"
#include "veldnls/hostlib/hs.h"

namespace {

constexpr size_t stampSize = 60;
constexpr size_t programNameLimit = 64;

static_assert(sizeof(VeldFileRecord::programName) > programNameLimit);

const char* programName(const VeldInputVector* host) {
  if (host == nullptr || host->files == nullptr || host->files->programName[0] == '\0') return "VELD";
  return host->files->programName;
}

}  // namespace

void hsTrace(const VeldInputVector* host, const char* format, ...) {
  std::tm now{};
  veldnls::platform::localTime(&now);
  char stamp[stampSize];
  // A stamp that doesn't fit leaves the buffer undefined.
  if (std::strftime(stamp, sizeof stamp, "%x %X:", &now) == 0) stamp[0] = '\0';
  std::printf("%s(%d) %.*s- ", stamp, veldnls::platform::processId(), static_cast<int>(programNameLimit),
              programName(host));
  std::va_list arguments;
  va_start(arguments, format);
  std::vprintf(format, arguments);
  va_end(arguments);
  std::fflush(stdout);
}

void hsSetProgramName(VeldInputVector* host, const char* name) {
  if (host == nullptr || host->files == nullptr) return;
  VeldFileRecord& record = *host->files;
  const size_t length = name == nullptr ? 0 : strnlen(name, programNameLimit);
  // The name may stand in the record already.
  if (length != 0) std::memmove(record.programName, name, length);
  std::memset(record.programName + length, 0, sizeof record.programName - length);
}
