#include "hs/src/index_memory.h"

#include <limits>

#include "hs/src/pool.h"
#include "hs/src/range.h"

namespace veldnls::hs {

uint8_t* takeIndexMemory(XmContext* context, size_t bytes) {
  if (bytes > std::numeric_limits<uint32_t>::max()) return nullptr;
  const ContextLock lock(context);
  return takeFromRanges(&blockOf(context)->indexRanges, static_cast<uint32_t>(bytes), true);
}

void giveIndexMemory(XmContext* context, uint8_t* address, size_t bytes) {
  const ContextLock lock(context);
  giveToRanges(&blockOf(context)->indexRanges, address, static_cast<uint32_t>(bytes));
}

}  // namespace veldnls::hs
