// Runs of ASCII, of which short ones are dear by a kernel.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "core/kernels/kernels.h"

namespace veldnls {

// A kernel goes on behind so many bytes.
inline constexpr size_t asciiBytesInline = 32;

// Copies the bytes below 0x80 off the front of `count`, and returns how many they are.
inline size_t copyAscii(const uint8_t* in, uint8_t* out, size_t count) {
  size_t done = 0;
  uint64_t block;
  while (done < asciiBytesInline && count - done >= sizeof block) {
    std::memcpy(&block, in + done, sizeof block);
    if ((block & UINT64_C(0x8080808080808080)) != 0) break;
    std::memcpy(out + done, &block, sizeof block);
    done += sizeof block;
  }
  if (done == asciiBytesInline) {
    const size_t more = kernels().asciiRun(in + done, count - done);
    std::memcpy(out + done, in + done, more);
    return done + more;
  }
  for (; done < count && in[done] < 0x80; ++done) out[done] = in[done];
  return done;
}

// The bits that no unit below 0x80 has, in a block of four little-endian units.
inline constexpr uint64_t nonAsciiUnits = UINT64_C(0xFF80FF80FF80FF80);

// Writes four such units as bytes.
inline void narrowBlock(uint8_t* out, uint64_t block) {
  block = (block | block >> 8) & UINT64_C(0x0000FFFF0000FFFF);
  const auto bytes = static_cast<uint32_t>(block | block >> 16);
  std::memcpy(out, &bytes, sizeof bytes);
}

// Makes bytes of the little-endian UTF-16 units below 0x80 off the front of `count`, and returns how many they are.
inline size_t narrowAscii(const uint8_t* units, uint8_t* out, size_t count) {
  size_t done = 0;
  uint64_t block;
  while (done < asciiBytesInline && count - done >= sizeof block / 2) {
    std::memcpy(&block, units + 2 * done, sizeof block);
    if ((block & nonAsciiUnits) != 0) break;
    narrowBlock(out + done, block);
    done += sizeof block / 2;
  }
  if (done == asciiBytesInline) done += kernels().narrowAscii16.little(units + 2 * done, out + done, count - done);
  return done;
}

}  // namespace veldnls
