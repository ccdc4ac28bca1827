// "qznlsgb": single characters between GB18030 and UTF-16, for the multi-byte module.
#pragma once

#include "veldnls/modules.h"

namespace veldnls {

NlsExtension* createGb18030Module(void* host, void* journal);

// The slots. Contracts stand at NlsGbLookup in veldnls/modules.h.
uint32_t gbFromUnicode(Gb18030Module* module, uint32_t codePoint);
uint32_t gbToUnicode(Gb18030Module* module, uint32_t code);

}  // namespace veldnls
