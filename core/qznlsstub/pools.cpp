// Pool calls, mapped on the host layer's pools.
#include "core/qznlsstub.h"
#include "veldnls/hostlib/xm.h"

namespace veldnls {

namespace {

constexpr uint32_t poolBytes = 0x2000;  // first chunk and growth step

}  // namespace

XmPool* nlsPoolCreate(void* /*host*/, const int32_t* params, void* /*journal*/, const char* /*name*/) {
  const uint32_t flags = (static_cast<uint32_t>(params[0]) & zeroFill) != 0 ? XM_ZERO : 0;
  return xmcreate(hostRecords(), poolBytes, poolBytes, flags);
}

NlsStatus nlsPoolDestroy(XmPool* pool) {
  xmdestroy(hostRecords(), pool);
  return 0;
}

void* nlsPoolAlloc(XmPool* pool, uint32_t size, uint32_t flags) {
  const uint32_t zero = (flags & zeroFill) != 0 ? XM_ZERO : 0;
  return xmalloc(hostRecords(), pool, size, XM_LENGTH_HEADER | zero);
}

NlsStatus nlsPoolFree(XmPool* pool, void* address) {
  xmfree(hostRecords(), pool, address, XM_SIZE_IN_HEADER);
  return 0;
}

}  // namespace veldnls
