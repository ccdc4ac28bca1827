// Makes and ends locales.
#include "locale/locale_object.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "core/qznlsstub.h"
#include "locale/dates/dates.h"
#include "locale/numbers/formats.h"
#include "locale/numbers/parsers.h"

namespace veldnls {
namespace {

constexpr char typeName[] = "QZLocale handle";

const LocaleDateTime& sectionOf(const LocaleRecord& record, const LocaleDateTime* /*kind*/) { return record.dateTime; }
const LocaleNumber& sectionOf(const LocaleRecord& record, const LocaleNumber* /*kind*/) { return record.number; }

// The slot of a function that works on one section of the record, which it takes as first argument.
template <auto>
struct SectionSlot;
template <class Section, class... Arguments, NlsStatus (*function)(const Section&, Arguments...)>
struct SectionSlot<function> {
  static NlsStatus call(QZLocale* locale, Arguments... arguments) {
    return function(sectionOf(*locale->record, static_cast<const Section*>(nullptr)), arguments...);
  }
};

NlsStatus formatPointerSlot(QZLocale* /*locale*/, const void* value, int32_t width, uint32_t flags, char16_t* output,
                            int32_t capacity, int32_t* length) {
  return formatPointer(value, width, flags, output, capacity, length);
}

NlsStatus formatCurrencySlot(QZLocale* locale, double value, int32_t width, int32_t precision, uint32_t flags,
                             char16_t* output, int32_t capacity, int32_t* length) {
  const LocaleRecord& record = *locale->record;
  return formatCurrency(record.number, record.currency.currencySymbol, value, width, precision, flags, output, capacity,
                        length);
}

NlsStatus parseDoubleSlot(QZLocale* locale, const char16_t* text, int32_t length, double* value, int32_t* consumed) {
  return parseDouble(locale != nullptr ? &locale->record->number : nullptr, text, length, value, consumed);
}

NlsStatus reservedSlot(QZLocale* /*locale*/, ...) { return 0; }

NlsStatus destroyLocale(void* handle) {
  auto* locale = static_cast<QZLocale*>(handle);
  XmPool* pool = locale->owner->pool;
  nlsLockDestroy(locale->messageLock);
  nlsListDestroy(locale->messageTrack);
  nlsPoolFree(pool, locale->record);
  nlsPoolFree(pool, locale);
  return 0;
}

constexpr QZLocale prototype = {.magic = {'n', 'e', 'v', 'o'},
                                .typeName = typeName,
                                .destroy = destroyLocale,
                                .owner = nullptr,
                                .nameLength = 0,
                                .name = {},
                                .getLanguage = getLanguage,
                                .formatDate = SectionSlot<formatDate>::call,
                                .formatTime = SectionSlot<formatTime>::call,
                                .formatDouble = SectionSlot<formatDouble>::call,
                                .formatInt32 = SectionSlot<formatInt32>::call,
                                .formatInt64 = SectionSlot<formatInt64>::call,
                                .formatUInt32 = SectionSlot<formatUInt32>::call,
                                .formatUInt64 = SectionSlot<formatUInt64>::call,
                                .formatPointer = formatPointerSlot,
                                .formatCurrency = formatCurrencySlot,
                                .formatPercent = SectionSlot<formatPercent>::call,
                                .parseDateTime = SectionSlot<parseDateTime>::call,
                                .parseDate = SectionSlot<parseDate>::call,
                                .parseTime = SectionSlot<parseTime>::call,
                                .parseDouble = parseDoubleSlot,
                                .parseInt32 = SectionSlot<parseInt32>::call,
                                .parseInt64 = SectionSlot<parseInt64>::call,
                                .parseUInt32 = SectionSlot<parseUInt32>::call,
                                .parseUInt64 = SectionSlot<parseUInt64>::call,
                                .reserved1 = reservedSlot,
                                .reserved2 = reservedSlot,
                                .reserved3 = reservedSlot,
                                .compareText = compareText,
                                .formatDateTime = SectionSlot<formatDateTime>::call,
                                .getLocaleSection = getLocaleSection,
                                .getLocaleMessage = getLocaleMessage,
                                .getLocaleName = getLocaleName,
                                .record = nullptr,
                                .messageLock = nullptr,
                                .messageTrack = nullptr};

template <size_t room>
int32_t copyName(char16_t (&to)[room], const char16_t* name, int32_t length) {
  const int32_t count = std::min(length, static_cast<int32_t>(room));
  std::copy_n(name, count, to);
  return count;
}

// The names that can make a locale are shorter than the room for them; others are refused here.
bool loadRecord(QZLocale* locale, const char16_t* name, int32_t length) {
  LocaleRecord* record = locale->record;
  locale->nameLength = copyName(locale->name, name, length);
  record->requestedName.count = copyName(record->requestedName.text, name, length);
  const NlsStatus status = locale->owner->localeDatabase->loadLocaleRecord(record, name, length);
  return status == 0 || status == nlsLocaleNotFound;
}

bool createMessageServices(QZLocale* locale) {
  constexpr int32_t plainLock[6] = {};
  constexpr int32_t keyedListOfModules[6] = {1, 0, 1, 0x20000000, 0, 0};
  void* host = locale->owner->host;
  locale->messageLock = nlsLockCreate(host, plainLock, nullptr, "qznls Locale QZMSG lock");
  if (locale->messageLock == nullptr) return false;
  locale->messageTrack = nlsListCreate(host, keyedListOfModules, nullptr, "qznls Locale QZMSG track");
  if (locale->messageTrack == nullptr) return false;
  nlsTreeSetOption(locale->messageTrack, 0, 1);
  return true;
}

}  // namespace

QZLocale* createLocale(QZNLS* nls, const char16_t* name, int32_t length) {
  if (length < 0 || (name == nullptr && length != 0)) return nullptr;
  auto* locale = nlsPoolNew<QZLocale>(nls->pool);
  if (locale == nullptr) return nullptr;
  *locale = prototype;
  locale->owner = nls;
  locale->record = nlsPoolNew<LocaleRecord>(nls->pool);
  if (locale->record != nullptr && loadRecord(locale, name, length) && createMessageServices(locale)) return locale;
  // The host sees the lock end behind the record here, and ahead of it where a locale is destroyed.
  nlsPoolFree(nls->pool, locale->record);
  locale->record = nullptr;
  destroyLocale(locale);
  return nullptr;
}

QZLocale* createDefaultLocale(QZNLS* nls) { return nls->createLocale(nls, nullptr, 0); }

}  // namespace veldnls
