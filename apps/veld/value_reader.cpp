#include "value_reader.h"

#include <algorithm>
#include <cmath>

#include "veldnls/number_flags.h"
#include "veldnls/status.h"

namespace veld {

namespace {

int32_t sizeOf(std::u16string_view text) { return static_cast<int32_t>(text.size()); }

Fault at(Fault fault, size_t place) {
  fault.place = place;
  return fault;
}

// The library leaves what follows a value, and has no status for it.
Fault leftOver(size_t place) { return {0, "nothing may follow the value", place}; }

// The integer parsers of signed numbers skip a group separator together with the unit behind it and count both as one.
size_t unitsOf(std::u16string_view text, size_t consumed, char16_t separator) {
  size_t units = 0;
  for (size_t i = 0; i < consumed && units < text.size(); ++i) units += text[units] == separator ? 2 : 1;
  return std::min(units, text.size());
}

bool isDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

// Parentheses are a sign already, and missing values have none.
std::optional<Fault> faultInParentheses(std::u16string_view text, size_t start, double value) {
  const size_t first = skipBlanks(text, start);
  const bool isSign = text[first] == u'-' || text[first] == u'+';
  if (!isSign && !std::isnan(value)) return {};
  return at(faultOf(nlsNoDigits), first);
}

}  // namespace

size_t skipBlanks(std::u16string_view text, size_t from) {
  const size_t found = text.find_first_not_of(u" \t", from);
  return found == std::u16string_view::npos ? text.size() : found;
}

Read readNatural(Locale& locale, std::u16string_view text, bool isHex) {
  QZLocale* l = locale.slots();
  Read read;
  int32_t consumed = 0;
  const uint32_t flags = PARSE_ALLOW_TRAILING_BLANKS | (isHex ? PARSE_HEX : 0);
  const NlsStatus status = l->parseUInt64(l, text.data(), sizeOf(text), flags, &read.value.natural, &consumed);
  const auto place = static_cast<size_t>(consumed);
  if (status != 0) {
    read.fault = at(faultOf(status), place);
  } else if (place < text.size()) {
    read.fault = leftOver(place);
  }
  return read;
}

ValueReader::ValueReader(QZNLS& nls, Locale& locale, Kind kind, const DateChoice& choice)
    : nls_(nls), locale_(locale), kind_(kind) {
  if (!isDateKind(kind)) return;
  slot_ = chooseFormat(nls, locale, kind, choice);
  checkReadable(nls, kind, slot_);
}

Read ValueReader::read(std::u16string_view text) {
  switch (kind_) {
    case Kind::number:
      return readNumber(text, 0);
    case Kind::money:
      return readMoney(text);
    case Kind::percent:
      return readPercent(text);
    case Kind::integer:
      return readInteger(text);
    case Kind::hex:
    case Kind::octal:
      return readNatural(locale_, text, kind_ == Kind::hex);
    default:
      return readDate(text);
  }
}

// `text` begins at a unit of the whole one.
Read ValueReader::readNumber(std::u16string_view text, size_t offset) {
  QZLocale* l = locale_.slots();
  Read read;
  int32_t consumed = 0;
  const NlsStatus status = l->parseDouble(l, text.data(), sizeOf(text), &read.value.number, &consumed);
  if (status == 0) return read;
  // Nothing consumed means that blanks in front aren't counted either.
  const size_t place = consumed == 0 ? skipBlanks(text, 0) : static_cast<size_t>(consumed);
  read.fault = at(faultOf(status), offset + place);
  return read;
}

Read ValueReader::readInteger(std::u16string_view text) {
  QZLocale* l = locale_.slots();
  const char16_t separator = locale_.record().number.groupSeparator;
  Read read;
  int32_t consumed = 0;
  const NlsStatus status =
      l->parseInt64(l, text.data(), sizeOf(text), PARSE_ALLOW_TRAILING_BLANKS, &read.value.integer, &consumed);
  const size_t place = unitsOf(text, static_cast<size_t>(consumed), separator);
  if (status != 0) {
    read.fault = at(faultOf(status), place);
  } else if (place < text.size()) {
    read.fault = leftOver(place);
  } else if (text.find(separator) != std::u16string_view::npos) {
    read.warning = "a group separator takes the character behind it with it; read groups as a number";
  }
  return read;
}

// The number of an amount or percent, from start to end. No number is a missing value, but not beside signs.
Read ValueReader::readBare(std::u16string_view text, size_t start, size_t end, bool hasSigns) {
  const std::u16string_view bare = text.substr(start, end - start);
  Read read = readNumber(bare, start);
  if (hasSigns && skipBlanks(bare, 0) == bare.size()) read.fault = at(faultOf(nlsNoDigits), end);
  return read;
}

Read ValueReader::readMoney(std::u16string_view text) {
  const std::u16string_view symbol = viewOf(locale_.record().currency.currencySymbol);
  const size_t start = skipBlanks(text, 0);
  if (text.substr(start, symbol.size()) == symbol) {
    return readBare(text, start + symbol.size(), text.size(), !symbol.empty());
  }
  const size_t end = text.find_last_not_of(u" \t") + 1;
  const bool isBehind = end >= symbol.size() && text.substr(end - symbol.size(), symbol.size()) == symbol;
  return readBare(text, 0, isBehind ? end - symbol.size() : text.size(), isBehind);
}

Read ValueReader::readPercent(std::u16string_view text) {
  size_t start = skipBlanks(text, 0);
  size_t end = std::max(start, text.find_last_not_of(u" \t") + 1);
  const size_t length = end - start;
  const bool isNegative = length > 1 && text[start] == u'(' && text[end - 1] == u')';
  if (isNegative) {
    ++start;
    --end;
  }
  const char16_t sign = locale_.record().percent.percentSign;
  if (end > start && (text[end - 1] == u'%' || text[end - 1] == sign)) --end;
  Read read = readBare(text, start, end, end - start < length);
  if (isNegative && !read.fault) read.fault = faultInParentheses(text, start, read.value.number);
  // Missing values stay as they are.
  if (!std::isnan(read.value.number)) read.value.number /= isNegative ? -100 : 100;
  return read;
}

NlsStatus ValueReader::callDateSlot(std::u16string_view text, Value& value, int32_t& consumed) {
  QZLocale* l = locale_.slots();
  if (kind_ == Kind::date) {
    return l->parseDate(l, text.data(), sizeOf(text), slot_.style, &value.month, &value.day, &value.year, &consumed);
  }
  if (kind_ == Kind::time) return l->parseTime(l, text.data(), sizeOf(text), slot_.style, &value.number, &consumed);
  return l->parseDateTime(l, text.data(), sizeOf(text), 0, &value.number, &consumed);
}

Read ValueReader::readDate(std::u16string_view text) {
  Read read;
  int32_t consumed = 0;
  const NlsStatus status = callDateSlot(text, read.value, consumed);
  if (status != 0) {
    read.fault = whereDateFails(text);
    return read;
  }
  const size_t end = text.find_first_not_of(u' ', static_cast<size_t>(consumed));
  if (end != std::u16string_view::npos) read.fault = leftOver(end);
  return read;
}

// The parsers don't tell how far they came. A date by the first parts of the format alone shows it: that of no part
// reads nothing, and one part more than can be read fails.
Fault ValueReader::whereDateFails(std::u16string_view text) {
  QZLocale* l = locale_.slots();
  NlsText60& scratch = locale_.record().dateTime.dateFormatShort;
  const NlsText60 kept = scratch;
  const NlsText60 whole = *slot_.format;
  const std::u16string_view format = viewOf(whole);
  Fault fault = at(faultOf(nlsDateResultMissing), std::min(text.find_first_not_of(u' '), text.size()));
  size_t place = *fault.place;
  for (const FormatPart& part : partsOf(format)) {
    setFormat(scratch, format.substr(0, part.end));
    uint32_t ignored = 0;
    int32_t consumed = 0;
    if (l->parseDate(l, text.data(), sizeOf(text), NLS_DATE_STYLE_SHORT, &ignored, &ignored, &ignored, &consumed) ==
        0) {
      place = static_cast<size_t>(consumed);
      continue;
    }
    const std::u16string_view piece = format.substr(part.start, part.end - part.start);
    const Wanted wanted = wantedAt(nls_, piece);
    fault.reason = wanted.words + " should stand here";
    fault.place = place;
    // Of a number, the first place that holds no digit.
    size_t digit = place;
    while (digit < text.size() && digit - place < wanted.digits && (text[digit] == u' ' || isDigit(text[digit])))
      ++digit;
    if (digit - place < wanted.digits) fault.place = digit;
    break;
  }
  scratch = kept;
  return fault;
}

}  // namespace veld
