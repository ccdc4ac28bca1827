// The estimate of an output's length, by classes.
#include "transcode/harness.h"

namespace transcode_test {

namespace {

uint32_t estimate(CEI source, uint32_t length, CEI target) {
  uint32_t size = 0xDEADBEEF;
  EXPECT_EQ(nls()->estimateOutputLength(nls(), source, nullptr, length, target, &size), 0u);
  return size;
}

// Two encodings of each class, so that equal ones never meet.
constexpr CEI sources[] = {U_WLATIN1_CE, U_UTF8_CE, U_L_UNICODE_CE, U_L_UCS4_CE, U_IBM937_CE, U_SHIFTJIS_CE};
constexpr CEI targets[] = {U_EBCDIC1047_CE, U_UTFE_CE, U_B_UNICODE_CE, U_B_UCS4_CE, U_HITQUOKANA_CE, U_EUCJP_CE};

TEST(Estimate, AllClassPairs) {
  // In quarters of the input length.
  constexpr uint32_t quarters[6][6] = {
      {4, 12, 8, 16, 4, 4},  {4, 12, 8, 16, 8, 8}, {2, 12, 8, 8, 8, 8},
      {1, 12, 4, 4, 16, 16}, {4, 12, 8, 16, 8, 8}, {4, 12, 8, 16, 8, 8},
  };
  for (int source = 0; source < 6; ++source) {
    for (int target = 0; target < 6; ++target) {
      for (const uint32_t length : {0u, 1u, 2u, 3u, 7u, 8u, 1000u}) {
        EXPECT_EQ(estimate(sources[source], length, targets[target]), length * quarters[source][target] / 4)
            << source << " to " << target << ", length " << length;
      }
    }
  }
}

TEST(Estimate, EqualAndAny) {
  EXPECT_EQ(estimate(U_UTF8_CE, 8, U_UTF8_CE), 8u);
  EXPECT_EQ(estimate(U_ANY_CE, 8, U_L_UCS4_CE), 8u);
  EXPECT_EQ(estimate(U_L_UCS4_CE, 8, U_ANY_CE), 8u);
  EXPECT_EQ(estimate(500, 8, 500), 8u);
  EXPECT_EQ(estimate(U_L_UCS4_CE, 8, U_L_UNICODE_CE), 8u);
}

TEST(Estimate, CeisOutsideTheTableCountAsSingleByte) {
  for (const CEI outside : {-1, 230, INT32_MAX, INT32_MIN}) {
    EXPECT_EQ(estimate(outside, 8, U_L_UCS4_CE), 32u);
    EXPECT_EQ(estimate(U_L_UCS4_CE, 8, outside), 2u);
  }
}

TEST(Estimate, Saturates) {
  EXPECT_EQ(estimate(U_WLATIN1_CE, 0xFFFFFFFF, U_UTF8_CE), 0xFFFFFFFFu);
  EXPECT_EQ(estimate(U_WLATIN1_CE, 0x55555555, U_UTF8_CE), 0xFFFFFFFFu);
  EXPECT_EQ(estimate(U_WLATIN1_CE, 0x55555554, U_UTF8_CE), 0xFFFFFFFCu);
  EXPECT_EQ(estimate(U_WLATIN1_CE, 0x40000000, U_L_UCS4_CE), 0xFFFFFFFFu);
  EXPECT_EQ(estimate(U_L_UNICODE_CE, 0xFFFFFFFF, U_WLATIN1_CE), 0x7FFFFFFFu);
}

}  // namespace

}  // namespace transcode_test
