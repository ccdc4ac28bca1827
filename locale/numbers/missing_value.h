// Missing values: doubles whose top 16 bits are all ones. The next byte is the complement of the value's letter, with
// "-" in the place of "_"; the rest is zero when the library makes one, and isn't looked at.
#pragma once

#include <bit>
#include <cstdint>

namespace veldnls {

inline constexpr uint64_t missingPattern = uint64_t{0xFFFF} << 48;

inline bool isMissing(double value) { return (std::bit_cast<uint64_t>(value) & missingPattern) == missingPattern; }

// `letter` is ".", "_" or "A" to "Z".
inline double missingValue(char16_t letter) {
  const uint64_t held = letter == u'_' ? u'-' : letter;
  return std::bit_cast<double>(missingPattern | (~held & 0xFF) << 40);
}

// ".", "_" or "A" to "Z"; a byte that stands for none of them counts as ".".
inline char16_t missingLetter(double value) {
  const auto letter = static_cast<char16_t>(~(std::bit_cast<uint64_t>(value) >> 40) & 0xFF);
  if (letter == u'-') return u'_';
  return letter >= u'A' && letter <= u'Z' ? letter : u'.';
}

}  // namespace veldnls
