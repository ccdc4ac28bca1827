// The decimal digits of a double that is finite and not negative, as the formatters need them: in 128 bits for usual
// values, by core/digits.h for the others.
#pragma once

#include <cstdint>

namespace veldnls {

// A number rounded to some places, or cut: the fraction is counted in units of the last place.
struct RoundedNumber {
  uint64_t integer;
  uint64_t fraction;
};

// A double cut at its point. Its digits are exact.
class ExactDigits {
 public:
  explicit ExactDigits(double value);

  // How many digits the integer part has; none for a value below 1.
  int32_t integerCount() const;
  // Writes the digits of the integer part, of which there are `count`.
  void writeInteger(int32_t count, char16_t* out) const;
  // `places` digits of the fraction; one that ends early goes on in zeros.
  void writeFraction(int32_t places, char16_t* out) const;

  // The number cut behind some places; false if it needs more than two words.
  bool cut(int32_t places, RoundedNumber* result) const;

  // The same, rounded half up.
  bool round(int32_t places, RoundedNumber* result) const;

  // The same, but false as well if a number is rounded otherwise that, half a unit of the last place added to both, is
  // less than 2^-50 of it away.
  bool roundClearly(int32_t places, RoundedNumber* result) const;

 private:
  double value_;
  uint64_t integer_ = 0;   // if it isn't large
  uint64_t fraction_ = 0;  // at most 53 bits, over 2^shift_
  int32_t shift_ = 0;
  bool large_ = false;  // more than 64 bits
};

// `count` digits from the first that isn't zero as a number, at most 18 of them, cut behind the last; `power` receives
// the power of ten that the first digit stands for. False if they need more than two words. `value` isn't zero.
bool leadingNumber(double value, int32_t count, int32_t* power, uint64_t* digits);

// `count` digits from the first that isn't zero; they may end in zeros. Returns the power of ten that the first digit
// stands for. `value` isn't zero, `count` is above 0.
int32_t leadingDigits(double value, int32_t count, char16_t* out);

}  // namespace veldnls
