// Seconds taken apart, against the same in floating point.
#include "locale/dates/moment.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "veldnls/status.h"

namespace veldnls {
namespace {

constexpr double daySeconds = 86400;
constexpr double firstSecond = -11928470400;
constexpr double endSecond = 569318630400;

struct Parts {
  int date, hour, minute, second;
  bool operator==(const Parts&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Parts& parts) {
  return out << parts.date << " " << parts.hour << ":" << parts.minute << ":" << parts.second;
}

Parts expected(double value) {
  const double date = std::trunc((value - firstSecond) / daySeconds) - 138061;
  const double time = std::fmod(value <= 0 ? value - firstSecond : value, daySeconds);
  const double minutes = std::floor(std::floor(std::fmod(time, 3600)) / 60);
  return {static_cast<int>(date), static_cast<int>(std::floor(time / 3600)), static_cast<int>(minutes),
          static_cast<int>(std::fmod(time, 60))};
}

Parts actual(double value) {
  Moment moment;
  const NlsStatus status = momentOfSeconds(value, &moment);
  EXPECT_EQ(status, 0u) << value;
  if (status != 0) return {};
  EXPECT_TRUE(moment.hasTime);
  const auto date =
      dateFromMonthDayYear(static_cast<uint32_t>(moment.date.month), static_cast<uint32_t>(moment.date.day),
                           static_cast<uint32_t>(moment.date.year));
  EXPECT_TRUE(date.has_value());
  EXPECT_EQ(moment.weekday, weekdayOf(*date));
  return {*date, moment.hour, moment.minute, moment.second};
}

void compare(double value) { EXPECT_EQ(actual(value), expected(value)) << std::hexfloat << value; }

TEST(DatesMoment, KnownValues) {
  EXPECT_EQ(actual(0), (Parts{0, 0, 0, 0}));
  EXPECT_EQ(actual(-0.0), (Parts{0, 0, 0, 0}));
  EXPECT_EQ(actual(46800), (Parts{0, 13, 0, 0}));
  EXPECT_EQ(actual(86399.9), (Parts{0, 23, 59, 59}));
  EXPECT_EQ(actual(-1), (Parts{-1, 23, 59, 59}));
  EXPECT_EQ(actual(-0.5), (Parts{-1, 23, 59, 59}));
  EXPECT_EQ(actual(-86400), (Parts{-1, 0, 0, 0}));
  EXPECT_EQ(actual(firstSecond), (Parts{firstDate, 0, 0, 0}));
  EXPECT_EQ(actual(endSecond - 1), (Parts{endDate - 1, 23, 59, 59}));
}

TEST(DatesMoment, TheLastMicrosecondsOfADayHaveTheNextDay) {
  // Sums around the origin have steps of 2^-19 seconds.
  const double nearly = daySeconds - std::ldexp(1, -20);
  EXPECT_EQ(actual(nearly), (Parts{1, 23, 59, 59}));
  EXPECT_EQ(actual(std::nextafter(nearly, 0)), (Parts{0, 23, 59, 59}));
  // Before the origin the time comes from the same sum.
  EXPECT_EQ(actual(-std::ldexp(1, -20)), (Parts{0, 0, 0, 0}));
  EXPECT_EQ(actual(-std::ldexp(1, -19)), (Parts{-1, 23, 59, 59}));
  EXPECT_EQ(actual(-std::numeric_limits<double>::denorm_min()), (Parts{0, 0, 0, 0}));
}

TEST(DatesMoment, AroundEveryKindOfMidnight) {
  std::mt19937_64 random(1);
  std::uniform_int_distribution<int64_t> days(firstDate + 1, endDate - 1);
  std::vector<double> midnights = {0, 1, -1, 1980, 138060, 6589335, -138060};
  for (int i = 0; i < 20000; ++i) midnights.push_back(static_cast<double>(days(random)));
  for (const double date : midnights) {
    const double midnight = date * daySeconds;
    compare(midnight);
    double below = midnight;
    double above = midnight;
    for (int i = 0; i < 6; ++i) {
      below = std::nextafter(below, -1e300);
      above = std::nextafter(above, 1e300);
      compare(below);
      compare(above);
    }
    for (int bits = 10; bits < 30; ++bits) {
      const double part = std::ldexp(1, -bits);
      for (const double value :
           {midnight - part, midnight + part, midnight - part * 0.9999, midnight - part * 1.0001}) {
        compare(value);
      }
    }
  }
}

TEST(DatesMoment, RandomValues) {
  std::mt19937_64 random(2);
  std::uniform_real_distribution<double> seconds(firstSecond, endSecond);
  std::uniform_real_distribution<double> hundredYears(-3.2e9, 3.2e9);
  std::uniform_real_distribution<double> exponent(-330, 11);
  for (int i = 0; i < 200000; ++i) {
    compare(seconds(random));
    compare(hundredYears(random));
    compare(std::floor(hundredYears(random)));
    const double small = std::pow(10, exponent(random));
    compare(small);
    compare(-std::fmin(small, 1e10));
  }
}

TEST(DatesMoment, OutOfRange) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  Moment moment;
  for (const double value : {std::nextafter(firstSecond, -1e300), firstSecond - 1, endSecond, endSecond + 1, 0x1p62,
                             -0x1p62, 0x1p63, 1e300, -1e300, infinity, -infinity, nan, -nan}) {
    EXPECT_EQ(momentOfSeconds(value, &moment), nlsDateOutOfRange) << value;
  }
  EXPECT_EQ(actual(std::nextafter(firstSecond, 0)), (Parts{firstDate, 0, 0, 0}));
  EXPECT_EQ(actual(std::nextafter(endSecond, 0)), (Parts{endDate - 1, 23, 59, 59}));
}

TEST(DatesMoment, OfADateThereIsNoTime) {
  Moment moment;
  ASSERT_EQ(momentOfDate(18661, &moment), 0u);
  EXPECT_FALSE(moment.hasTime);
  EXPECT_EQ(moment.date.year, 2011);
  EXPECT_EQ(moment.date.month, 2);
  EXPECT_EQ(moment.date.day, 3);
  EXPECT_EQ(moment.weekday, 5);
  EXPECT_EQ(momentOfDate(firstDate, &moment), 0u);
  EXPECT_EQ(momentOfDate(endDate - 1, &moment), 0u);
  EXPECT_EQ(momentOfDate(firstDate - 1, &moment), nlsDateOutOfRange);
  EXPECT_EQ(momentOfDate(endDate, &moment), nlsDateOutOfRange);
}

}  // namespace
}  // namespace veldnls
