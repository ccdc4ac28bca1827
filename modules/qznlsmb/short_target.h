// Inner loops of the stages that write multi-byte text, for texts too short for kernels and for the characters between
// them. They are inlined into the stages: short texts feel every call.
//
// Each takes characters off the front of `count` bytes of a Unicode form that the module's own tables have, and writes
// their output characters. It returns bytes read and written, and may stop anywhere: a stage knows how to do the rest.
// The side has no user characters.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstring>

#include "core/kernels/kernels.h"
#include "core/text/units.h"
#include "modules/qznlsgb/tables.h"
#include "modules/qznlsmb/source_tables.h"
#include "modules/qznlsmb/target_tables.h"

namespace veldnls {

// How far a loop got. Each loop has its own: what is written through a byte pointer might be anything that stands in
// memory.
struct TargetCursor {
  const uint8_t* at;
  const uint8_t* const end;
  uint8_t* out;

  void putByte(uint32_t byte, size_t length) {
    *out++ = static_cast<uint8_t>(byte);
    at += length;
  }
  // The first byte of a code is the low one.
  void putCode(uint32_t code, size_t length) {
    store16(out, code);
    out += 2;
    at += length;
  }
  // Takes as many characters below 0x80 as a word holds, if that many stand at the front.
  template <class Form>
  bool putAsciiBlock() {
    uint64_t block;
    if (end - at < static_cast<std::ptrdiff_t>(sizeof block)) return false;
    std::memcpy(&block, at, sizeof block);
    const size_t size = Form::writeAsciiBlock(out, block);
    if (size == 0) return false;
    at += sizeof block;
    out += size;
    return true;
  }
  KernelRun since(const uint8_t* in, const uint8_t* begin) const {
    return {static_cast<size_t>(at - in), static_cast<size_t>(out - begin)};
  }
};

// Most units, which the table has if they have a code: neither is one the blank nor half-width katakana.
inline bool isOfTable(uint32_t unit) {
  return unit - (ideographicSpace + 1) < firstHalfWidthKatakana - ideographicSpace - 1;
}

// What UnitCodes::lookUp does, for the hottest loop: a group is loaded whole, and ones are counted by a table.
class QuickCodes {
 public:
  explicit QuickCodes(const UnitCodes& codes) : blocks_(codes.blocks), groups_(codes.groups), values_(codes.values) {}

  uint32_t lookUp(uint32_t unit) const {
    uint32_t group;
    std::memcpy(&group, groups_ + blocks_[unit >> 8] * 16u + (unit >> 4 & 0xF), sizeof group);
    const uint32_t bit = 1u << (unit & 0xF);
    if ((group & bit) == 0) return 0;
    const uint32_t below = group & (bit - 1);
    return values_[(group >> 16) + onesOfByte[below & 0xFF] + onesOfByte[below >> 8]];
  }

 private:
  static_assert(sizeof(UnitGroup) == sizeof(uint32_t) && offsetof(UnitGroup, bits) == 0);
  static constexpr std::array<uint8_t, 256> onesOfByte = [] {
    std::array<uint8_t, 256> ones{};
    for (size_t byte = 0; byte < ones.size(); ++byte) ones[byte] = static_cast<uint8_t>(std::popcount(byte));
    return ones;
  }();

  const uint8_t* const blocks_;
  const UnitGroup* const groups_;
  const uint16_t* const values_;
};

// Targets without shifts, which write ASCII as it is. REQUIRES: room for `count` bytes.
template <class Form>
KernelRun shortToPairs(const PipelineSide& side, const uint8_t* in, size_t count, uint8_t* out) {
  const QuickCodes codes(fromUnicodeSetOf(side).codes);
  TargetCursor text{in, in + count, out};
  while (text.at != text.end) {
    uint32_t unit;
    const size_t length = Form::plain(text.at, text.end, unit);
    if (length == 0) break;
    uint32_t code = 0;
    if (isOfTable(unit)) {
      code = codes.lookUp(unit);
    } else if (unit >= firstOfPairs) {
      code = codeWithoutUsers(side, unit);
    } else {
      if (unit >= 0x80 || !text.putAsciiBlock<Form>()) text.putByte(side.singleMap[unit], length);
      continue;
    }
    if (!isSingle(code)) {
      text.putCode(code, length);
    } else if (code != 0) {
      text.putByte(singleOf(code), length);
    } else {
      break;
    }
  }
  return text.since(in, out);
}

// GB18030, by the index of its module. REQUIRES: room for twice `count` bytes.
template <class Form>
KernelRun shortToGb18030(const uint8_t* in, size_t count, uint8_t* out) {
  const auto bytesTurned = [](uint32_t code) { return (code >> 8 & 0xFF) | (code & 0xFF) << 8; };
  const GbFromUnicodeIndex index = gbFromUnicodeIndex;
  TargetCursor text{in, in + count, out};
  while (text.at != text.end) {
    uint32_t unit;
    const size_t length = Form::plain(text.at, text.end, unit);
    if (length == 0) break;
    if (unit < 0x80) {
      if (!text.putAsciiBlock<Form>()) text.putByte(unit, length);
      continue;
    }
    const uint32_t code = index.lookUp(static_cast<char16_t>(unit));
    if (code < 0x100) break;
    if (code > 0xFFFF) text.putCode(bytesTurned(code >> 16), 0);
    text.putCode(bytesTurned(code), length);
  }
  return text.since(in, out);
}

}  // namespace veldnls
