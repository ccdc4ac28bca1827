// The tables of facts. A line holds for one row ("es_AR"), for the rows of a language ("es") or for all ("*"); the
// narrowest line rules, and any line of the overrides goes before the rows of the import.
#include <algorithm>
#include <array>
#include <set>

#include "locale_data.h"

namespace gen {

namespace {

// Fields and how many parts their lists have. Derived ones needn't stand in a table.
struct FieldKind {
  const char* name;
  size_t count = 1;
  bool derived = false;
};
const FieldKind kFields[] = {
    {"dayNames", 7},
    {"dayAbbreviations", 7},
    {"monthNames", 12},
    {"monthAbbreviations", 12},
    {"dateFormatShort"},
    {"dateFormatMedium"},
    {"dateFormatLong"},
    {"dateFormatFull"},
    {"dateTimeFormat", 1, true},
    {"timeFormat24"},
    {"timeFormat12"},
    {"timeFormatSeconds", 1, true},
    {"clock"},
    {"amText"},
    {"pmText"},
    {"monthYearFormat"},
    {"monthYearFormatShort"},
    {"monthDayFormat"},
    {"monthDayFormatShort"},
    {"periodFormats", 6},
    {"quarterNames", 4},
    {"decimalPoint"},
    {"groupSeparator"},
    {"numberPattern"},
    {"numberGrouping", 1, true},
    {"numberFlags", 6},
    {"negativeSign"},
    {"currencyPattern"},
    {"currencyGrouping", 1, true},
    {"currencyCode"},
    {"currencySymbol"},
    {"currencyDigits"},
    {"percentPattern"},
    {"percentSign"},
    {"measurement"},
    {"languageName", 1, true},
    {"countryName", 1, true},
    {"paperName"},
    {"deviceFont"},
    {"languageTag"},
    {"formatNames", 5},
    {"fontNames", 10},
    {"nameFormat"},
    {"nameSuffix"},
    {"formsOfAddress", 3},
    {"postalFormat"},
    {"telephoneFormat"},
};

// Rows whose countries have gone: no locale leads to them, but they belong to every figure.
const std::vector<std::string> kUnnamedRows = {"sh_CS", "sh_YU", "sr_CS"};

using Table = std::map<std::pair<std::string, std::string>, Fact>;  // by row and field

const FieldKind* kindOf(const std::string& field) {
  const auto* found =
      std::find_if(std::begin(kFields), std::end(kFields), [&](const FieldKind& kind) { return field == kind.name; });
  return found != std::end(kFields) ? found : nullptr;
}

// The four digits of an escape at this place, or nothing.
std::u16string escapedDigits(const Text& text, size_t at) {
  if (text.compare(at, 2, u"<U") != 0 || at + 7 > text.size() || text[at + 6] != u'>') return {};
  return text.substr(at + 2, 4);
}

Text unescape(const Line& line, const Text& text) {
  Text plain;
  for (size_t i = 0; i < text.size(); ++i) {
    const Text digits = escapedDigits(text, i);
    if (digits.empty()) {
      plain += text[i];
    } else {
      plain += static_cast<char16_t>(parseHex(line, std::string(digits.begin(), digits.end()), 0xFFFF));
      i += 6;
    }
    require(plain.back() >= u' ' && (plain.back() < 0xD800 || plain.back() > 0xDFFF), line.place,
            "texts hold visible characters of one unit");
  }
  return plain;
}

Fact readFact(const Line& line, const FieldKind& kind) {
  Fact fact{line.place, {}};
  if (kind.count == 1) {
    fact.texts = {unescape(line, toUtf16(line.place, line.field(2)))};
    return fact;
  }
  for (const std::string& part : split(line.field(2), '|')) {
    fact.texts.push_back(unescape(line, toUtf16(line.place, part)));
  }
  require(fact.texts.size() == kind.count, line.place,
          std::string(kind.name) + " is a list of " + std::to_string(kind.count) + " parts, separated by \"|\"");
  return fact;
}

Table readTable(const std::string& path, size_t fields, const std::vector<std::string>& keys) {
  std::set<std::string> known = {"*"};
  for (const std::string& key : keys) known.insert({key, languageOf(key)});
  Table table;
  for (const Line& line : readLines(path)) {
    requireFields(line, fields);
    require(known.contains(line.field(0)), line.place, "no locale or language has the name " + line.field(0));
    const FieldKind* kind = kindOf(line.field(1));
    require(kind != nullptr, line.place, "no field has the name " + line.field(1));
    Fact fact = readFact(line, *kind);
    if (fields == 4) {
      fact.known = line.field(3) == "known";
      require(fact.known || line.field(3) == "ours", line.place, "an origin is \"known\" or \"ours\"");
    }
    require(table.emplace(std::pair(line.field(0), line.field(1)), std::move(fact)).second, line.place,
            line.field(0) + " has two lines for " + line.field(1));
  }
  return table;
}

// The line that rules a field of a row, but for `without`; null if there is none.
const Fact* ruling(const std::array<const Table*, 2>& tables, const std::string& key, const std::string& field,
                   const Fact* without) {
  for (const Table* table : tables) {
    for (const std::string& row : {key, languageOf(key), std::string("*")}) {
      const auto found = table->find({row, field});
      if (found != table->end() && &found->second != without) return &found->second;
    }
  }
  return nullptr;
}

// Every override changes some row; one that doesn't has outlived its cause.
void checkOverrides(const std::array<const Table*, 2>& tables, const std::vector<std::string>& keys) {
  for (const auto& [place, fact] : *tables[0]) {
    const std::string& field = place.second;
    const Fact* line = &fact;
    const bool changes = std::any_of(keys.begin(), keys.end(), [&](const std::string& key) {
      if (ruling(tables, key, field, nullptr) != line) return false;
      const Fact* without = ruling(tables, key, field, line);
      return without == nullptr || without->texts != line->texts;
    });
    require(changes, fact.place, "changes no row; remove the line");
  }
}

}  // namespace

std::vector<LocaleFacts> readLocaleFacts(const std::string& data, const std::vector<LocaleName>& names) {
  std::vector<std::string> keys(names.size());
  std::map<std::string, Text> languages;
  std::map<std::string, Text> countries;
  for (const LocaleName& row : names) {
    keys[row.localeId] = row.posixName;
    languages[languageOf(row.posixName)] = widen(row.languageName);
    countries[countryOf(row.posixName)] = widen(row.countryName);
  }
  keys.insert(keys.end(), kUnnamedRows.begin(), kUnnamedRows.end());

  // A language or country has the name that it has in names.tsv; what has none there needs a line.
  const auto inNames = [&](const Text& name) {
    Fact fact;
    fact.place.file = localeTables(data);
    fact.texts.push_back(name);
    return fact;
  };

  const Table overrides = readTable(data + "/locale/overrides.tsv", 4, keys);
  const Table imported = readTable(data + "/locale/rows.tsv", 3, keys);
  const std::array<const Table*, 2> tables = {&overrides, &imported};
  checkOverrides(tables, keys);

  std::vector<LocaleFacts> rows;
  for (const std::string& key : keys) {
    LocaleFacts row{key, {}};
    for (const FieldKind& kind : kFields) {
      const Fact* fact = ruling(tables, key, kind.name, nullptr);
      if (fact != nullptr) row.fields.emplace(kind.name, *fact);
      require(fact != nullptr || kind.derived, {localeTables(data), 0}, key + " has no " + kind.name);
    }
    row.fields.try_emplace("languageName", inNames(languages[languageOf(key)]));
    row.fields.try_emplace("countryName", inNames(countries[countryOf(key)]));
    rows.push_back(std::move(row));
  }
  return rows;
}

}  // namespace gen
