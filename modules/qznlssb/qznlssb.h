// "qznlssb": conversion between single-byte encodings, and between them and the Unicode forms.
#pragma once

#include "veldnls/modules.h"

namespace veldnls {

NlsExtension* createSingleByteModule(void* host, void* journal);

}  // namespace veldnls
