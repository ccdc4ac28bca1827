// The environment's locale as a Windows identifier. It stands here because the identifiers are data of the locale
// names.
#include <algorithm>
#include <cstddef>

#include "core/environment.h"
#include "core/session.h"
#include "locale/qznlsldb.h"

namespace veldnls {

namespace {

// More than any name that tells a locale by its language and country; the rest isn't looked at.
constexpr size_t longestName = 16;

}  // namespace

uint32_t environmentLocaleId() {
  const std::string_view locale = environmentLocale("LC_MESSAGES");
  char16_t name[longestName];
  const size_t length = std::min(locale.find('.'), std::min(locale.size(), longestName));
  std::transform(locale.begin(), locale.begin() + static_cast<ptrdiff_t>(length), name,
                 [](char c) { return static_cast<unsigned char>(c); });
  // "C", "POSIX" and languages without data come out as the default row.
  const LocaleNameRow* row = nullptr;
  findLocaleEntry(nullptr, name, static_cast<int32_t>(length), NLS_LOCALE_FALLBACK, &row);
  return row->windowsLcid;
}

}  // namespace veldnls
