// UTF-8 as the stages read and write it: sequences of up to six bytes, of which those of five and six are never valid.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace veldnls {

// Trailing bytes that a lead byte promises.
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

// Tests a sequence of `length` bytes, the length that its lead promises. Returns 0 if it is valid, otherwise how many
// bytes to skip. The bytes are tested from the last to the second and the last failure decides, so that the skip ends
// before the first byte that doesn't belong; a sequence whose trailing bytes are all in place is skipped whole. The
// second byte of lead F4 has no bound, so that values up to 0x13FFFF pass.
inline size_t badUtf8Skip(const uint8_t* sequence, size_t length) {
  const uint8_t lead = sequence[0];
  size_t skip = length;
  bool valid = true;
  if (length >= 6 && !isUtf8Trail(sequence[5])) skip = 5;
  if (length >= 5) {
    if (!isUtf8Trail(sequence[4])) skip = 4;
    valid = false;
  }
  if (length >= 4 && !isUtf8Trail(sequence[3])) {
    skip = 3;
    valid = false;
  }
  if (length >= 3 && !isUtf8Trail(sequence[2])) {
    skip = 2;
    valid = false;
  }
  if (length >= 2) {
    const uint8_t second = sequence[1];
    if (!isUtf8Trail(second)) {
      skip = 1;
      valid = false;
    } else if ((lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) || (lead == 0xF0 && second < 0x90)) {
      valid = false;
    }
  }
  if ((lead >= 0x80 && lead <= 0xC1) || lead > 0xF4) valid = false;
  return valid ? 0 : skip;
}

// The value of a valid sequence.
inline uint32_t utf8Value(const uint8_t* sequence, size_t length) {
  uint32_t value = uint32_t{sequence[0]} & utf8LeadMask[length - 1];
  for (size_t i = 1; i < length; ++i) value = value << 6 | (sequence[i] & 0x3Fu);
  return value;
}

// UTF-8 as a target.
struct Utf8Target {
  // A value with bit 31 set is replaced only while this many bytes of room are left.
  static constexpr size_t replacementRoom = 1;

  static size_t size(uint32_t value) {
    return value < 0x80        ? 1
           : value < 0x800     ? 2
           : value < 0x10000   ? 3
           : value < 0x200000  ? 4
           : value < 0x4000000 ? 5
                               : 6;
  }

  static void write(uint8_t* at, uint32_t value, size_t size) {
    constexpr std::array<uint8_t, 7> leadMarks = {0, 0, 0xC0, 0xE0, 0xF0, 0xF8, 0xFC};
    for (size_t i = size - 1; i > 0; --i, value >>= 6) at[i] = static_cast<uint8_t>(0x80 | (value & 0x3F));
    at[0] = static_cast<uint8_t>(leadMarks[size] | value);
  }
};

}  // namespace veldnls
