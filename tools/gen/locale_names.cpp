#include <algorithm>
#include <map>
#include <tuple>

#include "locales.h"

namespace gen {

namespace {

constexpr size_t kNameCapacity = 32;
constexpr size_t kCodeNameCapacity = 60;
constexpr size_t kWindowsNameCapacity = 61;
constexpr uint32_t kPrimaryLanguageMask = 0x3FF;

bool isLower(char c) { return c >= 'a' && c <= 'z'; }
bool isUpper(char c) { return c >= 'A' && c <= 'Z'; }

void requirePosixName(const Place& place, const std::string& name) {
  require(name.size() == 5 && isLower(name[0]) && isLower(name[1]) && name[2] == '_' && isUpper(name[3]) &&
              isUpper(name[4]),
          place, "a locale's name has the form ll_CC: " + name);
}

// Locales whose Windows identifier has no sublanguage, and those that Windows doesn't know.
const std::map<std::string, uint32_t> kBareLcids = {
    {"ar_IN", 0x0001}, {"ar_SD", 0x0001}, {"en_BE", 0x0009}, {"en_BW", 0x0009}, {"en_HK", 0x0009},
    {"es_US", 0x000A}, {"fa_IN", 0x0029}, {"gv_GB", 0},      {"kw_GB", 0},      {"ru_UA", 0x0019},
};

// Locales that share an identifier with a sublanguage, in table order.
const std::map<uint32_t, std::vector<std::string>> kSharedLcids = {
    {0x0414, {"nb_NO", "no_NO"}},
    {0x0C1A, {"sr_ME", "sr_RS", "sr_YU"}},
    {0x081A, {"sh_ME", "sh_RS"}},
    {0x141A, {"bs_BA", "hr_BA"}},
};

void checkWindowsLcids(const std::string& path, const std::vector<LocaleName>& names) {
  std::map<uint32_t, std::vector<std::string>> holders;
  for (const LocaleName& row : names) {
    const auto bare = kBareLcids.find(row.posixName);
    if (row.windowsLcid <= kPrimaryLanguageMask) {
      require(bare != kBareLcids.end() && bare->second == row.windowsLcid, row.place,
              row.posixName + " needs a Windows identifier with a sublanguage");
    } else {
      require(bare == kBareLcids.end(), row.place, row.posixName + " has no sublanguage in Windows");
      holders[row.windowsLcid].push_back(row.posixName);
    }
  }
  std::erase_if(holders, [](const auto& entry) { return entry.second.size() == 1; });
  require(holders == kSharedLcids, {path, 0}, "other locales share a Windows identifier than the four known groups");
}

// Identifiers run by language name, then country name.
void checkLocaleIds(const std::vector<LocaleName>& names) {
  std::vector<const LocaleName*> order;
  for (const LocaleName& row : names) order.push_back(&row);
  std::sort(order.begin(), order.end(), [](const LocaleName* a, const LocaleName* b) {
    return std::tie(a->languageName, a->countryName) < std::tie(b->languageName, b->countryName);
  });
  for (size_t id = 0; id < order.size(); ++id) {
    require(order[id]->localeId == id, order[id]->place,
            order[id]->posixName + " is locale " + std::to_string(id) + " by language and country name");
  }
}

}  // namespace

void requireRows(const std::string& path, size_t rows, size_t expected) {
  require(rows == expected, {path, 0}, std::to_string(rows) + " rows where there are " + std::to_string(expected));
}

void requireText(const Place& place, const std::string& text, size_t capacity) {
  require(!text.empty(), place, "empty text");
  require(text.size() < capacity, place,
          "a text of " + std::to_string(text.size()) + " units, the buffer takes " + std::to_string(capacity - 1));
  for (const char c : text) {
    require(c >= 0x20 && c < 0x7F && c != '"' && c != '\\', place, "names are plain ASCII: " + text);
  }
}

std::vector<LocaleName> readLocaleNames(const std::string& data) {
  const std::string path = data + "/locale/names.tsv";
  std::vector<LocaleName> names;
  for (const Line& line : readLines(path)) {
    requireFields(line, 6);
    LocaleName row;
    row.place = line.place;
    row.posixName = line.field(0);
    row.countryCode = line.field(1);
    row.languageName = line.field(2);
    row.countryName = line.field(3);
    row.localeId = static_cast<size_t>(parseDecimal(line, line.field(4), 0, kLocales - 1));
    row.windowsLcid = parseHex(line, line.field(5), 0xFFFF);
    requirePosixName(row.place, row.posixName);
    require(row.countryCode == (row.posixName == "sr_BA" ? "YU" : row.posixName.substr(3)), row.place,
            "the country code repeats the name, but for YU in sr_BA");
    requireText(row.place, row.languageName, kNameCapacity);
    requireText(row.place, row.longName(), kNameCapacity);
    require(names.empty() || names.back().posixName < row.posixName, row.place, "rows ascend by name");
    names.push_back(row);
  }
  requireRows(path, names.size(), kLocales);
  checkLocaleIds(names);
  checkWindowsLcids(path, names);
  requireFixedNames(names);
  return names;
}

std::vector<LocaleName> readLanguageDefaults(const std::string& data, const std::vector<LocaleName>& names) {
  const std::string path = data + "/locale/language_defaults.tsv";
  std::vector<LocaleName> defaults;
  std::map<std::string, std::string> nameOfLanguage;
  for (const Line& line : readLines(path)) {
    requireFields(line, 3);
    const auto locale =
        std::find_if(names.begin(), names.end(), [&](const LocaleName& row) { return row.posixName == line.field(2); });
    require(locale != names.end(), line.place, "no locale has the name " + line.field(2));
    LocaleName row = *locale;
    row.place = line.place;
    row.posixName = line.field(0);
    row.languageName = line.field(1);
    requirePosixName(row.place, row.posixName);
    requireText(row.place, row.languageName, kNameCapacity);
    requireText(row.place, row.longName(), kNameCapacity);
    require(defaults.empty() || std::tie(defaults.back().posixName, defaults.back().languageName) <
                                    std::tie(row.posixName, row.languageName),
            row.place, "rows ascend by name, then by language name");
    require(locale->posixName == (row.posixName == "iw_IL" ? "he_IL" : row.posixName), row.place,
            "a row stands for the locale of its own name, but for he_IL in iw_IL");
    const bool isAlias = row.posixName != locale->posixName || row.languageName != locale->languageName;
    require(isAlias || nameOfLanguage.emplace(row.languageCode(), row.languageName).second, row.place,
            "a language has one default; a second row is an alias under another name");
    defaults.push_back(row);
  }
  requireRows(path, defaults.size(), kLanguageDefaults);
  requireFixedDefaults(defaults);
  for (const LocaleName& row : names) {
    const auto found = nameOfLanguage.find(row.languageCode());
    require(found != nameOfLanguage.end() && found->second == row.languageName, row.place,
            "the language has no default row under the name " + row.languageName);
  }
  return defaults;
}

std::vector<LanguageName> readLanguageCodes(const std::string& data) {
  const std::string path = data + "/locale/language_codes.tsv";
  std::vector<LanguageName> rows;
  for (const Line& line : readLines(path)) {
    requireFields(line, 2);
    LanguageName row{line.place, line.field(0), 0, line.field(1)};
    require(row.code.size() == 2 && isLower(row.code[0]) && isLower(row.code[1]), row.place,
            "a language code is two lower-case letters: " + row.code);
    requireText(row.place, row.name, kCodeNameCapacity);
    require(rows.empty() || std::tie(rows.back().code, rows.back().name) < std::tie(row.code, row.name), row.place,
            "rows ascend by code, then by name");
    rows.push_back(row);
  }
  requireRows(path, rows.size(), kLanguageCodes);
  requireFixedLanguageCodes(rows);
  return rows;
}

std::vector<LanguageName> readWindowsLanguages(const std::string& data) {
  const std::string path = data + "/locale/windows_languages.tsv";
  std::vector<LanguageName> rows;
  for (const Line& line : readLines(path)) {
    requireFields(line, 2);
    LanguageName row{line.place, "", parseHex(line, line.field(0), kPrimaryLanguageMask), line.field(1)};
    requireText(row.place, row.name, kWindowsNameCapacity);
    require(rows.empty() || std::tie(rows.back().number, rows.back().name) < std::tie(row.number, row.name), row.place,
            "rows ascend by number, then by name");
    rows.push_back(row);
  }
  requireRows(path, rows.size(), kWindowsLanguages);
  requireFixedWindowsLanguages(rows);
  return rows;
}

}  // namespace gen
