// Private-use characters for user characters that have no Unicode code point.
#pragma once

#include <cstdint>

#include "veldnls/types.h"

namespace veldnls {

// Fills `buffer` with the private-use code points of an encoding, ascending, up to `count` or to the end of its range;
// what is left gets U+3000. Returns how many those are. Units are of the host's byte order.
uint32_t fillPrivateUse(uint16_t* buffer, uint32_t count, CEI cei);

}  // namespace veldnls
