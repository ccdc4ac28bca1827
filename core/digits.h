// The decimal digits of a double, exactly: what exact arithmetic yields, without rounding. The sign is ignored; a value
// that isn't finite counts as zero. Digits are UTF-16. `capacity` counts units of `output`; below 1 nothing is written
// and `output` may be null. Only bits are looked at, so no floating-point exception can be raised. Any thread.
#pragma once

#include <cstdint>

#include "veldnls/types.h"

namespace veldnls {

// The most digits that nlsIntegerDigits can count, and the most that a fraction has ahead of its endless zeros.
inline constexpr int32_t maxIntegerDigits = 309;
inline constexpr int32_t maxFractionDigits = 1074;

constexpr char16_t digitUnit(uint32_t digit) { return static_cast<char16_t>(u'0' + digit); }

// Digits of the integer part, most significant first; none for a value below 1.
//   digitCount     how many digits there are
//   trailingZeros  if not null, the zeros at the end of the number are counted here, and neither written nor counted in
//                  `digitCount`
// Returns 0, or nlsDigitsOverflow when `digitCount` is above `capacity`: the output then holds the `capacity` least
// significant of the counted digits, least significant first.
NlsStatus nlsIntegerDigits(double value, char16_t* output, int32_t capacity, int32_t* digitCount,
                           int32_t* trailingZeros);

// Digits of the fraction, from the point on; those beyond `capacity` are dropped. Zero itself gives one "0".
//   digitCount    how many digits were written
//   leadingZeros  null: zeros behind the point are written like other digits, and a fraction that ends early is filled
//                 with "0" to `capacity`. Not null: zeros ahead of the first other digit are counted here and not
//                 written, and what an ended fraction leaves of `capacity` is added to that count
// Returns 0.
NlsStatus nlsFractionDigits(double value, char16_t* output, int32_t capacity, int32_t* digitCount,
                            int32_t* leadingZeros);

}  // namespace veldnls
