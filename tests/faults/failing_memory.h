// A host whose memory fails at the n-th call, and a look at what its pools hold.
#pragma once

#include <cstdint>

#include "support/host.h"

namespace faults_test {

enum class Failure { once, fromThenOn };
inline constexpr Failure failures[] = {Failure::once, Failure::fromThenOn};

// While it lives, the n-th request for memory, counted from 1, fails; or all from the n-th on.
class FailingMemory {
 public:
  FailingMemory(VeldMemoryRecord& record, Failure failure, int n);
  ~FailingMemory();
  FailingMemory(const FailingMemory&) = delete;
  FailingMemory& operator=(const FailingMemory&) = delete;

  bool failed() const;
  int requests() const;

 private:
  VeldMemoryRecord& record_;
};

// Bytes of a pool's blocks: what was taken and not given back.
uint64_t usedBytes(const XmPool* pool);

// What a context has given out. Equal before and after means that nothing is lost.
struct Balance {
  explicit Balance(const XmContext* context);

  uint32_t inUse;
  int pools;

  bool operator==(const Balance&) const = default;
};

}  // namespace faults_test
