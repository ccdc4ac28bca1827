// Options as the host layer reads them.
#include "veldnls/hostlib/opt.h"

int32_t optReadInteger(const VeldInputVector* host, const char* name, int32_t* value) {
  if (host == nullptr || host->memory == nullptr || host->memory->readOption == nullptr) return -1;
  int32_t read = 0;
  if (host->memory->readOption(name, &read) != 0) return -1;
  *value = read;
  return 0;
}
