// The environment's locale as a Windows identifier. It stands here because the identifiers are data of the locale
// names.
#include <algorithm>
#include <cstddef>

#include "core/environment.h"
#include "core/session.h"
#include "locale/name_tables.h"
#include "locale/qznlsldb.h"

namespace veldnls {

namespace {

// Letters of a language code.
constexpr size_t languageLength = 2;
// More than any name that tells a locale by its language and country; the rest isn't looked at.
constexpr size_t longestName = 16;

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

// True for "ll", "ll_CC" and "ll-CC". Nothing else names a locale here; a look-up knows further forms, as "WLCID:1033",
// which mean nothing in an environment.
bool beginsWithLanguage(std::string_view name) {
  return name.size() >= languageLength && std::all_of(name.begin(), name.begin() + languageLength, isLetter) &&
         (name.size() == languageLength || name[languageLength] == '_' || name[languageLength] == '-');
}

}  // namespace

uint32_t environmentLocaleId() {
  const std::string_view locale = environmentLocale("LC_MESSAGES");
  const std::string_view text = locale.substr(0, std::min(locale.find('.'), longestName));
  if (!beginsWithLanguage(text)) return defaultLocaleRow.windowsLcid;
  char16_t name[longestName];
  std::transform(text.begin(), text.end(), name, [](char c) { return static_cast<unsigned char>(c); });
  // A separator stands behind a bare language too: a look-up takes "QU" for the beginning of a numeric form.
  name[languageLength] = u'_';
  const size_t length = std::max(text.size(), languageLength + 1);
  // Languages without data come out as the default row.
  const LocaleNameRow* row = nullptr;
  findLocaleEntry(nullptr, name, static_cast<int32_t>(length), NLS_LOCALE_FALLBACK, &row);
  return row->windowsLcid;
}

}  // namespace veldnls
