#include "transcode/module_load.h"

#include <atomic>
#include <string_view>

#include "core/qznlsstub.h"

namespace veldnls {

namespace {

void bindModule(SingleByteModule*, QZNLS*) {}
void bindModule(MultiByteModule* module, QZNLS* nls) { module->nls = nls; }

template <class Module>
Module* moduleOf(QZNLS* nls, Module*& field, std::u16string_view name) {
  const std::atomic_ref<Module*> slot(field);
  Module* present = slot.load(std::memory_order_acquire);
  if (present != nullptr) return present;
  auto* fresh =
      reinterpret_cast<Module*>(nlsLoadExtension(nls->host, name.data(), static_cast<int32_t>(name.size()), nullptr));
  if (fresh == nullptr) return nullptr;
  bindModule(fresh, nls);
  if (slot.compare_exchange_strong(present, fresh, std::memory_order_acq_rel)) return fresh;
  fresh->destroy(fresh);
  return present;
}

}  // namespace

SingleByteModule* singleByteModule(QZNLS* nls) { return moduleOf(nls, nls->singleByteModule, u"qznlssb"); }

MultiByteModule* multiByteModule(QZNLS* nls) { return moduleOf(nls, nls->multiByteModule, u"qznlsmb"); }

}  // namespace veldnls
