// Every item of the formatter, and formats around the items.
#include "locale/dates/format_items.h"

#include <gtest/gtest.h>

#include <map>

#include "locale/locale_object_support.h"
#include "support/guard.h"

namespace veldnls {
namespace {

using test::counted;
using test::Written;

class DatesFormatItems : public testing::Test {
 protected:
  Written format(const std::u16string& items, const Moment& at) {
    const NlsText60 text = counted(items);
    return test::written([&](char16_t* output, int32_t capacity, int32_t* length) {
      return formatItems(names, text, at, output, capacity, length);
    });
  }
  // Of 3 February 2011, a Thursday, 04:05:06.
  std::u16string item(const std::u16string& items) {
    const Written written = format(items, moment);
    EXPECT_EQ(written.status, 0u);
    return written.text;
  }

  static Moment secondsOf(double seconds) {
    Moment result;
    EXPECT_EQ(momentOfSeconds(seconds, &result), 0u);
    return result;
  }
  static Moment dateOf(uint32_t month, uint32_t day, uint32_t year) {
    Moment result;
    EXPECT_EQ(momentOfDate(*dateFromMonthDayYear(month, day, year), &result), 0u);
    return result;
  }
  static Moment hourOf(int hour) { return secondsOf(hour * 3600.0); }

  test::NlsHost host{&VELDNLSLIB};
  test::LocaleHandle english = test::makeLocale(host.nls, "en_US");
  LocaleDateTime names = test::dateTimeOf(english.get());
  Moment moment = secondsOf(18661 * 86400.0 + (4 * 60 + 5) * 60 + 6);
};

TEST_F(DatesFormatItems, EveryItem) {
  const std::map<std::u16string, std::u16string> texts = {
      {u"%Z", u""},         {u"%z", u""},          {u"%?Z", u""},    //
      {u"%H", u"04"},       {u"%h", u"04"},        {u"%?H", u"04"},  //
      {u"%I", u"04"},       {u"%i", u"04"},        {u"%?I", u"04"},  //
      {u"%M", u"05"},       {u"%m", u"02"},        {u"%?M", u"02"},   {u"%?m", u"02"},  {u"%S", u"06"},
      {u"%s", u"06"},       {u"%?S", u"06"},                         //
      {u"%P", u"AM"},       {u"%p", u"AM"},        {u"%?P", u"AM"},  //
      {u"%A", u"Thursday"}, {u"%a", u"Thu"},       {u"%?A", u"Thu"},  {u"%?a", u"Thu"}, {u"%F", u"Thursday"},
      {u"%f", u"Thursday"}, {u"%?F", u"Thursday"}, {u"%W", u"4"},     {u"%w", u"4"},    {u"%?W", u"4"},  //
      {u"%U", u"7"},        {u"%u", u"7"},         {u"%?U", u"7"},                                       //
      {u"%Y", u"2011"},     {u"%y", u"2011"},      {u"%?Y", u"2011"},                                    //
      {u"%B", u"February"}, {u"%b", u"Feb"},       {u"%?B", u"Feb"},  {u"%?b", u"Feb"}, {u"%C", u"February"},
      {u"%c", u"February"}, {u"%?C", u"February"}, {u"%N", u"02"},    {u"%n", u"02"},   {u"%?N", u"02"},  //
      {u"%O", u" 2"},       {u"%o", u" 2"},        {u"%?O", u" 2"},                                       //
      {u"%D", u"03"},       {u"%d", u"03"},        {u"%?D", u"03"},                                       //
      {u"%E", u" 3"},       {u"%e", u" 3"},        {u"%?E", u" 3"},                                       //
      {u"%%", u"%"},        {u"%?%", u"%"},
  };
  for (const auto& [items, text] : texts) EXPECT_EQ(item(items), text) << test::narrow(items.data(), 3);
}

TEST_F(DatesFormatItems, ExactlyTheseUnitsAreItems) {
  const std::u16string known = u"ZHIMSPAFWUYBCNODE%";
  const std::u16string time = u"HIMSP";
  const Moment date = dateOf(2, 3, 2011);
  for (uint32_t code = 0; code <= 0xFFFF; ++code) {
    const auto unit = static_cast<char16_t>(code);
    if (unit == u'?') continue;
    // One letter outside of ASCII has its capital there.
    char16_t letter = unit == u'\x017F' ? u'S' : unit;
    const bool lower = letter != unit || (unit >= u'a' && unit <= u'z');
    if (unit >= u'a' && unit <= u'z') letter = static_cast<char16_t>(unit - u'a' + u'A');
    const bool isItem = known.find(letter) != std::u16string::npos;
    EXPECT_EQ(format({u'%', unit}, moment).status, isItem ? 0u : nlsBadArgument) << code;
    EXPECT_EQ(format({u'%', u'?', unit}, moment).status, isItem ? 0u : nlsBadArgument) << code;
    const bool isTime = time.find(letter) != std::u16string::npos && !(letter == u'M' && lower);
    EXPECT_EQ(format({u'%', unit}, date).status, isItem && !isTime ? 0u : nlsBadArgument) << code;
  }
  EXPECT_EQ(format(u"%??", moment).status, nlsBadArgument);
  EXPECT_EQ(format(u"%??M", moment).status, nlsBadArgument);
  EXPECT_EQ(item(u"%\x017F"), u"06");
}

TEST_F(DatesFormatItems, AFormatThatEndsInsideAnItemFails) {
  EXPECT_EQ(format(u"%", moment).status, nlsBadArgument);
  EXPECT_EQ(format(u"%?", moment).status, nlsBadArgument);
  EXPECT_EQ(format(u"%d%", moment).status, nlsBadArgument);
  EXPECT_EQ(format(u"%d%?", moment).status, nlsBadArgument);
  EXPECT_EQ(item(u"%%"), u"%");
  // What stands behind the count is no part of it, be it the end of the buffer.
  for (const std::u16string items : {u"%d", u"%?d"}) {
    NlsText60 text = counted(items);
    --text.count;
    int32_t length = -77;
    char16_t output[10];
    EXPECT_EQ(formatItems(names, text, moment, output, 10, &length), nlsBadArgument);
  }
  EXPECT_EQ(format(std::u16string(59, u'x') + u"%", moment).status, nlsBadArgument);
  EXPECT_EQ(format(std::u16string(58, u'x') + u"%?", moment).status, nlsBadArgument);
}

TEST_F(DatesFormatItems, TextIsCopiedAndBlanksAtTheEndAreCut) {
  EXPECT_EQ(item(u""), u"");
  EXPECT_EQ(item(u"? a?%d?"), u"? a?03?");
  EXPECT_EQ(item(u"  %d \t %e  "), u"  03 \t  3");
  EXPECT_EQ(item(u"%d\t  "), u"03\t");
  EXPECT_EQ(item(u"    "), u"");
  EXPECT_EQ(item(u"%d\x3000 "), u"03\x3000");
  EXPECT_EQ(item(std::u16string(u"a\0b", 3)), std::u16string(u"a\0b", 3));
}

TEST_F(DatesFormatItems, TheHoursOfADay) {
  for (int hour = 0; hour < 24; ++hour) {
    const int twelve = hour == 0 ? 12 : hour > 12 ? hour - 12 : hour;
    const auto two = [](int value) { return (value < 10 ? u"0" : u"") + test::widen(std::to_string(value)); };
    EXPECT_EQ(format(u"%H|%I|%p", hourOf(hour)).text, two(hour) + u"|" + two(twelve) + (hour < 12 ? u"|AM" : u"|PM"));
  }
}

TEST_F(DatesFormatItems, EveryMonthAndWeekday) {
  const LocaleDateTime& english_names = test::dateTimeOf(english.get());
  for (uint32_t month = 1; month <= 12; ++month) {
    EXPECT_EQ(format(u"%B|%b|%m|%o", dateOf(month, 1, 2011)).text,
              test::textOf(english_names.monthNames[month - 1]) + u"|" +
                  test::textOf(english_names.monthAbbreviations[month - 1]) + u"|" + (month < 10 ? u"0" : u"") +
                  test::widen(std::to_string(month)) + u"|" + (month < 10 ? u" " : u"") +
                  test::widen(std::to_string(month)));
  }
  for (uint32_t day = 0; day < 7; ++day) {
    // 6 February 2011 was a Sunday.
    EXPECT_EQ(format(u"%A|%a|%w", dateOf(2, 6 + day, 2011)).text,
              test::textOf(english_names.dayNames[day]) + u"|" + test::textOf(english_names.dayAbbreviations[day]) +
                  u"|" + test::widen(std::to_string(day)));
  }
  // The first days of the calendar lie in front of its first Sunday.
  EXPECT_EQ(format(u"%A|%w", dateOf(1, 1, 1582)).text, u"Friday|5");
  EXPECT_EQ(format(u"%A|%w", dateOf(1, 2, 1582)).text, u"Saturday|6");
  EXPECT_EQ(format(u"%A|%w", dateOf(1, 3, 1582)).text, u"Sunday|0");
}

TEST_F(DatesFormatItems, YearsHaveFourDigits) {
  EXPECT_EQ(format(u"%Y", dateOf(1, 1, 1582)).text, u"1582");
  EXPECT_EQ(format(u"%Y", dateOf(1, 1, 5)).text, u"2005");
  EXPECT_EQ(format(u"%y", dateOf(1, 1, 9999)).text, u"9999");
  EXPECT_EQ(format(u"%Y", dateOf(1, 1, 10000)).text, u"0000");
  EXPECT_EQ(format(u"%Y", dateOf(1, 1, 12345)).text, u"2345");
  EXPECT_EQ(format(u"%Y", dateOf(1, 1, 20000)).text, u"0000");
}

TEST_F(DatesFormatItems, AFailingItemLeavesTheOutput) {
  // `format` looks at output and length.
  EXPECT_EQ(format(u"%d%H", dateOf(2, 3, 2011)).status, nlsBadArgument);
  EXPECT_EQ(format(u"%d%Q", moment).status, nlsBadArgument);
}

// 30 names of 60 units are the longest text that there is.
class DatesLongText : public DatesFormatItems {
 protected:
  DatesLongText() {
    for (NlsText60& name : names.monthNames) name = counted(std::u16string(60, u'x'));
  }
  static std::u16string repeated(const std::u16string& part, int count) {
    std::u16string text;
    for (int i = 0; i < count; ++i) text += part;
    return text;
  }
};

TEST_F(DatesLongText, IsCutAt512Units) {
  EXPECT_EQ(format(repeated(u"%B", 30), moment), (Written{nlsFieldTooNarrow, std::u16string(512, u'x')}));
  EXPECT_EQ(format(repeated(u"%B", 9), moment), (Written{nlsFieldTooNarrow, std::u16string(512, u'x')}));
  EXPECT_EQ(format(repeated(u"%B", 8), moment), (Written{0, std::u16string(480, u'x')}));
  EXPECT_EQ(format(repeated(u"%B", 8) + std::u16string(32, u'y'), moment),
            (Written{0, std::u16string(480, u'x') + std::u16string(32, u'y')}));
  EXPECT_EQ(format(repeated(u"%B", 8) + std::u16string(33, u'y'), moment),
            (Written{nlsFieldTooNarrow, std::u16string(480, u'x') + std::u16string(32, u'y')}));
}

TEST_F(DatesLongText, BlanksAtTheEndStillCountAsNothing) {
  EXPECT_EQ(format(repeated(u"%B", 8) + std::u16string(40, u' '), moment), (Written{0, std::u16string(480, u'x')}));
  // Behind the cut there is more: these blanks aren't at the end.
  EXPECT_EQ(format(repeated(u"%B", 8) + std::u16string(40, u' ') + u"y", moment),
            (Written{nlsFieldTooNarrow, std::u16string(480, u'x') + std::u16string(32, u' ')}));
}

TEST_F(DatesFormatItems, EveryCapacityAgainstAGuardPage) {
  const NlsText60 items = counted(u"%A, %d. %B %Y  ");
  const std::u16string text = u"Thursday, 03. February 2011";
  const auto size = static_cast<int32_t>(text.size());
  for (int32_t capacity = -1; capacity <= size + 4; ++capacity) {
    test::GuardedBuffer buffer(static_cast<size_t>(std::max(capacity, 0)) * 2);
    int32_t length = -77;
    auto* output = reinterpret_cast<char16_t*>(buffer.data());
    const NlsStatus status = formatItems(names, items, moment, output, capacity, &length);
    EXPECT_EQ(status, capacity < size ? nlsFieldTooNarrow : 0u);
    ASSERT_EQ(length, std::clamp(capacity, 0, size));
    EXPECT_EQ(std::u16string(output, static_cast<size_t>(length)), text.substr(0, static_cast<size_t>(length)));
    for (int32_t i = length; i < capacity; ++i) EXPECT_EQ(output[i], 0xCDCD);
  }
}

}  // namespace
}  // namespace veldnls
