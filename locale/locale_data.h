// The data rows of the locales: fetch by locale identifier. Contents come from data/locale/. The module holds every
// text once and rows as numbers of texts; a fetch expands a row.
#pragma once

#include <string_view>

#include "veldnls/locale_record.h"

namespace veldnls {

// Three rows more than locales: no identifier leads to them.
inline constexpr int32_t localeDataCount = 135;

struct LocaleText78 {
  int32_t count;
  char16_t text[78];
};

struct LocaleText180 {
  int32_t count;
  char16_t text[180];
};

// A data row. Its fields are those of the record, but that some have more room and that signs are texts.
struct LocaleDataRow {
  uint8_t reserved[96];  // zero in all rows
  LocaleText78 dayNames[7];
  NlsText60 dayAbbreviations[7];
  LocaleText78 monthNames[12];
  NlsText60 monthAbbreviations[12];
  NlsText60 dateFormatShort;
  NlsText60 dateFormatMedium;
  NlsText60 dateFormatLong;
  LocaleText180 dateTimeFormat;
  LocaleText180 timeFormat24;
  LocaleText180 timeFormat12;
  NlsText60 amText;
  NlsText60 pmText;
  char16_t dateSeparator;
  char16_t timeSeparator;
  NlsText60 numberPattern;
  NlsText60 numberGrouping;
  NlsText60 decimalPoint;
  NlsText60 groupSeparator;
  NlsText60 currencyPattern;
  NlsText60 currencyPatternInternational;
  NlsText60 currencyGrouping;
  NlsText60 currencySymbol;
  NlsText60 currencyCode;
  NlsText60 currencyDecimalPoint;
  NlsText60 currencyGroupSeparator;
  uint16_t currencyDigits;
  uint16_t currencyDigitsInternational;
  LocalePercent percent;
  int32_t measurement;
  LocaleIdentity identity;
};
static_assert(sizeof(LocaleDataRow) == 9216);

// Items of a data row, as numbers of texts. Equal texts have one number; 0 is the empty text.
struct LocaleItemRow {
  uint16_t items[NLS_LOCALE_ITEM_COUNT];
};

// Copies the data of a locale, zero-filled behind every text. Returns 0, or nlsLocaleNotFound with `*row` untouched
// when no row belongs to the identifier.
NlsStatus copyLocaleData(LocaleDataRow* row, int32_t localeId);

// Finds the items of a locale. Returns 0, or nlsLocaleNotFound with `*row` untouched.
NlsStatus findLocaleItems(const LocaleItemRow** row, int32_t localeId);

// The text of an item.
std::string_view localeItem(const LocaleItemRow& row, int32_t index);

}  // namespace veldnls
