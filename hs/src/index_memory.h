// Memory for indexes. It comes from ranges of its own, so that chunks lie where they would without it, and counts
// neither against the limit nor as taken.
#pragma once

#include <cstddef>
#include <cstdint>

#include "veldnls/host.h"

namespace veldnls::hs {

// Zeroed, or null.
uint8_t* takeIndexMemory(XmContext* context, size_t bytes);
void giveIndexMemory(XmContext* context, uint8_t* address, size_t bytes);

}  // namespace veldnls::hs
