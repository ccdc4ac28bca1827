// The slots for dates and times of en_US, and what all locales share.
#include <gtest/gtest.h>

#include <unistd.h>

#include <bit>
#include <cfenv>
#include <cmath>
#include <functional>
#include <limits>

#include "locale/dates_days.h"
#include "locale/locale_object_support.h"
#include "support/death.h"
#include "support/guard.h"

namespace {

using test::ReadDate;
using test::ReadSeconds;
using test::Written;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

double fromBits(uint64_t bits) { return std::bit_cast<double>(bits); }

// The missing value of a letter.
double missing(char letter) {
  return fromBits(uint64_t{0xFFFF} << 48 | static_cast<uint64_t>(static_cast<uint8_t>(~letter)) << 40);
}

class DatesSlots : public testing::Test {
 protected:
  test::NlsHost host{&VELDNLSLIB};
  test::LocaleHandle english = test::makeLocale(host.nls, "en_US");
  QZLocale* locale = english.get();
};

TEST_F(DatesSlots, FormatDateExamples) {
  EXPECT_EQ(test::formatDate(locale, 1, 1, 1960, 0), (Written{0, u"01/01/1960"}));
  EXPECT_EQ(test::formatDate(locale, 1, 1, 1960, 1), (Written{0, u"01Jan1960"}));
  EXPECT_EQ(test::formatDate(locale, 1, 1, 1960, 2), (Written{0, u"January 01, 1960"}));
  for (const int style : {3, -1, 100, INT32_MIN}) {
    EXPECT_EQ(test::formatDate(locale, 1, 1, 1960, style), (Written{0, u"01/01/1960"})) << style;
  }
  EXPECT_EQ(test::formatDate(locale, 1, 1, 60, 0), (Written{0, u"01/01/1960"}));
  EXPECT_EQ(test::formatDate(locale, 1, 1, 49, 0), (Written{0, u"01/01/2049"}));
  EXPECT_EQ(test::formatDate(locale, 2, 29, 2000, 0), (Written{0, u"02/29/2000"}));
  for (const auto& [month, day, year] : {std::array{2u, 29u, 4000u},
                                         {13u, 1u, 1960u},
                                         {0u, 1u, 1960u},
                                         {1u, 0u, 1960u},
                                         {4u, 31u, 1960u},
                                         {1u, 1u, 100u},
                                         {1u, 1u, 1581u},
                                         {1u, 1u, 20001u},
                                         {0xFFFFFFFFu, 1u, 1960u},
                                         {1u, 1u, 0xFFFFFFFFu}}) {
    EXPECT_EQ(test::formatDate(locale, month, day, year, 0), (Written{nlsDateOutOfRange, u""}));
  }
}

TEST_F(DatesSlots, FormatTimeExamples) {
  EXPECT_EQ(test::formatTime(locale, 0, 0), (Written{0, u"12:00:00 AM"}));
  EXPECT_EQ(test::formatTime(locale, 46800, 0), (Written{0, u"01:00:00 PM"}));
  EXPECT_EQ(test::formatTime(locale, 46800, 1), (Written{0, u"13:00:00"}));
  EXPECT_EQ(test::formatTime(locale, 43200, 0), (Written{0, u"12:00:00 PM"}));
  EXPECT_EQ(test::formatTime(locale, 59.999, 1), (Written{0, u"00:00:59"}));
  EXPECT_EQ(test::formatTime(locale, 86400 + 3661, 1), (Written{0, u"01:01:01"}));
  EXPECT_EQ(test::formatTime(locale, -1, 1), (Written{0, u"23:59:59"}));
}

TEST_F(DatesSlots, FormatDateTimeExamples) {
  EXPECT_EQ(test::formatDateTime(locale, 0), (Written{0, u"01Jan1960:00:00:00"}));
  EXPECT_EQ(test::formatDateTime(locale, -1), (Written{0, u"31Dec1959:23:59:59"}));
  EXPECT_EQ(test::formatDateTime(locale, 1612325106), (Written{0, u"03Feb2011:04:05:06"}));
}

TEST_F(DatesSlots, RangeOfTimes) {
  EXPECT_EQ(test::formatDateTime(locale, -11928470400), (Written{0, u"01Jan1582:00:00:00"}));
  EXPECT_EQ(test::formatDateTime(locale, 569318630399), (Written{0, u"31Dec0000:23:59:59"})) << "the year 20000";
  for (const double value : {-11928470401.0, 569318630400.0, 1e300, -1e300, infinity, -infinity, nan, -nan}) {
    EXPECT_EQ(test::formatDateTime(locale, value), (Written{nlsDateOutOfRange, u""})) << value;
    EXPECT_EQ(test::formatTime(locale, value, 0), (Written{nlsDateOutOfRange, u""})) << value;
  }
}

TEST_F(DatesSlots, MissingValuesOfEveryLetter) {
  for (const char letter : std::string(".-ABCDEFGHIJKLMNOPQRSTUVWXYZ")) {
    EXPECT_EQ(test::formatTime(locale, missing(letter), 0), (Written{nlsDateInputMissing, u""})) << letter;
    EXPECT_EQ(test::formatTime(locale, missing(letter), 1), (Written{nlsDateInputMissing, u""})) << letter;
    EXPECT_EQ(test::formatDateTime(locale, missing(letter)), (Written{nlsDateInputMissing, u""})) << letter;
  }
  // Whatever stands behind the top 16 bits.
  for (const uint64_t bits : {0xFFFF000000000000, 0xFFFFFFFFFFFFFFFF, 0xFFFF000000000001}) {
    EXPECT_EQ(test::formatDateTime(locale, fromBits(bits)), (Written{nlsDateInputMissing, u""}));
  }
  EXPECT_EQ(test::formatDateTime(locale, fromBits(0xFFFEFFFFFFFFFFFF)), (Written{nlsDateOutOfRange, u""}));
}

TEST_F(DatesSlots, ParseDateExamples) {
  EXPECT_EQ(test::parseDate(locale, u"02/03/2011", 0), (ReadDate{0, 2, 3, 2011, 10}));
  EXPECT_EQ(test::parseDate(locale, u"  02/03/2011 or so", 0), (ReadDate{0, 2, 3, 2011, 12}));
  EXPECT_EQ(test::parseDate(locale, u"03fEB2011", 1), (ReadDate{0, 2, 3, 2011, 9}));
  EXPECT_EQ(test::parseDate(locale, u"february 03, 2011", 2), (ReadDate{0, 2, 3, 2011, 17}));
  EXPECT_EQ(test::parseDate(locale, u"02/03/2011", 7), (ReadDate{0, 2, 3, 2011, 10}));
  for (const char16_t* text : {u"2/3/2011", u"02/03/", u"02/03/11", u"02-03-2011", u"13/03/2011", u"00/03/2011",
                               u"02/32/2011", u"02/03/1581", u"", u"   "}) {
    EXPECT_EQ(test::parseDate(locale, text, 0), (ReadDate{nlsDateResultMissing, 0, 0, 0, -77}));
  }
  // Parts are looked at one by one.
  EXPECT_EQ(test::parseDate(locale, u"02/31/2011", 0), (ReadDate{0, 2, 31, 2011, 10}));
}

TEST_F(DatesSlots, ADateFormatWithoutYearReadsAsZeros) {
  locale->record->dateTime.dateFormatShort = test::counted(u"%m/%d");
  EXPECT_EQ(test::parseDate(locale, u"02/03", 0), (ReadDate{0, 0, 0, 0, 5}));
  EXPECT_EQ(test::formatDate(locale, 2, 3, 2011, 0), (Written{0, u"02/03"}));
}

TEST_F(DatesSlots, FormatsThatCannotBeWritten) {
  locale->record->dateTime.dateFormatShort = test::counted(u"%m/%d %H");
  EXPECT_EQ(test::formatDate(locale, 2, 3, 2011, 0), (Written{nlsBadArgument, u""}));
  locale->record->dateTime.dateFormatShort = test::counted(u"%Q %Y");
  EXPECT_EQ(test::formatDate(locale, 2, 3, 2011, 0), (Written{nlsBadArgument, u""}));
  EXPECT_EQ(test::parseDate(locale, u"1 2011", 0), (ReadDate{nlsDateResultMissing, 0, 0, 0, -77}));
}

TEST_F(DatesSlots, ParseTimeExamples) {
  EXPECT_EQ(test::parseTime(locale, u"13:00:00", 1), (ReadSeconds{0, 46800, 8}));
  EXPECT_EQ(test::parseTime(locale, u"01:00:00 PM", 0), (ReadSeconds{0, 46800, 11}));
  EXPECT_EQ(test::parseTime(locale, u"12:00:00 am", 0), (ReadSeconds{0, 0, 11}));
  for (const char16_t* text : {u"24:00:00", u"13:60:00", u"13:00:60", u"13:00", u"1:00:00", u""}) {
    EXPECT_EQ(test::parseTime(locale, text, 1), (ReadSeconds{nlsDateResultMissing, -77, -77}));
  }
}

TEST_F(DatesSlots, OtherStylesAreWrittenWith24HoursAndReadWith12) {
  for (const int style : {2, -1, 99}) {
    EXPECT_EQ(test::formatTime(locale, 46800, style), (Written{0, u"13:00:00"}));
    EXPECT_EQ(test::parseTime(locale, u"13:00:00", style), (ReadSeconds{nlsDateResultMissing, -77, -77}));
    EXPECT_EQ(test::parseTime(locale, u"01:00:00 PM", style), (ReadSeconds{0, 46800, 11}));
  }
}

TEST_F(DatesSlots, MillisecondsAreReadAsThreeDigits) {
  locale->record->dateTime.timeFormat24 = test::counted(u"%H:%M:%S.%s");
  EXPECT_EQ(test::parseTime(locale, u"13:00:01.250", 1), (ReadSeconds{0, 46801.25, 12}));
  // The same letter writes seconds.
  EXPECT_EQ(test::formatTime(locale, 46801, 1), (Written{0, u"13:00:01.01"}));
  locale->record->dateTime.dateTimeFormat = test::counted(u"%Y%m%d %H%M%S%s");
  EXPECT_EQ(test::parseDateTime(locale, u"19591231 235959750"), (ReadSeconds{0, -0.25, 18}));
  EXPECT_EQ(test::parseDateTime(locale, u"19600102 000000001"), (ReadSeconds{0, 86400.001, 18}));
}

// Only a format with thousandths makes a value that has to be rounded.
TEST_F(DatesSlots, MillisecondsAreTheSameInEveryStateOfFloatingPoint) {
  locale->record->dateTime.timeFormat24 = test::counted(u"%H:%M:%S.%s");
  locale->record->dateTime.dateTimeFormat = test::counted(u"%Y%m%d %H%M%S%s");
  const test::Ending ending = test::runInChild([&] {
    for (const int rounding : {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
      std::fesetround(rounding);
      std::feclearexcept(FE_ALL_EXCEPT);
      feenableexcept(FE_ALL_EXCEPT);
      double time = 0;
      double both = 0;
      int32_t consumed = 0;
      locale->parseTime(locale, u"13:00:01.001", 12, 1, &time, &consumed);
      locale->parseDateTime(locale, u"19600102 000000001", 18, 0, &both, &consumed);
      if (time != 46801.001 || both != 86400.001 || std::fegetround() != rounding) _exit(1);
      if (fegetexcept() != FE_ALL_EXCEPT || std::fetestexcept(FE_ALL_EXCEPT) != 0) _exit(2);
    }
    _exit(7);
  });
  EXPECT_EQ(ending.signal, 0);
  EXPECT_EQ(ending.exitCode, 7);
}

TEST_F(DatesSlots, ParseDateTimeExamples) {
  EXPECT_EQ(test::parseDateTime(locale, u"01Jan1960:00:00:01"), (ReadSeconds{0, 1, 18}));
  EXPECT_EQ(test::parseDateTime(locale, u"31Dec1959:23:59:59"), (ReadSeconds{0, -1, 18}));
  EXPECT_EQ(test::parseDateTime(locale, u"01Jan1582:00:00:00"), (ReadSeconds{0, -11928470400, 18}));
  for (const char16_t* text : {u"31Feb1960:00:00:01", u"29Feb4000:00:00:00", u"01Jan60:00:00:01", u"01Jan1960", u""}) {
    EXPECT_EQ(test::parseDateTime(locale, text), (ReadSeconds{nlsDateResultMissing, -77, -77}));
  }
}

TEST_F(DatesSlots, ADateTimeFormatWithoutYearReadsAs2000) {
  locale->record->dateTime.dateTimeFormat = test::counted(u"%d%b:%H:%M:%S");
  const double in2000 = (40 * 365 + 10) * 86400.0;  // 1 January
  EXPECT_EQ(test::parseDateTime(locale, u"01Jan:00:00:01"), (ReadSeconds{0, in2000 + 1, 14}));
  EXPECT_EQ(test::parseDateTime(locale, u"29Feb:00:00:00"), (ReadSeconds{0, in2000 + 59 * 86400.0, 14}));
}

TEST_F(DatesSlots, EveryYearAndManyDays) {
  test::Day day;
  for (; day.date <= test::lastDay; day.next()) {
    // Every day around the origin and where the leap rule turns, a day in 97 elsewhere.
    const bool close = (day.year >= 1900 && day.year < 2101) || (day.year >= 3999 && day.year < 4002);
    if (!close && day.date % 97 != 0) continue;
    char expected[16];
    std::snprintf(expected, sizeof expected, "%02d/%02d/%04d", day.month, day.day, day.year % 10000);
    const Written date = test::formatDate(locale, static_cast<uint32_t>(day.month), static_cast<uint32_t>(day.day),
                                          static_cast<uint32_t>(day.year), 0);
    ASSERT_EQ(date, (Written{0, test::widen(expected)}));
    const Written moment = test::formatDateTime(locale, day.date * 86400.0 + 86399);
    ASSERT_EQ(moment.text.substr(0, 2), date.text.substr(3, 2));
    ASSERT_EQ(moment.text.substr(5), date.text.substr(6) + u":23:59:59");
  }
}

// A formatter as a function of output, capacity and length.
using Formatter = std::function<NlsStatus(char16_t*, int32_t, int32_t*)>;

void everyCapacity(const Formatter& format) {
  const Written whole = test::written(format);
  ASSERT_EQ(whole.status, 0u);
  const auto size = static_cast<int32_t>(whole.text.size());
  for (const auto at : {test::GuardedBuffer::At::end, test::GuardedBuffer::At::start}) {
    for (int32_t capacity = 0; capacity <= size + 4; ++capacity) {
      test::GuardedBuffer buffer(static_cast<size_t>(capacity) * 2, at);
      auto* output = reinterpret_cast<char16_t*>(buffer.data());
      int32_t length = -77;
      EXPECT_EQ(format(output, capacity, &length), capacity < size ? nlsFieldTooNarrow : 0u);
      ASSERT_EQ(length, std::min(capacity, size));
      EXPECT_EQ(std::u16string(output, static_cast<size_t>(length)), whole.text.substr(0, static_cast<size_t>(length)));
      for (int32_t i = length; i < capacity; ++i) EXPECT_EQ(output[i], 0xCDCD);
    }
  }
}

TEST_F(DatesSlots, EveryCapacityInEveryLocale) {
  for (const std::string& name : test::localeNames()) {
    const test::LocaleHandle handle = test::makeLocale(host.nls, name);
    QZLocale* l = handle.get();
    for (const int style : {0, 1, 2}) {
      everyCapacity([&](char16_t* output, int32_t capacity, int32_t* length) {
        return l->formatDate(l, 9, 22, 1987, style, output, capacity, length);
      });
    }
    for (const int style : {0, 1}) {
      everyCapacity([&](char16_t* output, int32_t capacity, int32_t* length) {
        return l->formatTime(l, 80000, style, output, capacity, length);
      });
    }
    everyCapacity([&](char16_t* output, int32_t capacity, int32_t* length) {
      return l->formatDateTime(l, 1612325106, 0, output, capacity, length);
    });
    if (HasFailure()) FAIL() << name;
  }
}

// Every beginning of a text, ending at a guard page, and the text in front of one.
TEST_F(DatesSlots, NoUnitBehindATextIsRead) {
  const auto everyBeginning = [](const std::u16string& text, auto parse) {
    for (size_t length = 0; length <= text.size(); ++length) {
      test::GuardedBuffer buffer({reinterpret_cast<const uint8_t*>(text.data()), length * 2});
      parse(reinterpret_cast<const char16_t*>(buffer.data()), static_cast<int32_t>(length));
    }
  };
  for (const char* name : {"en_US", "ja_JP", "ar_EG", "vi_VN", "kw_GB", "hu_HU"}) {
    const test::LocaleHandle handle = test::makeLocale(host.nls, name);
    QZLocale* l = handle.get();
    uint32_t month, day, year;
    double seconds;
    int32_t consumed;
    for (const int style : {0, 1, 2}) {
      const std::u16string text = test::formatDate(l, 9, 22, 1987, style).text;
      everyBeginning(text, [&](const char16_t* units, int32_t length) {
        const NlsStatus status = l->parseDate(l, units, length, style, &month, &day, &year, &consumed);
        EXPECT_TRUE(status == 0 || length < static_cast<int32_t>(text.size())) << name;
      });
    }
    for (const int style : {0, 1}) {
      everyBeginning(test::formatTime(l, 80000, style).text, [&](const char16_t* units, int32_t length) {
        l->parseTime(l, units, length, style, &seconds, &consumed);
      });
    }
    everyBeginning(test::formatDateTime(l, 80000).text, [&](const char16_t* units, int32_t length) {
      l->parseDateTime(l, units, length, 0, &seconds, &consumed);
    });
  }
}

}  // namespace
