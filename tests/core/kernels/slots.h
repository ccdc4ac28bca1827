// Every slot of a record of kernels in one shape.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/kernels/kernels.h"
#include "texts.h"

namespace test::kernels {

struct Slot {
  std::string name;
  Form form;            // of the input
  size_t outputUnit;    // bytes; 0 if the kernel only reads
  size_t mostPerItem;   // units of output for a unit of input
  bool mayStopForRoom;  // stops earlier than it must when room is short
  std::function<veldnls::KernelRun(const veldnls::Kernels&, const uint8_t* in, size_t count, uint8_t* out, size_t room)>
      run;
};

const std::vector<Slot>& slots();

// An encoding with shifts, of no code page in particular.
veldnls::ShiftedSource shiftedSource();
veldnls::ShiftedTarget shiftedTarget();

// Tiers beyond the scalar one that this processor and this build have.
std::vector<veldnls::KernelTier> vectorTiers();
std::string nameOf(veldnls::KernelTier tier);

// Forces a tier and gives the one before back at the end.
class ForcedTier {
 public:
  explicit ForcedTier(veldnls::KernelTier tier)
      : before_(veldnls::kernels().tier), held_(veldnls::forceKernelTier(tier)) {}
  ~ForcedTier() { veldnls::forceKernelTier(before_); }
  ForcedTier(const ForcedTier&) = delete;
  ForcedTier& operator=(const ForcedTier&) = delete;

  bool held() const { return held_; }

 private:
  veldnls::KernelTier before_;
  bool held_;
};

}  // namespace test::kernels
