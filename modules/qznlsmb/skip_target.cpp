#include "modules/qznlsmb/skip_target.h"

#include <algorithm>
#include <bit>

#include "core/kernels/pace.h"
#include "core/text/units.h"
#include "modules/qznlsmb/ascii.h"
#include "modules/qznlsmb/kernel_pause.h"
#include "modules/qznlsmb/short_target.h"
#include "modules/qznlsmb/target_run.h"
#include "modules/qznlsmb/unicode_input.h"

namespace veldnls {

namespace {

// For fewer units a kernel doesn't pay.
constexpr size_t kernelUnits = 16;

using Units = Utf16Input<std::endian::little>;

KernelRun inUnits(const KernelRun& run) { return {run.read / utf16UnitBytes, run.written}; }

// A text on its way, of which `some` takes a few characters and `kernel` many. Both take units and room for bytes, and
// return what they read and wrote; `some` takes as many units as it is told, for each of which there are `size` bytes
// of room.
template <size_t size, class Some, class Kernel>
KernelRun unitsInTurns(const uint8_t* units, size_t count, uint8_t* out, size_t room, const Some& some,
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

KernelRun takeSingles(const PipelineSide& side, const uint8_t* units, size_t count, uint8_t* out, size_t room) {
  const uint8_t* const single = side.singleMap;
  TargetCursor text{units, units + utf16UnitBytes * std::min(count, room), out};
  while (text.at != text.end) {
    const uint32_t unit = load16<std::endian::little>(text.at);
    if (unit >= firstOfPairs) break;
    text.putByte(single[unit], utf16UnitBytes);
  }
  return inUnits(text.since(units, out));
}

// Many runs of characters of two bytes are short: only one that has gone on for a while is for a kernel.
KernelRun takeDoubles(const PipelineSide& side, const uint8_t* units, size_t count, uint8_t* out, size_t room) {
  const UnitCodes& table = fromUnicodeSetOf(side).codes;
  const QuickCodes codes(table);
  TargetCursor text{units, units + utf16UnitBytes * std::min(count, room / 2), out};
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
    const uint32_t unit = load16<std::endian::little>(text.at);
    if (unit < firstOfPairs) break;
    const uint32_t code = isOfTable(unit) ? codes.lookUp(unit) : codeWithoutUsers(side, unit);
    if (isSingle(code)) break;
    text.putCode(code, utf16UnitBytes);
  }
  return inUnits(text.since(units, out));
}

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

KernelRun plainToPairs(const PipelineSide& side, bool& /*inDouble*/, const uint8_t* units, size_t count, uint8_t* out,
                       size_t room) {
  if (side.overlay != nullptr) return {0, 0};
  return unitsInTurns<2>(
      units, count, out, room,
      [&](const uint8_t* text, size_t left, uint8_t* bytes) {
        return inUnits(shortToPairs<Units>(side, text, utf16UnitBytes * left, bytes));
      },
      [&](const uint8_t* text, size_t left, uint8_t* bytes, size_t bytesRoom) {
        return kernels().unitsToCodes(fromUnicodeSetOf(side).codes, blankCode(side), text, left, bytes, bytesRoom);
      });
}

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
    // A kernel writes shifts of one byte only, and asks for no more room than these take.
    constexpr size_t kernelRoom = 4;
    if (count - run.read >= kernelUnits && profile.shiftLength == 1 && roomToShift(side) == kernelRoom) {
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

KernelRun plainToGb18030(const PipelineSide& /*side*/, bool& /*inDouble*/, const uint8_t* units, size_t count,
                         uint8_t* out, size_t room) {
  const UnitCells cells{gbFromUnicodeIndex.blocks, gbFromUnicodeIndex.cells};
  return unitsInTurns<4>(
      units, count, out, room,
      [](const uint8_t* text, size_t left, uint8_t* bytes) {
        return inUnits(shortToGb18030<Units>(text, utf16UnitBytes * left, bytes));
      },
      [&](const uint8_t* text, size_t left, uint8_t* bytes, size_t bytesRoom) {
        return kernels().unitsToCells(cells, text, left, bytes, bytesRoom);
      });
}

}  // namespace veldnls
