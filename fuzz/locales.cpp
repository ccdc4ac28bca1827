// Locale objects: names that make one, with memory that may fail, and the slots that neither format nor parse.
//
// Input: what is done, a choice, a number (one byte each), then texts as units, the first with its length in front.
#include <array>
#include <cstring>

#include "faults/failing_memory.h"
#include "fuzz/support/locales.h"
#include "locale/name_tables.h"
#include "veldnls/nls.h"
#include "veldnls/status.h"

namespace fuzz {

namespace {

struct Case {
  QZLocale* locale;
  uint8_t choice;
  uint8_t number;
  std::u16string first;
  std::u16string second;
};

QZNLS* nls() { return host().nls; }

const LocaleNameRow* findName(std::u16string_view name) {
  for (const LocaleNameRow& row : veldnls::localeNameTable) {
    if (name == std::u16string_view(row.posixName, 5)) return &row;
  }
  return nullptr;
}

// ---- Names ----

std::u16string_view identityOf(const QZLocale* locale) { return viewOf(locale->record->identity.posixName); }

void checkObject(QZLocale* locale, std::u16string_view name) {
  require(locale->owner == nls() && std::memcmp(locale->magic, "nevo", 4) == 0, "the header of a locale");
  require(identityOf(locale) == name && viewOf(locale->record->requestedName) == name, "a locale has its own data");
  char16_t copy[62];
  int32_t length = 0;
  require(locale->getLocaleName(locale, copy, &length) == 0, "a locale has a name");
  require(std::u16string_view(copy, static_cast<size_t>(length)) == name, "a locale has the name it was made with");
  require(locale->getLocaleName(locale, nullptr, &length) == nlsNullLocaleOutput, "no output for a name");
  char16_t language[2];
  require(locale->getLanguage(locale, language, &length) == 0 && length == 2, "a locale has a language");
  require(std::u16string_view(language, 2) == name.substr(0, 2), "the language is that of the name");
}

// The request for memory with the number of the case fails, and all behind it or not; without a number none does.
void checkCreation(const Case& what) {
  constexpr int never = 1000;
  const int failing = what.number % 8;
  const uint64_t used = faults_test::usedBytes(nls()->pool);
  const LocaleNameRow* row = findName(what.first);
  bool failed = false;
  QZLocale* locale = nullptr;
  for (const At at : {At::end, At::start}) {
    const auto failure = (what.choice & 1) != 0 ? faults_test::Failure::once : faults_test::Failure::fromThenOn;
    {
      const faults_test::FailingMemory memory(host().memory, failure, failing == 0 ? never : failing);
      const char16_t* name = placeText(what.first, at);
      const int32_t length = lengthOf(what.first);
      locale = nls()->createLocale(nls(), name, (what.choice & 2) != 0 ? -length - 1 : length);
      failed = memory.failed();
    }
    const bool wanted = row != nullptr && (what.choice & 2) == 0;
    require((locale != nullptr) == (wanted && !failed), "exactly the names make locales, if memory lasts");
    if (locale != nullptr) {
      checkObject(locale, what.first);
      require(locale->destroy(locale) == 0, "a locale ends");
    }
    require(faults_test::usedBytes(nls()->pool) == used, "nothing is left of a locale");
  }
}

// What a look-up delivers names a locale, but for the retired code.
void checkFoundName(const Case& what) {
  constexpr uint16_t modes[] = {NLS_LOCALE_FALLBACK, NLS_LOCALE_STRICT, NLS_LOCALE_WIDE};
  const LocaleNameRow* row = nullptr;
  const uint16_t mode = modes[what.choice % std::size(modes)];
  const NlsStatus status =
      nls()->findLocaleEntry(nls(), placeText(what.first, At::end), lengthOf(what.first), mode, &row);
  if (findName(what.first) != nullptr) require(status == 0 && row == findName(what.first), "a name finds its own row");
  if (row == nullptr) return;
  const std::u16string_view name(row->posixName, static_cast<size_t>(row->posixNameLength));
  QZLocale* locale = nls()->createLocale(nls(), row->posixName, row->posixNameLength);
  require((locale != nullptr) == (name != u"iw_IL"), "what was found makes a locale");
  if (locale == nullptr) return;
  checkObject(locale, name);
  locale->destroy(locale);
}

void checkRecord(const Case& what) {
  constexpr uint8_t before = 0xA7;
  static Area area(1 << 16);
  const Room room = area.place(sizeof(LocaleRecord), At::end);
  std::ranges::fill(room, before);
  std::ranges::fill(Area::beside(room, At::end), canary);
  auto* record = reinterpret_cast<LocaleRecord*>(room.data());
  const NlsStatus status =
      nls()->localeDatabase->loadLocaleRecord(record, placeText(what.first, At::end), lengthOf(what.first));
  require(isUntouched(Area::beside(room, At::end)), "a byte is written outside of the record");
  if (findName(what.first) == nullptr) {
    require(status == nlsLocaleNameUnknown, "other names have no data");
    require(std::ranges::all_of(room, [](uint8_t byte) { return byte == before; }), "a failure leaves the record");
    return;
  }
  require(status == 0 && viewOf(record->identity.posixName) == what.first, "a name has its data");
}

// ---- Other slots ----

// By their bytes, the low one of a unit first.
int orderOfBytes(std::u16string_view a, std::u16string_view b) {
  for (size_t i = 0; i < a.size(); ++i) {
    const std::array<int, 2> left = {a[i] & 0xFF, a[i] >> 8};
    const std::array<int, 2> right = {b[i] & 0xFF, b[i] >> 8};
    if (left != right) return left < right ? -1 : 1;
  }
  return 0;
}

int expectedOrder(std::u16string_view a, std::u16string_view b, bool ignoresBlanks) {
  if (a.size() < b.size()) return -expectedOrder(b, a, ignoresBlanks);
  const int order = orderOfBytes(b, a.substr(0, b.size()));
  if (order != 0) return -order;
  std::u16string_view rest = a.substr(b.size());
  if (rest.empty() || !ignoresBlanks) return rest.empty() ? 0 : 1;
  rest.remove_prefix(std::min(rest.find_first_not_of(u' '), rest.size()));
  if (rest.empty()) return 0;
  return rest.front() < u' ' ? -1 : 1;
}

void checkComparison(const Case& what) {
  const int32_t mode = what.number % 3;
  const auto compare = [&](const std::u16string& a, const std::u16string& b, At at) {
    return what.locale->compareText(what.locale, placeText(a, at), lengthOf(a), placeSecondText(b, at), lengthOf(b),
                                    mode);
  };
  const int expected = expectedOrder(what.first, what.second, mode == NLS_COMPARE_IGNORES_BLANKS);
  for (const At at : {At::end, At::start}) {
    require(compare(what.first, what.second, at) == expected, "texts have the order of their bytes");
    require(compare(what.second, what.first, at) == -expected, "the order turns with the texts");
  }
}

void checkSections(const Case& what) {
  const auto number = static_cast<int32_t>(static_cast<int8_t>(what.number));
  const void* const untouched = &what;
  const void* data = untouched;
  const NlsStatus status = what.locale->getLocaleSection(what.locale, number, &data);
  if (number < 0 || number > NLS_LOCALE_SECTION_ITEMS) {
    require(status == nlsIndexOutOfRange && data == untouched, "a section that there isn't");
    return;
  }
  const auto* start = reinterpret_cast<const uint8_t*>(what.locale->record);
  const auto* section = static_cast<const uint8_t*>(data);
  require(status == 0 && section >= start && section < start + sizeof(LocaleRecord), "a section lies in the record");
}

// An item of any length in the place of the language.
void checkLanguage(const Case& what) {
  QZLocale* locale = changeableLocale(what.locale);
  LocaleItem& item = locale->record->items[NLS_LOCALE_ITEM_LANGUAGE];
  item.length = static_cast<uint16_t>(std::min(what.first.size(), sizeof item.text));
  for (size_t i = 0; i < item.length; ++i) item.text[i] = static_cast<char>(what.first[i]);
  const Written result = written(2, [locale](char16_t* language, int32_t, int32_t* length) {
    return locale->getLanguage(locale, language, length);
  });
  require(result.status == 0 && result.length == 2, "a language always has two letters");
  if (item.length == 0) require(result.units == u"en", "no language is English");
  if (item.length > 2 || item.length == 1) {
    require(result.units == std::u16string(2, untouchedUnit), "an item of another length leaves the output");
  }
  if (item.length == 2) require(result.units.find(untouchedUnit) == std::u16string::npos, "two letters are converted");
}

}  // namespace

void check(Input input) {
  constexpr void (*checks[])(const Case&) = {checkCreation,   checkFoundName, checkRecord,
                                             checkComparison, checkSections,  checkLanguage};
  const uint8_t kind = input.byte();
  Case what{chooseLocale(input), input.byte(), input.byte(), {}, {}};
  const size_t length = input.byte();
  what.first = readUnits(input, length, u"_-");
  what.second = readUnits(input, 300, u"_-");
  checks[kind % std::size(checks)](what);
}

}  // namespace fuzz
