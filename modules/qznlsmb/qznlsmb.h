// "qznlsmb": conversion between multi-byte encodings and single-byte encodings or the Unicode forms.
#pragma once

#include "veldnls/modules.h"

namespace veldnls {

NlsExtension* createMultiByteModule(void* host, void* journal);

}  // namespace veldnls
