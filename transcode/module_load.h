// The code-page modules of an object, loaded at first need.
#pragma once

#include <atomic>

#include "veldnls/nls.h"

namespace veldnls {

// Return the module, or null when it can't be loaded. Any thread: when several load it at once, one copy stays in the
// object and the others are destroyed.
SingleByteModule* singleByteModule(QZNLS* nls);
MultiByteModule* multiByteModule(QZNLS* nls);

// The multi-byte module as the run functions of pipelines hand it to its stages.
inline CodePageModule* loadedMultiByteModule(QZNLS* nls) {
  const std::atomic_ref<MultiByteModule*> slot(nls->multiByteModule);
  return reinterpret_cast<CodePageModule*>(slot.load(std::memory_order_acquire));
}

}  // namespace veldnls
