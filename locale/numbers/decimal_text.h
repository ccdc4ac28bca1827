// Decimal digits of integers as UTF-16.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "core/digits.h"
#include "locale/numbers/binary_double.h"

namespace veldnls {

// Powers of ten that fit 64 bits.
inline constexpr int32_t maxIntegerPower = 19;
inline constexpr auto integerPowersOfTen = [] {
  std::array<uint64_t, maxIntegerPower + 1> powers{1};
  for (size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 10;
  return powers;
}();

inline bool isDigitUnit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

// How many digits a number has; zero has none.
inline int32_t countDigits(uint64_t value) {
  const auto bits = static_cast<uint32_t>(std::bit_width(value | 1));
  const uint32_t estimate = bits * 1233 >> 12;
  return static_cast<int32_t>(estimate + (value >= integerPowersOfTen[estimate] ? 1 : 0));
}

// "00" to "99".
inline constexpr auto digitPairs = [] {
  std::array<char16_t, 200> pairs{};
  for (size_t i = 0; i < pairs.size(); ++i) {
    pairs[i] = static_cast<char16_t>(u'0' + (i % 2 == 0 ? i / 20 : i / 2 % 10));
  }
  return pairs;
}();

inline void writeTwoDigits(char16_t* out, uint32_t value) {
  std::memcpy(out, &digitPairs[size_t{2} * value], 2 * sizeof(char16_t));
}
inline void writeFourDigits(char16_t* out, uint32_t value) {
  writeTwoDigits(out, value / 100);
  writeTwoDigits(out + 2, value % 100);
}
inline void writeEightDigits(char16_t* out, uint32_t value) {
  writeFourDigits(out, value / 10000);
  writeFourDigits(out + 4, value % 10000);
}

// Writes the last `count` digits in front of `end`, zeros at the start included.
inline void writeDigitsBefore(char16_t* end, uint64_t value, int32_t count) {
  for (; count >= 8; count -= 8, value /= 100'000'000) {
    writeEightDigits(end -= 8, static_cast<uint32_t>(value % 100'000'000));
  }
  auto rest = static_cast<uint32_t>(value);
  if ((count & 4) != 0) {
    writeFourDigits(end -= 4, rest % 10000);
    rest /= 10000;
  }
  if ((count & 2) != 0) {
    writeTwoDigits(end -= 2, rest % 100);
    rest /= 100;
  }
  if ((count & 1) != 0) *--end = digitUnit(rest % 10);
}

// Eight digits as ASCII in one word, the first in the lowest byte: each step cuts all numbers that the word holds in
// two.
inline uint64_t eightDigitBytes(uint32_t value) {
  uint64_t word = value / 10000 | uint64_t{value % 10000} << 32;
  uint64_t upper = word * 10486 >> 20 & 0x0000007F0000007F;
  word = upper | (word - 100 * upper) << 16;
  upper = word * 103 >> 10 & 0x000F000F000F000F;
  word = upper | (word - 10 * upper) << 8;
  return word + 0x3030303030303030;
}

// Writes the bytes of a word as units, the lowest first.
inline void writeEightBytes(char16_t* out, uint64_t word) {
  if constexpr (std::endian::native == std::endian::big) word = __builtin_bswap64(word);
  uint8_t bytes[8];
  std::memcpy(bytes, &word, sizeof bytes);
  for (int i = 0; i < 8; ++i) out[i] = bytes[i];
}

// Writes a number above zero and below 10^8 in front of `end`, and U+0000 behind it as far as eight units from its
// start. The way through here is the same for all: columns hold numbers of many lengths.
inline void writeStartBefore(char16_t* end, uint64_t value) {
  const int32_t count = countDigits(value);
  writeEightBytes(end - count, eightDigitBytes(static_cast<uint32_t>(value)) >> 8 * (8 - count));
}

// Writes a number in front of `end` without zeros at its start; zero has no digit.
inline void writeIntegerBefore(char16_t* end, uint64_t value) {
  constexpr uint64_t block = 100'000'000;
  if (value >= block) {
    const uint64_t upper = value / block;
    if (upper < block) {
      writeStartBefore(end - 8, upper);
    } else {
      writeStartBefore(end - 16, upper / block);
      writeEightDigits(end - 16, static_cast<uint32_t>(upper % block));
    }
    writeEightDigits(end - 8, static_cast<uint32_t>(value % block));
    return;
  }
  auto rest = static_cast<uint32_t>(value);
  if (rest >= 10000) {
    writeFourDigits(end -= 4, rest % 10000);
    rest /= 10000;
  }
  if (rest >= 100) {
    writeTwoDigits(end -= 2, rest % 100);
    rest /= 100;
  }
  if (rest >= 10) {
    writeTwoDigits(end - 2, rest);
  } else if (rest > 0) {
    end[-1] = digitUnit(rest);
  }
}

// "000" to "999", each behind the place of a separator, so that a group is written at once.
inline constexpr size_t groupRoom = 4;
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

// The same for a number from 1,000 on, with a separator between groups of three.
template <class Word>
void writeGroupsBefore(char16_t* end, Word value, char16_t separator) {
  constexpr size_t groupBytes = groupRoom * sizeof(char16_t);
  auto group = static_cast<uint32_t>(value % 1000);
  const auto writeGroup = [&] {
    std::memcpy(end -= groupRoom, &digitGroups[group * groupRoom], groupBytes);
    *end = separator;
  };
  Word rest = value / 1000;
  for (; rest >= 1000; rest /= 1000) {
    writeGroup();
    group = static_cast<uint32_t>(rest % 1000);
  }
  // The group overwrites what stands behind the first digits, so that no branch depends on their count.
  const auto first = static_cast<uint32_t>(rest);
  const size_t skipped = 1 + (first < 100 ? 1 : 0) + (first < 10 ? 1 : 0);
  std::memcpy(end - 2 * groupRoom + skipped, &digitGroups[first * groupRoom + skipped], groupBytes);
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

// Cuts the zeros at the end of a number that isn't zero, and returns how many there were.
inline int32_t cutZeros(uint64_t& number) {
  int32_t count = 0;
  const auto cut = [&](uint64_t power, int32_t zeros) {
    const bool found = number % power == 0;
    if (found) {
      number /= power;
      count += zeros;
    }
    return found;
  };
  while (cut(100'000'000, 8)) {
  }
  cut(10'000, 4);
  cut(100, 2);
  cut(10, 1);
  return count;
}

// Texts of numbers are short: these move a few units at a time, the last ones twice if need be.

// At most fewUnits.
inline constexpr int32_t fewUnits = 64;
[[gnu::always_inline]] inline void fillFewUnits(char16_t* out, int32_t count, char16_t unit) {
  constexpr ptrdiff_t block = 8;
  const std::array<char16_t, block> units{unit, unit, unit, unit, unit, unit, unit, unit};
  const auto put = [&units](char16_t* at) { std::memcpy(at, units.data(), sizeof units); };
  if (count >= block) [[likely]] {
    char16_t* const end = out + count;
    put(out);
    put(end - block);
    if (count <= 2 * block) return;
    put(out + block);
    put(end - 2 * block);
    if (count <= 4 * block) return;
    put(out + 2 * block);
    put(out + 3 * block);
    put(end - 3 * block);
    put(end - 4 * block);
  } else if (count >= block / 2) {
    std::memcpy(out, units.data(), sizeof units / 2);
    std::memcpy(out + count - block / 2, units.data(), sizeof units / 2);
  } else if (count > 0) {
    out[0] = unit;
    out[count / 2] = unit;
    out[count - 1] = unit;
  }
}

inline void fillUnits(char16_t* out, int32_t count, char16_t unit) {
  if (count <= fewUnits) {
    fillFewUnits(out, count, unit);
  } else {
    std::fill_n(out, count, unit);
  }
}

// Returns the end of the copy, which doesn't overlap the units.
inline char16_t* copyUnits(const char16_t* units, int32_t count, char16_t* out) {
  constexpr int32_t block = 8;
  constexpr size_t blockBytes = block * sizeof(char16_t);
  char16_t* end = out + count;
  if (count >= block) {
    const char16_t* last = units + count - block;
    for (; units < last; units += block, out += block) std::memcpy(out, units, blockBytes);
    std::memcpy(end - block, last, blockBytes);
  } else if (count >= block / 2) {
    std::memcpy(out, units, blockBytes / 2);
    std::memcpy(end - block / 2, units + count - block / 2, blockBytes / 2);
  } else {
    while (out < end) *out++ = *units++;
  }
  return end;
}

}  // namespace veldnls
