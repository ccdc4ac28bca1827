#include "transcode/private_use.h"

#include <algorithm>

#include "core/kernels/double_byte.h"
#include "veldnls/cei.h"

namespace veldnls {

namespace {

struct Range {
  uint16_t first;
  uint16_t last;
};

// The part of the private-use area that is free for the users of an encoding: its own mapping table takes the rest.
Range privateUseRange(CEI cei) {
  switch (cei) {
    case U_IBM937_CE:
    case U_IBM950_CE:
    case U_IBM935_CE:
    case U_IBM1381_CE:
    case U_IBM939_CE:
    case U_IBM930_CE:
    case U_IBM942_CE:
    case U_IBM933_CE:
    case U_IBM949_CE:
      return {0xE000, 0xF83C};
    case U_MS950_CE:
    case U_BIG5_CE:
      return {0xF849, 0xF8FF};
    case U_MACOS2_CE:
    case U_MACOS25_CE:
    case U_MACOS1_CE:
    case U_MACOS3_CE:
      return {0xE000, 0xF6FF};
    case U_EUCCN_CE:
    case U_MS936_CE:
      return {0xEDE8, 0xF8FF};
    case U_MS932_CE:
    case U_SHIFTJIS_CE:
      return {0xE758, 0xF8FF};
    case U_EUCKR_CE:
    case U_MS949_CE:
      return {0xE0BC, 0xF8FF};
    default:
      return {0xE000, 0xF8FF};
  }
}

}  // namespace

uint32_t fillPrivateUse(uint16_t* buffer, uint32_t count, CEI cei) {
  const Range range = privateUseRange(cei);
  const uint32_t filled = std::min<uint32_t>(count, range.last - range.first + 1u);
  for (uint32_t i = 0; i < filled; ++i) buffer[i] = static_cast<uint16_t>(range.first + i);
  std::fill(buffer + filled, buffer + count, ideographicSpace);
  return count - filled;
}

}  // namespace veldnls
