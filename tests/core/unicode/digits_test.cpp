#include "core/digits.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cfenv>
#include <cmath>
#include <cstdio>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "exact_decimal.h"
#include "support/guard.h"
#include "veldnls/status.h"

using namespace veldnls;
using test::ExactDecimal;

namespace {

constexpr char16_t untouched = 0xCDCD;
constexpr int32_t unset = -1;

struct Digits {
  NlsStatus status = 0;
  std::string text;  // what stands in the output ahead of the units that weren't written
  int32_t count = unset;
  int32_t zeros = unset;

  bool operator==(const Digits&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Digits& digits) {
  return out << std::hex << digits.status << std::dec << " \"" << digits.text << "\" " << digits.count << " "
             << digits.zeros;
}

using Generator = NlsStatus (*)(double, char16_t*, int32_t, int32_t*, int32_t*);

// Runs a generator with an output whose room ends at a guard page.
Digits run(Generator generate, double value, size_t capacity, bool countZeros) {
  test::GuardedBuffer buffer(capacity * sizeof(char16_t));
  auto* output = reinterpret_cast<char16_t*>(buffer.data());
  Digits result;
  result.status =
      generate(value, output, static_cast<int32_t>(capacity), &result.count, countZeros ? &result.zeros : nullptr);
  char16_t* const limit = output + capacity;
  char16_t* const end = std::find(output, limit, untouched);
  EXPECT_TRUE(std::all_of(end, limit, [](char16_t unit) { return unit == untouched; }));
  for (const char16_t* unit = output; unit != end; ++unit) result.text += static_cast<char>(*unit);
  return result;
}

Digits expectedInteger(const ExactDecimal& exact, size_t capacity, bool countZeros) {
  std::string digits = exact.integer;
  Digits expected;
  if (countZeros) {
    const size_t kept = digits.find_last_not_of('0') + 1;
    expected.zeros = static_cast<int32_t>(digits.size() - kept);
    digits.resize(kept);
  }
  expected.count = static_cast<int32_t>(digits.size());
  expected.text = digits;
  if (digits.size() > capacity) {
    expected.status = nlsDigitsOverflow;
    expected.text = digits.substr(digits.size() - capacity);
    std::reverse(expected.text.begin(), expected.text.end());
  }
  return expected;
}

// For values other than zero.
Digits expectedFraction(const ExactDecimal& exact, size_t capacity, bool countZeros) {
  std::string digits = exact.fraction;
  Digits expected;
  if (countZeros) {
    const size_t zeros = std::min(digits.find_first_not_of('0'), digits.size());
    digits.erase(0, zeros);
    expected.zeros = static_cast<int32_t>(zeros + capacity - std::min(capacity, digits.size()));
    digits.resize(std::min(capacity, digits.size()));
  } else {
    digits.resize(capacity, '0');
  }
  expected.text = digits;
  expected.count = static_cast<int32_t>(digits.size());
  return expected;
}

void expectDigits(double value, const ExactDecimal& exact, size_t integerCapacity, size_t fractionCapacity) {
  for (const bool countZeros : {false, true}) {
    ASSERT_EQ(run(nlsIntegerDigits, value, integerCapacity, countZeros),
              expectedInteger(exact, integerCapacity, countZeros))
        << std::hexfloat << value << " capacity " << integerCapacity;
    ASSERT_EQ(run(nlsFractionDigits, value, fractionCapacity, countZeros),
              expectedFraction(exact, fractionCapacity, countZeros))
        << std::hexfloat << value << " capacity " << fractionCapacity;
  }
}

void expectDigitsAtEveryCapacity(double value) {
  const ExactDecimal exact = test::exactDecimal(value);
  const size_t most = std::max(exact.integer.size(), exact.fraction.size()) + 2;
  for (size_t capacity = 0; capacity <= most; ++capacity) expectDigits(value, exact, capacity, capacity);
}

// At the capacities around the digits' ends only.
void expectDigitsOf(double value) {
  const ExactDecimal exact = test::exactDecimal(value);
  const size_t integer = exact.integer.size();
  const size_t fraction = exact.fraction.size();
  expectDigits(value, exact, integer, fraction);
  expectDigits(value, exact, integer + 1, fraction + 1);
  if (integer > 0) expectDigits(value, exact, integer - 1, fraction);
  if (fraction > 0) expectDigits(value, exact, integer, fraction - 1);
}

double randomDouble(std::mt19937_64& random, int exponentBelow, int exponentAbove) {
  std::uniform_int_distribution<int> exponents(exponentBelow, exponentAbove);
  const auto mantissa = static_cast<double>(random() >> 11);
  return std::ldexp(random() % 2 == 0 ? mantissa : -mantissa, exponents(random));
}

TEST(Digits, IntegerOf1e300) {
  const Digits digits = run(nlsIntegerDigits, 1e300, 350, false);
  EXPECT_EQ(digits.status, 0u);
  EXPECT_EQ(digits.count, 301);
  EXPECT_EQ(digits.text, test::exactDecimal(1e300).integer);
  EXPECT_EQ(digits.text.substr(0, 40), "1000000000000000052504760255204420248704");
}

TEST(Digits, FractionOfOneHalf) {
  EXPECT_EQ(run(nlsFractionDigits, 0.5, 3, false), (Digits{0, "500", 3, unset}));
  EXPECT_EQ(run(nlsFractionDigits, 0.5, 3, true), (Digits{0, "5", 1, 2}));
}

TEST(Digits, IntegerTrailingZeros) {
  EXPECT_EQ(run(nlsIntegerDigits, 1200.75, 10, true), (Digits{0, "12", 2, 2}));
  EXPECT_EQ(run(nlsIntegerDigits, 1200.75, 10, false), (Digits{0, "1200", 4, unset}));
  EXPECT_EQ(run(nlsIntegerDigits, 1200.75, 2, true), (Digits{0, "12", 2, 2}));
  EXPECT_EQ(run(nlsIntegerDigits, 1000, 0, true), (Digits{nlsDigitsOverflow, "", 1, 3}));
}

TEST(Digits, IntegerOverflowKeepsTheLowDigitsReversed) {
  EXPECT_EQ(run(nlsIntegerDigits, 12345, 3, false), (Digits{nlsDigitsOverflow, "543", 5, unset}));
  EXPECT_EQ(run(nlsIntegerDigits, 1234500, 3, true), (Digits{nlsDigitsOverflow, "543", 5, 2}));
}

TEST(Digits, ValuesBelowOneHaveNoInteger) {
  for (const double value : {0.0, -0.0, 0.999, -0.5, 5e-324}) {
    EXPECT_EQ(run(nlsIntegerDigits, value, 4, false), (Digits{0, "", 0, unset}));
    EXPECT_EQ(run(nlsIntegerDigits, value, 0, true), (Digits{0, "", 0, 0}));
  }
}

TEST(Digits, FractionOfZeroIsOneZero) {
  for (const double value : {0.0, -0.0}) {
    EXPECT_EQ(run(nlsFractionDigits, value, 5, false), (Digits{0, "0", 1, unset}));
    EXPECT_EQ(run(nlsFractionDigits, value, 5, true), (Digits{0, "0", 1, 0}));
    EXPECT_EQ(run(nlsFractionDigits, value, 0, false), (Digits{0, "", 0, unset}));
    EXPECT_EQ(run(nlsFractionDigits, value, 0, true), (Digits{0, "", 0, 0}));
  }
}

TEST(Digits, FractionOfAWholeNumberIsFilled) {
  EXPECT_EQ(run(nlsFractionDigits, 3.0, 4, false), (Digits{0, "0000", 4, unset}));
  EXPECT_EQ(run(nlsFractionDigits, 3.0, 4, true), (Digits{0, "", 0, 4}));
}

TEST(Digits, FractionLeadingZeros) {
  EXPECT_EQ(run(nlsFractionDigits, 0.0009765625, 20, true), (Digits{0, "9765625", 7, 3 + 13}));
  EXPECT_EQ(run(nlsFractionDigits, 0.0009765625, 5, true), (Digits{0, "97656", 5, 3}));
  EXPECT_EQ(run(nlsFractionDigits, 0.0009765625, 0, true), (Digits{0, "", 0, 3}));
  EXPECT_EQ(run(nlsFractionDigits, 0.0009765625, 5, false), (Digits{0, "00097", 5, unset}));
}

TEST(Digits, TheSignIsIgnored) {
  EXPECT_EQ(run(nlsIntegerDigits, -42.25, 4, false), (Digits{0, "42", 2, unset}));
  EXPECT_EQ(run(nlsFractionDigits, -42.25, 2, false), (Digits{0, "25", 2, unset}));
}

TEST(Digits, ValuesThatAreNotFiniteCountAsZero) {
  const double infinity = std::numeric_limits<double>::infinity();
  for (const double value : {infinity, -infinity, std::nan(""), std::bit_cast<double>(UINT64_C(0xFFFF410000000000))}) {
    EXPECT_EQ(run(nlsIntegerDigits, value, 9, true), (Digits{0, "", 0, 0}));
    EXPECT_EQ(run(nlsFractionDigits, value, 9, true), (Digits{0, "0", 1, 0}));
  }
}

TEST(Digits, ANegativeCapacityWritesNothing) {
  int32_t count = unset;
  int32_t zeros = unset;
  EXPECT_EQ(nlsIntegerDigits(120, nullptr, -3, &count, &zeros), nlsDigitsOverflow);
  EXPECT_EQ(count, 2);
  EXPECT_EQ(zeros, 1);
  EXPECT_EQ(nlsIntegerDigits(0.5, nullptr, -3, &count, nullptr), 0u);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(nlsFractionDigits(0.0625, nullptr, -3, &count, &zeros), 0u);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(zeros, 1);
  EXPECT_EQ(nlsFractionDigits(7, nullptr, -3, &count, &zeros), 0u);
  EXPECT_EQ(zeros, 0);
}

TEST(Digits, EveryCapacity) {
  for (const double value : {1.0,
                             9.0,
                             10.0,
                             0.1,
                             0.3,
                             1.0 / 3,
                             3.14159,
                             999999999.0,
                             1e9,
                             1e15,
                             123456789012.5,
                             1e23,
                             4503599627370496.5,
                             4503599627370497.5,
                             9007199254740991.0,
                             9007199254740993.0,
                             18446744073709551616.0,
                             1e-9,
                             1e-10,
                             1e-5,
                             1e-30}) {
    expectDigitsAtEveryCapacity(value);
  }
}

TEST(Digits, EveryCapacityAtTheEndsOfTheRange) {
  expectDigitsAtEveryCapacity(1e300);
  expectDigitsAtEveryCapacity(std::numeric_limits<double>::max());
  expectDigitsAtEveryCapacity(5e-324);
}

TEST(Digits, LongestExpansions) {
  EXPECT_EQ(test::exactDecimal(std::numeric_limits<double>::max()).integer.size(),
            static_cast<size_t>(maxIntegerDigits));
  EXPECT_EQ(test::exactDecimal(5e-324).fraction.size(), static_cast<size_t>(maxFractionDigits));
  expectDigitsOf(std::numeric_limits<double>::min());
  expectDigitsOf(std::nextafter(std::numeric_limits<double>::min(), 0));  // the largest denormal
}

TEST(Digits, PowersOfTwo) {
  for (int exponent = -1074; exponent <= 1023; exponent += exponent < -120 ? 13 : 1) {
    expectDigitsOf(std::ldexp(1.0, exponent));
  }
}

TEST(Digits, RandomDoubles) {
  std::mt19937_64 random(20240229);
  for (int i = 0; i < 2000; ++i) expectDigitsOf(randomDouble(random, -110, 20));
  for (int i = 0; i < 150; ++i) expectDigitsOf(randomDouble(random, -1074, 970));
}

// glibc prints doubles exactly too.
TEST(Digits, AgreeWithPrintf) {
  std::mt19937_64 random(19600101);
  std::vector<char> text(1500);
  for (int i = 0; i < 2000; ++i) {
    const double value = std::fabs(randomDouble(random, -1074, 970));
    const int length = std::snprintf(text.data(), text.size(), "%.*f", maxFractionDigits, value);
    ASSERT_LT(static_cast<size_t>(length), text.size());
    const std::string printed(text.data(), static_cast<size_t>(length));
    const size_t point = printed.find('.');
    const std::string integer = printed.substr(0, point);
    ASSERT_EQ(run(nlsIntegerDigits, value, maxIntegerDigits, false).text, integer == "0" ? "" : integer);
    ASSERT_EQ(run(nlsFractionDigits, value, maxFractionDigits, false).text, printed.substr(point + 1));
  }
}

TEST(Digits, RaiseNoFloatingPointException) {
  std::feclearexcept(FE_ALL_EXCEPT);
  char16_t output[16];
  int32_t count = 0;
  for (const uint64_t bits : {UINT64_C(1), UINT64_C(0x7FF0000000000001), UINT64_C(0x7FEFFFFFFFFFFFFF)}) {
    const auto value = std::bit_cast<double>(bits);
    nlsIntegerDigits(value, output, 16, &count, nullptr);
    nlsFractionDigits(value, output, 16, &count, nullptr);
  }
  EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT), 0);
}

}  // namespace
