// Figures and values of locale data that callers rely on.
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
    {"rows with the order year, day, month", 1, [](const LocaleData& row) { return row.items[6] == "YDM"; }},
    {"rows with the order month, day, year", 4, [](const LocaleData& row) { return row.items[6] == "MDY"; }},
    {"rows with the order year, month, day", 13, [](const LocaleData& row) { return row.items[6] == "YMD"; }},
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
};

// Items from an index on, with "|" between them.
struct FixedItems {
  size_t first;
  const char* texts;
};
const FixedItems kFixedItems[] = {
    {0, "English_UnitedStates|English|en|UnitedStates|en|US|MDY|LETTER|||||"},
    {18, "COMPLEX|SIMPLEX|ITALIC|BRUSH|SIMPLEX|BRUSH|SIMPLEX|COMPLEX|SWISS|ITALIC"},
    {28, "%B %d, %Y|%m/%d/%Y"},
    {45, "%Q %Y|%q %y|Week %U %G|W%U %g|/|Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec"},
    {62, "January|February|March|April|May|June|July|August|September|October|November|December"},
    {74, "Sun|Mon|Tue|Wed|Thu|Fri|Sat|Sunday|Monday|Tuesday|Wednesday|Thursday|Friday|Saturday|AM|PM"},
    {90, "1st quarter|2nd quarter|3rd quarter|4th quarter"},
    {98, "USD|$|.|,|3||-|2|2|1|0|1|0|1|0|<u00a4>#,##0.00;(<u00a4>#,##0.00)|<u00a4>#,##0.00;(<u00a4>#,##0.00)"},
    {115, ".|,|3||-|0|0|0|0|1|1|#,##0.###|#,##0.###|#,##0%|#,##0%|279|216|%p%t%g%t%m%t%f||Mr.|Mrs.|Ms.|"},
};
const FixedItems kItemsOfAllRows[] = {
    {13, "NLDATE16.|NLDATM24.|NLTIME8.|BEST12.|PERCENT12."},
    {138, "%z%c%T%s%b%e%r|+%c ;%a ;%l|1||"},
};

Text joined(const std::vector<Text>& list) {
  Text text = list[0];
  for (size_t i = 1; i < list.size(); ++i) text += u'|' + list[i];
  return text;
}

void requireItems(const std::string& path, const LocaleData& row, const FixedItems& items) {
  size_t index = items.first;
  for (const std::string& text : split(items.texts, '|')) {
    require(row.items[index] == text, {path, 0},
            "item " + std::to_string(index) + " of " + row.key() + " is fixed as \"" + text + "\"");
    ++index;
  }
}

}  // namespace

void checkFigures(const std::string& path, const std::vector<LocaleData>& rows) {
  for (const Figure& figure : kFigures) {
    size_t count = 0;
    for (const LocaleData& row : rows) count += figure.counts(row) ? 1 : 0;
    requireCount(path, count, figure.rows, figure.what);
  }
}

void checkFixedValues(const std::string& path, const std::vector<LocaleData>& rows) {
  for (const LocaleData& row : rows) {
    for (const FixedField& fixed : kFixedFields) {
      require(row.key() != fixed.key || joined(row.record.at(fixed.field)) == fixed.value, {path, 0},
              std::string(fixed.field) + " of " + fixed.key + " is fixed as \"" + escape(fixed.value) + "\"");
    }
    for (const FixedItems& items : kItemsOfAllRows) requireItems(path, row, items);
    if (row.key() != "en_US") continue;
    for (const FixedItems& items : kFixedItems) requireItems(path, row, items);
  }
}

}  // namespace gen
