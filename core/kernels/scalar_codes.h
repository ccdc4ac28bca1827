// The scalar forms of the kernels of two-byte codes, by the names of their slots. Tiers that have none of their own
// take these.
#pragma once

#include "core/kernels/kernels.h"

namespace veldnls::scalar {

KernelRun unitsToCodes(const UnitCodes& codes, uint32_t blank, const uint8_t* in, size_t count, uint8_t* out,
                       size_t room);
KernelRun unitsToDoubles(const UnitCodes& codes, uint32_t blank, const uint8_t* in, size_t count, uint8_t* out,
                         size_t room);
KernelRun unitsToCells(const UnitCells& codes, const uint8_t* in, size_t count, uint8_t* out, size_t room);
KernelRun codesToUnits(const CodeRows& rows, const LeadBytes& leads, uint32_t blank, const uint8_t* in, size_t count,
                       uint8_t* out, size_t room);
KernelRun codesToUtf8(const CodeRows& rows, uint32_t blank, const uint8_t* in, size_t count, uint8_t* out, size_t room);
KernelRun codesToCodes(const CodeRows& rows, uint32_t blank, const UnitCodes& codes, uint32_t targetBlank,
                       const uint8_t* in, size_t count, uint8_t* out, size_t room);
KernelRun codesToCells(const CodeRows& rows, uint32_t blank, const UnitCells& codes, const uint8_t* in, size_t count,
                       uint8_t* out, size_t room);
size_t doublesToUnits(const CodeRows& rows, uint32_t blank, const uint8_t* in, uint8_t* out, size_t count);
KernelRun shiftedToUnits(const ShiftedSource& source, bool& inDouble, const uint8_t* in, size_t count, uint8_t* out,
                         size_t room);
KernelRun unitsToShifted(const ShiftedTarget& target, bool& inDouble, const uint8_t* in, size_t count, uint8_t* out,
                         size_t room);
size_t runWithout(const uint8_t* four, const uint8_t* in, size_t count);

}  // namespace veldnls::scalar
