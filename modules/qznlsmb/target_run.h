// A run that writes multi-byte text: its shifts, and how it ends.
#pragma once

#include <algorithm>

#include "core/text/units.h"
#include "modules/qznlsmb/stage_run.h"
#include "modules/qznlsmb/target_tables.h"

namespace veldnls {

// The room that a double-byte character with both its shifts takes. Some rows have a unitSize that is too small for it.
inline size_t roomToShift(const PipelineSide& side) {
  return std::max<size_t>(side.unitSize, 2u * side.targetProfile->shiftLength + 2u);
}

// Text begins and ends in single-byte mode, so that every output piece stands alone.
struct TargetRun : StageRun {
  TargetRun(const PipelineSide& target, const void* input, uint32_t inputLength, void* output, uint32_t outputSize)
      : StageRun(input, inputLength, output, outputSize), side(target), profile(*target.targetProfile) {}

  const PipelineSide& side;
  const MultiByteProfile& profile;
  bool inDouble = false;

  // Each writes a character, with a shift if one is due, or returns false when it has no room. Behind a double-byte
  // character the shift-in always has.
  bool putSingle(uint8_t byte);
  bool putDouble(uint32_t code);
  bool put(uint32_t code) { return isSingle(code) ? putSingle(singleOf(code)) : putDouble(code); }
  void leaveDoubleMode();

  // Reports the run, which is out of double-byte mode, and returns the status.
  NlsStatus finish(Blank blank, uint32_t* outputLength, TranscodeProgress* progress,
                   const TranscodeOptions* options) const {
    report(outputLength, progress);
    return endsWell() ? 0 : statusOfEnd(blank, progress, options);
  }

 private:
  NlsStatus statusOfEnd(Blank blank, const TranscodeProgress* progress, const TranscodeOptions* options) const;
};

}  // namespace veldnls
