// The constant tables that locale names are looked up in. Contents come from data/locale/; all searches run in table
// order, and the first row that matches wins.
#pragma once

#include <cstdint>

#include "veldnls/encoding.h"

namespace veldnls {

inline constexpr int32_t languageDefaultCount = 61;
inline constexpr int32_t languageCodeCount = 208;
inline constexpr int32_t windowsLanguageCount = 118;

// A language code and one of the names of the language; a code may stand in several rows.
struct LanguageCodeRow {
  char16_t code[2];
  int32_t codeLength;
  char16_t name[60];
  int32_t nameLength;
};

// A Windows primary language identifier and one of the names of the language.
struct WindowsLanguageRow {
  uint16_t primaryLanguage;
  char16_t name[61];
  int32_t nameLength;
};

// The supported locales, by POSIX name.
extern const LocaleNameRow localeNameTable[NLS_LOCALE_COUNT];

// The locale that stands for a language, by POSIX name. Old names of languages are rows of their own; the row of the
// retired code "iw" is named iw_IL, which is no supported locale, and has the identifiers of he_IL.
extern const LocaleNameRow languageDefaultTable[languageDefaultCount];

// Every language that is known by its code, or by its Windows number, with locale data or without: they tell a language
// without data from something that is no language.
extern const LanguageCodeRow languageCodeTable[languageCodeCount];
extern const WindowsLanguageRow windowsLanguageTable[windowsLanguageCount];

// The row that all fallbacks deliver, en_US.
inline constexpr const LocaleNameRow& defaultLocaleRow = languageDefaultTable[12];

}  // namespace veldnls
