#include "value_writer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

#include "failure.h"
#include "veldnls/number_flags.h"
#include "veldnls/status.h"

namespace veld {

namespace {

// Room for any width in use, and for the digits, the groups and the precision of any number.
constexpr int32_t capacity = 8192;
// The field of the conversions into one, where no width is given.
constexpr int32_t fieldWidth = 12;
// Numbers from here to there are shown without an exponent.
constexpr double leastPlain = 1e-7;
constexpr double greatestPlain = 1e21;
// The precision of a double that the library takes for another conversion, FMT_BEST.
constexpr int32_t precisionOfBest = 99;

// A call of a formatter. The last place of a field that is left-justified isn't written: it shows as a blank.
template <typename Call>
Written run(const Call& call) {
  std::u16string text(capacity, u' ');
  int32_t length = 0;
  const NlsStatus status = call(text.data(), capacity, &length);
  text.resize(static_cast<size_t>(std::clamp(length, 0, capacity)));
  if (status == 0) return {std::move(text), {}};
  if (status == nlsDigitsLost || status == nlsFieldTooNarrow) return {std::move(text), faultOf(status)};
  return {{}, faultOf(status)};
}

// Digits behind the point of the shortest decimal number that stands for the value, written with or without an
// exponent.
int32_t shortestFraction(double value, std::chars_format form) {
  if (!std::isfinite(value)) return 0;
  std::array<char, 512> room;
  const char* end = std::to_chars(room.data(), room.data() + room.size(), value, form).ptr;
  const std::string_view text(room.data(), static_cast<size_t>(end - room.data()));
  const std::string_view digits = text.substr(0, text.find('e'));
  const size_t point = digits.find('.');
  return point == std::string_view::npos ? 0 : static_cast<int32_t>(digits.size() - point - 1);
}

void checkPrecision(Kind kind, std::optional<int32_t> precision) {
  const bool isDouble = kind == Kind::number || kind == Kind::money || kind == Kind::percent;
  if (!isDouble || precision != precisionOfBest) return;
  throw Failure("--precision 99 is no count of digits here: the library takes it for --as best; ask for 98 or 100");
}

uint32_t conversionFlag(Conversion conversion, bool upper) {
  switch (conversion) {
    case Conversion::shortest:
    case Conversion::fixed:
      return FMT_FIXED;
    case Conversion::general:
      return upper ? FMT_GENERAL_UPPER : FMT_GENERAL;
    case Conversion::exponent:
      return upper ? FMT_EXPONENT_UPPER : FMT_EXPONENT;
    case Conversion::best:
      return FMT_BEST;
    case Conversion::field:
      return FMT_FIELD_DECIMAL;
    case Conversion::fieldExponent:
      return FMT_FIELD_EXPONENT;
    case Conversion::integerPart:
      return FMT_INTEGER_ONLY;
    case Conversion::fractionPart:
      return FMT_FRACTION_ONLY;
  }
  return FMT_GENERAL;
}

bool fillsField(Conversion conversion) {
  return conversion == Conversion::best || conversion == Conversion::field || conversion == Conversion::fieldExponent;
}

// Digits behind the decimal point of a pattern's first form.
int32_t patternDigits(const NlsText60& pattern, char16_t point) {
  const std::u16string_view text = viewOf(pattern);
  const std::u16string_view form = text.substr(0, text.find(u';'));
  const size_t at = form.find(point);
  if (at == std::u16string_view::npos) return 0;
  const size_t end = form.find_first_not_of(u"0#", at + 1);
  return static_cast<int32_t>(std::min(end, form.size()) - at - 1);
}

}  // namespace

Written writeDate(Locale& locale, Kind kind, const DateSlot& slot, const Value& value) {
  QZLocale* l = locale.slots();
  return run([&](char16_t* output, int32_t room, int32_t* length) {
    if (kind == Kind::date) {
      return l->formatDate(l, value.month, value.day, value.year, slot.style, output, room, length);
    }
    if (kind == Kind::time) return l->formatTime(l, value.number, slot.style, output, room, length);
    return l->formatDateTime(l, value.number, 0, output, room, length);
  });
}

ValueWriter::ValueWriter(QZNLS& nls, Locale& locale, Kind kind, const WriteOptions& options)
    : locale_(locale), kind_(kind), options_(options) {
  checkPrecision(kind, options.precision);
  if (!isDateKind(kind)) return;
  slot_ = chooseFormat(nls, locale, kind, options.date);
  checkWritable(nls, locale, kind, slot_);
}

Written ValueWriter::write(const Value& value) {
  switch (kind_) {
    case Kind::number:
      return writeNumber(value.number);
    case Kind::money:
      return writeMoney(value.number);
    case Kind::percent:
      return writePercent(value.number);
    case Kind::integer:
      return writeInteger(value.integer);
    case Kind::hex:
    case Kind::octal:
      return writeNatural(value.natural);
    default:
      return writeDate(locale_, kind_, slot_, value);
  }
}

uint32_t ValueWriter::flags(bool groups) const {
  return options_.flags | (options_.group.value_or(groups) ? FMT_GROUP : 0);
}

Written ValueWriter::writeNumber(double value) {
  if (options_.conversion == Conversion::shortest && !options_.precision) return writeShortest(value);
  return showNumber(value, conversionFlag(options_.conversion, options_.upper), options_.precision.value_or(-1));
}

Written ValueWriter::writeShortest(double value) {
  const double size = std::fabs(value);
  if (value == 0 || std::isnan(value) || (size >= leastPlain && size < greatestPlain)) {
    return showNumber(value, FMT_FIXED, shortestFraction(value, std::chars_format::fixed));
  }
  const uint32_t conversion = conversionFlag(Conversion::exponent, options_.upper);
  const int32_t fraction = shortestFraction(value, std::chars_format::scientific);
  Written written = showNumber(value, conversion, fraction);
  // Below a power of two doubles lie closer: the nearest number of so few digits may stand for the one below.
  return comesBack(written, value) ? written : showNumber(value, conversion, fraction + 1);
}

bool ValueWriter::comesBack(const Written& written, double value) {
  QZLocale* l = locale_.slots();
  double read = 0;
  int32_t consumed = 0;
  return written.text &&
         l->parseDouble(l, written.text->data(), static_cast<int32_t>(written.text->size()), &read, &consumed) == 0 &&
         read == value;
}

Written ValueWriter::showNumber(double value, uint32_t conversion, int32_t precision) {
  QZLocale* l = locale_.slots();
  const int32_t width = options_.width.value_or(fillsField(options_.conversion) ? fieldWidth : 0);
  return run([&](char16_t* output, int32_t room, int32_t* length) {
    return l->formatDouble(l, value, width, precision, conversion | flags(true), output, room, length);
  });
}

Written ValueWriter::writeMoney(double amount) {
  QZLocale* l = locale_.slots();
  const LocaleCurrency& currency = locale_.record().currency;
  const int32_t precision =
      options_.precision.value_or(patternDigits(currency.currencyPattern, currency.currencyDecimalPoint));
  const uint32_t flags = options_.noFraction ? FMT_CURRENCY_NO_FRACTION : 0;
  // The slot needs a field, whose blanks don't belong to the amount.
  Written written = run([&](char16_t* output, int32_t room, int32_t* length) {
    return l->formatCurrency(l, amount, options_.width.value_or(greatestWidth), precision, flags, output, room, length);
  });
  if (written.fault) return {{}, written.fault};
  if (!options_.width) written.text->erase(0, written.text->find_first_not_of(u' '));
  return written;
}

Written ValueWriter::writePercent(double value) {
  QZLocale* l = locale_.slots();
  const LocaleRecord& record = locale_.record();
  const int32_t precision =
      options_.precision.value_or(patternDigits(record.percent.percentPattern, record.number.decimalPoint));
  const uint32_t flags = options_.parentheses ? FMT_PERCENT_PARENTHESES : 0;
  return run([&](char16_t* output, int32_t room, int32_t* length) {
    return l->formatPercent(l, value, options_.width.value_or(0), precision, flags, output, room, length);
  });
}

// A field is filled with zeros only where no least count of digits is asked for. Zero then has no digit at all, and a
// field with "0x" is a place too long: for these, `fillsWidth`, the least count is what the units in front leave.
int32_t ValueWriter::leastDigits(bool fillsWidth, int32_t unitsInFront) const {
  if (options_.precision) return *options_.precision;
  const int32_t width = options_.width.value_or(0);
  const bool hasZeros = (options_.flags & FMT_ZERO) != 0 && (options_.flags & FMT_LEFT) == 0 && width >= 0;
  if (!hasZeros) return 1;
  return fillsWidth ? std::max(1, width - unitsInFront) : 0;
}

Written ValueWriter::writeInteger(int64_t value) {
  QZLocale* l = locale_.slots();
  const int32_t digits = leastDigits(value == 0, (options_.flags & (FMT_PLUS | FMT_SPACE)) != 0 ? 1 : 0);
  return run([&](char16_t* output, int32_t room, int32_t* length) {
    return l->formatInt64(l, value, options_.width.value_or(0), digits, flags(false), output, room, length);
  });
}

Written ValueWriter::writeNatural(uint64_t value) {
  QZLocale* l = locale_.slots();
  uint32_t base = FMT_OCTAL | (options_.prefix ? FMT_ALT_OCTAL : 0);
  if (kind_ == Kind::hex) {
    base = (options_.upper ? FMT_HEX_UPPER : FMT_HEX) | (options_.prefix ? FMT_ALT_HEX : 0);
  }
  constexpr int32_t prefixLength = 2;
  const bool hasPrefix = (base & FMT_ALT_HEX) != 0;
  const int32_t digits = leastDigits(value == 0 || hasPrefix, hasPrefix ? prefixLength : 0);
  return run([&](char16_t* output, int32_t room, int32_t* length) {
    return l->formatUInt64(l, value, options_.width.value_or(0), digits, base | options_.flags, output, room, length);
  });
}

}  // namespace veld
