// The parser of doubles against the oracle, which compares digit strings.
#include "locale/numbers_parsers.h"

namespace {

using test::missing;
using test::NumberParsers;
using test::Parsed;

TEST_F(NumberParsers, DoublesNextToAllKindsOfNumbers) {
  std::mt19937_64 generator(99);
  int failures = 0;
  for (int i = 0; i < 3000; ++i) {
    std::string digits = std::to_string(1 + generator() % 9);
    for (uint64_t count = generator() % (i % 10 == 0 ? 80 : 22); count > 0; --count) {
      digits += static_cast<char>('0' + generator() % 10);
    }
    const auto exponent = static_cast<int>(generator() % (i % 4 == 0 ? 680 : 60)) - (i % 4 == 0 ? 370 : 30);
    const double expected = oracle::nearestDouble(digits, exponent);
    const std::u16string text = test::widen(digits + "e" + std::to_string(exponent));
    Parsed<double> parsed{0, expected, static_cast<int32_t>(text.size())};
    if (!std::isfinite(expected)) parsed = {nlsNumberOverflow, missing('.'), parsed.consumed};
    if (expected < 2.2250738585072014e-308) parsed = {nlsNumberUnderflow, missing('.'), parsed.consumed};
    if (exponent <= 308 && parseDouble(text) != parsed && ++failures < 10) {
      ADD_FAILURE() << test::narrow(text.data(), static_cast<int>(text.size())) << parseDouble(text) << parsed;
    }
  }
  EXPECT_EQ(failures, 0);
}

}  // namespace
