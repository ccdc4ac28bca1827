// Validation of encoded text. The library has no tables of valid bytes yet: every encoding is refused.
#pragma once

#include "veldnls/nls.h"

namespace veldnls {

NlsStatus validateEncodedText(QZNLS* nls, const void* text, uint32_t length, CEI cei, void* reserved, int32_t* offset);

}  // namespace veldnls
