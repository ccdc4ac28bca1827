#include "exact_decimal.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace test {
namespace {

// Multiplies a number written as decimal digits, the least significant first.
void multiply(std::string& digits, int factor) {
  int carry = 0;
  for (char& digit : digits) {
    const int product = (digit - '0') * factor + carry;
    digit = static_cast<char>('0' + product % 10);
    carry = product / 10;
  }
  if (carry != 0) digits += static_cast<char>('0' + carry);
}

}  // namespace

ExactDecimal exactDecimal(double value) {
  int exponent = 0;
  double mantissa = std::frexp(std::fabs(value), &exponent);
  while (mantissa != std::floor(mantissa)) {
    mantissa *= 2;
    --exponent;
  }
  std::string digits = std::to_string(static_cast<uint64_t>(mantissa));
  std::reverse(digits.begin(), digits.end());

  // m times 2^-k is m times 5^k over 10^k.
  const auto places = static_cast<size_t>(std::max(-exponent, 0));
  for (int i = 0; i < exponent; ++i) multiply(digits, 2);
  for (size_t i = 0; i < places; ++i) multiply(digits, 5);
  if (digits.size() < places) digits.append(places - digits.size(), '0');

  ExactDecimal result{digits.substr(places), digits.substr(0, places)};
  std::reverse(result.integer.begin(), result.integer.end());
  std::reverse(result.fraction.begin(), result.fraction.end());
  result.integer.erase(0, std::min(result.integer.find_first_not_of('0'), result.integer.size()));
  result.fraction.erase(result.fraction.find_last_not_of('0') + 1);
  return result;
}

}  // namespace test
