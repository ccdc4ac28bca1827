// What the kernels of two-byte codes mean: the scalar tier against the sorted pairs of the tables.
#include <gtest/gtest.h>

#include <array>
#include <map>

#include "modules/qznlsgb/tables.h"
#include "modules/qznlsmb/tables.h"
#include "slots.h"
#include "support/guard.h"

namespace test::kernels {

namespace {

using veldnls::KernelRun;
using veldnls::Kernels;
using veldnls::KernelTier;

constexpr uint32_t blankCode = 0x8140;
constexpr uint32_t blank = 0x4081;
constexpr veldnls::LeadBytes leads = {0x81, 0x9F - 0x81, 0xE0, 0xFC - 0xE0};

const Kernels& scalar() {
  const ForcedTier forced(KernelTier::scalar);
  return veldnls::kernels();
}

std::map<uint32_t, uint32_t> pairsOf(const NlsPairTable& table) {
  std::map<uint32_t, uint32_t> pairs;
  for (uint32_t i = 0; i < table.count; ++i) pairs[table.pairs[i].key] = table.pairs[i].value;
  return pairs;
}

Bytes bytesOf(uint32_t unit) { return {static_cast<uint8_t>(unit), static_cast<uint8_t>(unit >> 8)}; }

// The bytes of an output character, whose first one is low; those of a single byte if that is 0.
Bytes written(uint32_t character) {
  if ((character & 0xFF) == 0) return {static_cast<uint8_t>(character >> 8)};
  return bytesOf(character);
}

// What a kernel of the form `convert(in, count, out, room)` makes of one unit; empty if it stops.
template <class Convert>
Bytes ofUnit(Convert convert, uint32_t unit) {
  Bytes out(4);
  const KernelRun run = convert(bytesOf(unit).data(), size_t{1}, out.data(), out.size());
  EXPECT_EQ(run.read, run.written == 0 ? 0U : 1U);
  out.resize(run.written);
  return out;
}

TEST(CodeKernels, EveryUnitThroughRanks) {
  const auto& set = veldnls::fromUnicodeSets[shiftJisSet];
  const auto pairs = pairsOf(set.table);
  for (uint32_t unit = 0; unit <= 0xFFFF; ++unit) {
    Bytes wanted;
    const bool hasTableOfItsOwn = (unit >= 0x80 && unit < 0x9F) || (unit >= 0xFF61 && unit <= 0xFF9F);
    if (unit < 0x80) {
      wanted = {static_cast<uint8_t>(unit)};
    } else if (unit == 0x3000) {
      wanted = written(blank);
    } else if (!hasTableOfItsOwn && pairs.contains(unit)) {
      wanted = written(pairs.at(unit));
    }
    const auto toCodes = [&](auto... arguments) { return scalar().unitsToCodes(set.codes, blank, arguments...); };
    ASSERT_EQ(ofUnit(toCodes, unit), wanted) << unit;
    if (wanted.size() == 1) wanted.clear();
    const auto toDoubles = [&](auto... arguments) { return scalar().unitsToDoubles(set.codes, blank, arguments...); };
    ASSERT_EQ(ofUnit(toDoubles, unit), wanted) << unit;
  }
}

TEST(CodeKernels, EveryUnitThroughCells) {
  std::map<uint32_t, uint32_t> codes;
  for (const auto& row : veldnls::gbFromUnicodeTable) codes[row.unit] = row.code;
  const veldnls::UnitCells cells = {veldnls::gbFromUnicodeIndex.blocks, veldnls::gbFromUnicodeIndex.cells};
  for (uint32_t unit = 0; unit <= 0xFFFF; ++unit) {
    Bytes wanted;
    if (unit < 0x80) {
      wanted = {static_cast<uint8_t>(unit)};
    } else if (codes.contains(unit) && codes.at(unit) <= 0xFFFF) {
      wanted = {static_cast<uint8_t>(codes.at(unit) >> 8), static_cast<uint8_t>(codes.at(unit))};
    }
    const auto toCells = [&](auto... arguments) { return scalar().unitsToCells(cells, arguments...); };
    ASSERT_EQ(ofUnit(toCells, unit), wanted) << unit;
  }
}

TEST(CodeKernels, EveryCode) {
  const auto& set = veldnls::toUnicodeSets[shiftJisSet];
  const auto pairs = pairsOf(set.table);
  for (uint32_t code = 0; code <= 0xFFFF; ++code) {
    const Bytes text = {static_cast<uint8_t>(code >> 8), static_cast<uint8_t>(code)};
    const uint32_t unit = code == blankCode ? 0x3000 : pairs.contains(code) ? pairs.at(code) : 0;
    Bytes out(4);
    ASSERT_EQ(scalar().doublesToUnits(set.codes, blankCode, text.data(), out.data(), 1), unit != 0 ? 1U : 0U) << code;
    const Bytes there(out.begin(), out.begin() + 2);
    ASSERT_EQ(there, unit != 0 ? bytesOf(unit) : Bytes(2)) << code;
    if (text[0] < 0x80) continue;
    const KernelRun run = scalar().codesToUnits(set.codes, leads, blankCode, text.data(), 2, out.data(), 2);
    ASSERT_EQ(run.read, leads.has(text[0]) && unit != 0 ? 2U : 0U) << code;
    ASSERT_EQ(run.written, run.read / 2) << code;
  }
}

TEST(CodeKernels, TextOfBothLengths) {
  const auto taken = [](std::string_view hex, size_t room) {
    const GuardedBuffer text(fromHex(hex));
    Bytes out(2 * room);
    const KernelRun run = scalar().codesToUnits(veldnls::toUnicodeSets[shiftJisSet].codes, leads, blankCode,
                                                const_cast<GuardedBuffer&>(text).data(), text.size(), out.data(), room);
    out.resize(2 * run.written);
    return std::pair{run.read, out};
  };
  EXPECT_EQ(taken("41 82 A0 42", 8), (std::pair{size_t{4}, fromHex("41 00 42 30 42 00")}));
  EXPECT_EQ(taken("41 82 A0 42", 2), (std::pair{size_t{3}, fromHex("41 00 42 30")}));
  EXPECT_EQ(taken("41 B1 42", 8), (std::pair{size_t{1}, fromHex("41 00")})) << "a single byte above 7F";
  EXPECT_EQ(taken("41 82", 8), (std::pair{size_t{1}, fromHex("41 00")})) << "a lead at the end";
  EXPECT_EQ(taken("82 A0 81 39", 8), (std::pair{size_t{2}, fromHex("42 30")})) << "a code without a unit";
}

struct ShiftedText {
  const char* input;
  bool before;
  size_t read;
  const char* output;
  bool after;
};

TEST(CodeKernels, FromShifted) {
  std::array<char16_t, 256> singles{};
  for (size_t i = 0; i < singles.size(); ++i) singles[i] = static_cast<char16_t>(0x100 + i);
  const veldnls::ShiftedSource source = {
      veldnls::toUnicodeSets[shiftedSet].codes, singles.data(), 0x4040, 0xE1, 0x0E, 0x0F};
  const ShiftedText texts[] = {
      {"81 E1 82", false, 3, "81 01 AC 20 82 01", false},
      {"81 0E 44 81 40 40 0F 82", false, 8, "81 01 42 30 00 30 82 01", false},
      {"44 81 44 81", true, 4, "42 30 42 30", true},
      {"0E 44 81", false, 3, "42 30", true},
      {"81 0E", false, 1, "81 01", false},
      {"81 0E 44", false, 1, "81 01", false},
      {"0E 44 81 0E 44 81", false, 3, "42 30", true},
      {"81 0F 82", false, 1, "81 01", false},
      {"0E 44 81 44 0F 81", false, 3, "42 30", true},
      {"0E 44 81 0F", false, 4, "42 30", false},
      {"0E 0F 81", false, 3, "81 01", false},
      {"0E 44 81 FE FE 0F", false, 3, "42 30", true},
  };
  for (const ShiftedText& text : texts) {
    SCOPED_TRACE(text.input);
    const Bytes input = fromHex(text.input);
    Bytes out(2 * input.size());
    bool inDouble = text.before;
    const KernelRun run =
        scalar().shiftedToUnits(source, inDouble, input.data(), input.size(), out.data(), input.size());
    out.resize(2 * run.written);
    EXPECT_EQ(run.read, text.read);
    EXPECT_EQ(out, fromHex(text.output));
    EXPECT_EQ(inDouble, text.after);
  }
}

TEST(CodeKernels, ToShifted) {
  std::array<uint8_t, 256> singles{};
  for (size_t i = 0; i < singles.size(); ++i) singles[i] = static_cast<uint8_t>(i ^ 0xC0);
  veldnls::ShiftedTarget target = {veldnls::fromUnicodeSets[shiftedSet].codes, singles.data(), 0x4040, 1, 0x0E, 0x0F};
  const ShiftedText texts[] = {
      {"41 00 42 30 42 00", false, 3, "81 0E 44 81 0F 82", false},
      {"42 30 00 30", false, 2, "0E 44 81 40 40", true},
      {"42 30", true, 1, "44 81", true},
      {"9E 00 9F 00", false, 1, "5E", false},
      {"41 00 61 FF", false, 1, "81", false},
      {"42 30 AC 20", false, 2, "0E 44 81 0F E1", false},
  };
  for (const ShiftedText& text : texts) {
    SCOPED_TRACE(text.input);
    const Bytes input = fromHex(text.input);
    Bytes out(16);
    bool inDouble = text.before;
    const KernelRun run =
        scalar().unitsToShifted(target, inDouble, input.data(), input.size() / 2, out.data(), out.size());
    out.resize(run.written);
    EXPECT_EQ(run.read, text.read);
    EXPECT_EQ(out, fromHex(text.output));
    EXPECT_EQ(inDouble, text.after);
  }
  const Bytes hiragana = fromHex("42 30");
  Bytes out(8);
  for (size_t room = 0; room < 8; ++room) {
    bool inDouble = false;
    const KernelRun run = scalar().unitsToShifted(target, inDouble, hiragana.data(), 1, out.data(), room);
    EXPECT_EQ(run.written, room < 4 ? 0U : 3U) << "shift-out, two bytes, and what is spared behind them: " << room;
  }
}

TEST(CodeKernels, RunWithout) {
  const uint8_t four[] = {0x0E, 0x0F, 0x1B, 0xE1};
  const Bytes text = fromHex("41 0D 10 E0 E1 41");
  EXPECT_EQ(scalar().runWithout(four, text.data(), text.size()), 4U);
  EXPECT_EQ(scalar().runWithout(four, text.data(), 3), 3U);
  for (const uint8_t byte : four) EXPECT_EQ(scalar().runWithout(four, &byte, 1), 0U);
}

}  // namespace

}  // namespace test::kernels
