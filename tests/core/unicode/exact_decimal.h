// The exact decimal form of a double, by schoolbook arithmetic on decimal digits: slow, plain, and apart from the
// library.
#pragma once

#include <string>

namespace test {

struct ExactDecimal {
  std::string integer;   // without leading zeros; empty below 1
  std::string fraction;  // without trailing zeros; empty for a whole number
};

// Of a finite value; the sign is dropped.
ExactDecimal exactDecimal(double value);

}  // namespace test
