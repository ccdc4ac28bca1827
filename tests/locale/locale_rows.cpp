#include "locale/locale_rows.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <regex>
#include <sstream>
#include <stdexcept>

#include "support/tsv.h"
#include "support/wide.h"

namespace test {

namespace {

using Table = std::map<std::string, std::map<std::string, std::string>>;  // row, field

Table table(const std::string& path) {
  Table rows;
  for (const Fields& line : readTsv(path)) rows[line[0]][line[1]] = line[2];
  return rows;
}

// The text of a field for a locale as the tables hold it, or null.
const std::string* find(const std::string& name, const std::string& field) {
  static const Table overrides = table("locale/overrides.tsv");
  static const Table imported = table("locale/rows.tsv");
  for (const Table* rows : {&overrides, &imported}) {
    for (const std::string& row : {name, name.substr(0, 2), std::string("*")}) {
      const auto line = rows->find(row);
      if (line == rows->end()) continue;
      const auto value = line->second.find(field);
      if (value != line->second.end()) return &value->second;
    }
  }
  return nullptr;
}

std::vector<std::string> parts(const std::string& list) {
  std::vector<std::string> texts;
  std::istringstream stream(list);
  for (std::string part; std::getline(stream, part, '|');) texts.push_back(part);
  return texts;
}

std::string replaced(const std::string& text, const std::string& from, const std::string& to) {
  return std::regex_replace(text, std::regex(from), to);
}

// The texts of one locale while its row is put together: UTF-8, with escapes.
class Builder {
 public:
  Builder(const Fields& line) : name_(line[0]), language_(line[2]), country_(line[3]) {}

  LocaleRow row() {
    row_.name = name_;
    record();
    items();
    return std::move(row_);
  }

 private:
  std::string text(const std::string& field) const {
    const std::string* found = find(name_, field);
    if (found == nullptr) throw std::runtime_error(name_ + " has no " + field);
    return *found;
  }
  std::string textOr(const std::string& field, const std::string& otherwise) const {
    return find(name_, field) != nullptr ? text(field) : otherwise;
  }

  std::string localised(const std::string& pattern) const {
    std::string own;
    for (const char c : pattern)
      own += c == '.' ? text("decimalPoint") : c == ',' ? text("groupSeparator") : std::string(1, c);
    return own;
  }
  std::string grouping(const std::string& field, const std::string& pattern) const {
    return textOr(field, pattern.find(",##,") != std::string::npos ? "3;2" : "3");
  }
  // What stands between the first two items of a format; all of it.
  static std::string between(const std::string& format) {
    std::smatch match;
    std::regex_search(format, match, std::regex("%.([^%]+)%"));
    return match[1];
  }

  void record() {
    for (const char* field : {"dateFormatShort", "dateFormatMedium", "dateFormatLong", "timeFormat24", "timeFormat12",
                              "amText", "pmText", "decimalPoint", "groupSeparator", "currencySymbol", "currencyCode",
                              "currencyDigits", "percentSign", "measurement", "paperName"}) {
      set(field, text(field));
    }
    for (const char* field : {"dayNames", "dayAbbreviations", "monthNames", "monthAbbreviations"}) {
      const auto names = parts(text(field));
      for (size_t i = 0; i < names.size(); ++i) set(std::string(field) + "." + std::to_string(i), names[i]);
    }
    seconds_ = textOr("timeFormatSeconds", text("timeFormat24"));
    const std::string separator = between(seconds_) == "." ? "." : ":";
    set("timeSeparator", separator);
    set("dateSeparator", between(text("dateFormatShort")).substr(0, 1));
    set("dateTimeFormat",
        textOr("dateTimeFormat", text("dateFormatMedium") + " %H" + separator + "%M" + separator + "%S"));
    for (const char* field : {"numberPattern", "currencyPattern", "percentPattern"}) set(field, localised(text(field)));
    set("numberGrouping", grouping("numberGrouping", text("numberPattern")));
    set("currencyGrouping", grouping("currencyGrouping", text("currencyPattern")));
    set("languageName", language_);
    set("countryName", country_);
    const bool letter = text("paperName") == "LETTER";
    set("paperHeight", letter ? "279" : "297");
    set("paperWidth", letter ? "216" : "210");
  }

  void items() {
    const std::string language = name_.substr(0, 2);
    items(0, {language_ + "_" + country_, language_, language, country_, language, name_.substr(3)});
    items(6, {order(), text("paperName")});
    items(8, {4, text("deviceFont")});
    items(12, {text("languageTag")});
    items(13, parts(text("formatNames")));
    items(18, parts(text("fontNames")));
    dates();
    names();
    numbers();
    items(130, {text("paperName") == "LETTER" ? "279" : "297", text("paperName") == "LETTER" ? "216" : "210",
                text("nameFormat"), text("nameSuffix")});
    items(134, parts(text("formsOfAddress")));
    items(137, {"", text("postalFormat"), text("telephoneFormat"), text("measurement"), "", ""});
  }

  // Day, month and year in their order, as capitals.
  std::string order() const {
    std::string order = replaced(text("dateFormatShort"), "%[mbB]", "%m");
    order = replaced(order, "%y", "%Y");
    order = replaced(order, "[^%]*%(.)[^%]*", "$1");
    return replaced(replaced(order, "d", "D"), "m", "M");
  }

  void dates() {
    const std::string time = " " + (text("clock") == "12" ? text("timeFormat12") : seconds_);
    const std::string full = text("dateFormatFull");
    const std::string shorter = replaced(replaced(full, "%A", "%a"), "%B", "%b");
    items(28, {text("dateFormatLong"), text("dateFormatShort")});
    items(30, {text("dateFormatLong") + time, text("dateFormatShort") + time, text("dateFormatMedium") + time});
    items(33, {full + time, shorter + time, text("timeFormat12"), seconds_, full, shorter});
    items(39,
          {text("monthYearFormat"), text("monthYearFormatShort"), text("monthDayFormat"), text("monthDayFormatShort")});
    items(43, parts(text("periodFormats")));
  }

  void names() {
    items(49, {between(text("dateFormatShort")).substr(0, 1)});
    items(50, parts(text("monthAbbreviations")));
    items(62, parts(text("monthNames")));
    items(74, parts(text("dayAbbreviations")));
    items(81, parts(text("dayNames")));
    items(88, {text("amText"), text("pmText")});
    items(90, parts(text("quarterNames")));
    items(94, parts(text("quarterNames")));
  }

  // Of one half of a pattern: sign in front, blank between sign and digits.
  static std::vector<std::string> placing(const std::string& half) {
    const bool precedes = std::regex_search(half, std::regex("\u00A4.*[#0]"));
    const bool blank =
        std::regex_search(half, std::regex(precedes ? "\u00A4[^#0]* [^#0]*[#0]" : "[#0] *[^#0]* [^#0]*\u00A4"));
    return {precedes ? "1" : "0", blank ? "1" : "0"};
  }

  void numbers() {
    const std::string pattern = text("currencyPattern");
    const size_t split = pattern.find(';');
    const std::string positive = pattern.substr(0, split);
    const std::string negative = split != std::string::npos ? pattern.substr(split + 1) : "-" + positive;
    std::string place = "1";
    if (negative.find('(') != std::string::npos) place = "0";
    if (negative.ends_with("-")) place = "2";
    if (std::regex_search(negative, std::regex("\u00A4 ?-"))) place = "4";
    const std::string money = localised(pattern);
    const std::string plain = localised(text("numberPattern"));
    const std::string percent = localised(text("percentPattern"));

    items(98, {text("currencyCode"), text("currencySymbol"), text("decimalPoint"), text("groupSeparator"),
               grouping("currencyGrouping", pattern), "", text("negativeSign")});
    items(105, {2, text("currencyDigits")});
    items(107, placing(positive));
    items(109, placing(negative));
    items(111, {"1", place, money, money});
    items(115, {text("decimalPoint"), text("groupSeparator"), grouping("numberGrouping", text("numberPattern")), "",
                text("negativeSign")});
    items(120, parts(text("numberFlags")));
    items(126, {plain, plain, percent, percent});
  }

  void set(const std::string& field, const std::string& text) { row_.fields[field] = unescaped(text); }
  void items(int first, const std::vector<std::string>& texts) {
    for (const std::string& text : texts) row_.items[first++] = unescaped(text);
  }

  LocaleRow row_;
  std::string name_, language_, country_, seconds_;
};

}  // namespace

const std::vector<LocaleRow>& localeRows() {
  static const std::vector<LocaleRow> rows = [] {
    std::vector<LocaleRow> all;
    for (const Fields& line : readTsv("locale/names.tsv")) all.push_back(Builder(line).row());
    return all;
  }();
  return rows;
}

const LocaleRow& localeRow(const std::string& name) {
  for (const LocaleRow& row : localeRows()) {
    if (row.name == name) return row;
  }
  throw std::runtime_error("no locale " + name);
}

std::u16string unescaped(const std::string& text) {
  std::u16string out;
  for (size_t i = 0; i < text.size();) {
    if (text.compare(i, 2, "<U") == 0) {
      out += static_cast<char16_t>(std::stoi(text.substr(i + 2, 4), nullptr, 16));
      i += 7;
      continue;
    }
    const auto lead = static_cast<unsigned char>(text[i]);
    const int trails = lead < 0x80 ? 0 : lead < 0xE0 ? 1 : 2;
    int code = trails == 0 ? lead : lead & (trails == 1 ? 0x1F : 0x0F);
    for (int k = 0; k < trails; ++k) code = code << 6 | (text[i + 1 + static_cast<size_t>(k)] & 0x3F);
    out += static_cast<char16_t>(code);
    i += 1 + static_cast<size_t>(trails);
  }
  return out;
}

std::string itemText(const std::u16string& text) {
  std::string ascii;
  for (const char16_t unit : text) {
    if (unit < 0x80) {
      ascii += static_cast<char>(unit);
    } else {
      char escape[8];
      std::snprintf(escape, sizeof escape, unit == u'\u00A4' ? "<u%04x>" : "<U%04X>", static_cast<unsigned>(unit));
      ascii += escape;
    }
  }
  return ascii;
}

}  // namespace test
