// The host layer a second time in the process, as a module has it beside its host.
#pragma once

#include "veldnls/hostlib/xm.h"

namespace test {

struct PoolCalls {
  decltype(&xmalloc) take;
  decltype(&xmfree) give;
  decltype(&xmreset) reset;
};

// The calls of this program's own copy.
inline constexpr PoolCalls ownCopy{xmalloc, xmfree, xmreset};

// Those of the other one.
[[gnu::visibility("default")]] PoolCalls secondCopy();

}  // namespace test
