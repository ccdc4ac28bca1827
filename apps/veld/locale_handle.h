// Locales by name, and one locale as this program uses it.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "veldnls/nls.h"

namespace veld {

// A text of a locale's record.
inline std::u16string_view viewOf(const NlsText60& text) { return {text.text, static_cast<size_t>(text.count)}; }

// The row of a locale by its number, 0 to NLS_LOCALE_COUNT - 1.
const LocaleNameRow& localeRow(QZNLS& nls, int32_t localeId);

// The row of any name that the library's look-up answers with a locale of that language: POSIX name, language code,
// long name or name of the language, and the library's number and that of Windows, as QUOID:51 and WLCID:1033. Tells
// on standard error that a country isn't known. Throws Failure, with the nearest known names, for another name.
const LocaleNameRow& findLocale(QZNLS& nls, const std::string& name);

// Units that the name of the host's locale may have.
inline constexpr size_t localeNameRoom = sizeof QZNLS::hostLocaleName / sizeof(char16_t);

// The name of the host's locale.
std::string hostLocale(QZNLS& nls);

// A locale object. Its slots work on a copy of the library's record, which this program may change.
class Locale {
 public:
  // Throws Failure as findLocale.
  Locale(QZNLS& nls, const std::string& name);

  // The first argument of the slots.
  QZLocale* slots() { return &view_; }
  LocaleRecord& record() { return *record_; }
  const LocaleRecord& record() const { return *record_; }
  const LocaleNameRow& row() const { return row_; }

  // The texts of the item table, with their escapes turned into characters.
  std::u16string item(size_t index) const;

 private:
  struct Destroy {
    void operator()(QZLocale* locale) const { locale->destroy(locale); }
  };

  const LocaleNameRow& row_;
  std::unique_ptr<QZLocale, Destroy> locale_;
  std::unique_ptr<LocaleRecord> record_;
  QZLocale view_;
};

// Puts a format in the place of one of the record's. False for one that is longer than the record has room for.
bool setFormat(NlsText60& field, std::u16string_view format);

}  // namespace veld
