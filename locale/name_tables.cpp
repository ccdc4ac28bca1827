#include "locale/name_tables.h"

#include <iterator>

namespace veldnls {

const LocaleNameRow localeNameTable[] = {
#include "locales/names.inc"
};
static_assert(std::size(localeNameTable) == NLS_LOCALE_COUNT);

const LocaleNameRow languageDefaultTable[] = {
#include "locales/language_defaults.inc"
};
static_assert(std::size(languageDefaultTable) == languageDefaultCount);

const LanguageCodeRow languageCodeTable[] = {
#include "locales/language_codes.inc"
};
static_assert(std::size(languageCodeTable) == languageCodeCount);

const WindowsLanguageRow windowsLanguageTable[] = {
#include "locales/windows_languages.inc"
};
static_assert(std::size(windowsLanguageTable) == windowsLanguageCount);

}  // namespace veldnls
