// Dates and times by any format, from values to text and back, and from any text.
//
// Input: what is done (one byte), the locale whose names are used, capacity (2 bytes), the value (8), the length of the
// format (one byte) and the format, then the text for the parsers. Bytes above ASCII in the format stand for "%".
#include <bit>
#include <cmath>
#include <optional>

#include "core/wide_text.h"
#include "fuzz/support/locales.h"
#include "locale/dates_days.h"
#include "veldnls/status.h"

namespace fuzz {

namespace {

constexpr int32_t plenty = 600;
constexpr double firstSecond = -11928470400;
constexpr double endSecond = 569318630400;

struct Case {
  QZLocale* locale;
  int32_t capacity;
  uint64_t bits;
  std::u16string format;
  std::u16string text;

  double seconds() const { return std::bit_cast<double>(bits); }
  bool isMissing() const { return bits >> 48 == 0xFFFF; }
  const LocaleDateTime& names() const { return locale->record->dateTime; }
};

struct Fields {
  int year = 0;
  int month = 0;
  int day = 0;
  int hour = 0;
  int minute = 0;
  int second = 0;

  bool operator==(const Fields&) const = default;
};

// ---- What a parser makes of what the formatter wrote ----

bool startsWith(std::u16string_view text, std::u16string_view start) {
  return text.size() >= start.size() &&
         veldnls::wideEqualNoCase(text.data(), lengthOf(start), start.data(), lengthOf(start));
}

// Whether no name can be taken for another, whatever follows it.
template <size_t count>
bool areApart(const NlsText60 (&names)[count]) {
  for (const NlsText60& name : names) {
    for (const NlsText60& other : names) {
      if (&name != &other && startsWith(viewOf(name), viewOf(other))) return false;
    }
  }
  return true;
}

bool areApart(const NlsText60& am, const NlsText60& pm) {
  const NlsText60 both[] = {am, pm};
  return areApart(both);
}

// One item: what it reads of the fields that were written. False where reading isn't the reverse of writing.
bool readBack(const LocaleDateTime& names, char16_t item, const Fields& from, Fields* fields) {
  switch (item) {
    case u'Y':
    case u'y':
      fields->year = from.year;
      return true;
    case u'm':
      fields->month = from.month;
      return true;
    case u'd':
      fields->day = from.day;
      return true;
    case u'B':
    case u'C':
      fields->month = from.month;
      return areApart(names.monthNames);
    case u'b':
      fields->month = from.month;
      return areApart(names.monthAbbreviations);
    case u'A':
    case u'F':
      return areApart(names.dayNames);
    case u'w':
    case u'u':
    case u'%':
      return true;
    case u'H':
      fields->hour = from.hour;
      return true;
    case u'I':
      fields->hour = from.hour % 12;
      return true;
    case u'p':
      if (from.hour >= 12) fields->hour += 12;
      return areApart(names.amText, names.pmText);
    case u'M':
      fields->minute = from.minute;
      return true;
    case u'S':
      fields->second = from.second;
      return true;
    default:
      return false;
  }
}

// What comes back of fields that a format shows; nothing where the format has parts that don't.
std::optional<Fields> fieldsThatComeBack(const Case& what, const Fields& from) {
  const std::u16string& format = what.format;
  // Blanks in front are skipped and blanks at the end are cut.
  if (format.empty() || format.front() == u' ' || format.back() == u' ') return {};
  Fields fields;
  for (size_t i = 0; i < format.size(); ++i) {
    if (format[i] != u'%') continue;
    if (++i == format.size() || !readBack(what.names(), format[i], from, &fields)) return {};
  }
  return fields;
}

// ---- Formatters ----

template <class Format>
Written checkFormat(const Case& what, Format format) {
  const Written whole = written(plenty, format);
  const Written result = written(what.capacity, format);
  if (whole.status != 0) {
    require(result.status == whole.status, "a failure doesn't hang on the room");
    for (const Written& failed : {whole, result}) {
      if (failed.status == nlsFieldTooNarrow) continue;
      require(failed.length == untouchedLength, "a failure leaves the length");
      require(failed.units.find_first_not_of(untouchedUnit) == std::u16string::npos, "a failure leaves the output");
    }
    if (whole.status != nlsFieldTooNarrow) return whole;
  }
  const auto length = static_cast<size_t>(whole.length);
  require(length <= 512, "a text as long as there is room for one");
  require(whole.units.find_first_not_of(untouchedUnit, length) == std::u16string::npos, "units behind the text stay");
  const auto kept = std::min(length, static_cast<size_t>(what.capacity));
  require(result.length == static_cast<int32_t>(kept), "a text fills its room");
  require(result.units.compare(0, kept, whole.units, 0, kept) == 0, "a short text begins like the whole one");
  require(result.units.find_first_not_of(untouchedUnit, kept) == std::u16string::npos, "units behind the text stay");
  if (whole.status == 0) {
    require(length == 0 || whole.units[length - 1] != u' ', "blanks at the end are cut");
    require(result.status == (kept < length ? nlsFieldTooNarrow : 0), "a short text is told");
  }
  return whole;
}

std::u16string textOf(const Written& written) { return written.units.substr(0, static_cast<size_t>(written.length)); }

// Items that neither formatter knows, or that dates lack, fail.
void checkFormatStatus(NlsStatus status) {
  require(status == 0 || status == nlsFieldTooNarrow || status == nlsBadArgument, "a status of a format");
}

int fullYear(uint32_t year) { return static_cast<int>(year >= 100 ? year : year < 50 ? 2000 + year : 1900 + year); }

bool isDate(uint32_t month, uint32_t day, uint32_t year) {
  if (year > 20000 || (year >= 100 && year < 1582) || month < 1 || month > 12 || day < 1) return false;
  return day <= static_cast<uint32_t>(test::monthDays(static_cast<int>(month), fullYear(year)));
}

// The year has 16 bits of the value, month and day 4 and 5; the bits behind make them impossible now and then.
void checkDate(const Case& what) {
  const auto part = [&what](int from, int bits) {
    return static_cast<uint32_t>(what.bits >> from & ((1U << bits) - 1));
  };
  const bool wild = part(32, 4) == 15;
  const uint32_t year = wild ? static_cast<uint32_t>(what.bits) : part(0, 16);
  const uint32_t month = wild ? static_cast<uint32_t>(what.bits >> 32) : part(16, 4);
  const uint32_t day = part(20, 5);
  const auto style = static_cast<int32_t>(part(40, 3)) - 2;
  const Written result = checkFormat(what, [&](char16_t* output, int32_t capacity, int32_t* length) {
    return what.locale->formatDate(what.locale, month, day, year, style, output, capacity, length);
  });
  require((result.status == nlsDateOutOfRange) == !isDate(month, day, year), "what is no date is refused");
  if (result.status == nlsDateOutOfRange) return;
  checkFormatStatus(result.status);
  const Fields from{fullYear(year), static_cast<int>(month), static_cast<int>(day)};
  const auto expected = fieldsThatComeBack(what, from);
  if (result.status != 0 || !expected.has_value() || from.year >= 10000) return;
  const std::u16string text = textOf(result);
  uint32_t read[] = {7, 7, 7};
  int32_t consumed = -77;
  const NlsStatus status = what.locale->parseDate(what.locale, placeText(text, At::end), lengthOf(text), style,
                                                  &read[0], &read[1], &read[2], &consumed);
  require(status == 0 && consumed == lengthOf(text), "a date that was written is read");
  const bool whole = expected->year != 0 && expected->month != 0 && expected->day != 0;
  require(read[0] == (whole ? month : 0) && read[1] == (whole ? day : 0), "month and day come back");
  require(read[2] == (whole ? static_cast<uint32_t>(from.year) : 0), "the year comes back");
}

// The fields of whole seconds, by a walk through the years.
Fields fieldsOf(int64_t seconds) {
  int64_t days = (seconds - static_cast<int64_t>(firstSecond)) / 86400;
  const auto time = static_cast<int>((seconds - static_cast<int64_t>(firstSecond)) % 86400);
  Fields fields{1582, 1, 1, time / 3600, time / 60 % 60, time % 60};
  while (days >= (test::leapYear(fields.year) ? 366 : 365)) days -= test::leapYear(fields.year++) ? 366 : 365;
  while (days >= test::monthDays(fields.month, fields.year)) days -= test::monthDays(fields.month++, fields.year);
  fields.day += static_cast<int>(days);
  return fields;
}

template <bool isTime>
Written formatSeconds(const Case& what) {
  return checkFormat(what, [&what](char16_t* output, int32_t capacity, int32_t* length) {
    QZLocale* locale = what.locale;
    return isTime ? locale->formatTime(locale, what.seconds(), what.capacity % 4, output, capacity, length)
                  : locale->formatDateTime(locale, what.seconds(), 0, output, capacity, length);
  });
}

NlsStatus expectedRefusal(const Case& what) {
  if (what.isMissing()) return nlsDateInputMissing;
  return what.seconds() >= firstSecond && what.seconds() < endSecond ? 0 : nlsDateOutOfRange;
}

template <bool isTime>
void checkSeconds(const Case& what) {
  const Written result = formatSeconds<isTime>(what);
  const NlsStatus refusal = expectedRefusal(what);
  if (refusal != 0 || result.status == nlsDateOutOfRange || result.status == nlsDateInputMissing) {
    require(result.status == refusal, "what is no moment is refused");
    return;
  }
  checkFormatStatus(result.status);
  if (result.status != 0 || what.seconds() != std::floor(what.seconds())) return;
  const Fields from = fieldsOf(static_cast<int64_t>(what.seconds()));
  const auto expected = fieldsThatComeBack(what, from);
  if (!expected.has_value() || from.year >= 10000) return;
  const std::u16string text = textOf(result);
  double seconds = -77;
  int32_t consumed = -77;
  QZLocale* locale = what.locale;
  if (isTime) {
    const NlsStatus status =
        locale->parseTime(locale, placeText(text, At::end), lengthOf(text), what.capacity % 4, &seconds, &consumed);
    require(status == 0 && consumed == lengthOf(text), "a time that was written is read");
    require(seconds == (expected->hour * 60 + expected->minute) * 60 + expected->second, "a time comes back");
    return;
  }
  const NlsStatus status =
      locale->parseDateTime(locale, placeText(text, At::end), lengthOf(text), 0, &seconds, &consumed);
  const bool hasDate = expected->year == from.year && expected->month == from.month && expected->day == from.day;
  if (!hasDate) return;
  require(status == 0 && consumed == lengthOf(text), "a moment that was written is read");
  const bool hasTime =
      expected->hour == from.hour && expected->minute == from.minute && expected->second == from.second;
  require(!hasTime || seconds == what.seconds(), "a moment comes back");
}

// ---- Parsers ----

struct Read {
  NlsStatus status = 0;
  double values[3] = {-77, -77, -77};
  int32_t consumed = -77;

  bool operator==(const Read&) const = default;
};

template <class Parse>
void checkParser(const Case& what, Parse parse) {
  const auto at = [&](At place) {
    Read read;
    const char16_t* text = placeText(what.text, place);
    read.status = parse(text, lengthOf(what.text), &read);
    require(std::u16string_view(text, what.text.size()) == what.text, "the text stays");
    return read;
  };
  const Read read = at(At::end);
  require(at(At::start) == read, "the answer depends on what lies beside the text");
  require(read.status == 0 || read.status == nlsDateResultMissing, "a status of the parsers of dates");
  if (read.status == 0) {
    require(read.consumed >= 0 && read.consumed <= lengthOf(what.text), "what is consumed lies in the text");
  } else {
    require(read.values[0] == -77 && read.consumed == -77, "a failure leaves the outputs");
  }
}

void checkParsers(const Case& what) {
  QZLocale* locale = what.locale;
  checkParser(what, [locale](const char16_t* text, int32_t length, Read* read) {
    return locale->parseTime(locale, text, length, 0, &read->values[0], &read->consumed);
  });
  checkParser(what, [locale](const char16_t* text, int32_t length, Read* read) {
    const NlsStatus status = locale->parseDateTime(locale, text, length, 0, &read->values[0], &read->consumed);
    if (status == 0) require(read->values[0] >= firstSecond, "a moment of the calendar");
    return status;
  });
  checkParser(what, [locale](const char16_t* text, int32_t length, Read* read) {
    uint32_t month = 7777, day = 7777, year = 7777;
    const NlsStatus status = locale->parseDate(locale, text, length, 0, &month, &day, &year, &read->consumed);
    const bool none = month == 0 && day == 0 && year == 0;
    require(none || (month <= 12 && day >= 1 && day <= 31 && year >= 1582 && year <= 20000 && month >= 1), "a date");
    require(status == 0 || none, "a failure clears the date");
    return status;
  });
}

// ---- Cases ----

Case readCase(Input& input) {
  Case what{changeableLocale(chooseLocale(input)), input.word() % (plenty + 1), 0, {}, {}};
  what.bits = input.longWord();
  what.bits |= uint64_t{input.longWord()} << 32;
  LocaleDateTime& dates = what.locale->record->dateTime;
  const size_t length = input.byte();
  if (length != 0) {
    what.format = readUnits(input, length % 61, u"%");
    dates.dateFormatShort = dates.dateFormatMedium = dates.dateFormatLong = counted(what.format);
    dates.timeFormat12 = dates.timeFormat24 = dates.dateTimeFormat = counted(what.format);
  } else {
    // The locale's own, one for all.
    what.format = viewOf(dates.dateTimeFormat);
    dates.dateFormatShort = dates.dateFormatMedium = dates.dateFormatLong = dates.dateTimeFormat;
    dates.timeFormat12 = dates.timeFormat24 = dates.dateTimeFormat;
  }
  what.text = readUnits(input, 700);
  return what;
}

// Whole seconds of the calendar, of which bits taken at random have few.
void roundSeconds(Case& what) {
  const auto range = static_cast<uint64_t>(endSecond - firstSecond);
  what.bits = std::bit_cast<uint64_t>(static_cast<double>(what.bits % range) + firstSecond);
}

}  // namespace

void check(Input input) {
  const uint8_t choice = input.byte();
  Case what = readCase(input);
  if ((choice & 0x80) != 0) roundSeconds(what);
  constexpr void (*checks[])(const Case&) = {checkDate, checkSeconds<true>, checkSeconds<false>, checkParsers};
  const size_t kind = choice % std::size(checks);
  if (kind == 0 && (choice & 0x80) != 0) return;
  checks[kind](what);
}

}  // namespace fuzz
