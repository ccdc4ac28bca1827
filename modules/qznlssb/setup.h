// The setup slots. Contracts stand at NlsSingleByteSetup in veldnls/modules.h. A pair that is refused leaves the
// pipeline unusable; one that is accepted finds its tables and both rows' values in the two sides.
#pragma once

#include <type_traits>

#include "veldnls/modules.h"

namespace veldnls {

using SingleByteSetup = std::remove_pointer_t<NlsSingleByteSetup>;

// Sets `padChar`, `byteMap` and, for a source with direction marks, `directionMarks` of the source side, no more.
SingleByteSetup setupByteToByte;
SingleByteSetup setupByteToUnicode;
SingleByteSetup setupWideToByte;
SingleByteSetup setupUtf8ToByte;

}  // namespace veldnls
