#include "hs/index_memory.h"

#include <cstddef>
#include <random>

#include "veldnls/host.h"

namespace {

uint32_t refusedPercent = 0;
int givenCount = 0;
int refusedCount = 0;
std::mt19937 chance;

}  // namespace

// The allocator's name as the linker knows it.
extern "C" {
uint8_t* __real__ZN7veldnls2hs15takeIndexMemoryEP9XmContextm(XmContext* context, size_t bytes);
uint8_t* __wrap__ZN7veldnls2hs15takeIndexMemoryEP9XmContextm(XmContext* context, size_t bytes) {
  if (chance() % 100 < refusedPercent) {
    ++refusedCount;
    return nullptr;
  }
  ++givenCount;
  return __real__ZN7veldnls2hs15takeIndexMemoryEP9XmContextm(context, bytes);
}
}

namespace test {

RefuseIndexMemory::RefuseIndexMemory(uint32_t percent) {
  refusedPercent = percent;
  givenCount = 0;
  refusedCount = 0;
  chance.seed(percent);
}

RefuseIndexMemory::~RefuseIndexMemory() { refusedPercent = 0; }

int RefuseIndexMemory::given() { return givenCount; }

int RefuseIndexMemory::refused() { return refusedCount; }

}  // namespace test
