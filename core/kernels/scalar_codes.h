// The scalar forms of the kernels of two-byte codes, by the names of their slots. Tiers that have none of their own
// take these.
#pragma once

#include "core/kernels/kernels.h"

namespace veldnls::scalar {

UnitsToCodesKernel unitsToCodes;
UnitsToCodesKernel unitsToDoubles;
UnitsToCellsKernel unitsToCells;
CodesToUnitsKernel codesToUnits;
CodesToUtf8Kernel codesToUtf8;
CodesToCodesKernel codesToCodes;
CodesToCellsKernel codesToCells;
DoublesToUnitsKernel doublesToUnits;
ShiftedToUnitsKernel shiftedToUnits;
UnitsToShiftedKernel unitsToShifted;
RunWithoutKernel runWithout;

}  // namespace veldnls::scalar
