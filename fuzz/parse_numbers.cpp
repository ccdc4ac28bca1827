// Text to numbers: every parser, in every locale and with signs that no locale has.
//
// Input: the parser, the locale, whether it keeps its signs (otherwise decimal point and separator follow, 2 bytes
// each), flags (2 bytes), then the text as units; bytes above ASCII stand for the signs.
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <optional>
#include <string>

#include "fuzz/support/locales.h"
#include "support/parsed.h"
#include "veldnls/status.h"

namespace fuzz {

namespace {

constexpr size_t longestText = 1900;

struct Case {
  QZLocale* locale;
  char16_t point;
  char16_t separator;
  uint32_t flags;
  std::u16string text;
};

using test::Parsed;

template <class Value, class Call>
Parsed<Value> parsed(const Case& what, Call call) {
  const auto at = [&](At place) {
    Parsed<Value> result{0, {}, -77};
    const char16_t* text = placeText(what.text, place);
    result.status = call(text, lengthOf(what.text), &result.value, &result.consumed);
    require(std::u16string_view(text, what.text.size()) == what.text, "the text stays");
    return result;
  };
  const Parsed<Value> result = at(At::end);
  require(at(At::start) == result, "the answer depends on what lies beside the text");
  require(result.consumed >= 0 && result.consumed <= lengthOf(what.text), "what is consumed lies in the text");
  return result;
}

bool isDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }
bool isBlank(char16_t unit) { return unit == u' ' || unit == u'\t'; }

// ---- Doubles ----

constexpr uint64_t plainMissing = 0xFFFFD10000000000;

uint64_t bitsOf(double value) {
  uint64_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

// The text without blanks around it and without separators, as a C++ library knows numbers; none if it has units that
// these don't have.
std::optional<std::string> plainNumber(const Case& what) {
  std::u16string_view text = what.text;
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  if (!text.empty() && text.front() == u'+') {
    text.remove_prefix(1);
    if (!text.empty() && text.front() == u'-') return {};
  }
  std::string plain;
  for (const char16_t unit : text) {
    if (isDigit(unit) || unit == u'-' || unit == u'+') {
      plain += static_cast<char>(unit);
    } else if (unit == what.point) {
      plain += '.';
    } else if (unit == u'E' || unit == u'e' || unit == u'D' || unit == u'd') {
      plain += 'e';
    } else if (unit != what.separator) {
      return {};
    }
  }
  return plain;
}

// Separators may stand in the integer part and in the exponent, from its first digit on.
bool hasSeparators(const Case& what) { return what.text.find(what.separator) != std::u16string::npos; }

void checkNumber(const Case& what, const Parsed<double>& result) {
  const std::optional<std::string> plain = plainNumber(what);
  double value = 0;
  bool isPlain = false;
  bool outOfRange = false;
  if (plain.has_value()) {
    const char* end = plain->data() + plain->size();
    const auto [rest, error] = std::from_chars(plain->data(), end, value);
    isPlain = rest == end && error != std::errc::invalid_argument;
    outOfRange = error == std::errc::result_out_of_range;
  }
  if (result.status == 0 && bitsOf(result.value) >> 48 != 0xFFFF) {
    require(isPlain && !outOfRange, "what is read as a number is one");
    require(bitsOf(result.value) == bitsOf(value), "a number has the value nearest to its digits");
  }
  // An exponent above 308 may overflow where the number itself doesn't, and one above 30800 counts before all else.
  const bool hasExponent = plain.has_value() && plain->find('e') != std::string::npos;
  if (!isPlain || hasSeparators(what)) return;
  require(result.status != nlsNoDigits, "a number is read");
  if (hasExponent) return;
  if (outOfRange) {
    require(result.status == nlsNumberOverflow || result.status == nlsNumberUnderflow, "a number out of range");
  } else {
    const bool subnormal = value != 0 && std::fabs(value) < std::numeric_limits<double>::min();
    require(result.status == (subnormal ? nlsNumberUnderflow : 0),
            "only numbers below the smallest normal one underflow");
  }
}

bool isSignOfNumbers(char16_t unit) {
  return isDigit(unit) || isBlank(unit) || unit == u'+' || unit == u'-' || (unit | 0x20) == u'e' ||
         (unit | 0x20) == u'd';
}

void checkDouble(const Case& what) {
  const auto parse = [&what](QZLocale* locale) {
    return parsed<double>(what, [&](const char16_t* text, int32_t length, double* value, int32_t* consumed) {
      return what.locale->parseDouble(locale, text, length, value, consumed);
    });
  };
  const Parsed<double> result = parse(what.locale);
  const bool failed = result.status != 0;
  require(!failed || result.status == nlsNoDigits || result.status == nlsNumberOverflow ||
              result.status == nlsNumberUnderflow || result.status == nlsDateOutOfRange,
          "a status of the parser of doubles");
  if (failed) {
    require(bitsOf(result.value) == plainMissing, "a failure gives the missing value");
  } else {
    require(result.consumed == lengthOf(what.text), "a number takes the whole text");
  }
  if (what.point == u'.' && what.separator == u',') {
    require(parse(nullptr) == result, "without a locale there are point and comma");
  }
  if (what.point != what.separator && !isSignOfNumbers(what.point) && !isSignOfNumbers(what.separator)) {
    checkNumber(what, result);
  }
}

// ---- Integers ----

// What is read of an integer, place by place.
template <class Value>
class IntegerReader {
 public:
  explicit IntegerReader(const Case& what)
      : what_(what), hex_(!isSigned && (what.flags & PARSE_HEX) != 0), left_(lengthOf(what.text)) {}

  Parsed<Value> read() {
    skipBlanks();
    NlsStatus status = 0;
    if (left_ > 0) status = readSign();
    const auto value = static_cast<Value>(negative_ ? -value_ : value_);
    return {status, value, lengthOf(what_.text) - left_};
  }

 private:
  using Wide = __int128;
  static constexpr bool isSigned = std::is_signed_v<Value>;

  char16_t unit() const { return what_.text[at_]; }
  bool at(char16_t wanted) const { return left_ > 0 && unit() == wanted; }
  void next() {
    ++at_;
    --left_;
  }
  void skipBlanks() {
    while (at(u' ')) next();
  }

  NlsStatus readSign() {
    const bool minus = at(u'-');
    if ((minus && !isSigned) || (at(u'+') && hex_)) return nlsNoDigits;
    if (minus || at(u'+')) {
      negative_ = minus;
      next();
      skipBlanks();
      if (left_ == 0) return nlsNoDigits;
    } else if (hex_ && left_ >= 2 && unit() == u'0' && (what_.text[at_ + 1] | 0x20) == u'x') {
      next();
      next();
    }
    return readDigits();
  }

  int digit(bool hexadecimal) const {
    if (isDigit(unit())) return unit() - u'0';
    const auto lower = static_cast<char16_t>(unit() | 0x20);
    return hexadecimal && lower >= u'a' && lower <= u'f' && unit() < 0x80 ? lower - u'a' + 10 : -1;
  }

  NlsStatus readDigits() {
    const Wide largest = Wide{std::numeric_limits<Value>::max()} + (negative_ ? 1 : 0);
    while (left_ > 0 && at_ < what_.text.size()) {
      const int found = digit(hex_);
      if (found >= 0) {
        value_ = value_ * (hex_ ? 16 : 10) + found;
        if (value_ > largest) return overflow();
        next();
      } else if (unit() == what_.separator && !hex_) {
        next();
        if (isSigned) ++at_;
      } else {
        return readEnd();
      }
    }
    // A separator at the end has taken a unit along that isn't there.
    return 0;
  }

  NlsStatus overflow() {
    value_ = 0;
    while (left_ > 0 && at_ < what_.text.size() && (unit() == what_.separator || digit(!isSigned) >= 0)) next();
    return nlsNumberOverflow;
  }

  NlsStatus readEnd() {
    if ((what_.flags & PARSE_ALLOW_TRAILING_BLANKS) == 0) return unit() == u' ' || unit() == u'\0' ? 0 : nlsNoDigits;
    if (unit() == u'\0') return 0;
    if (unit() != u' ') return nlsNoDigits;
    while (left_ > 0 && at_ < what_.text.size() && unit() == u' ') next();
    return at_ == what_.text.size() || unit() == u'\0' ? 0 : nlsNoDigits;
  }

  const Case& what_;
  bool hex_;
  bool negative_ = false;
  size_t at_ = 0;
  int32_t left_;
  Wide value_ = 0;
};

template <class Value, auto slot>
void checkInteger(const Case& what) {
  const auto result = parsed<Value>(what, [&](const char16_t* text, int32_t length, Value* value, int32_t* consumed) {
    return (what.locale->*slot)(what.locale, text, length, what.flags, value, consumed);
  });
  if (isDigit(what.separator) || ((what.separator | 0x20) >= u'a' && (what.separator | 0x20) <= u'f')) return;
  require(result == IntegerReader<Value>(what).read(), "an integer is read place by place");
}

// ---- Cases ----

Case readCase(Input& input) {
  Case what{chooseLocale(input), 0, 0, 0, {}};
  if ((input.byte() & 1) != 0) {
    what.locale = changeableLocale(what.locale);
    what.locale->record->number.decimalPoint = static_cast<char16_t>(input.word());
    what.locale->record->number.groupSeparator = static_cast<char16_t>(input.word());
  }
  what.point = what.locale->record->number.decimalPoint;
  what.separator = what.locale->record->number.groupSeparator;
  what.flags = input.word();
  const char16_t signs[] = {what.point, what.separator, u' ', u'0'};
  what.text = readUnits(input, longestText, {signs, std::size(signs)});
  return what;
}

}  // namespace

void check(Input input) {
  constexpr void (*checks[])(const Case&) = {
      checkDouble, checkInteger<int32_t, &QZLocale::parseInt32>, checkInteger<int64_t, &QZLocale::parseInt64>,
      checkInteger<uint32_t, &QZLocale::parseUInt32>, checkInteger<uint64_t, &QZLocale::parseUInt64>};
  const uint8_t choice = input.byte();
  checks[choice % std::size(checks)](readCase(input));
}

}  // namespace fuzz
