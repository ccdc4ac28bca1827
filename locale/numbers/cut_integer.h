// Integers cut into groups of three digits, and their texts put together from the left on. The steps are much the same
// for numbers of any length: columns hold many lengths, which no branch could foretell.
#pragma once

#include "locale/numbers/digit_groups.h"
#include "locale/numbers/grouping.h"

namespace veldnls {

// The first six digits or fewer, a small integer, and blocks of six digits, the last block first.
struct CutInteger {
  static constexpr uint64_t blockLimit = 1'000'000;

  uint32_t first;
  int32_t blockCount;
  uint32_t blocks[3];
};

inline CutInteger cutInteger(uint64_t value) {
  CutInteger cut;
  cut.blockCount = 0;
  for (; value >= CutInteger::blockLimit; value /= CutInteger::blockLimit) {
    cut.blocks[cut.blockCount++] = static_cast<uint32_t>(value % CutInteger::blockLimit);
  }
  cut.first = static_cast<uint32_t>(value);
  return cut;
}

// Units of a block with the separators in front of its groups. Lakhs don't have them there.
template <Grouping grouping>
constexpr int32_t blockUnits = grouping == Grouping::none ? 6 : 8;

// Digits and separators.
template <Grouping grouping>
inline int32_t countUnits(const CutInteger& cut) {
  int32_t count = countDigits32(cut.first) + blockUnits<grouping> * cut.blockCount;
  if (grouping != Grouping::none) count += cut.first >= 1000 ? 1 : 0;
  if (grouping == Grouping::lakhs) count += cut.first >= 100'000 ? 1 : 0;
  return count;
}

// The most units of a small integer, with two separators.
inline constexpr int32_t maxSmallUnits = 8;
// The most units of a small integer whose first ones are added zeros.
inline constexpr int32_t maxSmallPrecision = 6;
// How many units the functions below may overwrite behind those that they write.
inline constexpr int32_t overwrittenUnits = 4;

// Writes the last `count` units of a small integer, all that it has or, with zeros, more.
template <Grouping grouping>
[[gnu::always_inline]] inline void writeSmallInteger(char16_t* out, uint32_t value, int32_t count, char16_t separator) {
  constexpr int32_t lastGroup = 3;
  const char16_t* upper = digitGroup(value / 1000);
  const char16_t* lower = digitGroup(value % 1000);
  if (grouping == Grouping::none) {
    const int32_t upperCount = std::max(count - lastGroup, 0);
    copyGroup(out, upper + groupRoom - upperCount);
    copyGroup(out + upperCount, lower + groupRoom - (count - upperCount));
    return;
  }
  if (count <= lastGroup) return copyGroup(out, lower + groupRoom - count);
  const int32_t upperUnits = count - lastGroup - 1;
  if (grouping == Grouping::lakhs && value >= 100'000) {
    out[0] = upper[1];
    out[1] = separator;
    std::memcpy(out + 2, upper + 2, 2 * sizeof(char16_t));
  } else {
    copyGroup(out, upper + groupRoom - upperUnits);
  }
  copyGroup(out + upperUnits, lower);
  out[upperUnits] = separator;
}

template <Grouping grouping>
[[gnu::always_inline]] inline void writeBlocks(char16_t* out, const CutInteger& cut, char16_t separator) {
  const auto write = [&](uint32_t group) {
    constexpr int32_t skipped = grouping == Grouping::none ? 1 : 0;
    copyGroup(out, digitGroup(group) + skipped);
    if (grouping != Grouping::none) *out = separator;
    out += groupRoom - skipped;
  };
  for (int32_t i = cut.blockCount; i-- > 0;) {
    write(cut.blocks[i] / 1000);
    write(cut.blocks[i] % 1000);
  }
}

}  // namespace veldnls
