// The slot of QZNLS that makes string manipulators. Its contract stands in veldnls/qzstring.h.
#pragma once

#include "veldnls/nls.h"

namespace veldnls {

void installManipulatorSlots(QZNLS* nls);

}  // namespace veldnls
