#include "modules/qznlsmb/skip_target.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstring>

#include "core/kernels/pace.h"
#include "core/text/units.h"
#include "modules/qznlsgb/tables.h"
#include "modules/qznlsmb/ascii.h"
#include "modules/qznlsmb/source_tables.h"
#include "modules/qznlsmb/target_run.h"
#include "modules/qznlsmb/target_tables.h"

namespace veldnls {

namespace {

// For fewer units a kernel doesn't pay.
constexpr size_t kernelUnits = 16;
// So many characters the loop does itself before a kernel that got nowhere is asked again.
constexpr size_t kernelPause = 16;

bool isShort(size_t count, size_t room, size_t mostBytes) { return count < kernelUnits && room >= mostBytes * count; }

// How far a loop got. Small, and its own copy in each function: what is written through a byte pointer might be
// anything that stands in memory.
struct ByteCursor {
  const uint8_t* at;
  const uint8_t* const end;
  uint8_t* out;

  uint32_t unit() const { return load16<std::endian::little>(at); }

  void putByte(uint8_t byte) {
    *out++ = byte;
    at += utf16UnitBytes;
  }
  // The first byte of a code is the low one.
  void putCode(uint32_t code) {
    store16(out, code);
    out += 2;
    at += utf16UnitBytes;
  }
  // Takes four units below 0x80, if that many stand at the front.
  bool putAsciiBlock() {
    uint64_t block;
    if (end - at < static_cast<std::ptrdiff_t>(sizeof block)) return false;
    std::memcpy(&block, at, sizeof block);
    if ((block & nonAsciiUnits) != 0) return false;
    narrowBlock(out, block);
    at += sizeof block;
    out += sizeof block / utf16UnitBytes;
    return true;
  }
  KernelRun since(const uint8_t* units, const uint8_t* bytes) const {
    return {static_cast<size_t>(at - units) / utf16UnitBytes, static_cast<size_t>(out - bytes)};
  }
};

// A text on its way, of which `some` takes a few characters and `kernel` many. Both take units and room for bytes, and
// return what they read and wrote; `some` takes as many units as it is told, for each of which there are `size` bytes
// of room.
template <size_t size, class Some, class Kernel>
KernelRun inTurns(const uint8_t* units, size_t count, uint8_t* out, size_t room, const Some& some,
                  const Kernel& kernel) {
  KernelRun run{0, 0};
  const auto add = [&run](const KernelRun& taken) { run = {run.read + taken.read, run.written + taken.written}; };
  const auto at = [&] { return units + utf16UnitBytes * run.read; };
  while (run.read != count) {
    if (load16<std::endian::little>(at()) < 0x80) {
      const size_t ascii = narrowAscii(at(), out + run.written, std::min(count - run.read, room - run.written));
      add({ascii, ascii});
    }
    size_t most = kernelUnits;
    if (count - run.read >= kernelUnits) {
      const KernelRun taken = kernel(at(), count - run.read, out + run.written, room - run.written);
      add(taken);
      most = taken.read < kernelPause ? kernelPause : 1;
    }
    const size_t fitting = std::min({count - run.read, (room - run.written) / size, most});
    const KernelRun taken = some(at(), fitting, out + run.written);
    if (taken.read == 0) break;
    add(taken);
  }
  return run;
}

// Most units, which the table has if they have a code: neither is one the blank nor half-width katakana.
bool isOfTable(uint32_t unit) { return unit - (ideographicSpace + 1) < firstHalfWidthKatakana - ideographicSpace - 1; }

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

KernelRun somePairs(const PipelineSide& side, const uint8_t* units, size_t count, uint8_t* out) {
  const QuickCodes codes(fromUnicodeSetOf(side).codes);
  ByteCursor text{units, units + utf16UnitBytes * count, out};
  while (text.at != text.end) {
    const uint32_t unit = text.unit();
    if (unit < firstOfPairs) {
      if (unit >= 0x80 || !text.putAsciiBlock()) text.putByte(side.singleMap[unit]);
      continue;
    }
    const uint32_t code = isOfTable(unit) ? codes.lookUp(unit) : codeWithoutUsers(side, unit);
    if (isSingle(code)) {
      if (code == 0) break;
      text.putByte(singleOf(code));
    } else {
      text.putCode(code);
    }
  }
  return text.since(units, out);
}

}  // namespace

KernelRun plainToPairs(const PipelineSide& side, bool& /*inDouble*/, const uint8_t* units, size_t count, uint8_t* out,
                       size_t room) {
  if (side.overlay != nullptr) return {0, 0};
  if (isShort(count, room, 2)) return somePairs(side, units, count, out);
  return inTurns<2>(
      units, count, out, room,
      [&](const uint8_t* text, size_t left, uint8_t* bytes) { return somePairs(side, text, left, bytes); },
      [&](const uint8_t* text, size_t left, uint8_t* bytes, size_t bytesRoom) {
        return kernels().unitsToCodes(fromUnicodeSetOf(side).codes, blankCode(side), text, left, bytes, bytesRoom);
      });
}

namespace {

KernelRun takeSingles(const PipelineSide& side, const uint8_t* units, size_t count, uint8_t* out, size_t room) {
  const uint8_t* const single = side.singleMap;
  ByteCursor text{units, units + utf16UnitBytes * std::min(count, room), out};
  while (text.at != text.end) {
    const uint32_t unit = text.unit();
    if (unit >= firstOfPairs) break;
    text.putByte(single[unit]);
  }
  return text.since(units, out);
}

// Many runs of characters of two bytes are short: only one that has gone on for a while is for a kernel.
KernelRun takeDoubles(const PipelineSide& side, const uint8_t* units, size_t count, uint8_t* out, size_t room) {
  const UnitCodes& table = fromUnicodeSetOf(side).codes;
  const QuickCodes codes(table);
  ByteCursor text{units, units + utf16UnitBytes * std::min(count, room / 2), out};
  KernelPace pace;
  pace.took(0);
  while (text.at != text.end) {
    if (pace.due()) {
      const size_t left = static_cast<size_t>(text.end - text.at) / utf16UnitBytes;
      const KernelRun run = kernels().unitsToDoubles(table, blankCode(side), text.at, left, text.out, 2 * left);
      text.at += utf16UnitBytes * run.read;
      text.out += run.written;
      pace.took(run.read);
      if (text.at == text.end) break;
    }
    const uint32_t unit = text.unit();
    if (unit < firstOfPairs) break;
    const uint32_t code = isOfTable(unit) ? codes.lookUp(unit) : codeWithoutUsers(side, unit);
    if (isSingle(code)) break;
    text.putCode(code);
  }
  return text.since(units, out);
}

}  // namespace

namespace {

// Runs of both modes and the shifts between them.
KernelRun someModes(const PipelineSide& side, bool& inDouble, const uint8_t* units, size_t count, uint8_t* out,
                    size_t room) {
  const MultiByteProfile& profile = *side.targetProfile;
  const size_t shiftLength = profile.shiftLength;
  const size_t roomForShifts = roomToShift(side);
  KernelRun run{0, 0};
  for (;;) {
    const uint8_t* at = units + utf16UnitBytes * run.read;
    const size_t left = count - run.read;
    const size_t roomLeft = room - run.written;
    // Behind double-byte characters there is room for a shift-in, with which they began.
    const KernelRun taken = inDouble ? takeDoubles(side, at, left, out + run.written, roomLeft - shiftLength)
                                     : takeSingles(side, at, left, out + run.written, roomLeft);
    run = {run.read + taken.read, run.written + taken.written};
    // The mode changes when the next character is sure to be taken in the other one.
    if (run.read == count || room - run.written < roomForShifts) break;
    const uint32_t unit = load16<std::endian::little>(units + utf16UnitBytes * run.read);
    const bool single = unit < firstOfPairs;
    if (single != inDouble || (!single && isSingle(codeWithoutUsers(side, unit)))) break;
    const uint8_t* sequence = single ? profile.shiftIn : profile.shiftOut;
    for (size_t i = 0; i < shiftLength; ++i) out[run.written++] = sequence[i];
    inDouble = !single;
  }
  return run;
}

}  // namespace

KernelRun plainToModes(const PipelineSide& side, bool& inDouble, const uint8_t* units, size_t count, uint8_t* out,
                       size_t room) {
  if (side.overlay != nullptr) return {0, 0};
  const MultiByteProfile& profile = *side.targetProfile;
  const ShiftedTarget target{fromUnicodeSetOf(side).codes, side.singleMap,    blankCode(side), 1,
                             profile.shiftOut[0],          profile.shiftIn[0]};
  KernelRun run{0, 0};
  const auto add = [&run](const KernelRun& taken) { run = {run.read + taken.read, run.written + taken.written}; };
  while (run.read != count) {
    size_t most = count;
    // A kernel writes shifts of one byte only.
    if (count - run.read >= kernelUnits && profile.shiftLength == 1) {
      const KernelRun taken = kernels().unitsToShifted(target, inDouble, units + utf16UnitBytes * run.read,
                                                       count - run.read, out + run.written, room - run.written);
      add(taken);
      most = taken.read < kernelPause ? kernelPause : 1;
    }
    const size_t some = std::min(count - run.read, most);
    const KernelRun taken =
        someModes(side, inDouble, units + utf16UnitBytes * run.read, some, out + run.written, room - run.written);
    add(taken);
    if (taken.read != some) break;
  }
  return run;
}

namespace {

uint32_t bytesTurned(uint32_t code) { return (code >> 8 & 0xFF) | (code & 0xFF) << 8; }

KernelRun someGb18030(const uint8_t* units, size_t count, uint8_t* out) {
  const GbFromUnicodeIndex index = gbFromUnicodeIndex;
  ByteCursor text{units, units + utf16UnitBytes * count, out};
  while (text.at != text.end) {
    const uint32_t unit = text.unit();
    if (unit < 0x80) {
      if (!text.putAsciiBlock()) text.putByte(static_cast<uint8_t>(unit));
      continue;
    }
    const uint32_t code = index.lookUp(static_cast<char16_t>(unit));
    if (code < 0x100) break;
    if (code > 0xFFFF) {
      store16(text.out, bytesTurned(code >> 16));
      text.out += 2;
    }
    text.putCode(bytesTurned(code));
  }
  return text.since(units, out);
}

}  // namespace

KernelRun plainToGb18030(const PipelineSide& /*side*/, bool& /*inDouble*/, const uint8_t* units, size_t count,
                         uint8_t* out, size_t room) {
  const UnitCells cells{gbFromUnicodeIndex.blocks, gbFromUnicodeIndex.cells};
  if (isShort(count, room, 4)) return someGb18030(units, count, out);
  return inTurns<4>(units, count, out, room, someGb18030,
                    [&](const uint8_t* text, size_t left, uint8_t* bytes, size_t bytesRoom) {
                      return kernels().unitsToCells(cells, text, left, bytes, bytesRoom);
                    });
}

}  // namespace veldnls
