// Validation of encoded text. The contract stands at the slot type in veldnls/encoding.h.
#pragma once

#include "veldnls/nls.h"

namespace veldnls {

NlsStatus validateEncodedText(QZNLS* nls, const void* text, uint32_t length, CEI cei, void* reserved, int32_t* offset);

}  // namespace veldnls
