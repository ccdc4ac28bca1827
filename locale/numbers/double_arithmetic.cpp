#include "locale/numbers/double_arithmetic.h"

namespace veldnls {

double roundToSmallDouble(const Normalized& number, bool sticky, int32_t drop) {
  if (drop > 64) return 0;
  const UInt128 wide = UInt128{number.mantissa} << 64 | (sticky ? 1 : 0);
  const auto mantissa = static_cast<uint64_t>(wide >> drop >> 64);
  const UInt128 rest = wide << (64 - drop);
  constexpr UInt128 half = UInt128{1} << 127;
  const bool up = rest > half || (rest == half && mantissa % 2 != 0);
  return composeDouble(mantissa + (up ? 1 : 0), lowestDoubleExponent);
}

}  // namespace veldnls
