// The module-wide variables: the host's records as the export stored them, and the memory context that the module makes
// for hosts that bring none.
#include <atomic>
#include <cstring>
#include <mutex>
#include <type_traits>

#include "core/qznlsstub.h"
#include "veldnls/hostlib/ht.h"
#include "veldnls/hostlib/xm.h"

namespace veldnls {

namespace {

// What one call of the export brought.
struct Brought {
  VeldInputVector vector;
  VeldThreadBlock threadBlock;
  VeldMemoryRecord memory;  // stands in for the host's record when that has no context
};
static_assert(std::has_unique_object_representations_v<Brought>, "compared byte by byte");

// A published place is never written again: threads of older objects may be reading it.
struct StoredRecords {
  Brought brought;
  VeldInputVector used;
  const StoredRecords* older;
};

StoredRecords firstPlace;
std::atomic<const StoredRecords*> current{nullptr};
std::mutex storing;
const StoredRecords* newest = nullptr;  // guarded by `storing`

std::atomic<uint32_t> callsInProgress{0};
std::atomic<uint32_t> liveObjects{0};

// Where the module's own context stands, once there is one.
VeldMemoryRecord ownMemory;
VeldInputVector ownVector = {&ownMemory, nullptr, nullptr, nullptr, nullptr};

// The module may end because the process does, while other threads are at work with objects.
bool mayBeInUse() { return callsInProgress.load() != 0 || (liveObjects.load() != 0 && htSingleThread() == 0); }

// What may be in use is the system's to take. A call of the export that comes later still begins anew. While `storing`
// is held a call is in progress, so that a host's function may end the process from within.
[[gnu::destructor]] void endOwnContext() {
  if (mayBeInUse()) return;
  const std::lock_guard<std::mutex> lock(storing);
  if (mayBeInUse() || ownMemory.context == nullptr) return;
  current.store(nullptr);
  newest = nullptr;
  firstPlace = {};
  hsmemterm(&ownVector, ownMemory.context);
  xmterm(&ownVector, ownMemory.context);
}

bool hasContext(const VeldInputVector& records) {
  return records.memory != nullptr && records.memory->context != nullptr;
}

// The first call takes the constant place, each later one that brings something else a place of the module's context.
StoredRecords* freshPlace() {
  if (newest == nullptr) return &firstPlace;
  if (xminit(&ownVector) == nullptr) return nullptr;
  return static_cast<StoredRecords*>(
      xmalloc(&ownVector, ownMemory.context->defaultPool, sizeof(StoredRecords), XM_ZERO | XM_LENGTH_HEADER));
}

// The place that holds the same already, or null. Hosts that take turns thus need no more places than there are hosts.
const StoredRecords* placeOf(const Brought& brought) {
  const StoredRecords* place = newest;
  while (place != nullptr && std::memcmp(&place->brought, &brought, sizeof brought) != 0) place = place->older;
  return place;
}

}  // namespace

const VeldInputVector* hostRecords() {
  const StoredRecords* stored = current.load(std::memory_order_acquire);
  return stored != nullptr ? &stored->used : &firstPlace.used;
}

bool storeHostRecords(const VeldInputVector& records) {
  const std::lock_guard<std::mutex> lock(storing);
  Brought brought{};
  brought.vector = records;
  if (records.threadBlock != nullptr) brought.threadBlock = *records.threadBlock;
  if (!hasContext(records)) {
    if (xminit(&ownVector) == nullptr) return false;
    if (records.memory != nullptr) brought.memory = *records.memory;
    brought.memory.context = ownMemory.context;
  }
  if (const StoredRecords* known = placeOf(brought); known != nullptr) {
    current.store(known, std::memory_order_release);
    return true;
  }
  StoredRecords* place = freshPlace();
  if (place == nullptr) return false;
  place->brought = brought;
  place->used = records;
  if (records.threadBlock != nullptr) place->used.threadBlock = &place->brought.threadBlock;
  if (!hasContext(records)) place->used.memory = &place->brought.memory;
  place->older = newest;
  newest = place;
  current.store(place, std::memory_order_release);
  return true;
}

void beginCall() { ++callsInProgress; }
void endCall() { --callsInProgress; }

void countObject() { ++liveObjects; }
void forgetObject() { --liveObjects; }

}  // namespace veldnls
