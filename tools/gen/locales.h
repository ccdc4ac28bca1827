// The facts of data/locale/, read and checked: each reader stops at the first line that breaks a constraint.
#pragma once

#include <string>
#include <vector>

#include "text.h"

namespace gen {

inline constexpr size_t kLocales = 132;
inline constexpr size_t kLanguageDefaults = 61;
inline constexpr size_t kLanguageCodes = 208;
inline constexpr size_t kWindowsLanguages = 118;
inline constexpr size_t kEncodings = 230;

// One row of either table of locale names.
struct LocaleName {
  Place place;
  std::string posixName;
  std::string countryCode;
  std::string languageName;
  std::string countryName;
  size_t localeId = 0;
  uint32_t windowsLcid = 0;

  std::string longName() const { return languageName + "_" + countryName; }
  std::string languageCode() const { return posixName.substr(0, 2); }
};

// A language by its code or number.
struct LanguageName {
  Place place;
  std::string code;     // of language_codes.tsv
  uint32_t number = 0;  // of windows_languages.tsv
  std::string name;
};

// A codeset of the environment, in normal form, and the code page number that stands for it.
struct Codeset {
  std::string name;
  int64_t number = 0;
};

// The two lists of one locale or one encoding.
struct Lists {
  std::vector<size_t> primary;
  std::vector<size_t> secondary;
};

std::vector<LocaleName> readLocaleNames(const std::string& data);
std::vector<LocaleName> readLanguageDefaults(const std::string& data, const std::vector<LocaleName>& names);
std::vector<LanguageName> readLanguageCodes(const std::string& data);
std::vector<LanguageName> readWindowsLanguages(const std::string& data);
std::vector<Codeset> readCodesets(const std::string& data);

// Lists of encodings by locale identifier.
std::vector<Lists> readLocaleEncodings(const std::string& data, const std::vector<LocaleName>& names);
// The inverse: lists of locale identifiers by CEI, ascending.
std::vector<Lists> invertLocaleEncodings(const std::string& data, const std::vector<Lists>& encodings);

// Fail at the first line that is another than the one that callers know.
void requireFixedNames(const std::vector<LocaleName>& names);
void requireFixedDefaults(const std::vector<LocaleName>& defaults);
void requireFixedLanguageCodes(const std::vector<LanguageName>& rows);
void requireFixedWindowsLanguages(const std::vector<LanguageName>& rows);

// The length of `lines`, or a failure at the file: every table has a fixed number of rows.
void requireRows(const std::string& path, size_t rows, size_t expected);
// Printable ASCII without quote or backslash, in a buffer of `capacity` units that keeps a zero behind the text.
void requireText(const Place& place, const std::string& text, size_t capacity);

}  // namespace gen
