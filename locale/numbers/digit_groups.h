// Digits with group separators, from a table of groups.
#pragma once

#include "locale/numbers/decimal_text.h"

namespace veldnls {

// "000" to "999", each behind the place of a separator, so that a group is written at once.
inline constexpr int32_t groupRoom = 4;
inline constexpr auto digitGroups = [] {
  // The last is read beyond its end.
  std::array<char16_t, 1001 * groupRoom> groups{};
  for (uint32_t i = 0; i < 1000; ++i) {
    char16_t* group = &groups[i * groupRoom];
    group[1] = digitUnit(i / 100);
    group[2] = digitUnit(i / 10 % 10);
    group[3] = digitUnit(i % 10);
  }
  return groups;
}();

inline const char16_t* digitGroup(uint32_t number) { return &digitGroups[size_t{number} * groupRoom]; }
inline void copyGroup(char16_t* to, const char16_t* from) { std::memcpy(to, from, groupRoom * sizeof(char16_t)); }

// Writes a number from 1,000 on in front of `end`, with a separator between groups of three digits.
template <class Word>
void writeGroupsBefore(char16_t* end, Word value, char16_t separator) {
  auto group = static_cast<uint32_t>(value % 1000);
  const auto writeGroup = [&] {
    copyGroup(end -= groupRoom, digitGroup(group));
    *end = separator;
  };
  Word rest = value / 1000;
  for (; rest >= 1000; rest /= 1000) {
    writeGroup();
    group = static_cast<uint32_t>(rest % 1000);
  }
  // The group overwrites what stands behind the first digits, so that no branch depends on their count.
  const auto first = static_cast<uint32_t>(rest);
  const int32_t skipped = groupRoom - countDigits32(first);
  copyGroup(end - 2 * groupRoom + skipped, digitGroup(first) + skipped);
  writeGroup();
}

// Likewise for any number.
inline void writeThousandsBefore(char16_t* end, uint64_t value, char16_t separator) {
  if (value < 1000) {
    writeIntegerBefore(end, value);
  } else if (value >> 32 == 0) {
    writeGroupsBefore(end, static_cast<uint32_t>(value), separator);
  } else {
    writeGroupsBefore(end, value, separator);
  }
}

// Likewise, but only the last three digits are a group of three: in front of them stand groups of two.
inline void writeLakhsBefore(char16_t* end, uint64_t value, char16_t separator) {
  if (value < 1000) return writeIntegerBefore(end, value);
  const auto writePair = [&](uint32_t pair) {
    *--end = separator;
    writeTwoDigits(end -= 2, pair);
  };
  writeTwoDigits(end -= 2, static_cast<uint32_t>(value % 100));
  *--end = digitUnit(static_cast<uint32_t>(value / 100 % 10));
  uint64_t upper = value / 1000;
  // Eight digits at a time, whose divisions are short.
  for (; upper >= 1'000'000'000; upper /= 100'000'000) {
    auto pairs = static_cast<uint32_t>(upper % 100'000'000);
    for (int i = 0; i < 4; ++i, pairs /= 100) writePair(pairs % 100);
  }
  auto rest = static_cast<uint32_t>(upper);
  for (; rest >= 10; rest /= 100) writePair(rest % 100);
  if (rest > 0) {
    *--end = separator;
    *--end = digitUnit(rest);
  }
}

}  // namespace veldnls
