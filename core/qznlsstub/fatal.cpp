// The ends of the process that a dump is to catch.
#include <cstdint>
#include <cstdlib>

#include "core/qznlsstub.h"
#include "veldnls/hostlib/hs.h"

namespace veldnls {

namespace {

// A store that the compiler can't reason about, at an address that no process owns.
[[noreturn, gnu::noinline]] __attribute__((no_sanitize("address", "undefined"))) void storeAt(uintptr_t address) {
  volatile uintptr_t place = address;
  *reinterpret_cast<volatile char*>(place) = 0;
  std::abort();
}

}  // namespace

void assertionStub(const char* unit, int line) {
  hsTrace(hostRecords(), "Assertion failed: %s/%d\n", unit, line);
  storeAt(1);
}

void fatalStore() { storeAt(0); }

}  // namespace veldnls
