#include "modules/qznlsgb/qznlsgb.h"

#include "core/qznlsstub.h"
#include "modules/qznlsgb/tables.h"

namespace veldnls {

namespace {

NlsStatus release(void* module) {
  nlsPoolDestroy(static_cast<Gb18030Module*>(module)->pool);
  return 0;
}

}  // namespace

// A supplementary character is looked up by its low 16 bits: U+1E000 has the code of U+E000.
uint32_t gbFromUnicode(Gb18030Module* /*module*/, uint32_t codePoint) {
  return gbFromUnicodeIndex.lookUp(static_cast<char16_t>(codePoint));
}

uint32_t gbToUnicode(Gb18030Module* /*module*/, uint32_t code) { return gbToUnicodeIndex.lookUp(code); }

NlsExtension* createGb18030Module(void* host, void* journal) {
  auto* module = createExtension<Gb18030Module>(host, journal, "qznlsgb pool", release);
  if (module == nullptr) return nullptr;
  module->fromUnicode = gbFromUnicode;
  module->toUnicode = gbToUnicode;
  return reinterpret_cast<NlsExtension*>(module);
}

}  // namespace veldnls
