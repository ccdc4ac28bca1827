#include "locale/dates/parse_items.h"

#include <algorithm>

#include "core/wide_text.h"
#include "veldnls/status.h"

namespace veldnls {
namespace {

struct Reader {
  const char16_t* at;
  int32_t left;

  void skip(int32_t units) {
    at += units;
    left -= units;
  }
  bool atBlank() const { return left > 0 && *at == u' '; }
};

struct NumberField {
  int32_t places;
  int32_t low;
  int32_t high;
};

constexpr NumberField millisecondField = {3, 0, 999};
constexpr NumberField minuteField = {2, 0, 59};
constexpr NumberField secondField = {2, 0, 59};
constexpr NumberField hourField = {2, 0, 23};
constexpr NumberField halfDayHourField = {2, 1, 12};
constexpr NumberField weekdayField = {1, 0, 6};
constexpr NumberField weekdayFromOneField = {1, 1, 7};
constexpr NumberField dayField = {2, 1, 31};
constexpr NumberField monthField = {2, 1, 12};
constexpr NumberField yearField = {4, 1582, 20000};

// Blanks in front take places of the digits. Only the end of the text may leave places empty. Digits of all scripts are
// let in, with the distance from "0" as value.
bool readNumber(Reader& reader, const NumberField& field, int32_t* value) {
  int32_t places = field.places;
  for (; places > 0 && reader.atBlank(); --places) reader.skip(1);
  if (places == 0) return false;
  int32_t number = 0;
  for (; places > 0 && reader.left > 0; --places) {
    if (!isWideDigit(*reader.at)) return false;
    number = number * 10 + (*reader.at - u'0');
    reader.skip(1);
  }
  if (number < field.low || number > field.high) return false;
  *value = number;
  return true;
}

bool skipNumber(Reader& reader, const NumberField& field) {
  int32_t value;
  return readNumber(reader, field, &value);
}

bool readText(Reader& reader, const NlsText60& text) {
  if (text.count > reader.left || !wideEqualNoCase(text.text, text.count, reader.at, text.count)) return false;
  reader.skip(text.count);
  return true;
}

void skipBlanks(Reader& reader) {
  while (reader.atBlank()) reader.skip(1);
}

// The first name of the list that the text begins with, counted from 1, even if a later one is longer; 0 for none.
template <size_t count>
int32_t readName(Reader& reader, const NlsText60 (&names)[count]) {
  skipBlanks(reader);
  for (size_t i = 0; i < count; ++i) {
    if (readText(reader, names[i])) return static_cast<int32_t>(i) + 1;
  }
  return 0;
}

bool readMonthName(Reader& reader, const NlsText60 (&names)[12], int32_t* month) {
  const int32_t place = readName(reader, names);
  if (place == 0) return false;
  *month = place;
  return true;
}

bool readHalfDay(Reader& reader, const LocaleDateTime& locale, int32_t* hour) {
  skipBlanks(reader);
  if (readText(reader, locale.amText)) return true;
  if (!readText(reader, locale.pmText)) return false;
  *hour += 12;
  return true;
}

bool readHalfDayHour(Reader& reader, int32_t* hour) {
  if (!readNumber(reader, halfDayHourField, hour)) return false;
  *hour %= 12;
  return true;
}

bool readItem(Reader& reader, const LocaleDateTime& locale, char16_t letter, DateTimeFields* fields) {
  switch (letter) {
    case u's':
      return readNumber(reader, millisecondField, &fields->millisecond);
    case u'S':
      return readNumber(reader, secondField, &fields->second);
    case u'M':
      return readNumber(reader, minuteField, &fields->minute);
    case u'H':
      return readNumber(reader, hourField, &fields->hour);
    case u'I':
      return readHalfDayHour(reader, &fields->hour);
    case u'p':
      return readHalfDay(reader, locale, &fields->hour);
    case u'w':
      return skipNumber(reader, weekdayField);
    case u'u':
      return skipNumber(reader, weekdayFromOneField);
    case u'a':  // full names too, although the short ones are written
    case u'A':
    case u'F':
      return readName(reader, locale.dayNames) != 0;
    case u'e':
    case u'd':
      return readNumber(reader, dayField, &fields->day);
    case u'b':
      return readMonthName(reader, locale.monthAbbreviations, &fields->month);
    case u'B':
    case u'C':
      return readMonthName(reader, locale.monthNames, &fields->month);
    case u'o':
    case u'm':
      return readNumber(reader, monthField, &fields->month);
    case u'Y':
    case u'y':
      return readNumber(reader, yearField, &fields->year);
    default:
      return false;
  }
}

bool readLiteral(Reader& reader, char16_t unit) {
  if (*reader.at != unit) return false;
  reader.skip(1);
  return true;
}

}  // namespace

NlsStatus parseItems(const LocaleDateTime& locale, const NlsText60& format, const char16_t* text, int32_t length,
                     DateTimeFields* fields, int32_t* consumed) {
  *fields = {};
  Reader reader = {text, std::max(length, 0)};
  skipBlanks(reader);
  int32_t place = 0;
  bool inItem = false;
  while (place < format.count && reader.left > 0) {
    const char16_t unit = format.text[place++];
    if (unit == u'%' && !inItem) {
      inItem = true;
      continue;
    }
    const bool isItem = inItem && unit != u'%';
    if (!(isItem ? readItem(reader, locale, unit, fields) : readLiteral(reader, unit))) return nlsDateResultMissing;
    inItem = false;
  }
  if (place < format.count) return nlsDateResultMissing;
  *consumed = std::max(length, 0) - reader.left;
  return 0;
}

}  // namespace veldnls
