#include "core/kernels/avx2/functions.h"
#include "core/kernels/avx2/lanes.h"
#include "core/kernels/units.h"

namespace veldnls::avx2 {

namespace {

// What members of the tables do: those have a body that units for plain processors might be linked to.

uint32_t unitOf(const CodeRows& rows, uint32_t first, uint32_t second) {
  const CodeRow row = rows.rows[(first * 0x100 + second + 0x60) >> 7];
  const uint32_t place = second - row.first;
  return place <= row.span ? rows.units[row.start + place] : 0;
}

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

uint32_t codeOf(const UnitCells& codes, uint32_t unit) {
  const uint32_t cell = codes.cells[codes.blocks[unit >> 6] + (unit & 0x3F)];
  return cell < 0x8000 ? 0 : cell >> 8 | (cell & 0xFF) << 8;
}

// `toCode` answers the output character of a unit from 0x80 on. Look-ups of characters one by one, each in both tables,
// run side by side; gathers of eight, each waiting for the one before, take longer.
template <class ToCode>
KernelRun fromCodes(const CodeRows& given, uint32_t blank, const uint8_t* in, size_t count, uint8_t* out, size_t room,
                    const ToCode toCode) {
  const CodeRows rows = given;
  const uint8_t* at = in;
  const uint8_t* const end = in + count;
  uint8_t* to = out;
  uint8_t* const last = out + room;
  while (at != end) {
    const uint32_t first = *at;
    if (first < 0x80) {
      if (to == last) break;
      *to++ = static_cast<uint8_t>(first);
      ++at;
      continue;
    }
    if (end - at < 2) break;
    const uint32_t second = at[1];
    const uint32_t unit = first * 256 + second == blank ? ideographicSpace : unitOf(rows, first, second);
    if (unit == 0) break;
    const uint32_t code = unit < 0x80 ? unit << 8 : toCode(unit);
    if (code == 0) break;
    const size_t length = (code & 0xFF) == 0 ? 1 : 2;
    if (static_cast<size_t>(last - to) < length) break;
    if (length == 2) *to++ = static_cast<uint8_t>(code);
    *to++ = static_cast<uint8_t>(code >> 8);
    at += 2;
  }
  return {static_cast<size_t>(at - in), static_cast<size_t>(to - out)};
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

KernelRun codesToCodes(const CodeRows& rows, uint32_t blank, const UnitCodes& given, uint32_t targetBlank,
                       const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  const UnitCodes codes = given;
  return fromCodes(rows, blank, in, count, out, room, [=](uint32_t unit) { return codeOf(codes, targetBlank, unit); });
}

KernelRun codesToCells(const CodeRows& rows, uint32_t blank, const UnitCells& given, const uint8_t* in, size_t count,
                       uint8_t* out, size_t room) {
  const UnitCells codes = given;
  return fromCodes(rows, blank, in, count, out, room, [=](uint32_t unit) { return codeOf(codes, unit); });
}

}  // namespace veldnls::avx2
