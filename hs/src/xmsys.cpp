// Memory from the ranges, under the limit and with its account.
#include <algorithm>

#include "hs/src/pool.h"
#include "hs/src/range.h"

namespace veldnls::hs {

void* takeSystem(const VeldInputVector* host, XmContext* context, uint32_t size, int* zero) {
  if (size == 0 || !mayAllocate(host, size)) return nullptr;
  const ContextLock lock(context);
  if (uint64_t{context->inUse} + size > context->limit) return nullptr;
  void* memory = takeFromRanges(&context->ranges, size, zero != nullptr && *zero != 0);
  if (memory == nullptr) return nullptr;
  context->inUse += size;
  context->highWater = std::max(context->highWater, context->inUse);
  return memory;
}

void giveSystem(XmContext* context, void* address, uint32_t size) {
  const ContextLock lock(context);
  if (!giveToRanges(&context->ranges, static_cast<uint8_t*>(address), size)) return;
  // Pieces of odd sizes that are given back together count for more than they did when they were taken.
  context->inUse -= std::min(size, context->inUse);
}

}  // namespace veldnls::hs

using namespace veldnls::hs;

void* xmsysalloc(const VeldInputVector* host, uint32_t size, int* zero) {
  XmContext* context = contextOf(host);
  return context != nullptr ? takeSystem(host, context, size, zero) : nullptr;
}

void xmsysfree(const VeldInputVector* host, void* address, uint32_t size) {
  XmContext* context = contextOf(host);
  if (context != nullptr && address != nullptr) giveSystem(context, address, size);
}
