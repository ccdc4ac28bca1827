// What follows from the facts of a row: the 143 items.
#include <algorithm>
#include <cstdio>

#include "locale_data.h"

namespace gen {

namespace {

constexpr char16_t kCurrencySign = 0xA4;

Text replaced(Text text, const Text& from, const Text& to) {
  for (size_t at = text.find(from); at != Text::npos; at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
  return text;
}

// A format with the short names of days and months.
Text shortNames(const Text& format) { return replaced(replaced(format, u"%A", u"%a"), u"%B", u"%b"); }

// Day, month and year in the order of a format.
Text fieldOrder(const Text& format) {
  Text order;
  for (size_t i = 0; i + 1 < format.size(); ++i) {
    if (format[i] != u'%') continue;
    const char16_t item = format[++i];
    if (item == u'd') order += u'D';
    if (item == u'm' || item == u'b' || item == u'B') order += u'M';
    if (item == u'y' || item == u'Y') order += u'Y';
  }
  return order;
}

// Where the sign of the currency stands in one half of a pattern: "1" "1" for a sign in front and a blank between.
void appendPlacing(const LocaleFacts& facts, const Text& half, std::vector<Text>& items) {
  const size_t sign = half.find(kCurrencySign);
  const size_t first = half.find_first_of(u"#0");
  const size_t last = half.find_last_of(u"#0");
  require(sign != Text::npos && first != Text::npos, facts.fact("currencyPattern").place,
          "both halves of a currency pattern have the currency sign and digits");
  const bool precedes = sign < first;
  const Text between = precedes ? half.substr(sign, first - sign) : half.substr(last, sign - last);
  items.push_back(precedes ? u"1" : u"0");
  items.push_back(between.find(u' ') != Text::npos ? u"1" : u"0");
}

// The place of the negative sign, as numbers of the standard C library: 0 brackets, 1 in front of all, 2 behind all,
// 4 right behind the sign of the currency.
Text negativeSignPlace(const LocaleFacts& facts, const Text& negative) {
  if (negative.empty() || negative[0] == u'-') return u"1";
  if (negative[0] == u'(') return u"0";
  if (negative.back() == u'-') return u"2";
  require(replaced(negative, u" ", u"").starts_with(u"\u00A4-"), facts.fact("currencyPattern").place,
          "the negative form puts its sign first, last, or behind the currency, or has brackets");
  return u"4";
}

class Items {
 public:
  Items& operator<<(const Text& text) {
    texts_.push_back(text);
    return *this;
  }
  Items& operator<<(const std::vector<Text>& list) {
    texts_.insert(texts_.end(), list.begin(), list.end());
    return *this;
  }
  std::vector<Text>& texts() { return texts_; }

 private:
  std::vector<Text> texts_;
};

void addIdentity(const LocaleData& row, Items& items) {
  const Text language = widen(languageOf(row.key()));
  items << row.text("languageName") + u"_" + row.text("countryName") << row.text("languageName") << language
        << row.text("countryName") << language << widen(countryOf(row.key()));
  items << fieldOrder(row.text("dateFormatShort")) << row.text("paperName");
  items << std::vector<Text>(4, row.facts->text("deviceFont")) << row.facts->text("languageTag");
  items << row.facts->list("formatNames") << row.facts->list("fontNames");
}

void addFormats(const LocaleData& row, Items& items) {
  const LocaleFacts& facts = *row.facts;
  const Text& full = facts.text("dateFormatFull");
  const Text& time24 = row.text("timeFormatSeconds");
  const Text time = u" " + (facts.text("clock") == u"12" ? row.text("timeFormat12") : time24);
  items << row.text("dateFormatLong") << row.text("dateFormatShort");
  items << row.text("dateFormatLong") + time << row.text("dateFormatShort") + time
        << row.text("dateFormatMedium") + time;
  items << full + time << shortNames(full) + time << row.text("timeFormat12") << time24 << full << shortNames(full);
  items << facts.text("monthYearFormat") << facts.text("monthYearFormatShort") << facts.text("monthDayFormat")
        << facts.text("monthDayFormatShort") << facts.list("periodFormats");
}

void addNames(const LocaleData& row, Items& items) {
  items << row.text("dateSeparator");
  items << row.record.at("monthAbbreviations") << row.record.at("monthNames") << row.record.at("dayAbbreviations")
        << row.record.at("dayNames");
  items << row.text("amText") << row.text("pmText");
  items << row.facts->list("quarterNames") << row.facts->list("quarterNames");
}

void addNumbers(const LocaleData& row, Items& items) {
  const Text& pattern = row.facts->text("currencyPattern");
  const size_t end = std::min(pattern.find(u';'), pattern.size());
  const Text positive = pattern.substr(0, end);
  const Text negative = end < pattern.size() ? pattern.substr(end + 1) : Text();

  items << row.text("currencyCode") << row.text("currencySymbol") << row.text("decimalPoint")
        << row.text("groupSeparator") << row.text("currencyGrouping") << Text() << row.facts->text("negativeSign");
  items << row.text("currencyDigits") << row.text("currencyDigits");
  appendPlacing(*row.facts, positive, items.texts());
  appendPlacing(*row.facts, negative.empty() ? positive : negative, items.texts());
  items << u"1" << negativeSignPlace(*row.facts, negative);
  items << row.text("currencyPattern") << row.text("currencyPattern");

  items << row.text("decimalPoint") << row.text("groupSeparator") << row.text("numberGrouping") << Text()
        << row.facts->text("negativeSign") << row.facts->list("numberFlags");
  items << row.text("numberPattern") << row.text("numberPattern") << row.text("percentPattern")
        << row.text("percentPattern");
}

void addCustoms(const LocaleData& row, Items& items) {
  items << row.text("paperHeight") << row.text("paperWidth");
  items << row.facts->text("nameFormat") << row.facts->text("nameSuffix") << row.facts->list("formsOfAddress")
        << Text();
  items << row.facts->text("postalFormat") << row.facts->text("telephoneFormat") << row.text("measurement");
  items << Text() << Text();
}

}  // namespace

std::string escape(const Text& text) {
  std::string ascii;
  for (const char16_t unit : text) {
    char escaped[16] = {static_cast<char>(unit)};
    if (unit >= 0x7F) {
      std::snprintf(escaped, sizeof escaped, unit == kCurrencySign ? "<u%04x>" : "<U%04X>",
                    static_cast<unsigned>(unit));
    }
    ascii += escaped;
  }
  return ascii;
}

std::vector<std::string> deriveItems(const LocaleData& row) {
  Items items;
  addIdentity(row, items);
  addFormats(row, items);
  addNames(row, items);
  addNumbers(row, items);
  addCustoms(row, items);
  std::vector<std::string> ascii;
  for (const Text& text : items.texts()) ascii.push_back(escape(text));
  return ascii;
}

}  // namespace gen
