// Which service the host has replaced.
#pragma once

#include <cstdint>

#include "core/qznlsstub.h"

namespace veldnls {

// The host's own `member`, or null where the default holds.
template <class Service>
Service hostService(Service NlsHostServices::*member) {
  const VeldMemoryRecord* memory = hostRecords()->memory;
  const NlsHostServices* services = memory != nullptr ? memory->services : nullptr;
  if (services == nullptr) return nullptr;
  const auto start = reinterpret_cast<uintptr_t>(services);
  const auto end = reinterpret_cast<uintptr_t>(&(services->*member)) + sizeof(Service);
  return end - start <= services->size ? services->*member : nullptr;
}

}  // namespace veldnls
