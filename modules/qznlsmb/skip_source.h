// Inner loops of the stages that read multi-byte text: characters off its front that are whole and mapped by the
// module's own tables become UTF-16 units. They may stop anywhere: a stage knows how to do the rest. Texts with user
// characters are left to it altogether.
#pragma once

#include "core/kernels/kernels.h"
#include "modules/qznlsmb/stages.h"
#include "veldnls/pipeline.h"

namespace veldnls {

// In so few bytes a kernel doesn't pay.
inline constexpr size_t shortText = 24;

// Takes `count` bytes and room for `room` units, and returns how many bytes were read and how many units written.
// `inDouble` is the mode of text with shifts, before and after. The row's pace allows the loop.
using SourceLoop = KernelRun(const PipelineSide& side, NlsBool8& inDouble, const uint8_t* in, size_t count,
                             uint8_t* units, size_t room);

SourceLoop plainLeadBytes;
// The same without kernels.
SourceLoop plainLeadBytesByLoop;
SourceLoop plainHighBits;
SourceLoop plainShifted;
SourceLoop plainIso2022;
// By the index of its module.
SourceLoop plainGb18030;

// The pace that a row's loops allow. Those of rows without shifts want ASCII below 0x80, and lead bytes, if any, above
// it in one or two ranges: all rows are so. Kernels take every byte above 0x7F that has codes in the row's set for a
// lead.
Pace paceOfRow(const EncodingDescriptor& row);

}  // namespace veldnls
