#include "fault_finder.h"

#include <algorithm>

#include "failure.h"
#include "names.h"
#include "unicode_scan.h"
#include "veldnls/status.h"

namespace veld {

namespace {

constexpr size_t shiftRoom = sizeof MultiByteProfile::shiftOut;
constexpr size_t bytesShown = 4;
// More than any character has, with the byte behind it at which a rule looks.
constexpr size_t lookAhead = 8;

size_t unitOf(int32_t encodingClass) {
  if (encodingClass == NLS_CLASS_UTF16) return utf16Unit;
  return encodingClass == NLS_CLASS_UTF32 ? utf32Unit : 1;
}

}  // namespace

FaultFinder::FaultFinder(QZNLS& nls, CEI cei)
    : nls_(nls), cei_(cei), row_(rowOf(nls, cei)), unit_(unitOf(row_.encodingClass)), place_(nls, cei) {
  if (nls.validateEncodedText(&nls, "", 0, cei, nullptr, nullptr) != 0) {
    throw Failure("the library can't validate " + displayName(nls, cei) +
                  "; \"veld convert\" to utf-8 tells what it can't read of such text");
  }
}

// The first fault of the block from `start` on, as a place in the block.
std::optional<size_t> FaultFinder::faultBehind(size_t start) {
  // The validation begins in single-byte mode: a shift sequence in place of what is done leads to the other.
  const size_t shift = place_.inDouble() ? row_.profile.shiftLength : 0;
  const auto begin = work_.begin() + static_cast<ptrdiff_t>(shiftRoom + start - shift);
  std::copy_n(row_.profile.shiftOut, shift, begin);
  int32_t offset = -1;
  const NlsStatus status =
      nls_.validateEncodedText(&nls_, &*begin, static_cast<uint32_t>(work_.end() - begin), cei_, nullptr, &offset);
  if (status == 0) return std::nullopt;
  return start + static_cast<size_t>(offset) - shift;
}

size_t FaultFinder::look(Bytes block, uint64_t offset, bool more, const Tell& tell) {
  work_.resize(shiftRoom);
  work_.insert(work_.end(), block.begin(), block.end());
  size_t done = 0;
  while (done < block.size()) {
    const std::optional<size_t> found = faultBehind(done);
    const size_t sound = found.value_or(block.size());
    place_.advance(block.subspan(done, sound - done));
    if (more && block.size() - sound < lookAhead) return sound - place_.dropOpen();
    if (!found) return sound;
    place_.closeOpen();
    const Bytes shown = block.subspan(sound, std::min(bytesShown, block.size() - sound));
    const bool goOn = tell({offset + sound, place_.line(), place_.column(), {shown.begin(), shown.end()}});
    place_.advanceOverFault();
    done = std::min(block.size(), sound + unit_);
    if (!goOn) break;
  }
  return done;
}

}  // namespace veld
