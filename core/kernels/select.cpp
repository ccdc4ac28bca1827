#include <atomic>

#include "core/kernels/tiers.h"

namespace veldnls {

namespace {

// Null until the first call. Threads that race for it choose the same.
constinit std::atomic<const Kernels*> chosen{nullptr};

#ifdef VELDNLS_SCALAR_ONLY

const Kernels* available(KernelTier tier) { return tier == KernelTier::scalar ? &scalarKernels : nullptr; }

#else

bool hasAvx2() {
  return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") && __builtin_cpu_supports("bmi2");
}

bool hasAvx512() {
  return hasAvx2() && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
         __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl") &&
         __builtin_cpu_supports("avx512vbmi") && __builtin_cpu_supports("avx512vbmi2");
}

const Kernels* available(KernelTier tier) {
  __builtin_cpu_init();  // a constructor of the host may come here before that of the compiler's run time
  switch (tier) {
    case KernelTier::avx512:
      return hasAvx512() ? &avx512Kernels : nullptr;
    case KernelTier::avx2:
      return hasAvx2() ? &avx2Kernels : nullptr;
    case KernelTier::scalar:
      break;
  }
  return &scalarKernels;
}

#endif

const Kernels* best() {
  for (const KernelTier tier : {KernelTier::avx512, KernelTier::avx2}) {
    if (const Kernels* record = available(tier); record != nullptr) return record;
  }
  return &scalarKernels;
}

}  // namespace

const Kernels& kernels() {
  const Kernels* record = chosen.load(std::memory_order_relaxed);
  if (record == nullptr) [[unlikely]] {
    // A tier that was forced meanwhile stays.
    const Kernels* choice = best();
    if (chosen.compare_exchange_strong(record, choice, std::memory_order_relaxed)) record = choice;
  }
  return *record;
}

bool forceKernelTier(KernelTier tier) {
  const Kernels* record = available(tier);
  if (record != nullptr) chosen.store(record, std::memory_order_relaxed);
  return record != nullptr;
}

}  // namespace veldnls
