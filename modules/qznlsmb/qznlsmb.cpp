#include "modules/qznlsmb/qznlsmb.h"

#include "core/qznlsstub.h"
#include "modules/qznlsmb/setup.h"

namespace veldnls {

namespace {

NlsStatus release(void* handle) {
  auto* module = static_cast<MultiByteModule*>(handle);
  if (module->gbModule != nullptr) module->gbModule->destroy(module->gbModule);
  nlsPoolDestroy(module->pool);
  return 0;
}

}  // namespace

NlsExtension* createMultiByteModule(void* host, void* journal) {
  auto* module = createExtension<MultiByteModule>(host, journal, "qznlsmb pool", release);
  if (module == nullptr) return nullptr;
  module->setupByteToMultibyte = setupByteToMultibyte;
  module->setupMultibyteToByte = setupMultibyteToByte;
  module->setupUtf16ToMultibyte = setupUnicodeToMultibyte;
  module->setupMultibyteToUtf16 = setupMultibyteToUnicode;
  module->setupUtf32ToMultibyte = setupUnicodeToMultibyte;
  module->setupMultibyteToUtf32 = setupMultibyteToUnicode;
  module->setupUtf8ToMultibyte = setupUnicodeToMultibyte;
  module->setupMultibyteToUtf8 = setupMultibyteToUnicode;
  module->setupUtfeToMultibyte = setupUtfeToMultibyte;
  module->setupMultibyteToUtfe = setupMultibyteToUnicode;
  return reinterpret_cast<NlsExtension*>(module);
}

}  // namespace veldnls
