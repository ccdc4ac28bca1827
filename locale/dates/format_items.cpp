#include "locale/dates/format_items.h"

#include <algorithm>
#include <optional>

#include "core/text_primitives.h"
#include "core/wide_text.h"
#include "veldnls/status.h"

namespace veldnls {
namespace {

// The text under construction. What lies behind its room is dropped; `cut` tells that it was more than blanks.
struct BoundedText {
  static constexpr int32_t room = 512;

  char16_t units[room];
  int32_t length = 0;
  bool cut = false;

  void append(char16_t unit) {
    if (length < room) {
      units[length++] = unit;
    } else if (unit != u' ') {
      cut = true;
    }
  }
  void append(const NlsText60& text) {
    for (int32_t i = 0; i < text.count; ++i) append(text.text[i]);
  }
  // The last two digits; `fill` is written for a tens digit of 0.
  void appendTwo(int32_t value, char16_t fill) {
    const int32_t tens = value / 10 % 10;
    append(tens == 0 ? fill : static_cast<char16_t>(u'0' + tens));
    append(static_cast<char16_t>(u'0' + value % 10));
  }
};

struct Item {
  char16_t letter;  // upper case
  bool brief;
};

// Reads the item whose "%" stands in front of `*place`, and moves behind it.
bool readItem(const NlsText60& format, int32_t* place, Item* item) {
  item->brief = *place < format.count && format.text[*place] == u'?';
  if (item->brief) ++*place;
  if (*place >= format.count) return false;
  const char16_t unit = format.text[(*place)++];
  item->brief = item->brief || isWideLower(unit);
  item->letter = foldToUpper(unit);
  // Minutes have only the upper-case letter: the brief form is the month.
  if (item->brief && item->letter == u'M') item->letter = u'N';
  return true;
}

struct TwoDigits {
  int32_t value;
  char16_t fill = u'0';
};

// What an item of two digits writes; nothing for other items, and for those of the time of day in plain dates.
std::optional<TwoDigits> digitsOf(const Moment& moment, char16_t letter) {
  switch (letter) {
    case u'N':
      return TwoDigits{moment.date.month};
    case u'O':
      return TwoDigits{moment.date.month, u' '};
    case u'D':
      return TwoDigits{moment.date.day};
    case u'E':
      return TwoDigits{moment.date.day, u' '};
    default:
      break;
  }
  if (!moment.hasTime) return std::nullopt;
  switch (letter) {
    case u'H':
      return TwoDigits{moment.hour};
    case u'I':
      return TwoDigits{moment.hour % 12 == 0 ? 12 : moment.hour % 12};
    case u'M':
      return TwoDigits{moment.minute};
    case u'S':
      return TwoDigits{moment.second};
    default:
      return std::nullopt;
  }
}

bool appendItem(BoundedText& text, const LocaleDateTime& locale, const Moment& moment, const Item& item) {
  if (const auto digits = digitsOf(moment, item.letter)) {
    text.appendTwo(digits->value, digits->fill);
    return true;
  }
  const int32_t weekday = moment.weekday - 1;
  const int32_t month = moment.date.month - 1;
  switch (item.letter) {
    case u'Z':
      return true;
    case u'%':
      text.append(u'%');
      return true;
    case u'A':
      text.append(item.brief ? locale.dayAbbreviations[weekday] : locale.dayNames[weekday]);
      return true;
    case u'F':
      text.append(locale.dayNames[weekday]);
      return true;
    case u'W':
      text.append(static_cast<char16_t>(u'0' + weekday));
      return true;
    case u'U':
      // Whatever the day.
      text.append(u'7');
      return true;
    case u'Y':
      // Two-digit years are never written. Of a year of five digits the first is lost.
      text.appendTwo(moment.date.year / 100, u'0');
      text.appendTwo(moment.date.year % 100, u'0');
      return true;
    case u'B':
      text.append(item.brief ? locale.monthAbbreviations[month] : locale.monthNames[month]);
      return true;
    case u'C':
      text.append(locale.monthNames[month]);
      return true;
    case u'P':
      if (moment.hasTime) text.append(moment.hour < 12 ? locale.amText : locale.pmText);
      return moment.hasTime;
    default:
      return false;
  }
}

bool appendFormat(BoundedText& text, const LocaleDateTime& locale, const NlsText60& format, const Moment& moment) {
  for (int32_t place = 0; place < format.count;) {
    const char16_t unit = format.text[place++];
    if (unit != u'%') {
      text.append(unit);
      continue;
    }
    Item item;
    if (!readItem(format, &place, &item) || !appendItem(text, locale, moment, item)) return false;
  }
  return true;
}

}  // namespace

NlsStatus formatItems(const LocaleDateTime& locale, const NlsText60& format, const Moment& moment, char16_t* output,
                      int32_t capacity, int32_t* length) {
  BoundedText text;
  if (!appendFormat(text, locale, format, moment)) return nlsBadArgument;
  const int32_t trimmed = text.cut ? text.length : nlsTrimTrailingBlanks(text.units, text.length);
  *length = std::clamp(capacity, 0, trimmed);
  std::copy_n(text.units, *length, output);
  return text.cut || trimmed > capacity ? nlsFieldTooNarrow : 0;
}

}  // namespace veldnls
