#include "modules/qznlsmb/skip_source.h"

#include <algorithm>

#include "core/text/units.h"
#include "modules/qznlsmb/kernel_pause.h"
#include "modules/qznlsmb/scanners.h"
#include "modules/qznlsmb/short_source.h"
#include "modules/qznlsmb/unicode_output.h"

namespace veldnls {

namespace {

constexpr size_t longestCharacter = 4;

// A text on its way, of which `some` takes a few characters and `kernel` many. Both take what is left, and return how
// much they read and how many units they wrote; `kernel` is told the room, `some` has enough.
template <class Some, class Kernel>
KernelRun bytesInTurns(const uint8_t* in, size_t count, uint8_t* units, size_t room, const Some& some,
                       const Kernel& kernel) {
  KernelRun run{0, 0};
  while (run.read != count) {
    size_t most = shortText;
    if (count - run.read >= shortText) {
      const KernelRun taken =
          kernel(in + run.read, count - run.read, units + utf16UnitBytes * run.written, room - run.written);
      run = {run.read + taken.read, run.written + taken.written};
      most = taken.written < kernelPause ? 2 * kernelPause : longestCharacter;
    }
    const size_t bytes = std::min({count - run.read, room - run.written, most});
    const KernelRun taken = some(in + run.read, bytes, units + utf16UnitBytes * run.written);
    run = {run.read + taken.read, run.written + taken.written / utf16UnitBytes};
    // It has stopped at what it can't take, and not at a character cut by `most`.
    if (taken.read == 0 || bytes - taken.read >= longestCharacter) break;
  }
  return run;
}

bool hasSimpleLeads(const MultiByteProfile& profile) {
  const NlsByteRange* ranges = profile.leadRanges;
  const auto isNoneOrAbove = [](const NlsByteRange& range) { return range.low == 0 || range.low >= 0x80; };
  return isNoneOrAbove(ranges[0]) && isNoneOrAbove(ranges[1]) && ranges[2].low == 0;
}

// Whether there are codes with this first byte. A row without codes is one unit, 0.
bool hasCodes(const CodeRows& codes, uint32_t first) {
  for (const uint32_t second : {0x20u, 0xA0u}) {
    const CodeRow& row = codes.rows[(first * 0x100 + second + 0x60) >> 7];
    if (row.span != 0 || codes.units[row.start] != 0) return true;
  }
  return false;
}

KernelRun leadBytes(const PipelineSide& side, const LeadBytes& leads, const uint8_t* in, size_t count, uint8_t* units,
                    size_t room) {
  if (side.overlay != nullptr) return {0, 0};
  return bytesInTurns(
      in, count, units, room,
      [&](const uint8_t* text, size_t left, uint8_t* out) {
        return shortLeadBytes<Utf16Output>(side, leads, text, left, out);
      },
      [&](const uint8_t* text, size_t left, uint8_t* out, size_t outRoom) {
        return kernels().codesToUnits(toUnicodeSetOf(side).codes, leads, blankOfSource(side), text, left, out, outRoom);
      });
}

// One mode of text whose sequences the stage steps over.
enum class Mode { singles, doubles, maskedDoubles };

// Characters of one mode up to a byte that may begin a sequence, or to one without a unit.
template <Mode mode>
KernelRun someOfMode(const PipelineSide& side, const uint8_t (&sequences)[4], const uint8_t* in, size_t count,
                     uint8_t* units) {
  constexpr size_t size = mode == Mode::singles ? 1 : 2;
  const uint32_t mask = mode == Mode::maskedDoubles ? 0x80 : 0;
  const CodeRows codes = toUnicodeSetOf(side).codes;
  const uint32_t blank = blankOfSource(side);
  SourceCursor<Utf16Output> text{in, in + count / size * size, units};
  while (text.at != text.end) {
    const uint32_t first = text.at[0];
    if ((first == sequences[0]) | (first == sequences[1]) | (first == sequences[2])) break;
    uint32_t unit = 0;
    if constexpr (mode == Mode::singles) {
      unit = unitOfSingle(side, static_cast<uint8_t>(first));
    } else {
      const uint32_t second = text.at[1];
      unit = first * 256 + second == blank ? ideographicSpace : codes.lookUp(first | mask, second | mask);
      if (unit == 0) break;
    }
    text.put(unit, size);
  }
  return text.since(in, units);
}

// A run of one mode. Many are short: only one that has gone on for a while is for a kernel.
template <class Some, class Kernel>
KernelRun modeRun(const uint8_t* in, size_t count, uint8_t* units, size_t room, const Some& some,
                  const Kernel& kernel) {
  const size_t front = std::min({count, room, 2 * kernelPause});
  const KernelRun some0 = some(in, front, units);
  const KernelRun begun{some0.read, some0.written / utf16UnitBytes};
  if (front < 2 * kernelPause || front - begun.read >= longestCharacter) return begun;
  const KernelRun rest = bytesInTurns(in + begun.read, count - begun.read, units + utf16UnitBytes * begun.written,
                                      room - begun.written, some, kernel);
  return {begun.read + rest.read, begun.written + rest.written};
}

// A run of the mode that is on. `further` begins a sequence like both shifts.
KernelRun oneMode(const PipelineSide& side, uint8_t further, bool inDouble, const uint8_t* in, size_t count,
                  uint8_t* units, size_t room) {
  const MultiByteProfile& profile = *side.sourceProfile;
  // The euro sign is the fourth that ends a run of single bytes, for it isn't of the table.
  const uint8_t ends[4] = {profile.shiftOut[0], profile.shiftIn[0], further, static_cast<uint8_t>(oneByteEuro(side))};
  const auto some = [&]<Mode mode>() {
    return
        [&](const uint8_t* text, size_t left, uint8_t* out) { return someOfMode<mode>(side, ends, text, left, out); };
  };
  if (!inDouble) {
    const auto kernel = [&](const uint8_t* text, size_t left, uint8_t* out, size_t outRoom) {
      const size_t run = kernels().runWithout(ends, text, std::min(left, outRoom));
      kernels().expand(side.toUnicode, text, out, run);
      return KernelRun{run, run};
    };
    return modeRun(in, count, units, room, some.template operator()<Mode::singles>(), kernel);
  }
  if (codeMask(side.cei) != 0) {
    const KernelRun run = someOfMode<Mode::maskedDoubles>(side, ends, in, 2 * std::min(count / 2, room), units);
    return {run.read, run.written / utf16UnitBytes};
  }
  const auto kernel = [&](const uint8_t* text, size_t left, uint8_t* out, size_t outRoom) {
    const uint8_t stops[4] = {ends[0], ends[1], ends[2], ends[2]};
    const size_t run = kernels().runWithout(stops, text, 2 * std::min(left / 2, outRoom)) / 2;
    const size_t taken = kernels().doublesToUnits(toUnicodeSetOf(side).codes, blankOfSource(side), text, out, run);
    return KernelRun{2 * taken, taken};
  };
  return modeRun(in, count, units, room, some.template operator()<Mode::doubles>(), kernel);
}

}  // namespace

Pace paceOfRow(const EncodingDescriptor& row) {
  const MultiByteProfile& profile = row.profile;
  const CharacterRule rule = characterRuleOf(row);
  if (rule == CharacterRule::shifted || rule == CharacterRule::iso2022) return Pace::kernelsForAll;
  if (!isAsciiSet(profile.singleByteSet) || !hasSimpleLeads(profile)) return Pace::everyCharacter;
  if (rule != CharacterRule::leadByte) return Pace::kernelsForAll;
  // dec-jp's set has euc-jp's codes of lead byte 8E, and the blank of hp15-tw begins with a single byte.
  const LeadBytes leads = leadsOf(profile);
  for (uint32_t first = 0x80; first < 0x100; ++first) {
    if (leads.has(first)) continue;
    if (first == profile.doubleBlank[0] || hasCodes(toUnicodeSets[profile.doubleByteSet].codes, first))
      return Pace::loops;
  }
  return Pace::kernelsForAll;
}

KernelRun plainLeadBytes(const PipelineSide& side, NlsBool8& /*inDouble*/, const uint8_t* in, size_t count,
                         uint8_t* units, size_t room) {
  return leadBytes(side, leadsOf(*side.sourceProfile), in, count, units, room);
}

KernelRun plainLeadBytesByLoop(const PipelineSide& side, NlsBool8& /*inDouble*/, const uint8_t* in, size_t count,
                               uint8_t* units, size_t room) {
  if (side.overlay != nullptr) return {0, 0};
  const KernelRun run =
      shortLeadBytes<Utf16Output>(side, leadsOf(*side.sourceProfile), in, std::min(count, room), units);
  return {run.read, run.written / utf16UnitBytes};
}

KernelRun plainHighBits(const PipelineSide& side, NlsBool8& /*inDouble*/, const uint8_t* in, size_t count,
                        uint8_t* units, size_t room) {
  return leadBytes(side, highBitLeads, in, count, units, room);
}

KernelRun plainGb18030(const PipelineSide& /*side*/, NlsBool8& /*inDouble*/, const uint8_t* in, size_t count,
                       uint8_t* units, size_t room) {
  return bytesInTurns(in, count, units, room, shortGb18030<Utf16Output>,
                      [&](const uint8_t* text, size_t left, uint8_t* out, size_t outRoom) {
                        return kernels().codesToUnits(gbToUnicodeIndex.doubles, gb18030Leads, gb18030Blank, text, left,
                                                      out, outRoom);
                      });
}

KernelRun plainShifted(const PipelineSide& side, NlsBool8& inDouble, const uint8_t* in, size_t count, uint8_t* units,
                       size_t room) {
  if (side.overlay != nullptr) return {0, 0};
  const MultiByteProfile& profile = *side.sourceProfile;
  // Shifts of two bytes are the stage's.
  if (profile.shiftLength != 1) return oneMode(side, profile.shiftIn[0], inDouble != 0, in, count, units, room);
  const ShiftedSource source{toUnicodeSetOf(side).codes, side.toUnicode,      blankOfSource(side),
                             oneByteEuro(side),          profile.shiftOut[0], profile.shiftIn[0]};
  return bytesInTurns(
      in, count, units, room,
      [&](const uint8_t* text, size_t left, uint8_t* out) {
        return shortShifted<Utf16Output>(side, inDouble, text, left, out);
      },
      [&](const uint8_t* text, size_t left, uint8_t* out, size_t outRoom) {
        bool doubles = inDouble != 0;
        const KernelRun run = kernels().shiftedToUnits(source, doubles, text, left, out, outRoom);
        inDouble = doubles ? 1 : 0;
        return run;
      });
}

KernelRun plainIso2022(const PipelineSide& side, NlsBool8& inDouble, const uint8_t* in, size_t count, uint8_t* units,
                       size_t room) {
  if (side.overlay != nullptr) return {0, 0};
  return oneMode(side, escape, inDouble != 0, in, count, units, room);
}

}  // namespace veldnls
