// Figures and values of locale data that callers rely on.
#include <algorithm>
#include <map>

#include "locale_data.h"

namespace gen {

namespace {

struct Figure {
  const char* what;
  size_t rows;
  bool (*counts)(const LocaleData& row);
};

bool hasDigits(const LocaleData& row, const Text& digits) { return row.text("currencyDigits") == digits; }

const Figure kFigures[] = {
    {"rows with two currency digits", 91, [](const LocaleData& row) { return hasDigits(row, u"2"); }},
    {"rows with four currency digits", 24, [](const LocaleData& row) { return hasDigits(row, u"4"); }},
    {"rows with three currency digits", 18, [](const LocaleData& row) { return hasDigits(row, u"3"); }},
    {"rows without currency digits", 2, [](const LocaleData& row) { return hasDigits(row, u"0"); }},
    {"rows with letter paper", 24, [](const LocaleData& row) { return row.text("paperName") == u"LETTER"; }},
    {"rows with money in groups of two and three", 1,
     [](const LocaleData& row) { return row.text("currencyGrouping") == u"2;3"; }},
    {"rows with numbers in groups of two and three", 0,
     [](const LocaleData& row) { return row.text("numberGrouping") == u"2;3"; }},
    {"rows with the order year, day, month", 1, [](const LocaleData& row) { return row.items[6] == "YDM"; }},
    {"rows with the order month, day, year", 4, [](const LocaleData& row) { return row.items[6] == "MDY"; }},
    {"rows with the order year, month, day", 13, [](const LocaleData& row) { return row.items[6] == "YMD"; }},
    {"rows with the order day, month, year", 117, [](const LocaleData& row) { return row.items[6] == "DMY"; }},
    {"rows with a double-byte font", 7, [](const LocaleData& row) { return !row.items[8].empty(); }},
    {"rows with a language tag", 46, [](const LocaleData& row) { return !row.items[12].empty(); }},
};

// A field of a row; a list with "|" between its parts.
struct FixedField {
  const char* key;
  const char* field;
  const char16_t* value;
};
const FixedField kFixedFields[] = {
    {"en_US", "dayNames", u"Sunday|Monday|Tuesday|Wednesday|Thursday|Friday|Saturday"},
    {"en_US", "dayAbbreviations", u"Sun|Mon|Tue|Wed|Thu|Fri|Sat"},
    {"en_US", "monthNames", u"January|February|March|April|May|June|July|August|September|October|November|December"},
    {"en_US", "monthAbbreviations", u"Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec"},
    {"en_US", "dateFormatShort", u"%m/%d/%Y"},
    {"en_US", "dateFormatMedium", u"%d%b%Y"},
    {"en_US", "dateFormatLong", u"%B %d, %Y"},
    {"en_US", "dateTimeFormat", u"%d%b%y:%H:%M:%S"},
    {"en_US", "timeFormat24", u"%H:%M:%S"},
    {"en_US", "timeFormat12", u"%I:%M:%S %p"},
    {"en_US", "amText", u"AM"},
    {"en_US", "pmText", u"PM"},
    {"en_US", "dateSeparator", u"/"},
    {"en_US", "timeSeparator", u":"},
    {"en_US", "numberPattern", u"#,##0.###"},
    {"en_US", "numberGrouping", u"3"},
    {"en_US", "decimalPoint", u"."},
    {"en_US", "groupSeparator", u","},
    {"en_US", "currencyPattern", u"\u00A4#,##0.00;(\u00A4#,##0.00)"},
    {"en_US", "currencyGrouping", u"3"},
    {"en_US", "currencySymbol", u"$"},
    {"en_US", "currencyCode", u"USD"},
    {"en_US", "currencyDigits", u"2"},
    {"en_US", "percentPattern", u"#,##0%"},
    {"en_US", "percentSign", u"%"},
    {"en_US", "languageName", u"English"},
    {"en_US", "countryName", u"UnitedStates"},
    {"en_US", "paperName", u"LETTER"},
    {"en_US", "paperHeight", u"279"},
    {"en_US", "paperWidth", u"216"},
    {"ja_JP", "dateFormatShort", u"%y/%m/%d"},
    {"ja_JP", "currencySymbol", u"\uFFE5"},
    {"ja_JP", "currencyCode", u"JPY"},
    {"ja_JP", "currencyDigits", u"0"},
    {"ja_JP", "currencyPattern", u"\u00A4#,##0"},
    {"ja_JP", "paperName", u"A4"},
    {"ja_JP", "paperHeight", u"297"},
    {"ja_JP", "paperWidth", u"210"},
    {"de_DE", "dateFormatShort", u"%d.%m.%y"},
    {"de_DE", "timeFormat24", u"%H.%M Uhr"},
    {"de_DE", "decimalPoint", u","},
    {"de_DE", "groupSeparator", u"."},
    {"de_DE", "numberPattern", u"#.##0,###"},
    {"de_DE", "currencyPattern", u"#.##0,00 \u00A4"},
    {"de_DE", "currencyDigits", u"4"},
    {"ar_IN", "currencyGrouping", u"2;3"},
};

constexpr size_t kKnownOverrides = 18;

constexpr char kFontNames[] = "COMPLEX|SIMPLEX|ITALIC|BRUSH|SIMPLEX|BRUSH|SIMPLEX|COMPLEX|SWISS|ITALIC";

// Items of a row, or of all, from an index on, with "|" between them, and the field that they are made of.
struct FixedItems {
  const char* key;
  size_t first;
  const char* field;
  const char* texts;
};
const FixedItems kFixedItems[] = {
    {"*", 13, "formatNames", "NLDATE16.|NLDATM24.|NLTIME8.|BEST12.|PERCENT12."},
    {"*", 138, "postalFormat", "%z%c%T%s%b%e%r"},
    {"*", 139, "telephoneFormat", "+%c ;%a ;%l"},
    {"*", 140, "measurement", "1||"},
    {"en_US", 0, "languageName", "English_UnitedStates|English|en|UnitedStates|en|US"},
    {"en_US", 6, "dateFormatShort", "MDY"},
    {"en_US", 7, "paperName", "LETTER"},
    {"en_US", 8, "deviceFont", "|||"},
    {"en_US", 12, "languageTag", ""},
    {"en_US", 18, "fontNames", kFontNames},
    {"en_US", 28, "dateFormatLong", "%B %d, %Y|%m/%d/%Y"},
    {"en_US", 45, "periodFormats", "%Q %Y|%q %y|Week %U %G|W%U %g"},
    {"en_US", 49, "dateSeparator", "/"},
    {"en_US", 50, "monthAbbreviations", "Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec"},
    {"en_US", 62, "monthNames",
     "January|February|March|April|May|June|July|August|September|October|November|December"},
    {"en_US", 74, "dayAbbreviations", "Sun|Mon|Tue|Wed|Thu|Fri|Sat"},
    {"en_US", 81, "dayNames", "Sunday|Monday|Tuesday|Wednesday|Thursday|Friday|Saturday"},
    {"en_US", 88, "amText", "AM|PM"},
    {"en_US", 90, "quarterNames", "1st quarter|2nd quarter|3rd quarter|4th quarter"},
    {"en_US", 98, "currencyCode", "USD|$"},
    {"en_US", 100, "decimalPoint", ".|,|3|"},
    {"en_US", 104, "negativeSign", "-"},
    {"en_US", 105, "currencyDigits", "2|2"},
    {"en_US", 107, "currencyPattern",
     "1|0|1|0|1|0|<u00a4>#,##0.00;(<u00a4>#,##0.00)|<u00a4>#,##0.00;(<u00a4>#,##0.00)"},
    {"en_US", 115, "decimalPoint", ".|,|3|"},
    {"en_US", 119, "negativeSign", "-"},
    {"en_US", 120, "numberFlags", "0|0|0|0|1|1"},
    {"en_US", 126, "numberPattern", "#,##0.###|#,##0.###"},
    {"en_US", 128, "percentPattern", "#,##0%|#,##0%"},
    {"en_US", 130, "paperHeight", "279|216"},
    {"en_US", 132, "nameFormat", "%p%t%g%t%m%t%f"},
    {"en_US", 133, "formsOfAddress", "|Mr.|Mrs.|Ms.|"},
    {"es_ES", 12, "languageTag", "es"},
    {"fr_FR", 12, "languageTag", "fr"},
    {"ja_JP", 8, "deviceFont",
     "KANJI;<ttf> MS PGothic|KANJI;<ttf> MS PGothic|KANJI;<ttf> MS PGothic|KANJI;<ttf> MS PGothic"},
    {"ja_JP", 12, "languageTag", "ja"},
    {"ja_JP", 133, "nameSuffix", "-san"},
    {"zh_CN", 8, "deviceFont", "HEI;<ttf> SimHei|HEI;<ttf> SimHei|HEI;<ttf> SimHei|HEI;<ttf> SimHei"},
};

Text joined(const std::vector<Text>& list) {
  Text text = list[0];
  for (size_t i = 1; i < list.size(); ++i) text += u'|' + list[i];
  return text;
}

void requireItems(const LocaleData& row, const FixedItems& items) {
  size_t index = items.first;
  std::vector<std::string> texts = split(items.texts, '|');
  if (texts.empty()) texts.emplace_back();
  for (const std::string& text : texts) {
    require(row.items[index] == text, placeOf(row, items.field),
            "item " + std::to_string(index) + " of " + row.key() + " is fixed as \"" + text + "\"");
    ++index;
  }
}

// Rows of Chinese, Japanese and Korean have a font of double-byte characters, and may replace the other fonts.
void checkFonts(const LocaleData& row) {
  const std::string language = languageOf(row.key());
  const bool doubleByte = language == "zh" || language == "ja" || language == "ko";
  require(row.facts->text("deviceFont").empty() != doubleByte, placeOf(row, "deviceFont"),
          "Chinese, Japanese and Korean have a double-byte font, other languages have none");
  require(doubleByte || joined(row.facts->list("fontNames")) == widen(kFontNames), placeOf(row, "fontNames"),
          "only Chinese, Japanese and Korean replace the fonts");
}

void checkCustoms(const LocaleData& row) {
  const Text& tag = row.facts->text("languageTag");
  require(tag.empty() || tag == widen(languageOf(row.key())), placeOf(row, "languageTag"),
          "the tag of " + row.key() + " is its language, or empty");
  const Text& suffix = row.facts->text("nameSuffix");
  require(suffix.empty() || suffix == u"-san", placeOf(row, "nameSuffix"), "a name's suffix is -san, or empty");
}

template <class Fixed>
bool concerns(const Fixed& fixed, const LocaleData& row) {
  return fixed.key == row.key() || fixed.key == std::string("*");
}

bool isFixed(const LocaleData& row, const std::string& field) {
  const auto fixes = [&](const auto& fixed) { return fixed.field == field && concerns(fixed, row); };
  return std::any_of(std::begin(kFixedFields), std::end(kFixedFields), fixes) ||
         std::any_of(std::begin(kFixedItems), std::end(kFixedItems), fixes);
}

}  // namespace

void checkFigures(const std::string& path, const std::vector<LocaleData>& rows) {
  for (const Figure& figure : kFigures) {
    size_t count = 0;
    for (const LocaleData& row : rows) count += figure.counts(row) ? 1 : 0;
    requireCount(path, count, figure.rows, figure.what);
  }
}

void checkKnownOverrides(const std::string& path, const std::vector<LocaleData>& rows) {
  struct Known {
    Place place;
    bool fixed = false;
  };
  std::map<int, Known> lines;
  for (const LocaleData& row : rows) {
    for (const auto& [field, fact] : row.facts->fields) {
      if (!fact.known) continue;
      Known& known = lines[fact.place.line];
      known.place = fact.place;
      known.fixed = known.fixed || isFixed(row, field);
    }
  }
  for (const auto& [number, known] : lines) {
    require(known.fixed, known.place, "a value that is known is fixed in tools/gen/locale_fixed.cpp; this one is ours");
  }
  requireCount(path, lines.size(), kKnownOverrides, "known overrides");
}

void checkFixedValues(const std::vector<LocaleData>& rows) {
  for (const LocaleData& row : rows) {
    for (const FixedField& fixed : kFixedFields) {
      require(!concerns(fixed, row) || joined(row.record.at(fixed.field)) == fixed.value, placeOf(row, fixed.field),
              std::string(fixed.field) + " of " + fixed.key + " is fixed as \"" + escape(fixed.value) + "\"");
    }
    for (const FixedItems& items : kFixedItems) {
      if (concerns(items, row)) requireItems(row, items);
    }
    checkFonts(row);
    checkCustoms(row);
  }
}

}  // namespace gen
