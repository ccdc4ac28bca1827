// The five collator slots of QZNLS. Contracts stand at the slot types in veldnls/qzcollate.h.
#pragma once

#include "veldnls/nls.h"

namespace veldnls {

void installCollatorSlots(QZNLS* nls);

}  // namespace veldnls
