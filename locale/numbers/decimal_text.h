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

// For each place of a number's highest bit, what carries its count of digits into the upper half of a word.
inline constexpr auto digitCountCarries = [] {
  std::array<uint64_t, 32> carries{};
  for (size_t i = 0; i < carries.size(); ++i) {
    const uint64_t lowest = i == 0 ? 0 : uint64_t{1} << i;
    uint64_t count = 0;
    while (integerPowersOfTen[count] <= lowest) ++count;
    const uint64_t next = integerPowersOfTen[count];
    // A number below twice the lowest has at most one digit more, from the next power of ten on.
    const bool grows = next < uint64_t{2} << i;
    carries[i] = grows ? ((count + 1) << 32) - next : count << 32;
  }
  return carries;
}();

// Zero has no digit.
inline int32_t countDigits32(uint32_t value) {
  const auto highest = static_cast<size_t>(std::bit_width(value | 1) - 1);
  return static_cast<int32_t>((value + digitCountCarries[highest]) >> 32);
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

// Texts of numbers are short: these move a block of units at a time, the last one twice if need be.

inline constexpr int32_t unitBlock = 8;
[[gnu::always_inline]] inline void fillBlock(char16_t* out, char16_t unit) {
  const std::array<char16_t, unitBlock> units{unit, unit, unit, unit, unit, unit, unit, unit};
  std::memcpy(out, units.data(), sizeof units);
}

[[gnu::always_inline]] inline void fillHalfBlock(char16_t* out, char16_t unit) {
  const std::array<char16_t, unitBlock / 2> units{unit, unit, unit, unit};
  std::memcpy(out, units.data(), sizeof units);
}

// At most fewUnits.
inline constexpr int32_t fewUnits = 64;
[[gnu::always_inline]] inline void fillFewUnits(char16_t* out, int32_t count, char16_t unit) {
  constexpr ptrdiff_t block = unitBlock;
  if (count >= block) [[likely]] {
    char16_t* const end = out + count;
    fillBlock(out, unit);
    fillBlock(end - block, unit);
    if (count <= 2 * block) return;
    fillBlock(out + block, unit);
    fillBlock(end - 2 * block, unit);
    if (count <= 4 * block) return;
    fillBlock(out + 2 * block, unit);
    fillBlock(out + 3 * block, unit);
    fillBlock(end - 3 * block, unit);
    fillBlock(end - 4 * block, unit);
  } else if (count >= block / 2) {
    fillHalfBlock(out, unit);
    fillHalfBlock(out + count - block / 2, unit);
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
  constexpr int32_t block = unitBlock;
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
