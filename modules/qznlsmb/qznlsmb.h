// "qznlsmb": conversion between multi-byte encodings and single-byte encodings or the Unicode forms.
#pragma once

#include <atomic>

#include "veldnls/modules.h"

namespace veldnls {

NlsExtension* createMultiByteModule(void* host, void* journal);

// The GB18030 module if it is there. Like the other modules it may be loaded by several threads at once, while others
// already convert: one copy stays.
inline Gb18030Module* loadedGbModule(MultiByteModule& module) {
  return std::atomic_ref<Gb18030Module*>(module.gbModule).load(std::memory_order_acquire);
}

}  // namespace veldnls
