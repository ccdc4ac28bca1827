// The setup slots. Contracts stand at NlsSingleByteSetup in veldnls/modules.h. A pair that is refused leaves the
// pipeline unusable. One that is accepted by any but the first finds its table and both rows' values in the two sides.
#pragma once

#include <span>
#include <type_traits>

#include "modules/qznlssb/direct_byte_maps.h"
#include "veldnls/modules.h"

namespace veldnls {

using SingleByteSetup = std::remove_pointer_t<NlsSingleByteSetup>;

// Sets `padChar`, `byteMap` and, for a source with direction marks, `directionMarks` of the source side, no more.
SingleByteSetup setupByteToByte;
// The same with other maps by hand than the module's own.
NlsStatus setupWithDirectMaps(std::span<const DirectByteMap> maps, QZNLS* nls, TranscodingPipeline* pipeline,
                              const EncodingDescriptor* source, const EncodingDescriptor* target);

SingleByteSetup setupByteToUnicode;
SingleByteSetup setupWideToByte;
SingleByteSetup setupUtf8ToByte;

}  // namespace veldnls
