// UTF-8, one character at a time: sequences of up to six bytes, of which those of five and six are never valid.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace veldnls {

// Trailing bytes that a lead byte promises, 0 to 5. A byte that is no lead stands alone.
inline constexpr std::array<uint8_t, 256> utf8TrailCount = [] {
  std::array<uint8_t, 256> counts{};
  for (size_t lead = 0; lead < counts.size(); ++lead) {
    counts[lead] = lead < 0xC0 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : lead < 0xF8 ? 3 : lead < 0xFC ? 4 : 5;
  }
  return counts;
}();

// The bits of the lead byte that count, by trailing bytes.
inline constexpr std::array<uint8_t, 6> utf8LeadMask = {0x7F, 0x1F, 0x0F, 0x07, 0x03, 0x01};

inline bool isUtf8Trail(uint8_t byte) { return (byte & 0xC0) == 0x80; }

inline constexpr uint32_t invalidUtf8 = 0xFFFFFFFF;

struct Utf8Sequence {
  uint32_t value;   // up to 0x13FFFF, since the second byte of lead F4 has no bound; or invalidUtf8
  uint32_t length;  // bytes to step over, at least 1
};

// Reads the sequence at `start`, of which `available` bytes (at least 1) may be read; those missing count as no
// trailing bytes. An invalid sequence ends before its first byte that doesn't belong, and is as long as its lead
// promises if all trailing bytes are in place. Surrogates and forms longer than needed are invalid.
inline Utf8Sequence readUtf8(const uint8_t* start, size_t available) {
  const uint8_t lead = *start;
  if (lead < 0x80) return {lead, 1};
  const uint32_t trails = utf8TrailCount[lead];
  const auto breaksAt = [start, available](uint32_t i) { return i >= available || !isUtf8Trail(start[i]); };
  if (trails == 0 || breaksAt(1)) return {invalidUtf8, 1};
  const uint8_t second = start[1];
  uint32_t value = (uint32_t{lead} & utf8LeadMask[trails]) << 6 | (second & 0x3Fu);
  if (trails == 1) return {lead > 0xC1 ? value : invalidUtf8, 2};
  const bool surrogateOrTooLong =
      (lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) || (lead == 0xF0 && second < 0x90);
  for (uint32_t i = 2; i <= trails; ++i) {
    if (breaksAt(i)) return {invalidUtf8, i};
    value = value << 6 | (start[i] & 0x3Fu);
  }
  return {lead > 0xF4 || surrogateOrTooLong ? invalidUtf8 : value, trails + 1};
}

// Bytes of a value's sequence, 1 to 6: values above U+10FFFF are encoded as well.
inline size_t utf8Length(uint32_t value) {
  return value < 0x80 ? 1 : value < 0x800 ? 2 : value < 0x10000 ? 3 : value < 0x200000 ? 4 : value < 0x4000000 ? 5 : 6;
}

// Writes a value whose utf8Length is `length`. The lengths of plane 0 are spelled out: a loop costs more than they do.
inline void writeUtf8(uint8_t* at, uint32_t value, size_t length) {
  const auto trail = [value](int shift) { return static_cast<uint8_t>(0x80 | (value >> shift & 0x3F)); };
  if (length == 1) {
    at[0] = static_cast<uint8_t>(value);
  } else if (length == 2) {
    at[0] = static_cast<uint8_t>(0xC0 | value >> 6);
    at[1] = trail(0);
  } else if (length == 3) {
    at[0] = static_cast<uint8_t>(0xE0 | value >> 12);
    at[1] = trail(6);
    at[2] = trail(0);
  } else {
    constexpr std::array<uint8_t, 7> leadMarks = {0, 0, 0, 0, 0xF0, 0xF8, 0xFC};
    int shift = 0;
    for (size_t i = length - 1; i > 0; --i, shift += 6) at[i] = trail(shift);
    at[0] = static_cast<uint8_t>(leadMarks[length] | value >> shift);
  }
}

}  // namespace veldnls
