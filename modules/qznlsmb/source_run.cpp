#include "modules/qznlsmb/source_run.h"

#include "core/registry.h"

namespace veldnls {

namespace {

bool hasShifts(const PipelineSide& side) { return encodingRow(side.cei)->encodingClass == NLS_CLASS_SHIFTED; }

}  // namespace

void SourceRun::keepMode(const PipelineSide& side, NlsBool8 inDouble, TranscodeProgress& progress) {
  if (!hasShifts(side)) return;
  progress.flags &= ~NLS_PROGRESS_DOUBLE_MODE;
  if (inDouble != 0) progress.flags |= NLS_PROGRESS_DOUBLE_MODE;
}

NlsStatus SourceRun::statusOfEnd(uint8_t blank, const TranscodeProgress* progress,
                                 const TranscodeOptions* options) const {
  const NlsStatus status = noted(progress);
  if (status != 0) return status;
  const bool doubleMode = hasShifts(side) && inDouble != 0;
  return statusOfRest(!doubleMode && mayDropBlanks(side, options), {1, blank});
}

}  // namespace veldnls
