// What the kernels mean: the scalar tier against encoders and decoders of the test's own.
#include <gtest/gtest.h>

#include <array>

#include "slots.h"
#include "support/guard.h"

namespace test::kernels {

namespace {

using veldnls::KernelRun;
using veldnls::Kernels;
using veldnls::KernelTier;

const Kernels& scalar() {
  const ForcedTier forced(KernelTier::scalar);
  return veldnls::kernels();
}

CodePoints range(uint32_t first, uint32_t last) {
  CodePoints text;
  for (uint32_t value = first; value <= last; ++value) text.push_back(value);
  return text;
}

// All code points but surrogates, up to `last`.
CodePoints scalarValues(uint32_t last) {
  CodePoints text = range(0, 0xD7FF);
  const CodePoints rest = range(0xE000, last);
  text.insert(text.end(), rest.begin(), rest.end());
  return text;
}

// Runs a slot, by name, on a whole text with ample room; returns the output and how far it got.
std::pair<Bytes, KernelRun> run(const std::string& name, const Bytes& input) {
  for (const Slot& slot : slots()) {
    if (slot.name != name) continue;
    const size_t count = input.size() / unitSize(slot.form);
    const size_t room = count * slot.mostPerItem;
    Bytes output(room * slot.outputUnit);
    const KernelRun taken = slot.run(scalar(), input.data(), count, output.data(), room);
    output.resize(taken.written * slot.outputUnit);
    return {output, taken};
  }
  ADD_FAILURE() << "no slot " << name;
  return {};
}

struct Direction {
  const char* slot;
  Form from;
  Form to;
  uint32_t last;
};

class KernelDirections : public testing::TestWithParam<Direction> {};

TEST_P(KernelDirections, ConvertEveryCodePoint) {
  const CodePoints text = scalarValues(GetParam().last);
  const Bytes input = encode(GetParam().from, text);
  const auto [output, taken] = run(GetParam().slot, input);
  EXPECT_EQ(taken.read, input.size() / unitSize(GetParam().from));
  EXPECT_TRUE(output == encode(GetParam().to, text));
}

INSTANTIATE_TEST_SUITE_P(
    All, KernelDirections,
    testing::Values(Direction{"utf8ToUtf16", Form::utf8, Form::utf16Little, 0xFFFFF},
                    Direction{"utf8ToUtf32", Form::utf8, Form::utf32Little, 0x10FFFF},
                    Direction{"utf16ToUtf8 little", Form::utf16Little, Form::utf8, 0x10FFFF},
                    Direction{"utf16ToUtf8 big", Form::utf16Big, Form::utf8, 0xFFFF},
                    Direction{"utf16ToUtf32 little", Form::utf16Little, Form::utf32Little, 0x10FFFF},
                    Direction{"utf16ToUtf32 big", Form::utf16Big, Form::utf32Little, 0x10FFFF},
                    Direction{"utf32ToUtf8 little", Form::utf32Little, Form::utf8, 0x10FFFF},
                    Direction{"utf32ToUtf8 big", Form::utf32Big, Form::utf8, 0x10FFFF},
                    Direction{"utf32ToUtf16 little", Form::utf32Little, Form::utf16Little, 0x10FFFF},
                    Direction{"utf32ToUtf16 big", Form::utf32Big, Form::utf16Little, 0x10FFFF},
                    Direction{"swap16", Form::utf16Little, Form::utf16Big, 0x10FFFF},
                    Direction{"swap32", Form::utf32Little, Form::utf32Big, 0x10FFFF}));

// A sequence is valid if it is the encoding of its value and the value is allowed.
TEST(ScalarKernels, Utf8ValidKnowsEverySequence) {
  std::vector<bool> valid(size_t{1} << 24);
  for (const uint32_t value : scalarValues(0xFFFF)) {
    Bytes sequence;
    appendUtf8(sequence, value);
    size_t key = 0;
    for (const uint8_t byte : sequence) key = key << 8 | byte;
    if (sequence.size() == 3) valid[key] = true;
  }
  for (uint32_t key = 0xE00000; key < 0xF00000; ++key) {
    const std::array<uint8_t, 3> text = {static_cast<uint8_t>(key >> 16), static_cast<uint8_t>(key >> 8),
                                         static_cast<uint8_t>(key)};
    ASSERT_EQ(scalar().utf8Valid(text.data(), text.size()), valid[key] ? 3U : 0U) << toHex(text);
  }
  for (uint32_t key = 0x8000; key < 0xE000; ++key) {
    const std::array<uint8_t, 2> text = {static_cast<uint8_t>(key >> 8), static_cast<uint8_t>(key)};
    const bool good = text[0] >= 0xC2 && text[1] >= 0x80 && text[1] <= 0xBF;
    ASSERT_EQ(scalar().utf8Valid(text.data(), text.size()), good ? 2U : 0U) << toHex(text);
  }
}

TEST(ScalarKernels, Utf8ValidAtTheEdges) {
  const auto valid = [](std::string_view hex) {
    const GuardedBuffer text(fromHex(hex));
    return scalar().utf8Valid(const_cast<GuardedBuffer&>(text).data(), text.size());
  };
  EXPECT_EQ(valid(""), 0U);
  EXPECT_EQ(valid("41 C3"), 1U);
  EXPECT_EQ(valid("41 E2 82"), 1U);
  EXPECT_EQ(valid("F0 9F 98 80 F0 9F 98"), 4U);
  EXPECT_EQ(valid("F0 8F BF BF"), 0U);
  EXPECT_EQ(valid("F4 8F BF BF"), 4U);
  EXPECT_EQ(valid("F4 BF BF BF"), 4U);  // 0x13FFFF: the second byte of F4 has no bound
  EXPECT_EQ(valid("F5 80 80 80"), 0U);
  EXPECT_EQ(valid("F8 88 80 80 80"), 0U);
}

TEST(ScalarKernels, StopInFrontOfDoubt) {
  EXPECT_EQ(run("utf8ToUtf16", fromHex("41 F4 8F BF BF")).second.read, 1U);
  EXPECT_EQ(run("utf8ToUtf32", fromHex("41 F4 8F BF BF")).second.read, 5U);
  EXPECT_EQ(run("utf16ToUtf8 little", fromHex("41 00 3D D8 41 00")).second.read, 1U);
  EXPECT_EQ(run("utf16ToUtf8 little", fromHex("41 00 00 DE 3D D8")).second.read, 1U);
  EXPECT_EQ(run("utf16ToUtf8 little", fromHex("41 00 3D D8 00 DE 3D D8")).second.read, 3U);
  EXPECT_EQ(run("utf16ToUtf8 big", fromHex("00 41 D8 3D DE 00")).second.read, 1U);
  EXPECT_EQ(run("utf16ToUtf32 big", fromHex("00 41 D8 3D DE 00 DE 00")).second.read, 3U);
  EXPECT_EQ(run("utf32ToUtf8 little", fromHex("41 00 00 00 FF FF 1F 00 00 00 20 00")).second.read, 2U);
  EXPECT_EQ(run("utf32ToUtf8 little", fromHex("00 D8 00 00")).first, fromHex("ED A0 80"));
  EXPECT_EQ(run("utf32ToUtf16 big", fromHex("00 10 FF FF 00 11 00 00")).second.read, 1U);
  EXPECT_EQ(run("utf32ToUtf16 big", fromHex("00 00 DF FF")).second.read, 0U);
}

TEST(ScalarKernels, PairNeedsRoomForBothUnits) {
  const Bytes text = fromHex("41 F0 9F 98 80");
  Bytes output(6);
  EXPECT_EQ(scalar().utf8ToUtf16(text.data(), text.size(), output.data(), 2).written, 1U);
  EXPECT_EQ(scalar().utf8ToUtf16(text.data(), text.size(), output.data(), 3).written, 3U);
  EXPECT_EQ(output, fromHex("41 00 3D D8 00 DE"));
}

TEST(ScalarKernels, AsciiRuns) {
  EXPECT_EQ(run("asciiRun", fromHex("00 7F 80 41")).second.read, 2U);
  EXPECT_EQ(run("asciiRun16 little", fromHex("7F 00 00 01")).second.read, 1U);
  EXPECT_EQ(run("asciiRun16 big", fromHex("00 7F 01 00")).second.read, 1U);
  EXPECT_EQ(run("widenAscii16", fromHex("41 7F C3")).first, fromHex("41 00 7F 00"));
  EXPECT_EQ(run("widenAscii32", fromHex("41 7F C3")).first, fromHex("41 00 00 00 7F 00 00 00"));
  EXPECT_EQ(run("narrowAscii16 little", fromHex("41 00 80 00")).first, fromHex("41"));
  EXPECT_EQ(run("narrowAscii16 big", fromHex("00 41 41 00")).first, fromHex("41"));
  EXPECT_EQ(run("narrowAscii32 little", fromHex("41 00 00 00 41 00 01 00")).first, fromHex("41"));
  EXPECT_EQ(run("narrowAscii32 big", fromHex("00 00 00 41 80 00 00 41")).first, fromHex("41"));
}

TEST(ScalarKernels, Tables) {
  std::array<uint8_t, 256> bytes{};
  std::array<char16_t, 256> units{};
  for (size_t i = 0; i < 256; ++i) {
    bytes[i] = static_cast<uint8_t>(255 - i);
    units[i] = static_cast<char16_t>(0xFF00 - i);
  }
  std::array<const uint8_t*, 256> pages{};
  pages[0x00] = bytes.data();
  pages[0x21] = bytes.data();
  const Bytes text = fromHex("00 01 80 FF");
  Bytes mapped(4);
  scalar().byteMap(bytes.data(), text.data(), mapped.data(), 4);
  EXPECT_EQ(mapped, fromHex("FF FE 7F 00"));
  Bytes expanded(8);
  scalar().expand(units.data(), text.data(), expanded.data(), 4);
  EXPECT_EQ(expanded, fromHex("00 FF FF FE 80 FE 01 FE"));

  const auto taken = [&pages, &mapped](std::string_view hex) {
    const Bytes input = fromHex(hex);
    return scalar().pagesToBytes(pages.data(), input.data(), mapped.data(), input.size() / 2);
  };
  EXPECT_EQ(taken("01 00 02 21 00 00"), 3U);
  EXPECT_EQ(mapped, fromHex("FE FD FF 00"));
  EXPECT_EQ(taken("01 00 FF 21"), 1U) << "a zero in a page";
  EXPECT_EQ(taken("01 00 01 22"), 1U) << "no page";
  bytes[0] = 0;
  EXPECT_EQ(taken("00 00"), 1U) << "U+0000 may have a zero";
  EXPECT_EQ(taken("00 21"), 0U);
}

TEST(KernelChoice, TierIsForcedAndKept) {
  const KernelTier before = veldnls::kernels().tier;
  {
    const ForcedTier forced(KernelTier::scalar);
    ASSERT_TRUE(forced.held());
    EXPECT_EQ(veldnls::kernels().tier, KernelTier::scalar);
  }
  EXPECT_EQ(veldnls::kernels().tier, before);
  for (const KernelTier tier : vectorTiers()) {
    const ForcedTier forced(tier);
    EXPECT_EQ(veldnls::kernels().tier, tier);
  }
}

}  // namespace

}  // namespace test::kernels
