// Every item of the parser, and formats around the items.
#include "locale/dates/parse_items.h"

#include <gtest/gtest.h>

#include "locale/locale_object_support.h"
#include "support/guard.h"

namespace veldnls {
namespace {

using test::counted;

struct Read {
  bool matches;
  DateTimeFields fields;
  int32_t consumed;  // -77 where it stayed as it was
};

bool operator==(const DateTimeFields& a, const DateTimeFields& b) {
  return a.year == b.year && a.month == b.month && a.day == b.day && a.hour == b.hour && a.minute == b.minute &&
         a.second == b.second && a.millisecond == b.millisecond;
}

class DatesParseItems : public testing::Test {
 protected:
  Read read(const std::u16string& items, const std::u16string& text) {
    // The text ends at a guard page.
    const test::GuardedBuffer buffer({reinterpret_cast<const uint8_t*>(text.data()), text.size() * 2});
    const auto* units = reinterpret_cast<const char16_t*>(const_cast<test::GuardedBuffer&>(buffer).data());
    Read result = {false, {9, 9, 9, 9, 9, 9, 9}, -77};
    const NlsStatus status =
        parseItems(names, counted(items), units, static_cast<int32_t>(text.size()), &result.fields, &result.consumed);
    EXPECT_TRUE(status == 0 || status == nlsDateResultMissing);
    EXPECT_TRUE(status == 0 || result.consumed == -77);
    result.matches = status == 0;
    return result;
  }
  // The units read, or -77.
  int32_t consumed(const std::u16string& items, const std::u16string& text) { return read(items, text).consumed; }
  // The value of one field, or -77.
  int32_t value(const std::u16string& items, const std::u16string& text, int32_t DateTimeFields::*field) {
    const Read result = read(items, text);
    if (!result.matches) return -77;
    DateTimeFields only{};
    only.*field = result.fields.*field;
    EXPECT_TRUE(result.fields == only) << "another field was set";
    return result.fields.*field;
  }

  test::NlsHost host{&VELDNLSLIB};
  test::LocaleHandle english = test::makeLocale(host.nls, "en_US");
  LocaleDateTime names = test::dateTimeOf(english.get());
};

struct NumberItem {
  char16_t letter;
  int places, low, high;
  int32_t DateTimeFields::*field;  // null: dropped
};

constexpr NumberItem numberItems[] = {
    {u's', 3, 0, 999, &DateTimeFields::millisecond},
    {u'S', 2, 0, 59, &DateTimeFields::second},
    {u'M', 2, 0, 59, &DateTimeFields::minute},
    {u'H', 2, 0, 23, &DateTimeFields::hour},
    {u'I', 2, 1, 12, &DateTimeFields::hour},
    {u'w', 1, 0, 6, nullptr},
    {u'u', 1, 1, 7, nullptr},
    {u'e', 2, 1, 31, &DateTimeFields::day},
    {u'd', 2, 1, 31, &DateTimeFields::day},
    {u'o', 2, 1, 12, &DateTimeFields::month},
    {u'm', 2, 1, 12, &DateTimeFields::month},
    {u'Y', 4, 1582, 20000, &DateTimeFields::year},
    {u'y', 4, 1582, 20000, &DateTimeFields::year},
};

std::u16string digits(int value, int places, char16_t fill) {
  std::u16string text = test::widen(std::to_string(value));
  while (static_cast<int>(text.size()) < places) text.insert(text.begin(), fill);
  return text;
}

TEST_F(DatesParseItems, EveryNumberItemWithEveryValue) {
  for (const NumberItem& item : numberItems) {
    const std::u16string items = {u'%', item.letter};
    int end = 1;
    for (int i = 0; i < item.places; ++i) end *= 10;
    for (int number = 0; number < end; ++number) {
      for (const char16_t fill : {u'0', u' '}) {
        // Blanks in front of all are skipped, but those behind a text take places.
        const std::u16string text = u"x" + digits(number, item.places, fill) + u"x";
        const Read result = read(u"x" + items + u"x", text);
        ASSERT_EQ(result.matches, number >= item.low && number <= item.high)
            << static_cast<char>(item.letter) << number;
        if (!result.matches) continue;
        EXPECT_EQ(result.consumed, static_cast<int32_t>(text.size()));
        DateTimeFields expected{};
        if (item.field != nullptr) expected.*item.field = item.letter == u'I' ? number % 12 : number;
        EXPECT_TRUE(result.fields == expected) << static_cast<char>(item.letter) << number;
      }
    }
  }
}

TEST_F(DatesParseItems, NumbersWantAllTheirPlaces) {
  EXPECT_EQ(value(u"%m/", u"1/", &DateTimeFields::month), -77);
  EXPECT_EQ(value(u"%m/", u"01/", &DateTimeFields::month), 1);
  EXPECT_EQ(value(u"x%m/", u"x 1/", &DateTimeFields::month), 1);
  EXPECT_EQ(value(u"%m", u"012", &DateTimeFields::month), 1);
  EXPECT_EQ(consumed(u"%m", u"012"), 2);
  EXPECT_EQ(consumed(u"x%m", u"x  1"), -77) << "blanks took both places";
  EXPECT_EQ(consumed(u"x%S", u"x  1"), -77) << "and left no zero";
  EXPECT_EQ(consumed(u"%d", u"1x"), -77);
  EXPECT_EQ(consumed(u"%d", u"+1"), -77);
  EXPECT_EQ(consumed(u"%d", u"\t1"), -77);
}

TEST_F(DatesParseItems, TheEndOfTheTextMayComeEarly) {
  EXPECT_EQ(value(u"%m", u"1", &DateTimeFields::month), 1);
  EXPECT_EQ(consumed(u"%m", u"1"), 1);
  EXPECT_EQ(value(u"x%s", u"x7", &DateTimeFields::millisecond), 7);
  EXPECT_EQ(value(u"x%S", u"x ", &DateTimeFields::second), 0) << "a blank and no digit";
  EXPECT_EQ(value(u"x%d", u"x ", &DateTimeFields::day), -77);
  EXPECT_EQ(value(u"%Y", u"158", &DateTimeFields::year), -77);
}

TEST_F(DatesParseItems, BlanksInFrontOfAllAreSkipped) {
  EXPECT_EQ(value(u"%e", u"   31", &DateTimeFields::day), 31);
  EXPECT_EQ(consumed(u"%e", u"   31"), 5);
  // So what the formatter writes for day 3 isn't read back at the start.
  EXPECT_EQ(value(u"%e.", u" 3.", &DateTimeFields::day), -77);
  EXPECT_EQ(value(u"x%e.", u"x 3.", &DateTimeFields::day), 3);
  EXPECT_EQ(consumed(u" x", u" x"), -77) << "the blank of the format finds none";
}

TEST_F(DatesParseItems, DigitsOfOtherScriptsCountFromZero) {
  // U+0660 is 1584 units behind "0", which is a year.
  EXPECT_EQ(value(u"%Y", u"\x0660", &DateTimeFields::year), 1584);
  EXPECT_EQ(value(u"%m", u"\x0661", &DateTimeFields::month), -77);
  EXPECT_EQ(value(u"%Y", u"\x0661\x0669\x0666\x0660", &DateTimeFields::year), -77);
  EXPECT_EQ(value(u"%Y", u"\xFF19\xFF19\xFF19\xFF19", &DateTimeFields::year), -77);
}

TEST_F(DatesParseItems, Names) {
  EXPECT_EQ(value(u"%B", u"January", &DateTimeFields::month), 1);
  EXPECT_EQ(value(u"%C", u"dECEMBERx", &DateTimeFields::month), 12);
  EXPECT_EQ(consumed(u"%C", u"dECEMBERx"), 8);
  EXPECT_EQ(value(u"%b", u"mAy", &DateTimeFields::month), 5);
  EXPECT_EQ(value(u"x%b", u"x  Oct", &DateTimeFields::month), 10);
  EXPECT_EQ(value(u"%B", u"Jan", &DateTimeFields::month), -77);
  EXPECT_EQ(value(u"%b", u"Ja", &DateTimeFields::month), -77);
  EXPECT_EQ(value(u"x%b", u"x ", &DateTimeFields::month), -77);
  // Days are read in full also by the item that writes the short ones, and tell nothing.
  for (const char16_t letter : {u'a', u'A', u'F'}) {
    const Read result = read({u'%', letter}, u"thursday");
    EXPECT_TRUE(result.matches);
    EXPECT_TRUE(result.fields == DateTimeFields{});
    EXPECT_EQ(consumed({u'%', letter}, u"Thu"), -77);
  }
}

TEST_F(DatesParseItems, TheFirstNameThatFitsIsTaken) {
  names.monthNames[0] = counted(u"Me");
  names.monthNames[5] = counted(u"Metheven");
  EXPECT_EQ(value(u"%B", u"Metheven", &DateTimeFields::month), 1);
  EXPECT_EQ(consumed(u"%B", u"Metheven"), 2);
  names.monthNames[0] = counted(u"");
  EXPECT_EQ(value(u"%B", u"Metheven", &DateTimeFields::month), 1);
  EXPECT_EQ(consumed(u"%B", u"Metheven"), 0) << "an empty name fits everything";
}

TEST_F(DatesParseItems, HalvesOfTheDay) {
  EXPECT_EQ(value(u"%I %p", u"12 AM", &DateTimeFields::hour), 0);
  EXPECT_EQ(value(u"%I %p", u"12 pm", &DateTimeFields::hour), 12);
  EXPECT_EQ(value(u"%I %p", u"01 PM", &DateTimeFields::hour), 13);
  EXPECT_EQ(value(u"%I %p", u"11   AM", &DateTimeFields::hour), 11);
  EXPECT_EQ(value(u"%I %p", u"11 XM", &DateTimeFields::hour), -77);
  // In front of the hour it is overwritten; on a clock of 24 hours it goes beyond the day.
  EXPECT_EQ(value(u"%p %I", u"PM 01", &DateTimeFields::hour), 1);
  EXPECT_EQ(value(u"%H %p", u"23 PM", &DateTimeFields::hour), 35);
  names.amText = counted(u"");
  EXPECT_EQ(value(u"%I %p", u"01 PM", &DateTimeFields::hour), 1) << "an empty text fits first";
  EXPECT_EQ(consumed(u"%I %p", u"01 PM"), 3);
  EXPECT_EQ(consumed(u"%I%p", u"01"), -77) << "no text is left for the item";
}

TEST_F(DatesParseItems, ExactlyTheseUnitsAreItems) {
  const std::u16string known = u"sSMHIpwuaAFedbBComYy%";
  // A text for each item.
  const std::u16string texts[] = {u"12", u"0012", u"1582", u"AM", u"Sunday", u"Jan", u"January", u"%"};
  for (uint32_t code = 0; code <= 0xFFFF; code = code == 0x7FF ? 0xFF00 : code + 1) {
    const auto unit = static_cast<char16_t>(code);
    bool accepted = false;
    for (const std::u16string& text : texts) accepted = accepted || read({u'%', unit}, text).matches;
    EXPECT_EQ(accepted, known.find(unit) != std::u16string::npos) << code;
  }
}

TEST_F(DatesParseItems, TextMustStandThereExactly) {
  EXPECT_EQ(consumed(u"abc", u"abc"), 3);
  EXPECT_EQ(consumed(u"abc", u"abC"), -77);
  EXPECT_EQ(consumed(u"abc", u"abcd"), 3) << "text behind the format is left";
  EXPECT_EQ(consumed(u"abc", u"ab"), -77);
  EXPECT_EQ(consumed(u"", u"ab"), 0);
  EXPECT_EQ(consumed(u"", u""), 0);
  EXPECT_EQ(consumed(u"a", u""), -77);
  EXPECT_EQ(consumed(u"?", u"?"), 1);
  EXPECT_EQ(consumed(u"%?M", u"12"), -77);
  EXPECT_EQ(consumed(u"%d", u""), -77);
}

TEST_F(DatesParseItems, PercentSigns) {
  EXPECT_EQ(consumed(u"%%", u"%"), 1);
  EXPECT_EQ(consumed(u"%%", u"x"), -77);
  EXPECT_EQ(consumed(u"%%%d", u"%07"), 3);
  EXPECT_EQ(consumed(u"%%%%", u"%%"), 2);
  // One at the end of a format asks for nothing, but for text that is left.
  EXPECT_EQ(consumed(u"%d%", u"07x"), 2);
  EXPECT_EQ(consumed(u"%d%", u"07"), -77);
}

TEST_F(DatesParseItems, LengthsBelowZeroAreEmpty) {
  DateTimeFields fields;
  int32_t consumed = -77;
  EXPECT_EQ(parseItems(names, counted(u"%d"), nullptr, -1, &fields, &consumed), nlsDateResultMissing);
  EXPECT_EQ(consumed, -77);
  EXPECT_EQ(parseItems(names, counted(u""), nullptr, INT32_MIN, &fields, &consumed), 0u);
  EXPECT_EQ(consumed, 0);
}

}  // namespace
}  // namespace veldnls
