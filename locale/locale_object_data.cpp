// What a locale tells of itself.
#include <algorithm>

#include "locale/locale_object.h"
#include "veldnls/cei.h"
#include "veldnls/status.h"

namespace veldnls {
namespace {

constexpr int32_t languageUnits = 2;

void widenLanguage(QZNLS* nls, const char* letters, char16_t* language) {
  TranscodingPipeline* widen = nls->createToUtf16Pipeline(nls, U_WLATIN1_CE, nullptr, nullptr);
  if (widen == nullptr) return;
  uint32_t written = 0;
  widen->transcode(widen, letters, languageUnits, language, languageUnits * sizeof(char16_t), &written, nullptr);
  widen->destroy(widen);
}

const void* sectionAt(const LocaleRecord& record, int32_t section) {
  switch (section) {
    case NLS_LOCALE_SECTION_RECORD:
      return &record;
    case NLS_LOCALE_SECTION_RESERVED_1:
      return record.reserved1;
    case NLS_LOCALE_SECTION_RESERVED_2:
      return record.reserved2;
    case NLS_LOCALE_SECTION_CURRENCY:
      return &record.currency;
    case NLS_LOCALE_SECTION_NUMBER:
      return &record.number;
    case NLS_LOCALE_SECTION_DATE_TIME:
      return &record.dateTime;
    case NLS_LOCALE_SECTION_PERCENT:
      return &record.percent;
    case NLS_LOCALE_SECTION_MEASUREMENT:
      return &record.measurement;
    case NLS_LOCALE_SECTION_IDENTITY:
      return &record.identity;
    case NLS_LOCALE_SECTION_ITEMS:
      return record.items;
    default:
      return nullptr;
  }
}

}  // namespace

NlsStatus getLanguage(QZLocale* locale, char16_t language[2], int32_t* length) {
  const LocaleItem& item = locale->record->items[NLS_LOCALE_ITEM_LANGUAGE];
  if (item.length == 0) {
    std::copy_n(u"en", languageUnits, language);
  } else if (item.length == languageUnits) {
    widenLanguage(locale->owner, item.text, language);
  }
  if (length != nullptr) *length = languageUnits;
  return 0;
}

NlsStatus getLocaleSection(QZLocale* locale, int32_t section, const void** data) {
  const void* found = sectionAt(*locale->record, section);
  if (found == nullptr) return nlsIndexOutOfRange;
  *data = found;
  return 0;
}

NlsStatus getLocaleName(QZLocale* locale, char16_t* name, int32_t* length) {
  if (name == nullptr || length == nullptr) return nlsNullLocaleOutput;
  *length = locale->nameLength;
  std::copy_n(locale->name, locale->nameLength, name);
  return 0;
}

}  // namespace veldnls
