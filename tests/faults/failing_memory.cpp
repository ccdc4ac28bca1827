#include "faults/failing_memory.h"

#include "hs/pools_host.h"

namespace faults_test {

namespace {

Failure mode;
int failing;
int asked;

NlsBool8 answer(uint32_t) {
  ++asked;
  const bool fails = mode == Failure::once ? asked == failing : asked >= failing;
  return fails ? 0 : 1;
}

}  // namespace

FailingMemory::FailingMemory(VeldMemoryRecord& record, Failure failure, int n) : record_(record) {
  mode = failure;
  failing = n;
  asked = 0;
  record_.allowAllocation = answer;
}

FailingMemory::~FailingMemory() { record_.allowAllocation = nullptr; }

bool FailingMemory::failed() const { return asked >= failing; }

int FailingMemory::requests() const { return asked; }

uint64_t usedBytes(const XmPool* pool) {
  uint64_t used = 0;
  for (const XmChunk* chunk : test::chunksOf(pool)) {
    const uint8_t* end = chunk->bump != nullptr ? chunk->bump : chunk->end;
    used += static_cast<uint64_t>(end - chunk->start);
    for (const test::Block& block : test::freeBlocks(chunk)) used -= block.size;
  }
  return used;
}

Balance::Balance(const XmContext* context) : inUse(context->inUse), pools(test::poolCount(context)) {}

}  // namespace faults_test
