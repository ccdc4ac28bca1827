// What follows from the facts of a row: the fields of the record.
#include "locale_data.h"

namespace gen {

const std::vector<RecordField> kTextFields = {
    {"dayNames", 7, 60},        {"dayAbbreviations", 7, 60}, {"monthNames", 12, 60},    {"monthAbbreviations", 12, 60},
    {"dateFormatShort", 1, 60}, {"dateFormatMedium", 1, 60}, {"dateFormatLong", 1, 60}, {"dateTimeFormat", 1, 60},
    {"timeFormat24", 1, 60},    {"timeFormat12", 1, 60},     {"amText", 1, 60},         {"pmText", 1, 60},
    {"numberPattern", 1, 60},   {"numberGrouping", 1, 60},   {"decimalPoint", 1, 1},    {"groupSeparator", 1, 1},
    {"currencyPattern", 1, 60}, {"currencyGrouping", 1, 60}, {"currencySymbol", 1, 60}, {"currencyCode", 1, 60},
    {"percentPattern", 1, 60},  {"languageName", 1, 60},     {"countryName", 1, 60},    {"paperName", 1, 60},
};
const std::vector<std::string> kUnitFields = {"dateSeparator", "timeSeparator", "percentSign"};
const std::vector<std::string> kNumberFields = {"currencyDigits", "measurement", "paperHeight", "paperWidth"};

namespace {

// What a field is made of where it has no line.
const std::map<std::string, std::string> kMadeOf = {
    {"dateTimeFormat", "dateFormatMedium"}, {"timeFormatSeconds", "timeFormat24"},
    {"dateSeparator", "dateFormatShort"},   {"timeSeparator", "timeFormatSeconds"},
    {"numberGrouping", "numberPattern"},    {"currencyGrouping", "currencyPattern"},
    {"paperHeight", "paperName"},           {"paperWidth", "paperName"},
};

// The first unit between the first two items of a format.
Text firstSeparator(const LocaleFacts& facts, const std::string& field, const Text& format) {
  const size_t first = format.find(u'%');
  require(first != Text::npos && first + 2 < format.size() && format.find(u'%', first + 2) > first + 2,
          facts.fact(field).place, "a format has two items, and a separator between them");
  return format.substr(first + 2, 1);
}

// A pattern with the row's own signs. The tables write "." for the decimal point and "," for the separator.
Text localised(const LocaleFacts& facts, const std::string& field) {
  Text pattern = facts.text(field);
  for (char16_t& unit : pattern) {
    if (unit == u'.') {
      unit = facts.text("decimalPoint")[0];
    } else if (unit == u',') {
      unit = facts.text("groupSeparator")[0];
    }
  }
  return pattern;
}

Text grouping(const LocaleFacts& facts, const std::string& field, const std::string& pattern) {
  if (facts.has(field)) return facts.text(field);
  return facts.text(pattern).find(u"#,##,##0") != Text::npos ? u"3;2" : u"3";
}

void requireOneUnit(const LocaleFacts& facts, const std::string& field) {
  require(facts.text(field).size() == 1, facts.fact(field).place, field + " is one character");
}

}  // namespace

Place placeOf(const LocaleData& row, const std::string& field) {
  const auto fact = row.facts->fields.find(field);
  return fact != row.facts->fields.end() ? fact->second.place : placeOf(row, kMadeOf.at(field));
}

LocaleData deriveLocaleData(const LocaleFacts& facts) {
  LocaleData row;
  row.facts = &facts;
  requireOneUnit(facts, "decimalPoint");
  requireOneUnit(facts, "groupSeparator");
  requireOneUnit(facts, "percentSign");
  for (const RecordField& field : kTextFields) {
    if (facts.has(field.name)) row.record[field.name] = facts.list(field.name);
  }
  const auto set = [&](const char* field, const Text& text) { row.record[field] = {text}; };

  // A time with seconds, which the format of the record needn't have.
  const char* seconds = facts.has("timeFormatSeconds") ? "timeFormatSeconds" : "timeFormat24";
  set("timeFormatSeconds", facts.text(seconds));
  const Text separator = firstSeparator(facts, seconds, facts.text(seconds));
  set("timeSeparator", separator == u"." ? separator : u":");
  set("dateSeparator", firstSeparator(facts, "dateFormatShort", facts.text("dateFormatShort")));
  if (!facts.has("dateTimeFormat")) {
    const Text& point = row.text("timeSeparator");
    set("dateTimeFormat", facts.text("dateFormatMedium") + u" %H" + point + u"%M" + point + u"%S");
  }
  for (const char* pattern : {"numberPattern", "currencyPattern", "percentPattern"}) {
    set(pattern, localised(facts, pattern));
  }
  set("numberGrouping", grouping(facts, "numberGrouping", "numberPattern"));
  set("currencyGrouping", grouping(facts, "currencyGrouping", "currencyPattern"));
  for (const char* field : {"percentSign", "currencyDigits", "measurement"}) set(field, facts.text(field));
  const bool letter = facts.text("paperName") == u"LETTER";
  require(letter || facts.text("paperName") == u"A4", facts.fact("paperName").place, "paper is LETTER or A4");
  set("paperHeight", letter ? u"279" : u"297");
  set("paperWidth", letter ? u"216" : u"210");
  row.items = deriveItems(row);
  return row;
}

}  // namespace gen
