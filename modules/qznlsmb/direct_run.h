// Short texts from one multi-byte encoding to another, without UTF-16 in memory between them. Only texts of plain
// characters come through, which change no status.
#pragma once

#include <type_traits>

#include "modules/qznlsmb/scanners.h"
#include "modules/qznlsmb/stages.h"
#include "veldnls/pipeline.h"

namespace veldnls {

// The `directForm` of a side by its rule: 0 where there is none.
uint8_t directFormOf(CharacterRule rule);
uint8_t directFormOf(TargetRule rule);

// Both sides have a form, and loops.
std::remove_pointer_t<NlsDirectRun> directRun;

}  // namespace veldnls
