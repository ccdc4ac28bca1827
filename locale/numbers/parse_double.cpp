#include "core/wide_text.h"
#include "locale/numbers/binary_double.h"
#include "locale/numbers/decimal_text.h"
#include "locale/numbers/decimal_to_double.h"
#include "locale/numbers/missing_value.h"
#include "locale/numbers/parsers.h"
#include "locale/numbers/text_reader.h"

namespace veldnls {
namespace {

constexpr int64_t maxExponent = 30800;

// An exponent above this is applied in single steps until it is reached, which overflow from stepLimit on.
constexpr int64_t lastStep = 308;
constexpr double stepLimit = 0.17976931348623157;

struct Signs {
  char16_t point;
  char16_t separator;
};

// Every function that reads returns false at a unit that doesn't belong there, with `at` on it.

// Takes the digits of a mantissa. Those of a short text, of at most maxLeading units, all fit.
template <bool isShort>
struct DigitTaker {
  uint64_t leading = 0;
  int64_t exponent = 0;
  int32_t count = 0;
  bool more = false;

  void take(char16_t unit, bool behindPoint) {
    const auto digit = static_cast<uint64_t>(unit - u'0');
    if (isShort || count < DecimalNumber::maxLeading) {
      leading = leading * 10 + digit;
      if (!isShort && leading != 0) ++count;
      if (behindPoint) --exponent;
    } else {
      more = more || digit != 0;
      if (!behindPoint) ++exponent;
    }
  }
};

// Reads digits with their separators and point; false at a separator that ends the text.
template <bool isShort>
bool readMantissa(TextReader& reader, const Signs& signs, DecimalNumber& number) {
  const char16_t* at = reader.at;
  const char16_t* const end = reader.end;
  number.text = at;
  DigitTaker<isShort> digits;
  bool complete = true;
  for (; at != end; ++at) {
    if (isDigitUnit(*at)) {
      digits.take(*at, false);
    } else if (*at != signs.separator || *at == signs.point) {
      break;
    } else if (at + 1 == end) {
      complete = false;
      break;
    }
  }
  if (complete && at != end && *at == signs.point) {
    for (++at; at != end && isDigitUnit(*at); ++at) digits.take(*at, true);
  }
  reader.at = at;
  number.textEnd = at;
  number.leading = digits.leading;
  number.exponent = digits.exponent;
  number.more = digits.more;
  return complete;
}

// An exponent, if there is one. Larger ones than any that matters are cut.
bool readExponent(TextReader& reader, const Signs& signs, int64_t& exponent) {
  constexpr int64_t enough = 1'000'000'000'000;
  exponent = 0;
  if (reader.ended()) return true;
  if (!reader.is(u'E') && !reader.is(u'e') && !reader.is(u'D') && !reader.is(u'd')) return true;
  ++reader.at;
  const bool negative = reader.is(u'-');
  if (negative || reader.is(u'+')) ++reader.at;
  if (!reader.isDigit()) return false;
  for (; reader.isDigit() || reader.is(signs.separator); ++reader.at) {
    if (isDigitUnit(*reader.at)) exponent = exponent < enough ? exponent * 10 + (*reader.at - u'0') : enough;
  }
  if (negative) exponent = -exponent;
  return true;
}

NlsStatus convert(DecimalNumber number, int64_t exponent, bool negative, double* value) {
  const int64_t scale = number.exponent;
  if (exponent > lastStep) {
    number.exponent = scale + exponent - (lastStep + 1);
    if (!isBelow(decimalToDouble(number), stepLimit)) return nlsNumberOverflow;
  }
  number.exponent = scale + exponent;
  const double magnitude = decimalToDouble(number);
  if (!isFinite(magnitude)) return nlsNumberOverflow;
  if (number.leading != 0 && magnitudeBits(magnitude) < doubleSmallestNormalBits) return nlsNumberUnderflow;
  *value = std::bit_cast<double>(magnitudeBits(magnitude) | (negative ? doubleSignBit : 0));
  return 0;
}

NlsStatus readNumber(TextReader& reader, const Signs& signs, bool negative, double* value) {
  DecimalNumber number;
  int64_t exponent = 0;
  const bool isShort = reader.end - reader.at <= DecimalNumber::maxLeading;
  const bool complete =
      isShort ? readMantissa<true>(reader, signs, number) : readMantissa<false>(reader, signs, number);
  if (!complete || !readExponent(reader, signs, exponent)) return nlsNoDigits;
  // The name speaks of dates, where the value is raised too.
  if (exponent > maxExponent) return nlsDateOutOfRange;
  reader.skipBlanksAndTabs();
  return reader.ended() ? convert(number, exponent, negative, value) : nlsNoDigits;
}

// Behind a point that is no decimal point.
NlsStatus readMissing(TextReader& reader, double* value) {
  if (reader.ended()) return 0;
  const char16_t* letterAt = reader.at++;
  reader.skipBlanksAndTabs();
  if (!reader.ended()) return nlsNoDigits;
  if (isBlankOrTab(*letterAt)) return 0;
  const char16_t letter = foldToUpper(*letterAt);
  if (letter != u'_' && (letter < u'A' || letter > u'Z')) {
    reader.at = letterAt;
    return nlsNoDigits;
  }
  *value = missingValue(letter);
  return 0;
}

// Whether a number starts here: a digit, or the decimal point and a digit. `reader` stands at the unit that decides.
bool startsNumber(TextReader& reader, const Signs& signs) {
  if (reader.isDigit()) return true;
  if (!reader.is(signs.point)) return false;
  ++reader.at;
  return reader.isDigit();
}

NlsStatus readValue(TextReader& reader, const Signs& signs, double* value) {
  const char16_t* first = reader.at;
  const bool signedNumber = reader.is(u'+') || reader.is(u'-');
  if (signedNumber) ++reader.at;
  const char16_t* start = reader.at;
  if (startsNumber(reader, signs)) {
    reader.at = start;
    return readNumber(reader, signs, *first == u'-', value);
  }
  if (*first == u'.') {
    reader.at = first + 1;
    return reader.isDigit() ? nlsNoDigits : readMissing(reader, value);
  }
  return nlsNoDigits;
}

}  // namespace

NlsStatus parseDouble(const LocaleNumber* locale, const char16_t* text, int32_t length, double* value,
                      int32_t* consumed) {
  *value = missingValue(u'.');
  *consumed = 0;
  if (length < 1) return length == 0 ? 0 : nlsNoDigits;
  const Signs signs = locale == nullptr ? Signs{u'.', u','} : Signs{locale->decimalPoint, locale->groupSeparator};
  TextReader reader{text, text + length};
  reader.skipBlanksAndTabs();
  const char16_t* first = reader.at;
  const NlsStatus status = reader.ended() ? 0 : readValue(reader, signs, value);
  // A text that can't be a number from its first unit on is not consumed at all.
  if (status == 0 || reader.at != first) *consumed = static_cast<int32_t>(reader.at - text);
  return status;
}

}  // namespace veldnls
