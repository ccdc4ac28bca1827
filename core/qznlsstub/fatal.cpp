// The ends of the process that a dump is to catch.
#include "core/qznlsstub.h"
#include "veldnls/hostlib/hs.h"

namespace veldnls {

void assertionStub(const char* unit, int line) {
  hsTrace(hostRecords(), "Assertion failed: %s/%d\n", unit, line);
  hsCrash(1);
}

void fatalStore() { hsCrash(0); }

}  // namespace veldnls
