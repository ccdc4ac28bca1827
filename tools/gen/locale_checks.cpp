// What must hold of every row of locale data.
#include <algorithm>
#include <string_view>

#include "locale_data.h"

namespace gen {

void checkFixedValues(const std::vector<LocaleData>& rows);
void checkKnownOverrides(const std::string& path, const std::vector<LocaleData>& rows);
void checkFigures(const std::string& path, const std::vector<LocaleData>& rows);

namespace {

constexpr size_t kItemCapacity = 160;
constexpr size_t kLongestItem = 120;

void checkTexts(const LocaleData& row) {
  for (const RecordField& field : kTextFields) {
    for (const Text& text : row.record.at(field.name)) {
      const Place place = placeOf(row, field.name);
      require(!text.empty(), place, row.key() + " has an empty " + field.name);
      require(text.size() <= field.capacity, place,
              std::string(field.name) + " has " + std::to_string(text.size()) + " units, the record takes " +
                  std::to_string(field.capacity));
      // A formatter cuts blanks at the end, and a parser skips those in front.
      require(text.front() != u' ' && text.back() != u' ', place,
              std::string(field.name) + " ends or begins in a blank");
    }
  }
}

void checkItems(const std::string& path, const LocaleData& row) {
  requireCount(path, row.items.size(), kItems, "items in " + row.key());
  for (size_t i = 0; i < kItems; ++i) {
    require(row.items[i].size() <= kItemCapacity, {path, 0},
            "item " + std::to_string(i) + " of " + row.key() + " has " + std::to_string(row.items[i].size()) +
                " bytes, the record takes 160");
  }
}

void checkLongestItem(const std::string& path, const std::vector<LocaleData>& rows) {
  size_t longest = 0;
  for (const LocaleData& row : rows) {
    for (const std::string& item : row.items) longest = std::max(longest, item.size());
  }
  requireCount(path, longest, kLongestItem, "bytes in its longest item");
}

void checkSigns(const LocaleData& row) {
  const Text& group = row.text("groupSeparator");
  require(Text(u".,\u066B").find(row.text("decimalPoint")) != Text::npos, placeOf(row, "decimalPoint"),
          "a decimal point is one of . , U+066B");
  require(Text(u",.\u00A0'\u066C").find(group) != Text::npos, placeOf(row, "groupSeparator"),
          "groups are separated by one of , . ' U+00A0 U+066C");
  require(group != row.text("decimalPoint"), placeOf(row, "groupSeparator"),
          row.key() + " has one sign for decimal point and groups");
  for (const char* field : {"numberGrouping", "currencyGrouping"}) {
    const Text& grouping = row.text(field);
    require(grouping == u"3" || grouping == u"3;2" || grouping == u"2;3", placeOf(row, field),
            "sizes of groups are 3, 3;2 or 2;3");
  }
  const Text& code = row.text("currencyCode");
  require(code.size() == 3 && std::all_of(code.begin(), code.end(), [](char16_t c) { return c >= u'A' && c <= u'Z'; }),
          placeOf(row, "currencyCode"), "a currency has a code of three capitals");
  const Text& clock = row.facts->text("clock");
  require(clock == u"12" || clock == u"24", placeOf(row, "clock"), "a clock has 12 or 24 hours");
}

// ---- formats ----

// The items of a format, without their "%".
Text itemsOf(const Place& place, const Text& format) {
  Text items;
  for (size_t i = 0; i < format.size(); ++i) {
    if (format[i] != u'%') continue;
    require(i + 1 < format.size(), place, "a format doesn't end in \"%\"");
    items += format[++i];
  }
  return items;
}

using ItemGroups = std::vector<std::u16string_view>;

// True if each group of `groups` (as "d mbB yY") gives exactly one item, and `items` has no others.
bool hasOneOfEach(const Text& items, const ItemGroups& groups) {
  size_t count = 0;
  for (const std::u16string_view group : groups) {
    const auto found =
        std::count_if(items.begin(), items.end(), [&](char16_t c) { return group.find(c) != group.npos; });
    if (found != 1) return false;
    ++count;
  }
  return count == items.size();
}

// A name in front of a longer one that begins with it, in whatever case, is read in its place.
void requireTellable(const Place& format, const LocaleData& row, const std::string& field, const LowerCase& lower) {
  const std::vector<Text>& names = row.record.at(field);
  for (size_t i = 0; i < names.size(); ++i) {
    for (size_t k = i + 1; k < names.size(); ++k) {
      require(!lower(names[k]).starts_with(lower(names[i])), format,
              row.key() + " can't read its dates back: " + escape(names[i]) + " begins " + escape(names[k]));
    }
  }
}

// Formatter and parser agree on these items only: months by number or either name, years of four digits for %y too.
void checkDate(const LocaleData& row, const std::string& field, const Text& items, const LowerCase& lower) {
  require(hasOneOfEach(items, {u"d", u"mbB", u"yY"}), placeOf(row, field),
          field + " has one %d, one of %m %b %B, one of %y %Y, and no other items");
  if (items.find(u'b') != Text::npos) requireTellable(placeOf(row, field), row, "monthAbbreviations", lower);
  if (items.find(u'B') != Text::npos) requireTellable(placeOf(row, field), row, "monthNames", lower);
}

void checkFormats(const LocaleData& row, const LowerCase& lower) {
  for (const char* field : {"dateFormatShort", "dateFormatMedium", "dateFormatLong"}) {
    checkDate(row, field, itemsOf(placeOf(row, field), row.text(field)), lower);
  }
  const Place both = placeOf(row, "dateTimeFormat");
  const Text dateTime = itemsOf(both, row.text("dateTimeFormat"));
  const size_t hour = std::min(dateTime.find(u'H'), dateTime.size());
  checkDate(row, "dateTimeFormat", dateTime.substr(0, hour), lower);
  require(dateTime.substr(hour) == u"HMS", both, "dateTimeFormat ends in %H %M %S");

  const Place clock24 = placeOf(row, "timeFormat24");
  const Text time24 = itemsOf(clock24, row.text("timeFormat24"));
  require(time24 == u"HMS" || time24 == u"HM", clock24, "timeFormat24 has %H %M and may have %S");
  require(itemsOf(clock24, row.text("timeFormatSeconds")) == u"HMS", placeOf(row, "timeFormatSeconds"),
          "timeFormatSeconds has %H %M %S; give it a line where timeFormat24 has no seconds");
  // A parser overwrites what %p did with an hour that comes behind it.
  const Place clock12 = placeOf(row, "timeFormat12");
  require(itemsOf(clock12, row.text("timeFormat12")) == u"IMSp", clock12, "timeFormat12 has %I %M %S %p in this order");
  require(!lower(row.text("pmText")).starts_with(lower(row.text("amText"))), placeOf(row, "pmText"),
          row.key() + " reads its pmText as amText");
}

// ---- formats of items alone, which the library hands out and doesn't parse ----

const ItemGroups kFullItems = {u"A", u"d", u"mB", u"yY"};
const ItemGroups kMonthYearItems = {u"mbB", u"yY"};
const ItemGroups kMonthDayItems = {u"mbB", u"d"};
const ItemGroups kPeriodItems[] = {{u"yY"}, {u"yY"}, {u"qQ", u"yY"}, {u"qQ", u"yY"}, {u"U", u"gG"}, {u"U", u"gG"}};

// "one %d, one of %q %Q".
std::string namesOf(const ItemGroups& groups) {
  std::string names;
  for (const std::u16string_view group : groups) {
    if (!names.empty()) names += ", ";
    names += group.size() > 1 ? "one of" : "one";
    for (const char16_t item : group) names += std::string(" %") + static_cast<char>(item);
  }
  return names;
}

void checkItemsOf(const LocaleData& row, const std::string& field, const Text& format, const ItemGroups& groups) {
  const Place place = placeOf(row, field);
  require(hasOneOfEach(itemsOf(place, format), groups), place,
          escape(format) + " of " + field + " needs " + namesOf(groups) + ", and no other items");
}

void checkItemFormats(const LocaleData& row) {
  const LocaleFacts& facts = *row.facts;
  checkItemsOf(row, "dateFormatFull", facts.text("dateFormatFull"), kFullItems);
  for (const char* field : {"monthYearFormat", "monthYearFormatShort"}) {
    checkItemsOf(row, field, facts.text(field), kMonthYearItems);
  }
  for (const char* field : {"monthDayFormat", "monthDayFormatShort"}) {
    checkItemsOf(row, field, facts.text(field), kMonthDayItems);
  }
  const std::vector<Text>& periods = facts.list("periodFormats");
  for (size_t i = 0; i < periods.size(); ++i) checkItemsOf(row, "periodFormats", periods[i], kPeriodItems[i]);
}

}  // namespace

void checkLocaleData(const std::string& data, const std::vector<LocaleData>& rows) {
  const std::string path = localeTables(data);
  const LowerCase lower(data);
  requireCount(path, rows.size(), kDataRows, "rows");
  for (const LocaleData& row : rows) {
    checkTexts(row);
    checkItems(path, row);
    checkSigns(row);
    checkFormats(row, lower);
    checkItemFormats(row);
  }
  checkFixedValues(rows);
  checkKnownOverrides(path, rows);
  checkFigures(path, rows);
  checkLongestItem(path, rows);
}

}  // namespace gen
