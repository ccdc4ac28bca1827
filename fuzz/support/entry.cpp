#include "fuzz/support/input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::check(fuzz::Input(data, size));
  return 0;
}
