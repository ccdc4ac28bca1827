// The slot validateEncodedText: examples, refused encodings, and random text against a second reading of the rules.
#include <sys/mman.h>

#include <climits>
#include <random>

#include "transcode/validity.h"
#include "transcode/verdicts.h"

namespace transcode_test {

namespace {

TEST(Validate, WorkedExamples) {
  EXPECT_EQ(verdictOf(U_WLATIN1_CE, "41 42 43 81 44"), faultAt(3));
  EXPECT_EQ(verdictOf(U_UTF8_CE, "61 C3"), faultAt(1));
  EXPECT_EQ(verdictOf(U_UTF8_CE, "E2 82 AC"), valid);
  EXPECT_EQ(verdictOf(U_UTF8_CE, "F4 90 80 80"), valid);
  EXPECT_EQ(verdictOf(U_L_UNICODE_CE, "41 00 42"), faultAt(2));
  EXPECT_EQ(verdictOf(U_L_UCS4_CE, "90 01 01 00"), faultAt(0));
  EXPECT_EQ(verdictOf(U_L_UCS4_CE, "8F 01 01 00"), valid);
  EXPECT_EQ(verdictOf(U_UTFE_CE, "41"), refused);
  EXPECT_EQ(verdictOf(U_EBCDICANY_CE, "00 41 FF"), valid);
  EXPECT_EQ(verdictOf(U_IBM939_CE, "0E 41 41 0F"), valid);
  EXPECT_EQ(verdictOf(U_IBM939_CE, "0E 41"), faultAt(1));
}

TEST(Validate, EmptyTexts) {
  for (CEI cei = 0; cei < NLS_CEI_COUNT; ++cei) {
    const Verdict wanted = isRefused(cei) ? refused : valid;
    EXPECT_EQ(verdictOf(cei, ""), wanted) << cei;
    int32_t offset = 99;
    EXPECT_EQ(nls()->validateEncodedText(nls(), nullptr, 0, cei, nullptr, &offset), wanted.status) << cei;
    EXPECT_EQ(offset, -1);
  }
}

TEST(Validate, RefusedEncodings) {
  for (const CEI cei : {INT_MIN, -1, 0, 1, 19, 23, 230, 231, 1000, INT_MAX}) EXPECT_EQ(verdictOf(cei, "41"), refused);
  for (CEI cei = 0; cei < NLS_CEI_COUNT; ++cei) {
    if (isRefused(cei)) {
      EXPECT_EQ(verdictOf(cei, "41 FF"), refused) << cei;
    }
  }
}

// utf-e and ucsu have no rule of their own; 0 and the aliases aren't resolved.
TEST(Validate, EncodingsWithoutARule) {
  EXPECT_EQ(verdictOf(U_UTFE_CE, ""), refused);
  EXPECT_EQ(verdictOf(U_UCSU_CE, "41"), refused);
  EXPECT_EQ(verdictOf(U_UNICODE_CE, "41 00"), refused);
  EXPECT_EQ(verdictOf(0, "41"), refused);
}

TEST(Validate, AnyTextIsOneOfAnyEncoding) {
  Bytes all(256);
  for (size_t i = 0; i < all.size(); ++i) all[i] = static_cast<uint8_t>(i);
  EXPECT_EQ(verdictOf(U_ANY_CE, all), valid);
  EXPECT_EQ(verdictOf(U_EBCDICANY_CE, all), valid);
}

// Text that meets the rules often enough to get somewhere, and breaks each of them.
Bytes hostileText(const EncodingDescriptor& encoding, std::mt19937& random) {
  const MultiByteProfile& profile = encoding.profile;
  Bytes text;
  const size_t pieces = random() % 12;
  for (size_t i = 0; i < pieces; ++i) {
    const auto add = [&](const uint8_t* bytes, size_t count) { text.insert(text.end(), bytes, bytes + count); };
    const auto any = [&] { return static_cast<uint8_t>(random()); };
    switch (random() % 8) {
      case 0:
        add(profile.shiftOut, profile.shiftLength);
        break;
      case 1:
        add(profile.shiftIn, profile.shiftLength);
        break;
      case 2:
      case 3: {
        const auto& lead = profile.leadRanges[random() % 4];
        const auto& trail = profile.trailRanges[random() % 4];
        const uint8_t pair[] = {random() % 2 == 0 ? lead.low : lead.high, random() % 2 == 0 ? trail.low : trail.high};
        add(pair, sizeof pair);
        break;
      }
      case 4: {
        const uint8_t four[] = {static_cast<uint8_t>(0xA1 + random() % 96), static_cast<uint8_t>(0x2F + random() % 12),
                                static_cast<uint8_t>(0x80 + random() % 64), static_cast<uint8_t>(0x2F + random() % 12)};
        add(four, sizeof four);
        break;
      }
      case 5: {
        constexpr uint8_t leads[] = {0x8E, 0x8F, 0xC2, 0xE0, 0xED, 0xF0, 0xF4, 0xF7, 0xD8, 0xDC};
        const uint8_t three[] = {leads[random() % sizeof leads], any(), any()};
        add(three, sizeof three);
        break;
      }
      case 6: {
        constexpr uint8_t quad[] = {0x8F, 0x01, 0x01, 0x00, 0x01, 0x01, 0x8F};
        add(quad + (random() % 2 == 0 ? 0 : 3), 4);
        break;
      }
      default: {
        const uint8_t one[] = {static_cast<uint8_t>(random() % 2 == 0 ? 0x20 + random() % 0x60 : random())};
        add(one, sizeof one);
      }
    }
  }
  return text;
}

TEST(Validate, RandomTextOfEveryRow) {
  std::mt19937 random(4);
  for (CEI cei = 20; cei < NLS_CEI_COUNT; ++cei) {
    if (isRefused(cei)) continue;
    int faults = 0;
    for (int round = 0; round < 300; ++round) {
      const Bytes text = hostileText(row(cei), random);
      const int64_t fault = firstFault(row(cei), text);
      if (fault != wellFormed) ++faults;
      ASSERT_EQ(verdictOf(cei, text), fault == wellFormed ? valid : faultAt(fault)) << cei << " " << test::toHex(text);
    }
    EXPECT_LT(faults, 300) << cei;
  }
}

// Offsets are 32-bit numbers with a sign: one beyond their range is given as their largest.
TEST(Validate, OffsetsBeyondTwoGigabytes) {
  constexpr uint32_t length = 0x80000000u + 4096;
  void* area = mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (area == MAP_FAILED) GTEST_SKIP() << "no address space";
  auto* text = static_cast<uint8_t*>(area);
  int32_t offset = 99;
  text[length - 2] = 0xFF;
  EXPECT_EQ(nls()->validateEncodedText(nls(), text, length, U_UTF8_CE, nullptr, &offset), nlsInvalidCharacter);
  EXPECT_EQ(offset, INT_MAX);
  text[length - 2] = 'a';
  EXPECT_EQ(nls()->validateEncodedText(nls(), text, length, U_UTF8_CE, nullptr, &offset), 0u);
  EXPECT_EQ(offset, -1);
  munmap(area, length);
}

}  // namespace

}  // namespace transcode_test
