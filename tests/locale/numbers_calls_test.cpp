// All number formatters against the oracle: calls of all kinds, in outputs of every capacity.
#include "locale/numbers_differential.h"

namespace {

using test::IntegerDifferential;
using test::NumberDifferential;

TEST_F(NumberDifferential, AllCapacities) {
  for (const double value :
       {0.0, 0.5, 1234.5, 99999.95, 1e20, 1e100, 1e-7, 4.9e-324, test::missing('A'), test::missing('_')}) {
    for (int32_t width = -40; width <= 60; width += width > -23 && width < 24 ? 1 : 6) {
      for (int32_t capacity = 0; capacity <= std::abs(width) + 4; ++capacity) {
        constexpr uint32_t additions[] = {0, FMT_GROUP, FMT_ZERO, FMT_PLUS | FMT_GROUP, FMT_SPACE | FMT_LEFT};
        uint32_t turn = static_cast<uint32_t>(capacity + width + 40);
        for (const uint32_t conversion : test::conversions) {
          const uint32_t flags = conversion | additions[turn++ % 5];
          const int32_t precision = 1 + (width + 40) % 4;
          expectDouble(value, width, precision, flags, capacity);
          if (!std::isnan(value)) expectDouble(-value, width, precision, flags, capacity);
        }
      }
    }
  }
}

TEST_F(NumberDifferential, RandomCalls) {
  std::mt19937_64 generator(4242);
  const std::vector<double> values = test::sampleValues(300);
  for (int i = 0; i < 80000; ++i) {
    const double value = values[generator() % values.size()] * (generator() % 2 == 0 ? 1 : -1);
    const auto width = static_cast<int32_t>(generator() % 101) - 40;
    const auto precision = static_cast<int32_t>(generator() % 40) - 1;
    const auto flags =
        static_cast<uint32_t>(test::conversions[generator() % 10] | (generator() & generator() & 0x7F0000));
    const auto capacity = static_cast<int32_t>(generator() % 70);
    expectDouble(value, width, precision, flags, capacity);
  }
}

std::vector<uint64_t> sampleIntegers() {
  std::vector<uint64_t> values = {0, UINT64_MAX, uint64_t{1} << 63, (uint64_t{1} << 63) - 1, 0x80000000, 0x7FFFFFFF};
  for (uint64_t power = 1; power <= UINT64_MAX / 10; power *= 10) {
    values.insert(values.end(), {power, power - 1, power + 1, uint64_t{0} - power, power * 10 - 1});
  }
  std::mt19937_64 generator(7);
  for (int i = 0; i < 64; ++i) values.push_back(generator() >> i);
  return values;
}

TEST_F(IntegerDifferential, ManyValues) {
  const oracle::Signs locales[] = {
      {}, {u',', u'.', u"3;2"}, {u'.', u',', u"1"}, {u'.', u',', u"2;3-"}, {u'.', u',', u"0;3"}};
  for (const auto& with : locales) {
    setSigns(with);
    for (const uint64_t value : sampleIntegers()) {
      for (const uint32_t flags : {0U, FMT_GROUP, FMT_HEX, FMT_OCTAL | FMT_ALT_OCTAL, FMT_ZERO | FMT_GROUP}) {
        for (const int32_t precision : {-1, 0, 1, 12}) {
          for (const int32_t width : {0, 24, -24}) expectAll(value, width, precision, flags, 40);
        }
      }
    }
  }
}

TEST_F(IntegerDifferential, AllCapacities) {
  for (const uint64_t value : {UINT64_C(0), UINT64_C(5), UINT64_C(12345678), UINT64_MAX, UINT64_C(1) << 63}) {
    for (int32_t width = -24; width <= 26; width += 2) {
      for (int32_t capacity = 0; capacity <= std::abs(width) + 4; ++capacity) {
        for (const int32_t precision : {-1, 0, 9}) {
          for (const uint32_t flags :
               {0U, FMT_GROUP, FMT_ZERO | FMT_PLUS, FMT_HEX | FMT_ALT_HEX | FMT_ZERO, FMT_LEFT}) {
            expectAll(value, width, precision, flags, capacity);
          }
        }
      }
    }
  }
}

TEST_F(IntegerDifferential, LongPrecisionsAndWidths) {
  for (const int32_t size : {66, 67, 200, 3000}) {
    expectAll(123456, 0, size, FMT_GROUP, 4000);
    expectAll(123456, size, 0, FMT_ZERO, 4000);
    expectAll(123456, -size, 10, 0, 4000);
    expectAll(123456, size + 10, size, FMT_PLUS, 4000);
  }
}

}  // namespace
