// The estimate of an output's length, by classes.
#include "transcode/harness.h"

namespace transcode_test {

namespace {

// Room for whatever the texts of this file become.
constexpr size_t enough = 16;

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

TEST(Estimate, IsTooSmallForUtfEbcdic) {
  struct Text {
    CEI source;
    uint8_t byte;
  };
  // Three that become U+FFFD, and U+FF71.
  constexpr Text texts[] = {{U_WLATIN1_CE, 0x81}, {U_ARABIC_CE, 0xA1}, {U_UTF8_CE, 0x80}, {U_SHIFTJIS_CE, 0xB1}};
  for (const auto& [source, byte] : texts) {
    const Pipeline pipeline(source, U_UTFE_CE);
    EXPECT_EQ(estimate(source, 1, U_UTFE_CE), 3u);
    EXPECT_EQ(plain(pipeline, {&byte, 1}, enough).bytes.size(), 4u) << source;
    EXPECT_EQ(plain(pipeline, {&byte, 1}, 3).bytes.size(), 0u) << source;
  }
}

TEST(Estimate, IsTooSmallForGb18030WithItsModule) {
  const Pipeline loading(U_GB18030_CE, U_L_UNICODE_CE);
  const Pipeline pipeline(U_SHIFTJIS_CE, U_GB18030_CE);
  EXPECT_EQ(estimate(U_SHIFTJIS_CE, 1, U_GB18030_CE), 2u);
  EXPECT_EQ(plain(pipeline, hex("B1"), 2), (Outcome{.status = nlsOutputTruncated}));
  EXPECT_EQ(plain(pipeline, hex("B1"), enough), (Outcome{.bytes = hex("84 31 97 33")}));
}

// What a call finds held becomes output of that call.
TEST(Estimate, HeldBytesCountAsInput) {
  const Pipeline pipeline(U_UTF8_CE, U_L_UNICODE_CE);
  TranscodeProgress progress{};
  ASSERT_EQ(resume(pipeline, hex("F0 9F 98"), enough, progress).status, nlsIncompleteInput);
  ASSERT_EQ(progress.heldCount, 3u);
  const Bytes wanted = hex("FD FF 41 00");
  EXPECT_EQ(resume(pipeline, hex("41"), enough, progress).bytes, wanted);
  EXPECT_LT(estimate(U_UTF8_CE, 1, U_L_UNICODE_CE), wanted.size());
  EXPECT_GE(estimate(U_UTF8_CE, 1 + 3, U_L_UNICODE_CE), wanted.size());
}

}  // namespace

}  // namespace transcode_test
