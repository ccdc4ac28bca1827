#include "modules/qznlssb/qznlssb.h"

#include "core/qznlsstub.h"
#include "modules/qznlssb/setup.h"

namespace veldnls {

namespace {

NlsStatus release(void* module) {
  nlsPoolDestroy(static_cast<SingleByteModule*>(module)->pool);
  return 0;
}

}  // namespace

NlsExtension* createSingleByteModule(void* host, void* journal) {
  auto* module = createExtension<SingleByteModule>(host, journal, "qznlssb pool", release);
  if (module == nullptr) return nullptr;
  module->setupByteToByte = setupByteToByte;
  module->setupByteToUnicode = setupByteToUnicode;
  module->setupWideToByte = setupWideToByte;
  module->setupUtf8ToByte = setupUtf8ToByte;
  return reinterpret_cast<NlsExtension*>(module);
}

}  // namespace veldnls
