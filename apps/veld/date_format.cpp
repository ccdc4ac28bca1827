#include "date_format.h"

#include <algorithm>
#include <array>

#include "failure.h"
#include "text.h"
#include "value_writer.h"
#include "veldnls/status.h"

namespace veld {

namespace {

// Places of formats in the item table.
constexpr size_t itemLongDateTime = 30;
constexpr size_t itemShortDateTime = 31;
constexpr size_t itemMediumDateTime = 32;
constexpr size_t itemFullDateTime = 33;
constexpr size_t itemFullDate = 37;

struct ReadableItem {
  char16_t letter;
  const char* words;
  size_t digits;
};

// Letters count in their case.
constexpr ReadableItem readableItems[] = {
    {u'd', "a day of two digits", 2},
    {u'e', "a day of two digits", 2},
    {u'm', "a month of two digits", 2},
    {u'o', "a month of two digits", 2},
    {u'b', "a month's short name", 0},
    {u'B', "a month's name", 0},
    {u'C', "a month's name", 0},
    {u'Y', "a year of four digits, from 1582", 4},
    {u'y', "a year of four digits, from 1582", 4},
    {u'a', "a day of the week", 0},
    {u'A', "a day of the week", 0},
    {u'F', "a day of the week", 0},
    {u'w', "a day of the week, 0 to 6", 1},
    {u'u', "a day of the week, 1 to 7", 1},
    {u'H', "an hour of two digits, 00 to 23", 2},
    {u'I', "an hour of two digits, 01 to 12", 2},
    {u'M', "minutes of two digits", 2},
    {u'S', "seconds of two digits", 2},
    {u's', "milliseconds of three digits", 3},
    {u'p', "the half of the day", 0},
    {u'%', "\"%\"", 0},
};

const ReadableItem* findItem(std::u16string_view part) {
  const auto* found = std::find_if(std::begin(readableItems), std::end(readableItems), [&](const ReadableItem& item) {
    return part.substr(1) == std::u16string_view(&item.letter, 1);
  });
  return found == std::end(readableItems) ? nullptr : found;
}

[[noreturn]] void refuseForm(const std::string& form, const char* forms) {
  throw Failure("\"" + form + "\" is no form of this kind; its forms are " + forms);
}

void put(NlsText60& field, std::u16string_view format) {
  if (!setFormat(field, format)) throw Failure("the format is longer than 60 characters; leave some of it out");
}

DateSlot chooseDate(LocaleDateTime& record, const Locale& locale, const std::string& form) {
  if (form == "medium") return {&record.dateFormatMedium, NLS_DATE_STYLE_MEDIUM};
  if (form == "long") return {&record.dateFormatLong, NLS_DATE_STYLE_LONG};
  if (form == "full") {
    put(record.dateFormatShort, locale.item(itemFullDate));
  } else if (!form.empty() && form != "short") {
    refuseForm(form, "short, medium, long and full");
  }
  return {&record.dateFormatShort, NLS_DATE_STYLE_SHORT};
}

DateSlot chooseTime(LocaleDateTime& record, const std::string& form) {
  if (form == "12") return {&record.timeFormat12, NLS_TIME_STYLE_12};
  if (!form.empty() && form != "24") refuseForm(form, "12 and 24");
  return {&record.timeFormat24, NLS_TIME_STYLE_24};
}

DateSlot chooseDateTime(LocaleDateTime& record, const Locale& locale, const std::string& form) {
  struct Row {
    const char* form;
    size_t item;
  };
  constexpr Row rows[] = {{"short", itemShortDateTime},
                          {"medium", itemMediumDateTime},
                          {"long", itemLongDateTime},
                          {"full", itemFullDateTime}};
  const auto* row = std::find_if(std::begin(rows), std::end(rows), [&](const Row& r) { return form == r.form; });
  if (row != std::end(rows)) {
    put(record.dateTimeFormat, locale.item(row->item));
  } else if (!form.empty()) {
    refuseForm(form, "short, medium, long and full");
  }
  return {&record.dateTimeFormat, 0};
}

std::string character(size_t place) { return " at character " + std::to_string(place + 1) + " of the format"; }

// Whether one of the items stands in the format.
bool holds(std::u16string_view format, std::u16string_view letters) {
  const std::vector<FormatPart> parts = partsOf(format);
  return std::any_of(parts.begin(), parts.end(), [&](const FormatPart& part) {
    return part.isItem && letters.find(format[part.end - 1]) != std::u16string_view::npos;
  });
}

}  // namespace

std::vector<FormatPart> partsOf(std::u16string_view format) {
  std::vector<FormatPart> parts;
  for (size_t i = 0; i < format.size();) {
    const size_t start = i;
    const bool isItem = format[i] == u'%';
    if (isItem && i + 1 < format.size() && format[i + 1] == u'?') ++i;
    const bool isPair = format[i] >= 0xD800 && format[i] < 0xDC00;
    i = std::min(i + (isItem || isPair ? 2 : 1), format.size());
    parts.push_back({start, i, isItem});
  }
  return parts;
}

Wanted wantedAt(QZNLS& nls, std::u16string_view part) {
  const ReadableItem* item = part.front() == u'%' ? findItem(part) : nullptr;
  if (item != nullptr) return {item->words, item->digits};
  return {"\"" + toUtf8(nls, part) + "\"", 0};
}

DateSlot chooseFormat(QZNLS& nls, Locale& locale, Kind kind, const DateChoice& choice) {
  LocaleDateTime& record = locale.record().dateTime;
  DateSlot slot{};
  if (kind == Kind::date) {
    slot = chooseDate(record, locale, choice.form);
  } else if (kind == Kind::time) {
    slot = chooseTime(record, choice.form);
  } else {
    slot = chooseDateTime(record, locale, choice.form);
  }
  if (choice.format) put(*slot.format, toUtf16(nls, *choice.format));
  return slot;
}

void checkWritable(QZNLS& nls, Locale& locale, Kind kind, const DateSlot& slot) {
  const NlsText60 whole = *slot.format;
  const std::u16string_view text = viewOf(whole);
  Value anyDay;
  anyDay.month = anyDay.day = 1;
  anyDay.year = 1960;
  for (const FormatPart& part : partsOf(text)) {
    const std::u16string_view piece = text.substr(part.start, part.end - part.start);
    setFormat(*slot.format, piece);
    const Written written = writeDate(locale, kind, slot, anyDay);
    if (written.fault) {
      throw Failure("\"" + toUtf8(nls, piece) + "\"" + character(part.start) + " can't be written in a " +
                    (kind == Kind::date ? "date" : "time") + "; \"man veld\" lists the items");
    }
  }
  *slot.format = whole;
}

void checkReadable(QZNLS& nls, Kind kind, const DateSlot& slot) {
  const std::u16string_view text = viewOf(*slot.format);
  for (const FormatPart& part : partsOf(text)) {
    const std::u16string_view piece = text.substr(part.start, part.end - part.start);
    if (part.isItem && findItem(piece) == nullptr) {
      throw Failure("\"" + toUtf8(nls, piece) + "\"" + character(part.start) +
                    " can't be read; \"man veld\" lists the items");
    }
  }
  if (kind == Kind::time) return;
  if (!holds(text, u"Yy") || !holds(text, u"mobBC") || !holds(text, u"de")) {
    throw Failure("a date isn't told by this format; it needs a year, a month and a day, as in \"%Y-%m-%d\"");
  }
}

}  // namespace veld
