#include "locale/load_locale_record.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "locale/date_time_fields.h"
#include "locale/locale_data.h"
#include "locale/name_tables.h"
#include "locale/qznlsldb.h"

namespace veldnls {

namespace {

// Rows are zero behind their texts, so that whole buffers are copied. The generator holds texts to the room of the
// record, which is less than that of some rows.
template <class Text>
void copyText(NlsText60& to, const Text& from) {
  to.count = from.count;
  std::copy_n(from.text, std::size(to.text), to.text);
}

template <class Text, size_t count>
void copyText(NlsText60 (&to)[count], const Text (&from)[count]) {
  for (size_t i = 0; i < count; ++i) copyText(to[i], from[i]);
}

void copyNumber(LocaleNumber& to, const LocaleDataRow& from) {
  copyText(to.numberPattern, from.numberPattern);
  copyText(to.numberGrouping, from.numberGrouping);
  to.decimalPoint = from.decimalPoint.text[0];
  to.groupSeparator = from.groupSeparator.text[0];
}

void copyCurrency(LocaleCurrency& to, const LocaleDataRow& from) {
  copyText(to.currencyPattern, from.currencyPattern);
  copyText(to.currencyPatternInternational, from.currencyPatternInternational);
  copyText(to.currencyGrouping, from.currencyGrouping);
  copyText(to.currencySymbol, from.currencySymbol);
  copyText(to.currencyCode, from.currencyCode);
  to.currencyDecimalPoint = from.currencyDecimalPoint.text[0];
  to.currencyGroupSeparator = from.currencyGroupSeparator.text[0];
  to.currencyDigits = from.currencyDigits;
  to.currencyDigitsInternational = from.currencyDigitsInternational;
}

void copyItems(LocaleItem (&to)[NLS_LOCALE_ITEM_COUNT], const LocaleItemRow& from) {
  std::memset(to, 0, sizeof to);
  for (int32_t i = 0; i < NLS_LOCALE_ITEM_COUNT; ++i) {
    const std::string_view text = localeItem(from, i);
    std::copy(text.begin(), text.end(), to[i].text);
    to[i].length = static_cast<uint16_t>(text.size());
  }
}

}  // namespace

void fillLocaleRecord(LocaleRecord* record, int32_t localeId) {
  LocaleDataRow row;
  if (copyLocaleData(&row, localeId) != 0) copyLocaleData(&row, defaultLocaleRow.localeId);
  const LocaleItemRow* items = nullptr;
  if (findLocaleItems(&items, localeId) != 0) findLocaleItems(&items, defaultLocaleRow.localeId);

  copyDateTimeFields(record->dateTime, row, [](auto& to, const auto& from) { copyText(to, from); });
  copyNumber(record->number, row);
  copyCurrency(record->currency, row);
  // An assignment may leave out the bytes behind the last field. They are zeros too, so that two records of a locale
  // are equal byte by byte.
  std::memcpy(&record->percent, &row.percent, sizeof row.percent);
  record->measurement = row.measurement;
  record->identity = row.identity;
  copyItems(record->items, *items);
}

NlsStatus loadLocaleRecord(LocaleRecord* record, const char16_t* name, int32_t length) {
  int32_t localeId = 0;
  const NlsStatus status = findLocaleIdByName(name, length, &localeId);
  if (status == 0) fillLocaleRecord(record, localeId);
  return status;
}

}  // namespace veldnls
