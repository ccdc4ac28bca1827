#include "core/kernels/avx2/functions.h"
#include "core/kernels/avx2/lanes.h"
#include "core/kernels/units.h"

namespace veldnls::avx2 {

namespace {

constexpr uint32_t ideographicSpace = 0x3000;
constexpr uint32_t firstHalfWidthKatakana = 0xFF61;
constexpr uint32_t halfWidthKatakanaCount = 63;

uint32_t characterOf(const UnitCodes& codes, uint32_t unit) {
  const UnitGroup group = codes.groups[codes.blocks[unit >> 8] * 16u + (unit >> 4 & 0xF)];
  if ((group.bits >> (unit & 0xF) & 1) == 0) return 0;
  return codes.values[group.rank + static_cast<uint32_t>(_mm_popcnt_u32(_bzhi_u32(group.bits, unit & 0xF)))];
}

uint32_t codeOf(const UnitCodes& codes, uint32_t blank, uint32_t unit) {
  // Most are between these two.
  if (unit - (ideographicSpace + 1) < firstHalfWidthKatakana - (ideographicSpace + 1)) return characterOf(codes, unit);
  if (unit == ideographicSpace) return blank;
  if (unit < 0x9F || unit - firstHalfWidthKatakana < halfWidthKatakanaCount) return 0;
  return characterOf(codes, unit);
}

}  // namespace

KernelRun unitsToCodes(const UnitCodes& given, uint32_t blank, const uint8_t* in, size_t count, uint8_t* out,
                       size_t room) {
  const UnitCodes codes = given;
  const uint8_t* at = in;
  const uint8_t* const end = in + 2 * count;
  uint8_t* to = out;
  uint8_t* const last = out + room;
  for (; at != end; at += 2) {
    const uint32_t unit = unit16<std::endian::little>(at, 0);
    if (unit < 0x80) {
      if (to == last) break;
      *to++ = static_cast<uint8_t>(unit);
      continue;
    }
    const uint32_t code = codeOf(codes, blank, unit);
    if (code == 0) break;
    const size_t length = (code & 0xFF) == 0 ? 1 : 2;
    if (static_cast<size_t>(last - to) < length) break;
    if (length == 2) *to++ = static_cast<uint8_t>(code);
    *to++ = static_cast<uint8_t>(code >> 8);
  }
  return {static_cast<size_t>(at - in) / 2, static_cast<size_t>(to - out)};
}

}  // namespace veldnls::avx2
