#include "veldnls/locale_record.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <set>

#include "locale/load_locale_record.h"
#include "locale/locale_data.h"
#include "locale/locale_rows.h"
#include "support/guard.h"
#include "support/host.h"
#include "support/wide.h"
#include "veldnls/status.h"

namespace {

constexpr uint8_t fillByte = 0xA5;

class LocaleRecordTest : public testing::Test {
 protected:
  LocaleRecordTest() { std::memset(record.get(), fillByte, sizeof *record); }

  NlsStatus load(const std::u16string& name) {
    return host.nls->localeDatabase->loadLocaleRecord(record.get(), name.data(), static_cast<int32_t>(name.size()));
  }
  void mustLoad(const std::string& name) { ASSERT_EQ(load(test::widen(name)), 0u) << name; }

  bool untouched() const {
    const auto* bytes = reinterpret_cast<const uint8_t*>(record.get());
    return std::all_of(bytes, bytes + sizeof *record, [](uint8_t byte) { return byte == fillByte; });
  }

  test::NlsHost host{&VELDNLSLIB};
  std::unique_ptr<LocaleRecord> record = std::make_unique<LocaleRecord>();
};

// The text, once all units behind it are seen to be zero.
std::u16string text(const NlsText60& counted) {
  EXPECT_GE(counted.count, 0);
  EXPECT_LE(counted.count, 60);
  for (int i = counted.count; i < 60; ++i) EXPECT_EQ(counted.text[i], u'\0');
  return {counted.text, static_cast<size_t>(counted.count)};
}

template <size_t count>
std::u16string text(const NlsText60 (&list)[count]) {
  std::u16string joined;
  for (const NlsText60& entry : list) joined += (joined.empty() ? u"" : u"|") + text(entry);
  return joined;
}

std::string text(const LocaleItem& item) {
  EXPECT_LE(item.length, sizeof item.text);
  for (size_t i = item.length; i < sizeof item.text; ++i) EXPECT_EQ(item.text[i], '\0');
  return {item.text, item.length};
}

std::u16string pair(const char16_t (&code)[2]) { return {code, 2}; }
std::u16string number(int value) { return test::widen(std::to_string(value)); }

// All 72 fields of a record, by the names that the independent reader gives them.
std::map<std::string, std::u16string> fieldsOf(const LocaleRecord& record) {
  std::map<std::string, std::u16string> fields;
  const auto list = [&](const std::string& name, const NlsText60* texts, int count) {
    for (int i = 0; i < count; ++i) fields[name + "." + std::to_string(i)] = text(texts[i]);
  };
  const LocaleDateTime& date = record.dateTime;
  list("dayNames", date.dayNames, 7);
  list("dayAbbreviations", date.dayAbbreviations, 7);
  list("monthNames", date.monthNames, 12);
  list("monthAbbreviations", date.monthAbbreviations, 12);
  fields["dateFormatShort"] = text(date.dateFormatShort);
  fields["dateFormatMedium"] = text(date.dateFormatMedium);
  fields["dateFormatLong"] = text(date.dateFormatLong);
  fields["dateTimeFormat"] = text(date.dateTimeFormat);
  fields["timeFormat24"] = text(date.timeFormat24);
  fields["timeFormat12"] = text(date.timeFormat12);
  fields["amText"] = text(date.amText);
  fields["pmText"] = text(date.pmText);
  fields["dateSeparator"] = date.dateSeparator;
  fields["timeSeparator"] = date.timeSeparator;
  fields["numberPattern"] = text(record.number.numberPattern);
  fields["numberGrouping"] = text(record.number.numberGrouping);
  fields["decimalPoint"] = record.number.decimalPoint;
  fields["groupSeparator"] = record.number.groupSeparator;
  fields["currencyPattern"] = text(record.currency.currencyPattern);
  fields["currencyGrouping"] = text(record.currency.currencyGrouping);
  fields["currencySymbol"] = text(record.currency.currencySymbol);
  fields["currencyCode"] = text(record.currency.currencyCode);
  fields["currencyDigits"] = number(record.currency.currencyDigits);
  fields["percentPattern"] = text(record.percent.percentPattern);
  fields["percentSign"] = record.percent.percentSign;
  fields["measurement"] = number(record.measurement);
  fields["languageName"] = text(record.identity.languageName);
  fields["countryName"] = text(record.identity.countryName);
  fields["paperName"] = text(record.identity.paperName);
  fields["paperHeight"] = number(record.identity.paperHeight);
  fields["paperWidth"] = number(record.identity.paperWidth);
  return fields;
}

TEST_F(LocaleRecordTest, KnownValuesOfEnUs) {
  mustLoad("en_US");
  const LocaleDateTime& date = record->dateTime;
  EXPECT_EQ(text(date.dayNames), u"Sunday|Monday|Tuesday|Wednesday|Thursday|Friday|Saturday");
  EXPECT_EQ(text(date.dayAbbreviations), u"Sun|Mon|Tue|Wed|Thu|Fri|Sat");
  EXPECT_EQ(text(date.monthNames),
            u"January|February|March|April|May|June|July|August|September|October|November|December");
  EXPECT_EQ(text(date.monthAbbreviations), u"Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec");
  EXPECT_EQ(text(date.dateFormatShort), u"%m/%d/%Y");
  EXPECT_EQ(text(date.dateFormatMedium), u"%d%b%Y");
  EXPECT_EQ(text(date.dateFormatLong), u"%B %d, %Y");
  EXPECT_EQ(text(date.dateTimeFormat), u"%d%b%y:%H:%M:%S");
  EXPECT_EQ(text(date.timeFormat24), u"%H:%M:%S");
  EXPECT_EQ(text(date.timeFormat12), u"%I:%M:%S %p");
  EXPECT_EQ(text(date.amText), u"AM");
  EXPECT_EQ(text(date.pmText), u"PM");
  EXPECT_EQ(date.dateSeparator, u'/');
  EXPECT_EQ(date.timeSeparator, u':');
  EXPECT_EQ(text(record->number.numberPattern), u"#,##0.###");
  EXPECT_EQ(text(record->number.numberGrouping), u"3");
  EXPECT_EQ(record->number.decimalPoint, u'.');
  EXPECT_EQ(record->number.groupSeparator, u',');
  const LocaleCurrency& currency = record->currency;
  EXPECT_EQ(text(currency.currencyPattern), u"\u00A4#,##0.00;(\u00A4#,##0.00)");
  EXPECT_EQ(text(currency.currencyPatternInternational), u"\u00A4#,##0.00;(\u00A4#,##0.00)");
  EXPECT_EQ(text(currency.currencyGrouping), u"3");
  EXPECT_EQ(text(currency.currencySymbol), u"$");
  EXPECT_EQ(text(currency.currencyCode), u"USD");
  EXPECT_EQ(currency.currencyDecimalPoint, u'.');
  EXPECT_EQ(currency.currencyGroupSeparator, u',');
  EXPECT_EQ(currency.currencyDigits, 2);
  EXPECT_EQ(currency.currencyDigitsInternational, 2);
  EXPECT_EQ(text(record->percent.percentPattern), u"#,##0%");
  EXPECT_EQ(record->percent.percentSign, u'%');
  EXPECT_EQ(record->measurement, 1);
  EXPECT_EQ(text(record->identity.posixName), u"en_US");
  EXPECT_EQ(pair(record->identity.languageCode), u"en");
  EXPECT_EQ(pair(record->identity.countryCode), u"US");
  EXPECT_EQ(text(record->identity.languageName), u"English");
  EXPECT_EQ(text(record->identity.countryName), u"UnitedStates");
  EXPECT_EQ(text(record->identity.paperName), u"LETTER");
  EXPECT_EQ(record->identity.paperHeight, 279);
  EXPECT_EQ(record->identity.paperWidth, 216);
}

TEST_F(LocaleRecordTest, KnownItemsOfEnUs) {
  mustLoad("en_US");
  const std::map<int, std::string> known = {
      {0, "English_UnitedStates"},
      {1, "English"},
      {2, "en"},
      {3, "UnitedStates"},
      {4, "en"},
      {5, "US"},
      {6, "MDY"},
      {7, "LETTER"},
      {13, "NLDATE16."},
      {14, "NLDATM24."},
      {15, "NLTIME8."},
      {16, "BEST12."},
      {17, "PERCENT12."},
      {18, "COMPLEX"},
      {26, "SWISS"},
      {27, "ITALIC"},
      {28, "%B %d, %Y"},
      {29, "%m/%d/%Y"},
      {45, "%Q %Y"},
      {46, "%q %y"},
      {47, "Week %U %G"},
      {48, "W%U %g"},
      {49, "/"},
      {50, "Jan"},
      {62, "January"},
      {74, "Sun"},
      {81, "Sunday"},
      {88, "AM"},
      {89, "PM"},
      {90, "1st quarter"},
      {98, "USD"},
      {99, "$"},
      {103, ""},
      {104, "-"},
      {105, "2"},
      {106, "2"},
      {107, "1"},
      {108, "0"},
      {109, "1"},
      {110, "0"},
      {111, "1"},
      {112, "0"},
      {120, "0"},
      {123, "0"},
      {124, "1"},
      {125, "1"},
      {130, "279"},
      {131, "216"},
      {132, "%p%t%g%t%m%t%f"},
      {134, "Mr."},
      {135, "Mrs."},
      {136, "Ms."},
      {138, "%z%c%T%s%b%e%r"},
      {139, "+%c ;%a ;%l"},
      {140, "1"},
      {113, "<u00a4>#,##0.00;(<u00a4>#,##0.00)"},
  };
  for (const auto& [index, item] : known) EXPECT_EQ(text(record->items[index]), item) << index;
}

TEST_F(LocaleRecordTest, KnownValuesOfJaJpAndDeDe) {
  mustLoad("ja_JP");
  EXPECT_EQ(text(record->dateTime.dateFormatShort), u"%y/%m/%d");
  EXPECT_EQ(text(record->currency.currencySymbol), u"\uFFE5");
  EXPECT_EQ(text(record->currency.currencyCode), u"JPY");
  EXPECT_EQ(record->currency.currencyDigits, 0);
  EXPECT_EQ(text(record->currency.currencyPattern), u"\u00A4#,##0");
  EXPECT_EQ(text(record->identity.paperName), u"A4");
  EXPECT_EQ(record->identity.paperHeight, 297);
  EXPECT_EQ(record->identity.paperWidth, 210);
  EXPECT_EQ(text(record->items[8]), "KANJI;<ttf> MS PGothic");
  EXPECT_EQ(text(record->items[12]), "ja");
  mustLoad("de_DE");
  EXPECT_EQ(text(record->dateTime.dateFormatShort), u"%d.%m.%y");
  EXPECT_EQ(text(record->dateTime.timeFormat24), u"%H.%M Uhr");
  EXPECT_EQ(record->number.decimalPoint, u',');
  EXPECT_EQ(record->number.groupSeparator, u'.');
  EXPECT_EQ(text(record->number.numberPattern), u"#.##0,###");
  EXPECT_EQ(text(record->currency.currencyPattern), u"#.##0,00 \u00A4");
  EXPECT_EQ(record->currency.currencyDigits, 4);
}

TEST_F(LocaleRecordTest, EveryRecordIsThatOfTheTables) {
  ASSERT_EQ(test::localeRows().size(), 132u);
  for (const test::LocaleRow& row : test::localeRows()) {
    SCOPED_TRACE(row.name);
    mustLoad(row.name);
    ASSERT_EQ(row.fields.size(), 65u);  // 72 but for the seven that follow below
    EXPECT_EQ(fieldsOf(*record), row.fields);
    EXPECT_EQ(text(record->currency.currencyPatternInternational), row.fields.at("currencyPattern"));
    EXPECT_EQ(number(record->currency.currencyDigitsInternational), row.fields.at("currencyDigits"));
    EXPECT_EQ(std::u16string(1, record->currency.currencyDecimalPoint), row.fields.at("decimalPoint"));
    EXPECT_EQ(std::u16string(1, record->currency.currencyGroupSeparator), row.fields.at("groupSeparator"));
    EXPECT_EQ(text(record->identity.posixName), test::widen(row.name));
    EXPECT_EQ(pair(record->identity.languageCode), test::widen(row.name.substr(0, 2)));
    EXPECT_EQ(pair(record->identity.countryCode), test::widen(row.name.substr(3)));
  }
}

TEST_F(LocaleRecordTest, EveryItemIsThatOfTheTables) {
  for (const test::LocaleRow& row : test::localeRows()) {
    mustLoad(row.name);
    ASSERT_EQ(row.items.size(), 143u);
    for (const auto& [index, item] : row.items) {
      EXPECT_EQ(text(record->items[index]), test::itemText(item)) << row.name << " item " << index;
    }
  }
}

// Country codes of names and of data differ in one row: the data has the one of the name.
TEST_F(LocaleRecordTest, DataIsFoundByTheNameAndNotByTheCountryCode) {
  mustLoad("sr_BA");
  EXPECT_EQ(text(record->identity.posixName), u"sr_BA");
  EXPECT_EQ(pair(record->identity.countryCode), u"BA");
  EXPECT_EQ(text(record->items[5]), "BA");
  EXPECT_EQ(text(record->currency.currencyCode), u"BAM");
}

TEST_F(LocaleRecordTest, Figures) {
  std::map<int, int> digits;
  std::map<std::u16string, int> papers;
  std::map<std::string, int> orders;
  std::set<std::u16string> groupings, separators;
  int fonts = 0, tags = 0;
  for (const test::LocaleRow& row : test::localeRows()) {
    mustLoad(row.name);
    ++digits[record->currency.currencyDigits];
    ++papers[text(record->identity.paperName)];
    ++orders[text(record->items[6])];
    groupings.insert({text(record->number.numberGrouping), text(record->currency.currencyGrouping)});
    separators.insert({record->number.groupSeparator});
    EXPECT_NE(record->number.groupSeparator, record->number.decimalPoint) << row.name;
    fonts += record->items[8].length > 0 ? 1 : 0;
    tags += record->items[12].length > 0 ? 1 : 0;
    for (const int index : {103, 118, 137, 141, 142}) EXPECT_EQ(record->items[index].length, 0);
  }
  // Three rows that no name leads to have two digits, A4 paper and the order DMY.
  EXPECT_EQ(digits, (std::map<int, int>{{0, 2}, {2, 91 - 3}, {3, 18}, {4, 24}}));
  EXPECT_EQ(papers, (std::map<std::u16string, int>{{u"A4", 111 - 3}, {u"LETTER", 24}}));
  EXPECT_EQ(orders, (std::map<std::string, int>{{"DMY", 117 - 3}, {"MDY", 4}, {"YDM", 1}, {"YMD", 13}}));
  EXPECT_EQ(groupings, (std::set<std::u16string>{u"2;3", u"3", u"3;2"}));
  EXPECT_EQ(separators, (std::set<std::u16string>{u"'", u",", u".", u"\u00A0", u"\u066C"}));
  EXPECT_EQ(fonts, 7);
  EXPECT_EQ(tags, 46);
}

TEST_F(LocaleRecordTest, OnlyTheCallersFieldsStayAsTheyWere) {
  mustLoad("zh_TW");
  auto* bytes = reinterpret_cast<uint8_t*>(record.get());
  const auto count = [&](size_t from, size_t to) { return std::count(bytes + from, bytes + to, fillByte); };
  const auto size = [](auto& field) { return static_cast<ptrdiff_t>(sizeof field); };
  EXPECT_EQ(count(0, offsetof(LocaleRecord, dateTime)), size(record->requestedName) + size(record->reserved2));
  EXPECT_EQ(count(offsetof(LocaleRecord, reserved1), offsetof(LocaleRecord, measurement)), size(record->reserved1));

  // The other bytes are the same whatever was there before.
  LocaleRecord first = *record;
  std::memset(record.get(), 0, sizeof *record);
  mustLoad("de_DE");
  mustLoad("zh_TW");
  constexpr size_t data = offsetof(LocaleRecord, dateTime);
  EXPECT_EQ(
      std::memcmp(bytes + data, reinterpret_cast<uint8_t*>(&first) + data, offsetof(LocaleRecord, reserved1) - data),
      0);
  constexpr size_t rest = offsetof(LocaleRecord, measurement);
  EXPECT_EQ(std::memcmp(bytes + rest, reinterpret_cast<uint8_t*>(&first) + rest,
                        offsetof(LocaleRecord, items) + sizeof record->items - rest),
            0);
}

TEST_F(LocaleRecordTest, OtherNamesThanTheExactOnesLeaveTheRecord) {
  for (const std::u16string name : {u"en-US", u"EN_US", u"en_us", u"en_U", u"en_US ", u"en_US.UTF-8", u"en", u"de", u"",
                                    u"iw_IL", u"sh_CS", u"sh_YU", u"sr_CS", u"xx_XX", u"English_UnitedStates"}) {
    EXPECT_EQ(load(name), nlsLocaleNameUnknown) << test::narrow(name.data(), static_cast<int>(name.size()));
    EXPECT_TRUE(untouched());
  }
  EXPECT_EQ(host.nls->localeDatabase->loadLocaleRecord(record.get(), nullptr, 0), nlsLocaleNameUnknown);
  EXPECT_EQ(host.nls->localeDatabase->loadLocaleRecord(record.get(), u"en_US", -1), nlsLocaleNameUnknown);
  EXPECT_TRUE(untouched());
}

TEST_F(LocaleRecordTest, WritesNothingOutsideOfTheRecord) {
  for (const auto at : {test::GuardedBuffer::At::end, test::GuardedBuffer::At::start}) {
    test::GuardedBuffer buffer(sizeof(LocaleRecord), at);
    auto* guarded = reinterpret_cast<LocaleRecord*>(buffer.data());
    for (const test::LocaleRow& row : test::localeRows()) {
      const std::u16string name = test::widen(row.name);
      ASSERT_EQ(host.nls->localeDatabase->loadLocaleRecord(guarded, name.data(), 5), 0u);
    }
  }
}

TEST(LocaleData, IdentifiersWithoutData) {
  auto row = std::make_unique<veldnls::LocaleDataRow>();
  std::memset(row.get(), fillByte, sizeof *row);
  static const veldnls::LocaleItemRow sentinel{};
  const veldnls::LocaleItemRow* items = &sentinel;
  for (const int32_t id : {-1, 132, INT32_MIN, INT32_MAX}) {
    EXPECT_EQ(veldnls::copyLocaleData(row.get(), id), nlsLocaleNotFound);
    EXPECT_EQ(veldnls::findLocaleItems(&items, id), nlsLocaleNotFound);
  }
  EXPECT_EQ(items, &sentinel);
  const auto* bytes = reinterpret_cast<const uint8_t*>(row.get());
  EXPECT_TRUE(std::all_of(bytes, bytes + sizeof *row, [](uint8_t byte) { return byte == fillByte; }));
}

TEST(LocaleData, AnIdentifierWithoutDataFillsARecordWithEnUs) {
  for (const int32_t id : {-1, 132}) {
    auto record = std::make_unique<LocaleRecord>();
    veldnls::fillLocaleRecord(record.get(), id);
    EXPECT_EQ(text(record->identity.posixName), u"en_US");
    EXPECT_EQ(text(record->items[0]), "English_UnitedStates");
  }
}

TEST(LocaleData, RowsAreZeroAheadOfTheirFieldsAndBehindTheirTexts) {
  auto row = std::make_unique<veldnls::LocaleDataRow>();
  for (int32_t id = 0; id < 132; ++id) {
    std::memset(row.get(), fillByte, sizeof *row);
    ASSERT_EQ(veldnls::copyLocaleData(row.get(), id), 0u);
    for (const uint8_t byte : row->reserved) EXPECT_EQ(byte, 0);
    for (const auto& name : row->monthNames) {
      for (int i = name.count; i < 78; ++i) EXPECT_EQ(name.text[i], u'\0');
    }
    for (int i = row->dateTimeFormat.count; i < 180; ++i) EXPECT_EQ(row->dateTimeFormat.text[i], u'\0');
    EXPECT_EQ(row->decimalPoint.count, 1);
    EXPECT_EQ(row->groupSeparator.count, 1);
  }
}

}  // namespace
