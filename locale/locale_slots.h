// The locale slots of QZNLS. Contracts stand at the slot types in veldnls/qzlocale.h and veldnls/encoding.h.
#pragma once

#include "veldnls/nls.h"

namespace veldnls {

void installLocaleSlots(QZNLS* nls);

}  // namespace veldnls
