#include "bench/number_values.h"

#include <cmath>
#include <random>

namespace bench {

namespace {

constexpr size_t valueCount = 16384;

template <class Make>
auto make(const char* name, Make next) {
  std::mt19937_64 random(20110203);
  Values<decltype(next(random))> values{name, {}};
  for (size_t i = 0; i < valueCount; ++i) values.items.push_back(next(random));
  return values;
}

uint64_t below(std::mt19937_64& random, uint64_t limit) { return random() % limit; }

uint64_t powerOfTen(uint64_t n) {
  uint64_t power = 1;
  while (n-- > 0) power *= 10;
  return power;
}

// Of `fewest` to `most` digits, each count as often as the others.
uint64_t wholeNumber(std::mt19937_64& random, uint64_t fewest, uint64_t most) {
  const uint64_t power = powerOfTen(fewest - 1 + below(random, most - fewest + 1));
  return power + below(random, 9 * power);
}

int64_t withSign(std::mt19937_64& random, uint64_t value) {
  const auto number = static_cast<int64_t>(value);
  return below(random, 4) == 0 ? -number : number;
}

}  // namespace

Values<double> priceValues() {
  return make("prices", [](auto& random) { return static_cast<double>(below(random, 10'000'000)) / 100; });
}

Values<double> wholeValues() {
  return make("integers", [](auto& random) { return static_cast<double>(wholeNumber(random, 1, 15)); });
}

Values<double> longDoubles() {
  return make("17 digits", [](auto& random) {
    const auto mantissa = static_cast<double>(below(random, uint64_t{1} << 53) | uint64_t{1} << 52);
    return mantissa / std::pow(10, static_cast<double>(8 + below(random, 8)));
  });
}

Values<int64_t> shortIntegers() {
  return make("up to 6 digits", [](auto& random) { return withSign(random, below(random, 1'000'000)); });
}

Values<int64_t> longIntegers() {
  return make("18 digits", [](auto& random) { return withSign(random, wholeNumber(random, 18, 18)); });
}

Values<int64_t> anyIntegers() {
  return make("1 to 18 digits", [](auto& random) { return withSign(random, wholeNumber(random, 1, 18)); });
}

}  // namespace bench
