// Inner loops of the stages that write multi-byte text: UTF-16 units that the module's own tables have become their
// output characters. They may stop anywhere: a stage knows how to do the rest. Texts with user characters are left to
// it altogether.
#pragma once

#include "core/kernels/kernels.h"
#include "veldnls/pipeline.h"

namespace veldnls {

// Takes `count` little-endian units and room for `room` bytes, and returns how many units were read and how many bytes
// written. `inDouble` is the mode of text with shifts, before and after; room for a closing shift-in is kept.
using TargetLoop = KernelRun(const PipelineSide& side, bool& inDouble, const uint8_t* units, size_t count, uint8_t* out,
                             size_t room);

// For targets without shifts, which write ASCII as it is.
TargetLoop plainToPairs;
// For targets with shifts.
TargetLoop plainToModes;
// GB18030, by the index of its module.
TargetLoop plainToGb18030;

}  // namespace veldnls
