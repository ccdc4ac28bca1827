#include "plain_values.h"

#include <cmath>

#include "text.h"
#include "veldnls/status.h"

namespace veld {

namespace {

constexpr double secondsOfDay = 86400;
constexpr double daysOfYear = 365.2425;
constexpr double firstYear = 1960;
// Years are written with four digits.
constexpr int yearSpan = 10000;
// Where a date and a time meet: "2011-03-02T".
constexpr size_t dateLength = 10;
constexpr char16_t noSeparator = 0xFFFF;

// The locale of plain values: one of the library's, with other signs and formats.
Locale plainLocale(QZNLS& nls) {
  Locale locale(nls, "en_US");
  LocaleRecord& record = locale.record();
  record.number.decimalPoint = u'.';
  record.number.groupSeparator = noSeparator;
  setFormat(record.dateTime.dateFormatShort, u"%Y-%m-%d");
  setFormat(record.dateTime.timeFormat24, u"%H:%M:%S");
  setFormat(record.dateTime.dateTimeFormat, u"%Y-%m-%dT%H:%M:%S");
  return locale;
}

WriteOptions plainOptions() {
  WriteOptions options;
  options.group = false;
  return options;
}

bool hasHexPrefix(std::u16string_view text) {
  return text.size() > 1 && text[0] == u'0' && (text[1] == u'x' || text[1] == u'X');
}

uint32_t digitsAt(std::u16string_view text, size_t start, size_t count) {
  uint32_t value = 0;
  for (const char16_t unit : text.substr(start, count)) value = value * 10 + (unit - u'0');
  return value;
}

}  // namespace

PlainValues::PlainValues(QZNLS& nls, Kind kind)
    : nls_(nls),
      kind_(kind),
      locale_(plainLocale(nls)),
      numbers_(nls, locale_, Kind::number, {}),
      reader_(nls, locale_, kind, {}),
      numberWriter_(nls, locale_, Kind::number, plainOptions()),
      writer_(nls, locale_, kind, plainOptions()) {}

Read PlainValues::read(std::u16string_view text) {
  switch (kind_) {
    case Kind::number:
    case Kind::money:
    case Kind::percent:
      return numbers_.read(text);
    case Kind::integer:
      return reader_.read(text);
    case Kind::hex:
    case Kind::octal:
      return readNatural(locale_, text, hasHexPrefix(text));
    default:
      return readDate(text);
  }
}

Read PlainValues::readDate(std::u16string_view text) {
  Read number = numbers_.read(text);
  if (!number.fault) {
    if (kind_ == Kind::date) number.fault = dateOfDays(number.value.number, number.value);
    return number;
  }
  if (text.find_first_of(u"-:", 1) == std::u16string_view::npos) return number;
  std::u16string joined(text);
  if (kind_ == Kind::dateTime && text.size() > dateLength && text[dateLength] == u' ') joined[dateLength] = u'T';
  return reader_.read(joined);
}

// Day, month and year by way of a datetime, whose text loses the first digit of a year of five.
std::optional<Fault> PlainValues::dateOfDays(double days, Value& value) {
  Value midnight;
  midnight.number = std::isnan(days) ? days : std::floor(days) * secondsOfDay;
  const DateSlot slot{&locale_.record().dateTime.dateTimeFormat, 0};
  const Written written = writeDate(locale_, Kind::dateTime, slot, midnight);
  if (written.fault) return written.fault;
  const auto lastDigits = static_cast<int>(digitsAt(*written.text, 0, 4));
  const double spans = std::round((firstYear + days / daysOfYear - lastDigits) / yearSpan);
  value.year = static_cast<uint32_t>(lastDigits + static_cast<int>(spans) * yearSpan);
  value.month = digitsAt(*written.text, 5, 2);
  value.day = digitsAt(*written.text, 8, 2);
  return {};
}

// A missing value shows as its letter.
Written PlainValues::writeNumber(double number) {
  Value value;
  value.number = number;
  Written written = numberWriter_.write(value);
  if (std::isnan(number) && written.text != u".") written.text->insert(0, u".");
  return written;
}

Written PlainValues::write(const Value& value) {
  switch (kind_) {
    case Kind::number:
    case Kind::money:
    case Kind::percent:
      return writeNumber(value.number);
    case Kind::integer:
      return {toUtf16(nls_, std::to_string(value.integer)), {}};
    case Kind::hex:
    case Kind::octal:
      return {toUtf16(nls_, std::to_string(value.natural)), {}};
    default:
      return writer_.write(value);
  }
}

Written PlainValues::writeCount(const Value& value) {
  if (kind_ != Kind::date) return writeNumber(value.number);
  const Written date = writer_.write(value);
  if (date.fault) return date;
  ValueReader dateTimes(nls_, locale_, Kind::dateTime, {});
  return writeNumber(dateTimes.read(*date.text + u"T00:00:00").value.number / secondsOfDay);
}

}  // namespace veld
