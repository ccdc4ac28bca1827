// The module-wide variables: the host's records as the export stored them, and the memory context that the module makes
// for hosts that bring none.
#include <atomic>
#include <cstring>
#include <mutex>

#include "core/qznlsstub.h"
#include "veldnls/hostlib/xm.h"

namespace veldnls {

namespace {

struct StoredRecords {
  VeldInputVector vector;
  VeldThreadBlock threadBlock;
  VeldMemoryRecord memory;  // used when the host's record has no context
};

// Two places, so that a later call of the export never writes what threads of an older object read.
StoredRecords places[2];
std::atomic<const VeldInputVector*> current{&places[0].vector};

std::mutex storing;
// Where the module's own context stands, once there is one.
VeldMemoryRecord ownMemory;
VeldInputVector ownVector = {&ownMemory, nullptr, nullptr, nullptr, nullptr};

[[gnu::destructor]] void endOwnContext() {
  if (ownMemory.context != nullptr) xmterm(&ownVector, ownMemory.context);
}

}  // namespace

const VeldInputVector* hostRecords() { return current.load(std::memory_order_acquire); }

bool storeHostRecords(const VeldInputVector& records) {
  const std::lock_guard<std::mutex> lock(storing);
  StoredRecords& place = hostRecords() == &places[0].vector ? places[1] : places[0];
  place.vector = records;
  if (records.threadBlock != nullptr) {
    std::memcpy(&place.threadBlock, records.threadBlock, sizeof place.threadBlock);
    place.vector.threadBlock = &place.threadBlock;
  }
  if (records.memory == nullptr || records.memory->context == nullptr) {
    if (xminit(&ownVector) == nullptr) return false;
    place.memory = records.memory != nullptr ? *records.memory : VeldMemoryRecord{};
    place.memory.context = ownMemory.context;
    place.vector.memory = &place.memory;
  }
  current.store(&place.vector, std::memory_order_release);
  return true;
}

}  // namespace veldnls
