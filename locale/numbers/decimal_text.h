// Decimal digits of integers as UTF-16.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "locale/numbers/binary_double.h"

namespace veldnls {

// Powers of ten that fit 64 bits.
inline constexpr int32_t maxIntegerPower = 19;
inline constexpr auto integerPowersOfTen = [] {
  std::array<uint64_t, maxIntegerPower + 1> powers{1};
  for (size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 10;
  return powers;
}();

inline char16_t digitUnit(uint32_t digit) { return static_cast<char16_t>(u'0' + digit); }
inline bool isDigitUnit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

// How many digits a number has; zero has none.
inline int32_t countDigits(uint64_t value) {
  const auto estimate = static_cast<size_t>(std::bit_width(value) * 1233 >> 12);
  return static_cast<int32_t>(estimate) + (value >= integerPowersOfTen[estimate] ? 1 : 0);
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

// Writes a number without zeros in front; zero has no digit. Returns its end. Shorter numbers take as much room as
// leastIntegerRoom: U+0000 is written behind them.
inline constexpr int32_t leastIntegerRoom = 8;
inline char16_t* writeInteger(char16_t* out, uint64_t value) {
  constexpr uint64_t block = 100'000'000;
  if (value >= block) {
    out = writeInteger(out, value / block);
    writeEightBytes(out, eightDigitBytes(static_cast<uint32_t>(value % block)));
    return out + 8;
  }
  const int32_t count = countDigits(value);
  const uint64_t digits = count == 0 ? 0 : eightDigitBytes(static_cast<uint32_t>(value)) >> 8 * (8 - count);
  writeEightBytes(out, digits);
  return out + count;
}

// Texts of numbers are short: these move a few units at a time, the last ones twice if need be.
inline void fillUnits(char16_t* out, int32_t count, char16_t unit) {
  constexpr int32_t block = 8;
  const std::array<char16_t, block> units{unit, unit, unit, unit, unit, unit, unit, unit};
  if (count >= block) {
    char16_t* last = out + count - block;
    for (; out < last; out += block) std::memcpy(out, units.data(), sizeof units);
    std::memcpy(last, units.data(), sizeof units);
  } else if (count >= block / 2) {
    std::memcpy(out, units.data(), sizeof units / 2);
    std::memcpy(out + count - block / 2, units.data(), sizeof units / 2);
  } else {
    for (; count > 0; --count) *out++ = unit;
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
