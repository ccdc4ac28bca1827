#include "modules/qznlsmb/target_run.h"

#include <cstring>

namespace veldnls {

namespace {

void putSequence(TargetRun& run, const uint8_t* sequence) {
  std::memcpy(run.out, sequence, run.profile.shiftLength);
  run.out += run.profile.shiftLength;
}

}  // namespace

bool TargetRun::putSingle(uint8_t byte) {
  leaveDoubleMode();
  if (room() == 0) return false;
  *out++ = byte;
  return true;
}

bool TargetRun::putDouble(uint32_t code) {
  const bool shifts = profile.shiftLength != 0 && !inDouble;
  if (room() < (shifts ? roomToShift(side) : profile.shiftLength + 2u)) return false;
  if (shifts) {
    inDouble = true;
    putSequence(*this, profile.shiftOut);
  }
  store16(out, code);
  out += 2;
  return true;
}

void TargetRun::leaveDoubleMode() {
  if (inDouble) putSequence(*this, profile.shiftIn);
  inDouble = false;
}

NlsStatus TargetRun::statusOfEnd(Blank blank, const TranscodeProgress* progress,
                                 const TranscodeOptions* options) const {
  const NlsStatus status = noted(progress);
  // With a progress record missing room outweighs a replacement, and blanks that are dropped outweigh both.
  const bool tellsRoom = progress != nullptr ? !incomplete : status == 0;
  return !atEnd() && tellsRoom ? statusOfRest(mayDropBlanks(side, options), blank) : status;
}

}  // namespace veldnls
