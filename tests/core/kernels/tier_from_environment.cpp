// Linked to a test program, this runs all of it on the tier that VELDNLS_TEST_KERNELS names; without it, on the best.
#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>

#include "core/kernels/kernels.h"

namespace {

using veldnls::KernelTier;

std::optional<KernelTier> tierNamed(const std::string& name) {
  if (name == "scalar") return KernelTier::scalar;
  if (name == "avx2") return KernelTier::avx2;
  if (name == "avx512") return KernelTier::avx512;
  return std::nullopt;
}

class TierFromEnvironment : public testing::Environment {
 public:
  void SetUp() override {
    const char* name = std::getenv("VELDNLS_TEST_KERNELS");
    if (name == nullptr) return;
    const std::optional<KernelTier> tier = tierNamed(name);
    ASSERT_TRUE(tier.has_value()) << "VELDNLS_TEST_KERNELS is " << name;
    if (!veldnls::forceKernelTier(*tier)) GTEST_SKIP() << "no " << name << " here";
  }
};

[[maybe_unused]] const testing::Environment* const registered =
    testing::AddGlobalTestEnvironment(new TierFromEnvironment);

}  // namespace
