// The twelve convert slots of QZNLS: runs of its first six prebuilt pipelines.
#pragma once

#include "veldnls/nls.h"

namespace veldnls {

void installConvertSlots(QZNLS* nls);

}  // namespace veldnls
