#include "core/kernels/tiers.h"

namespace veldnls {

constinit std::atomic<const Kernels*> chosenKernels{nullptr};

namespace {

#ifdef VELDNLS_SCALAR_ONLY

const Kernels* available(KernelTier tier) { return tier == KernelTier::scalar ? &scalarKernels : nullptr; }

#else

bool hasAvx2() {
  return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") && __builtin_cpu_supports("bmi2") &&
         __builtin_cpu_supports("popcnt");
}

#ifndef VELDNLS_NO_AVX512
bool hasAvx512() {
  return hasAvx2() && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
         __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl") &&
         __builtin_cpu_supports("avx512vbmi") && __builtin_cpu_supports("avx512vbmi2") &&
         __builtin_cpu_supports("avx512vpopcntdq");
}
#endif

const Kernels* available(KernelTier tier) {
  __builtin_cpu_init();  // a constructor of the host may come here before that of the compiler's run time
  switch (tier) {
    case KernelTier::avx512:
#ifdef VELDNLS_NO_AVX512
      return nullptr;
#else
      return hasAvx512() ? &avx512Kernels : nullptr;
#endif
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

// Threads that race here choose the same; a tier that was forced meanwhile stays.
const Kernels& chooseKernels() {
  const Kernels* record = nullptr;
  const Kernels* choice = best();
  return chosenKernels.compare_exchange_strong(record, choice, std::memory_order_relaxed) ? *choice : *record;
}

bool forceKernelTier(KernelTier tier) {
  const Kernels* record = available(tier);
  if (record != nullptr) chosenKernels.store(record, std::memory_order_relaxed);
  return record != nullptr;
}

}  // namespace veldnls
