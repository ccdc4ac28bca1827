#include "locale/locale_data.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "core/wide_text.h"
#include "locale/date_time_fields.h"
#include "locale/name_tables.h"
#include "veldnls/status.h"

namespace veldnls {

namespace {

// Where a text stands among the characters of all texts.
struct TextPlace {
  uint16_t offset;
  uint16_t length;
};

// A row with the numbers of its texts, in the order in which the generator writes them.
struct CompactRow {
  char16_t languageCode[2];
  char16_t countryCode[2];
  uint16_t dayNames[7];
  uint16_t dayAbbreviations[7];
  uint16_t monthNames[12];
  uint16_t monthAbbreviations[12];
  uint16_t dateFormatShort;
  uint16_t dateFormatMedium;
  uint16_t dateFormatLong;
  uint16_t dateTimeFormat;
  uint16_t timeFormat24;
  uint16_t timeFormat12;
  uint16_t amText;
  uint16_t pmText;
  uint16_t numberPattern;
  uint16_t numberGrouping;
  uint16_t decimalPoint;
  uint16_t groupSeparator;
  uint16_t currencyPattern;
  uint16_t currencyGrouping;
  uint16_t currencySymbol;
  uint16_t currencyCode;
  uint16_t percentPattern;
  uint16_t languageName;
  uint16_t countryName;
  uint16_t paperName;
  char16_t dateSeparator;
  char16_t timeSeparator;
  char16_t percentSign;
  uint16_t currencyDigits;
  int32_t measurement;
  uint16_t paperHeight;
  uint16_t paperWidth;
};

constexpr CompactRow recordRows[] = {
#include "locales/record_rows.inc"
};
static_assert(std::size(recordRows) == localeDataCount);

constexpr TextPlace recordTexts[] = {
#include "locales/record_texts.inc"
};

constexpr char16_t recordCharacters[] =
#include "locales/record_characters.inc"
    ;

constexpr LocaleItemRow itemRows[] = {
#include "locales/item_rows.inc"
};
static_assert(std::size(itemRows) == localeDataCount);

constexpr TextPlace itemTexts[] = {
#include "locales/item_texts.inc"
};

constexpr char itemCharacters[] =
#include "locales/item_characters.inc"
    ;

// The place of a locale's data among the rows, or -1. Data is found by language and country, as the locale's name
// spells them: the row of sr_BA has another country code.
int32_t dataPlace(int32_t localeId) {
  const auto* name = std::find_if(std::begin(localeNameTable), std::end(localeNameTable),
                                  [=](const LocaleNameRow& row) { return row.localeId == localeId; });
  if (name == std::end(localeNameTable)) return -1;
  const auto* row = std::find_if(std::begin(recordRows), std::end(recordRows), [=](const CompactRow& candidate) {
    return wideEqualExact(candidate.languageCode, 2, name->posixName, 2) &&
           wideEqualExact(candidate.countryCode, 2, name->posixName + 3, 2);
  });
  return row != std::end(recordRows) ? static_cast<int32_t>(row - std::begin(recordRows)) : -1;
}

// The buffer is zero before.
template <class Text>
void expand(Text& target, uint16_t number) {
  const TextPlace place = recordTexts[number];
  target.count = place.length;
  std::copy_n(recordCharacters + place.offset, place.length, target.text);
}

template <class Text, size_t count>
void expand(Text (&target)[count], const uint16_t (&numbers)[count]) {
  for (size_t i = 0; i < count; ++i) expand(target[i], numbers[i]);
}

// Amounts of money have the signs of plain numbers, and the same form at home and abroad.
void expandNumbers(LocaleDataRow& row, const CompactRow& source) {
  expand(row.numberPattern, source.numberPattern);
  expand(row.numberGrouping, source.numberGrouping);
  expand(row.decimalPoint, source.decimalPoint);
  expand(row.groupSeparator, source.groupSeparator);
  expand(row.currencyPattern, source.currencyPattern);
  expand(row.currencyPatternInternational, source.currencyPattern);
  expand(row.currencyGrouping, source.currencyGrouping);
  expand(row.currencySymbol, source.currencySymbol);
  expand(row.currencyCode, source.currencyCode);
  expand(row.currencyDecimalPoint, source.decimalPoint);
  expand(row.currencyGroupSeparator, source.groupSeparator);
  row.currencyDigits = source.currencyDigits;
  row.currencyDigitsInternational = source.currencyDigits;
  expand(row.percent.percentPattern, source.percentPattern);
  row.percent.percentSign = source.percentSign;
}

void expandIdentity(LocaleDataRow& row, const CompactRow& source) {
  row.measurement = source.measurement;
  LocaleIdentity& identity = row.identity;
  std::copy_n(source.languageCode, 2, identity.languageCode);
  std::copy_n(source.countryCode, 2, identity.countryCode);
  identity.posixName = {
      5, {source.languageCode[0], source.languageCode[1], u'_', source.countryCode[0], source.countryCode[1]}};
  expand(identity.languageName, source.languageName);
  expand(identity.countryName, source.countryName);
  expand(identity.paperName, source.paperName);
  identity.paperHeight = source.paperHeight;
  identity.paperWidth = source.paperWidth;
}

}  // namespace

NlsStatus copyLocaleData(LocaleDataRow* row, int32_t localeId) {
  const int32_t place = dataPlace(localeId);
  if (place < 0) return nlsLocaleNotFound;
  std::memset(row, 0, sizeof *row);
  copyDateTimeFields(*row, recordRows[place], [](auto& text, const auto& numbers) { expand(text, numbers); });
  expandNumbers(*row, recordRows[place]);
  expandIdentity(*row, recordRows[place]);
  return 0;
}

NlsStatus findLocaleItems(const LocaleItemRow** row, int32_t localeId) {
  const int32_t place = dataPlace(localeId);
  if (place < 0) return nlsLocaleNotFound;
  *row = &itemRows[place];
  return 0;
}

std::string_view localeItem(const LocaleItemRow& row, int32_t index) {
  const TextPlace place = itemTexts[row.items[index]];
  return {itemCharacters + place.offset, place.length};
}

}  // namespace veldnls
