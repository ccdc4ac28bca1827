// The end of a process that a dump is to catch.
#include <cstdint>
#include <cstdlib>

#include "veldnls/hostlib/hs.h"

// A store that the compiler can't reason about.
[[gnu::noinline]] __attribute__((no_sanitize("address", "undefined"))) void hsCrash(uintptr_t address) {
  volatile uintptr_t place = address;
  *reinterpret_cast<volatile char*>(place) = 0;
  std::abort();
}
