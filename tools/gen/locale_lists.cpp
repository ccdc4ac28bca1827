#include <algorithm>
#include <set>

#include "locales.h"

namespace gen {

namespace {

constexpr size_t kPrimaryPairs = 4803;
constexpr size_t kSecondaryPairs = 145;
constexpr size_t kLocalesWithSecondary = 24;

const std::vector<size_t> kUnicodeAndAny = {204, 27, 26, 25, 24, 20};

// On no list stand aliases, vacant rows, and rows in which no locale keeps its texts: the second row of utf-16 (19),
// utf-e and ucsu (161, 162), a page without tables (170), and the name of all EBCDIC pages (203).
bool isListable(size_t cei) {
  static const std::set<size_t> without = {19, 21, 22, 23, 77, 94, 107, 161, 162, 170, 171, 203};
  return cei > 18 && cei < kEncodings && !without.contains(cei);
}

std::vector<size_t> readList(const Line& line, const std::string& text) {
  std::vector<size_t> list;
  for (const std::string& number : split(text, ' ')) {
    const auto cei = static_cast<size_t>(parseDecimal(line, number, 0, kEncodings - 1));
    require(isListable(cei), line.place, "encoding " + number + " stands on no list");
    require(list.empty() || list.back() > cei, line.place, "encodings descend");
    list.push_back(cei);
  }
  return list;
}

bool contains(const std::vector<size_t>& list, size_t value) {
  return std::find(list.begin(), list.end(), value) != list.end();
}

void checkLists(const Line& line, const Lists& lists) {
  for (const size_t cei : kUnicodeAndAny) {
    require(contains(lists.primary, cei), line.place, "encoding " + std::to_string(cei) + " serves every locale");
  }
  for (const size_t cei : lists.secondary) {
    require(!contains(lists.primary, cei), line.place, "encoding " + std::to_string(cei) + " stands on both lists");
  }
}

}  // namespace

std::vector<Lists> readLocaleEncodings(const std::string& data, const std::vector<LocaleName>& names) {
  const std::string path = data + "/locale/encodings.tsv";
  std::vector<std::string> byId(kLocales);
  for (const LocaleName& row : names) byId[row.localeId] = row.posixName;

  std::vector<Lists> encodings;
  size_t primaryPairs = 0;
  size_t secondaryPairs = 0;
  size_t withSecondary = 0;
  for (const Line& line : readLines(path)) {
    requireFields(line, 3);
    require(encodings.size() < kLocales && line.field(0) == byId[encodings.size()], line.place,
            "rows stand in the order of locale identifiers");
    const Lists lists{readList(line, line.field(1)), readList(line, line.field(2))};
    checkLists(line, lists);
    primaryPairs += lists.primary.size();
    secondaryPairs += lists.secondary.size();
    if (!lists.secondary.empty()) ++withSecondary;
    encodings.push_back(lists);
  }
  requireRows(path, encodings.size(), kLocales);
  require(
      encodings[0].primary == kUnicodeAndAny && encodings[0].secondary == std::vector<size_t>{110, 97, 69, 62, 42, 29},
      {path, 0}, "af_ZA has the six common encodings first, and 110 97 69 62 42 29 second");
  require(withSecondary == kLocalesWithSecondary, {path, 0},
          std::to_string(withSecondary) + " locales have a second list where there are 24");
  require(
      primaryPairs == kPrimaryPairs && secondaryPairs == kSecondaryPairs, {path, 0},
      std::to_string(primaryPairs) + " and " + std::to_string(secondaryPairs) + " pairs where there are 4803 and 145");
  return encodings;
}

std::vector<Lists> invertLocaleEncodings(const std::string& data, const std::vector<Lists>& encodings) {
  std::vector<Lists> locales(kEncodings);
  for (size_t locale = 0; locale < encodings.size(); ++locale) {
    for (const size_t cei : encodings[locale].primary) locales[cei].primary.push_back(locale);
    for (const size_t cei : encodings[locale].secondary) locales[cei].secondary.push_back(locale);
  }
  const Place place{data + "/locale/encodings.tsv", 0};
  require(locales[25].primary.size() == kLocales, place, "encoding 25 serves every locale");
  require(locales[229].primary.size() == 19 && locales[229].secondary.size() == 2, place,
          "encoding 229 serves 19 locales, and 2 in part");
  return locales;
}

}  // namespace gen
