#include "core/text/utf8.h"

#include <gtest/gtest.h>

#include "support/guard.h"

namespace test {
namespace {

using veldnls::invalidUtf8;
using veldnls::Utf8Sequence;

uint32_t promised(uint32_t lead) {
  return lead < 0xC0 ? 0u : lead < 0xE0 ? 1u : lead < 0xF0 ? 2u : lead < 0xF8 ? 3u : lead < 0xFC ? 4u : 5u;
}

bool isTrail(uint8_t byte) { return byte >= 0x80 && byte <= 0xBF; }

// The test from the last byte to the second, where a later failure overwrites the length; `bytes` holds all of them.
Utf8Sequence backwards(const uint8_t* bytes) {
  const uint8_t lead = bytes[0];
  const uint32_t length = promised(lead) + 1;
  bool valid = length <= 4 && (lead < 0x80 || lead > 0xC1) && lead <= 0xF4;
  uint32_t skip = length;
  for (uint32_t i = length - 1; i > 0; --i) {
    if (isTrail(bytes[i])) continue;
    skip = i;
    valid = false;
  }
  if (lead == 0xE0 && bytes[1] < 0xA0) valid = false;
  if (lead == 0xED && bytes[1] > 0x9F) valid = false;
  if (lead == 0xF0 && bytes[1] < 0x90) valid = false;
  if (!valid) return {invalidUtf8, skip};
  uint32_t value = length == 1 ? lead : lead & (0x7Fu >> length);
  for (uint32_t i = 1; i < length; ++i) value = value * 64 + bytes[i] % 64;
  return {value, length};
}

TEST(Utf8, BytesPromisedByTheLead) {
  for (uint32_t lead = 0; lead < 256; ++lead) EXPECT_EQ(veldnls::utf8TrailCount[lead], promised(lead)) << lead;
}

// Every lead and second byte, with every pattern of trailing bytes that belong and don't behind them.
TEST(Utf8, EverySecondByteAndEveryBreak) {
  for (uint32_t lead = 0; lead < 256; ++lead) {
    for (uint32_t second = 0; second < 256; ++second) {
      for (uint32_t pattern = 0; pattern < 16; ++pattern) {
        uint8_t text[6] = {static_cast<uint8_t>(lead), static_cast<uint8_t>(second)};
        for (uint32_t i = 0; i < 4; ++i) text[2 + i] = (pattern >> i & 1) != 0 ? 0x28 : 0x95;
        const Utf8Sequence wanted = backwards(text);
        const Utf8Sequence got = veldnls::readUtf8(text, sizeof text);
        ASSERT_EQ(got.value, wanted.value) << lead << " " << second << " " << pattern;
        ASSERT_EQ(got.length, wanted.length) << lead << " " << second << " " << pattern;
      }
    }
  }
}

TEST(Utf8, MissingBytesAreNotReadAndBreakTheSequence) {
  for (uint32_t lead = 0; lead < 256; ++lead) {
    for (uint32_t available = 1; available <= 6; ++available) {
      const uint8_t text[6] = {static_cast<uint8_t>(lead), 0x91, 0x92, 0x93, 0x94, 0x95};
      GuardedBuffer cut(std::span<const uint8_t>(text).first(available));
      const Utf8Sequence got = veldnls::readUtf8(cut.data(), available);
      if (available > promised(lead)) {
        EXPECT_EQ(got.value, backwards(text).value) << lead;
        EXPECT_EQ(got.length, promised(lead) + 1) << lead;
      } else {
        EXPECT_EQ(got.value, invalidUtf8) << lead;
        EXPECT_EQ(got.length, available) << lead;
      }
    }
  }
}

TEST(Utf8, LeadF4HasNoUpperBound) {
  const uint8_t text[] = {0xF4, 0xBF, 0xBF, 0xBF};
  EXPECT_EQ(veldnls::readUtf8(text, 4).value, 0x13FFFFu);
}

TEST(Utf8, EveryCodePointComesBack) {
  for (uint32_t value = 0; value <= 0x10FFFF; ++value) {
    uint8_t bytes[6];
    const size_t length = veldnls::utf8Length(value);
    veldnls::writeUtf8(bytes, value, length);
    const Utf8Sequence back = veldnls::readUtf8(bytes, length);
    const bool surrogate = value >= 0xD800 && value <= 0xDFFF;
    ASSERT_EQ(back.value, surrogate ? invalidUtf8 : value) << value;
    ASSERT_EQ(back.length, length) << value;
  }
}

TEST(Utf8, WritesExactlyItsLength) {
  struct Row {
    uint32_t value;
    const char* bytes;
  };
  for (const Row& row :
       {Row{0, "00"}, Row{0x7F, "7F"}, Row{0x80, "C2 80"}, Row{0x7FF, "DF BF"}, Row{0x800, "E0 A0 80"},
        Row{0xD800, "ED A0 80"}, Row{0xFFFF, "EF BF BF"}, Row{0x10000, "F0 90 80 80"}, Row{0x10FFFF, "F4 8F BF BF"},
        Row{0x110000, "F4 90 80 80"}, Row{0x1FFFFF, "F7 BF BF BF"}, Row{0x200000, "F8 88 80 80 80"},
        Row{0x3FFFFFF, "FB BF BF BF BF"}, Row{0x4000000, "FC 84 80 80 80 80"}, Row{0x7FFFFFFF, "FD BF BF BF BF BF"}}) {
    GuardedBuffer bytes(veldnls::utf8Length(row.value));
    veldnls::writeUtf8(bytes.data(), row.value, bytes.size());
    EXPECT_EQ(toHex(bytes.bytes()), row.bytes) << row.value;
  }
}

}  // namespace
}  // namespace test
