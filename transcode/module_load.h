// The code-page modules of an object, loaded at first need.
#pragma once

#include "veldnls/nls.h"

namespace veldnls {

// Return the module, or null when it can't be loaded. Any thread: when several load it at once, one copy stays in the
// object and the others are destroyed.
SingleByteModule* singleByteModule(QZNLS* nls);
MultiByteModule* multiByteModule(QZNLS* nls);

// The multi-byte module as the run functions of pipelines hand it to its stages.
CodePageModule* loadedMultiByteModule(QZNLS* nls);

}  // namespace veldnls
