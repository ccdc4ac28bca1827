// Numbers to text: every formatter, in every locale and with signs that no locale has.
//
// Input: the formatter and whether widths are extreme (one byte), the locale, whether it keeps its signs (otherwise
// decimal point, separator and grouping follow, the grouping with its length in front), the value (8 bytes), flags (4),
// width, precision and capacity (2 each; an extreme width has 4).
#include <bit>
#include <cmath>
#include <cstdlib>

#include "fuzz/support/locales.h"
#include "locale/numbers_oracle.h"
#include "veldnls/status.h"

namespace fuzz {

namespace {

struct Case {
  QZLocale* locale;
  oracle::Signs signs;
  uint64_t bits;
  uint32_t flags;
  int32_t width;
  int32_t precision;
  int32_t capacity;
  bool extreme;  // more than the oracle has memory for

  double real() const { return std::bit_cast<double>(bits); }
  bool isMissing() const { return bits >> 48 == 0xFFFF; }
  bool isNumber() const { return std::isfinite(real()); }
};

template <class Value, class Slot>
Written format(const Case& what, Slot slot, Value value) {
  return written(what.capacity, [&](char16_t* output, int32_t capacity, int32_t* length) {
    return slot(what.locale, value, what.width, what.precision, what.flags, output, capacity, length);
  });
}

void checkAgainst(const Written& result, const oracle::Result& expected) {
  require(result == Written{expected.status, expected.length, expected.units},
          "a number is written as the oracle has it");
}

// ---- Doubles ----

// What a missing value with a byte that is no letter shows, which the oracle doesn't know.
bool hasLetter(uint64_t bits) {
  const auto letter = static_cast<char>(~bits >> 40 & 0xFF);
  return letter == '.' || letter == '-' || (letter >= 'A' && letter <= 'Z');
}

void checkDoubleStatus(bool isShown, const Written& result) {
  require(result.status == 0 || result.status == nlsFieldTooNarrow || result.status == nlsDigitsLost ||
              result.status == nlsBadArgument,
          "a status of the formatters of doubles");
  require((result.status == nlsBadArgument) == !isShown, "all that is no number is refused");
  if (result.status != nlsFieldTooNarrow) return;
  const size_t stars = result.units.find_first_not_of(u'*');
  require(stars == std::u16string::npos || result.units.find_first_not_of(untouchedUnit, stars) == std::u16string::npos,
          "a field that is too narrow has stars and nothing else");
}

// A text with all digits that a double has comes back, blanks and separators or not.
void checkComesBack(const Case& what, const Written& result) {
  constexpr uint32_t exponents = FMT_EXPONENT | FMT_EXPONENT_UPPER;
  constexpr uint32_t others = FMT_GENERAL | FMT_GENERAL_UPPER | FMT_BEST | FMT_FIELD_DECIMAL | FMT_FIELD_EXPONENT |
                              FMT_FRACTION_ONLY | FMT_INTEGER_ONLY | FMT_FIXED;
  if (result.status != 0 || !what.isNumber() || what.locale->record->number.decimalPoint != what.signs.point) return;
  if ((what.flags & exponents) == 0 || (what.flags & others) != 0 || what.precision < 16 || what.precision == 99)
    return;
  const bool left = what.width < 0 || (what.flags & FMT_LEFT) != 0;
  std::u16string text = result.units.substr(0, static_cast<size_t>(result.length));
  if (left && !text.empty() && text.back() == untouchedUnit) text.pop_back();
  double value = 0;
  int32_t consumed = 0;
  const NlsStatus status =
      what.locale->parseDouble(what.locale, placeText(text, At::end), lengthOf(text), &value, &consumed);
  if (what.real() != 0 && std::fabs(what.real()) < 2.2250738585072014e-308) {
    require(status == nlsNumberUnderflow, "subnormals underflow");
    return;
  }
  require(status == 0 && consumed == lengthOf(text), "a number that was written is read");
  require(value == what.real(), "a number comes back");
}

// Whether the oracle takes the grouping for the number that it is, or isn't.
bool hasPlainGrouping(const oracle::Signs& signs) {
  const size_t size = std::min(signs.grouping.find(u';'), signs.grouping.size());
  const bool digits = signs.grouping.find_first_not_of(u"0123456789;") == std::u16string::npos;
  return digits && size < 10 && signs.grouping.find(signs.separator) == std::u16string::npos;
}

bool isKnownToOracle(const Case& what) {
  if (what.extreme || ((what.flags & FMT_GROUP) != 0 && !hasPlainGrouping(what.signs))) return false;
  return what.isMissing() ? hasLetter(what.bits) : what.isNumber();
}

void checkDouble(const Case& what) {
  const Written result = format(what, what.locale->formatDouble, what.real());
  checkDoubleStatus(what.isNumber() || what.isMissing(), result);
  if (!isKnownToOracle(what)) return;
  checkAgainst(result,
               oracle::formatDouble(what.signs, what.real(), what.width, what.precision, what.flags, what.capacity));
}

void checkRoundTrip(Case what) {
  // Signs that no number holds, so that they can be told from it.
  const char16_t point = what.signs.point;
  if (point != u'.' && point != u',' && point != u'\u066B') return;
  what.flags &= ~(FMT_GENERAL | FMT_GENERAL_UPPER | FMT_BEST | FMT_FIELD_DECIMAL | FMT_FIELD_EXPONENT |
                  FMT_FRACTION_ONLY | FMT_INTEGER_ONLY | FMT_FIXED | FMT_GROUP);
  what.flags |= FMT_EXPONENT;
  what.precision = 16 + (what.precision & 0x1F);
  what.width %= 200;
  what.capacity = 400;
  checkComesBack(what, format(what, what.locale->formatDouble, what.real()));
}

// ---- Amounts ----

// The number inside of a percent, as its steps go.
void checkPercent(const Case& what) {
  const Written result = format(what, what.locale->formatPercent, what.real());
  const bool parentheses = (what.flags & FMT_PERCENT_PARENTHESES) != 0 && what.real() < 0;
  const int32_t places = parentheses ? 2 : 1;
  const double value = what.isMissing() ? what.real() : what.real() * 100;
  checkDoubleStatus(what.isMissing() || std::isfinite(value), result);
  if (what.extreme || what.capacity < places || !std::isfinite(value)) return;
  oracle::Result expected =
      oracle::formatDouble(what.signs, value, what.width - places, what.precision, FMT_FIXED, what.capacity - places);
  const auto count = static_cast<size_t>(expected.length);
  expected.length += places;
  expected.units.append(static_cast<size_t>(places), oracle::untouched);
  if (expected.status == 0) {
    expected.units[count] = u'%';
    if (parentheses) {
      expected.units[count + 1] = u')';
      expected.units[0] = u'(';
      const size_t minus = expected.units.find(u'-');
      if (minus < count) expected.units[minus] = u' ';
    }
  }
  checkAgainst(result, expected);
}

void checkCurrency(const Case& what) {
  const Written result = format(what, what.locale->formatCurrency, what.real());
  const std::u16string_view symbol = viewOf(what.locale->record->currency.currencySymbol);
  const int32_t places = lengthOf(symbol);
  if (what.width < 1 || what.width < places) {
    require(result == Written{nlsFieldTooNarrow, 0, std::u16string(result.units.size(), untouchedUnit)},
            "a field without room for the symbol is refused");
    return;
  }
  checkDoubleStatus(what.isNumber() || what.isMissing(),
                    {result.status, result.length, result.status == 0 ? result.units : u""});
  if (result.status != 0) return;
  const auto field = static_cast<size_t>(std::min(what.width, what.capacity));
  const size_t first = result.units.find_first_not_of(u' ');
  require(symbol.empty() || first < field, "an amount is written");
  if (symbol.find(u' ') != std::u16string::npos || symbol.empty()) return;
  require(std::u16string_view(result.units).substr(first, symbol.size()) == symbol, "the symbol stands in front");
}

// ---- Integers and pointers ----

template <class Value>
oracle::Result expectedInteger(const Case& what, Value value) {
  if constexpr (std::is_signed_v<Value>) {
    return oracle::formatSigned(what.signs, value, what.width, what.precision, what.flags, what.capacity);
  } else {
    return oracle::formatUnsigned(what.signs, value, what.width, what.precision, what.flags, what.capacity);
  }
}

template <class Value, auto slot>
void checkInteger(const Case& what) {
  const auto value = static_cast<Value>(what.bits);
  const Written result = format(what, what.locale->*slot, value);
  require(result.status == 0 || result.status == nlsFieldTooNarrow, "a status of the formatters of integers");
  if (!what.extreme) checkAgainst(result, expectedInteger(what, value));
}

void checkPointer(const Case& what) {
  const auto* value = reinterpret_cast<const void*>(static_cast<uintptr_t>(what.bits));
  const auto format = [&](char16_t* output, int32_t capacity, int32_t* length) {
    return what.locale->formatPointer(what.locale, value, what.width, what.flags, output, capacity, length);
  };
  const Written result = written(what.capacity, format);
  const bool fits = result.length <= what.capacity;
  require(result.status == (fits ? 0 : nlsFieldTooNarrow), "a pointer is written, or cut");
  require(result.units.find(untouchedUnit) == std::u16string::npos, "the output behind a pointer is cleared");
  if (what.extreme) return;
  // With room enough the text is longer, and begins with what was cut.
  const Written whole = written(mostUnits, format);
  require(whole.status == 0 && whole.length == result.length, "the length of a pointer doesn't hang on the room");
  if (!fits) require(whole.units.starts_with(result.units), "a pointer is cut at its end");
}

// ---- Cases ----

int32_t signedWord(Input& input) { return static_cast<int16_t>(input.word()); }

void readSigns(Input& input, Case& what) {
  if ((input.byte() & 1) != 0) {
    LocaleNumber& number = (what.locale = changeableLocale(what.locale))->record->number;
    number.decimalPoint = static_cast<char16_t>(input.word());
    number.groupSeparator = static_cast<char16_t>(input.word());
    std::u16string grouping;
    for (size_t length = input.byte() % 61; grouping.size() < length;) grouping += static_cast<char16_t>(input.byte());
    number.numberGrouping = counted(grouping);
  }
  const LocaleNumber& number = what.locale->record->number;
  what.signs = {number.decimalPoint, number.groupSeparator, std::u16string(viewOf(number.numberGrouping))};
}

Case readCase(Input& input, bool extreme) {
  Case what{chooseLocale(input), {}, 0, 0, 0, 0, 0, extreme};
  readSigns(input, what);
  what.bits = input.longWord();
  what.bits |= uint64_t{input.longWord()} << 32;
  what.flags = input.longWord();
  what.width = extreme ? static_cast<int32_t>(input.longWord()) : signedWord(input) % 1000;
  what.precision = extreme ? static_cast<int32_t>(input.longWord()) : signedWord(input) % 1000;
  what.capacity = input.word() % mostUnits;
  return what;
}

}  // namespace

void check(Input input) {
  constexpr void (*checks[])(const Case&) = {checkDouble,
                                             checkPercent,
                                             checkCurrency,
                                             checkInteger<int32_t, &QZLocale::formatInt32>,
                                             checkInteger<int64_t, &QZLocale::formatInt64>,
                                             checkInteger<uint32_t, &QZLocale::formatUInt32>,
                                             checkInteger<uint64_t, &QZLocale::formatUInt64>,
                                             checkPointer};
  const uint8_t choice = input.byte();
  const Case what = readCase(input, (choice & 0x80) != 0);
  const size_t formatter = choice % std::size(checks);
  checks[formatter](what);
  if (formatter == 0) checkRoundTrip(what);
}

}  // namespace fuzz
