// What the pool tests share: a host that refuses the n-th allocation, and a look into pools.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "support/host.h"
#include "support/sanitizers.h"
#include "veldnls/hostlib/xm.h"

namespace test {

// While one lives, the n-th question for memory, counted from 1, is refused; 0 refuses none.
class RefuseNth {
 public:
  RefuseNth(VeldMemoryRecord& record, int n);
  ~RefuseNth();
  RefuseNth(const RefuseNth&) = delete;
  RefuseNth& operator=(const RefuseNth&) = delete;

  // The sizes that were asked for.
  static const std::vector<uint32_t>& sizes();
  bool refused() const;

 private:
  VeldMemoryRecord& record_;
  int n_;
};

struct Block {
  uint8_t* at;
  uint32_t size;
  bool operator==(const Block&) const = default;
};

// The free chain of a chunk of a variable-block pool.
std::vector<Block> freeBlocks(const XmChunk* chunk);

std::vector<XmChunk*> chunksOf(const XmPool* pool);

// The number of pools in the context's list.
int poolCount(const XmContext* context);

bool allBytes(const void* memory, size_t size, uint8_t value);

}  // namespace test
