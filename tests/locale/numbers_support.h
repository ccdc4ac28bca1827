// The number slots of a locale whose signs tests choose, with outputs that end at a guard page.
#pragma once

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "locale/locale_object_support.h"
#include "locale/numbers_oracle.h"
#include "support/guard.h"

namespace test {

inline double missing(char letter) {
  const uint64_t held = letter == '_' ? '-' : static_cast<uint8_t>(letter);
  return std::bit_cast<double>(uint64_t{0xFFFF} << 48 | (~held & 0xFF) << 40);
}

class Numbers : public testing::Test {
 protected:
  using Format = std::function<NlsStatus(char16_t*, int32_t, int32_t*)>;

  void SetUp() override { ASSERT_NE(locale, nullptr); }

  void setSigns(const oracle::Signs& with) {
    signs = with;
    LocaleNumber& number = locale->record->number;
    number.decimalPoint = with.point;
    number.groupSeparator = with.separator;
    number.numberGrouping = counted(with.grouping);
  }

  // All units of an output of this capacity. Units in front of it must stay as they are.
  oracle::Result run(int32_t capacity, const Format& format) {
    auto* end = reinterpret_cast<char16_t*>(area.data() + area.size());
    char16_t* output = end - capacity;
    std::fill(output - frontUnits, end, oracle::untouched);
    oracle::Result result{0, -77, {}};
    result.status = format(output, capacity, &result.length);
    EXPECT_TRUE(std::all_of(output - frontUnits, output, [](char16_t unit) { return unit == oracle::untouched; }));
    result.units.assign(output, end);
    return result;
  }

  oracle::Result formatDouble(double value, int32_t width, int32_t precision, uint32_t flags, int32_t capacity = 64) {
    return run(capacity, [&](char16_t* output, int32_t room, int32_t* length) {
      return locale->formatDouble(locale.get(), value, width, precision, flags, output, room, length);
    });
  }
  oracle::Result formatInt64(int64_t value, int32_t width, int32_t precision, uint32_t flags, int32_t capacity = 64) {
    return run(capacity, [&](char16_t* output, int32_t room, int32_t* length) {
      return locale->formatInt64(locale.get(), value, width, precision, flags, output, room, length);
    });
  }
  oracle::Result formatInt32(int32_t value, int32_t width, int32_t precision, uint32_t flags, int32_t capacity = 64) {
    return run(capacity, [&](char16_t* output, int32_t room, int32_t* length) {
      return locale->formatInt32(locale.get(), value, width, precision, flags, output, room, length);
    });
  }
  oracle::Result formatUInt64(uint64_t value, int32_t width, int32_t precision, uint32_t flags, int32_t capacity = 64) {
    return run(capacity, [&](char16_t* output, int32_t room, int32_t* length) {
      return locale->formatUInt64(locale.get(), value, width, precision, flags, output, room, length);
    });
  }
  oracle::Result formatUInt32(uint32_t value, int32_t width, int32_t precision, uint32_t flags, int32_t capacity = 64) {
    return run(capacity, [&](char16_t* output, int32_t room, int32_t* length) {
      return locale->formatUInt32(locale.get(), value, width, precision, flags, output, room, length);
    });
  }

  static constexpr int32_t frontUnits = 64;

  NlsHost host{&VELDNLSLIB};
  LocaleHandle locale = makeLocale(host.nls, "en_US");
  oracle::Signs signs;
  GuardedBuffer area{16384};
};

// The text of a result that has its status and shows all of it.
inline std::string text(const oracle::Result& result, NlsStatus status = 0) {
  EXPECT_EQ(result.status, status) << result;
  const auto length = static_cast<size_t>(result.length);
  if (length > result.units.size()) return "length " + std::to_string(length);
  return narrow(result.units.data(), static_cast<int>(length));
}

// Doubles of every kind: prices, whole numbers, ties, powers of ten and of two with their neighbours, subnormals, and
// `random` ones each of all digits near one and of any exponent. None is negative.
inline std::vector<double> sampleValues(int random) {
  std::vector<double> values = {0,
                                0.5,
                                1.5,
                                2.5,
                                0.125,
                                0.375,
                                0.05,
                                0.25,
                                0.75,
                                99.5,
                                999.5,
                                0.95,
                                0.995,
                                9.995,
                                1e15 + 0.5,
                                1234.5,
                                1234567.891,
                                0.1,
                                0.2,
                                0.3,
                                1.0 / 3,
                                2.0 / 3,
                                1e-5,
                                9.99999e-6,
                                0.0001,
                                0.00012345,
                                123456789012345678.0,
                                1e22,
                                1e23,
                                9007199254740993.0,
                                4.9e-324,
                                2.2250738585072014e-308,
                                2.2250738585072009e-308,
                                1.7976931348623157e308,
                                1e-310,
                                5e-320,
                                0.49999999999999994};
  for (int exponent = -324; exponent <= 308; exponent += exponent > -20 && exponent < 34 ? 1 : 7) {
    const double power = std::strtod(("1e" + std::to_string(exponent)).c_str(), nullptr);
    values.insert(values.end(), {power, std::nextafter(power, 0), std::nextafter(power, HUGE_VAL), power * 9.5});
  }
  for (int exponent = -1074; exponent<1024; exponent += exponent> - 70 && exponent < 70 ? 1 : 31) {
    values.push_back(std::ldexp(1, exponent));
  }
  std::mt19937_64 generator(20240229);
  const auto below = [&](uint64_t limit) { return static_cast<double>(generator() % limit); };
  for (int i = 0; i < random; ++i) {
    values.push_back(below(100000000) / 100);
    values.push_back(below(1000000));
    values.push_back(below(1000000) / 8);
    values.push_back(below(uint64_t{1} << 53) / 1e9 / std::pow(10, below(12)));
    const double any = std::bit_cast<double>(generator() & ~(uint64_t{1} << 63));
    if (std::isfinite(any)) values.push_back(any);
    values.push_back(std::ldexp(below(uint64_t{1} << 53), -1074));
  }
  std::erase_if(values, [](double value) { return !std::isfinite(value); });
  return values;
}

}  // namespace test
