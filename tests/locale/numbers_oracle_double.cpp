#include "locale/numbers_oracle_double.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "veldnls/number_flags.h"
#include "veldnls/status.h"

namespace oracle {
namespace {

constexpr int mostDigits = 350;

// A text in its field.
Result tail(const Call& call, const std::u16string& text) {
  Result result{0, 0, std::u16string(static_cast<size_t>(call.capacity), untouched)};
  const int length = static_cast<int>(text.size());
  const int field = call.width == 0 ? call.capacity : call.width;
  if (length > call.capacity || field > call.capacity) {
    for (int i = 0; i < std::min(field, call.capacity); ++i) result.units[static_cast<size_t>(i)] = u'*';
    return {nlsFieldTooNarrow, std::max(length, field), result.units};
  }
  std::u16string written = text;
  if (!call.left && !call.zero && call.width != 0) {
    if (length < field) written.insert(0, static_cast<size_t>(field - length), u' ');
  } else if (call.width != 0 && length < field) {
    written.append(static_cast<size_t>(field - length - 1), u' ');
  }
  std::copy(written.begin(), written.end(), result.units.begin());
  result.length = length <= call.width ? field : length;
  return result;
}

Result onlyStars(const Call& call, int length) {
  return {nlsFieldTooNarrow, length, std::u16string(static_cast<size_t>(call.capacity), u'*')};
}

// ---- Conversions ----

// Which conversion a call asks for.
struct Conversion {
  uint32_t flags;
  bool general;
  bool exponent;
  int precision;
  int field;
};

Conversion conversionOf(const Call& call) {
  constexpr uint32_t conversions =
      FMT_FIXED | FMT_FRACTION_ONLY | FMT_INTEGER_ONLY | FMT_EXPONENT | FMT_EXPONENT_UPPER | FMT_FIELD_DECIMAL;
  Conversion as{};
  as.general = call.has(FMT_GENERAL | FMT_GENERAL_UPPER) || !call.has(conversions);
  as.flags = call.flags;
  if (as.general) as.flags &= ~(FMT_FRACTION_ONLY | FMT_INTEGER_ONLY | FMT_EXPONENT | FMT_EXPONENT_UPPER);
  as.exponent = (as.flags & (FMT_EXPONENT | FMT_EXPONENT_UPPER)) != 0;
  as.precision = call.precision < 0 ? 6 : std::min(call.precision, mostDigits);
  if (as.general && as.precision == 0) as.precision = 6;
  as.field = call.width == 0 ? call.capacity : call.width;
  return as;
}

// A number's digits, and what is shown of them.
struct Digits {
  std::string all = {};  // those behind the last are zeros
  int integerCount = 0;  // how many stand ahead of the point
  int length = 0;        // how many are shown
  int exponent = 0;
  bool inExponentForm = false;
  bool rounded = true;

  char at(int place) const { return static_cast<size_t>(place) < all.size() ? all[static_cast<size_t>(place)] : '0'; }
};

void fixedForm(const Call& call, const Conversion& as, int zeros, Digits& digits) {
  if (!as.general) {
    digits.length = as.precision + digits.integerCount;
  } else if (call.value != 0) {
    digits.length = std::max(zeros + as.precision, 1);
  }
  if (digits.integerCount == 0) {
    digits.all.insert(0, "0");
    digits.integerCount = 1;
    ++digits.length;
  }
}

void exponentForm(int length, Digits& digits) {
  digits.length = length;
  digits.integerCount = 1;
  digits.inExponentForm = true;
  digits.all.erase(0, digits.all.find_first_not_of('0'));
}

// How many digits the general form shows with an exponent: as many as the field has room for.
int generalLength(const Call& call, const Conversion& as, int exponent) {
  const int exponentDigits = decimalLength(exponent);
  const int signs = exponent < 0 ? 2 : 1;
  if (exponent == 0 || exponentDigits + signs >= as.field) return as.precision;
  const int room = as.field - signs - exponentDigits - (call.negative ? 1 : 0);
  if (room == 0) return as.precision;
  return room < 3 ? 1 : std::min(room - 1, as.precision + 1);
}

void exponentOrGeneral(const Call& call, const Conversion& as, Digits& digits) {
  int zeros = 0;
  if (digits.integerCount > 0) {
    digits.exponent = digits.integerCount - 1;
  } else {
    zeros = static_cast<int>(digits.all.find_first_not_of('0'));
    digits.exponent = -(zeros + 1);
  }
  if (as.exponent) {
    exponentForm(as.precision + 1, digits);
  } else if (digits.exponent < -4 || as.precision <= digits.exponent) {
    exponentForm(generalLength(call, as, digits.exponent), digits);
  } else {
    fixedForm(call, as, zeros, digits);
  }
}

Digits digitsOfZero(const Call& call, const Conversion& as) {
  Digits digits;
  digits.integerCount = 1;
  digits.length = call.precision < 1 || call.precision > 98 ? 2 : call.precision + 1;
  if (as.exponent || as.general) {
    exponentOrGeneral(call, as, digits);
  } else if ((as.flags & FMT_FIXED) != 0) {
    fixedForm(call, as, 0, digits);
  }
  return digits;
}

Digits digitsOf(const Call& call, const Conversion& as) {
  if (call.value == 0) return digitsOfZero(call, as);
  const Exact exact = exactDigits(call.value);
  Digits digits;
  if ((as.flags & FMT_INTEGER_ONLY) != 0) {
    digits.all = exact.integer.empty() ? "0" : exact.integer;
    digits.integerCount = digits.length = static_cast<int>(digits.all.size());
    digits.rounded = false;
    return digits;
  }
  if ((as.flags & FMT_FRACTION_ONLY) != 0) {
    digits.all = "0" + exact.fraction;
    digits.integerCount = 1;
    fixedForm(call, as, 0, digits);
    return digits;
  }
  digits.integerCount = static_cast<int>(exact.integer.size());
  digits.all = exact.integer;
  if (as.precision + digits.integerCount <= mostDigits) digits.all += exact.fraction;
  if (as.exponent || as.general) {
    exponentOrGeneral(call, as, digits);
  } else {
    fixedForm(call, as, 0, digits);
  }
  return digits;
}

// The digits that are shown. A carry out of the first one makes the integer longer or the exponent higher.
std::string shownDigits(Digits& digits) {
  std::string shown;
  for (int i = 0; i < digits.length; ++i) shown += digits.at(i);
  if (!digits.rounded || digits.at(digits.length) < '5') return shown;
  int place = digits.length - 1;
  while (place >= 0 && shown[static_cast<size_t>(place)] == '9') shown[static_cast<size_t>(place--)] = '0';
  if (place >= 0) {
    ++shown[static_cast<size_t>(place)];
  } else if (digits.inExponentForm) {
    shown[0] = '1';
    ++digits.exponent;
  } else {
    shown.insert(0, "1");
    ++digits.integerCount;
  }
  return shown;
}

std::string exponentText(int exponent, bool upper) {
  std::string digits = std::to_string(std::abs(exponent));
  if (digits.size() < 2) digits.insert(0, "0");
  return (upper ? "E" : "e") + std::string(exponent < 0 ? "-" : "+") + digits;
}

// The number without its sign.
std::u16string magnitudeText(const Call& call, const Conversion& as, Digits& digits) {
  std::string shown = shownDigits(digits);
  const int integerCount = digits.integerCount;
  if (as.general && !call.has(FMT_KEEP_ZEROS)) {
    while (static_cast<int>(shown.size()) > integerCount && shown.back() == '0') shown.pop_back();
  }
  std::u16string integer = wide(shown.substr(0, static_cast<size_t>(integerCount)));
  std::u16string rest = wide(shown.substr(static_cast<size_t>(integerCount)));
  if (call.has(FMT_POINT) || !rest.empty()) rest.insert(rest.begin(), call.signs.point);
  if (digits.inExponentForm) {
    const bool upper = (as.flags & (FMT_GENERAL_UPPER | FMT_EXPONENT_UPPER)) != 0;
    rest += wide(exponentText(digits.exponent, upper));
  }
  if (call.has(FMT_GROUP)) {
    const int size = groupSize(call.signs);
    const int separators = separatorCount(integerCount, size);
    const int sign = (call.has(FMT_PLUS) ? 1 : 0) + (call.space ? 1 : 0);
    if (separators > 0 && static_cast<int>(integer.size() + rest.size()) + separators + sign <= call.capacity) {
      integer = grouped(integer, size, call.signs.separator);
    }
  }
  return integer + rest;
}

std::u16string signOf(const Call& call) {
  if (call.negative) return u"-";
  if (call.has(FMT_PLUS)) return u"+";
  return call.space ? u" " : u"";
}

Result conversion(const Call& call) {
  const Conversion as = conversionOf(call);
  Digits digits = digitsOf(call, as);
  std::u16string text = magnitudeText(call, as, digits);
  if (call.zero && static_cast<int>(text.size()) < as.field) {
    if (as.field > call.capacity) return onlyStars(call, as.field);
    const int sign = call.negative || call.has(FMT_PLUS) ? 1 : 0;
    text.insert(0, static_cast<size_t>(as.field - static_cast<int>(text.size()) - sign), u'0');
  }
  return tail(call, signOf(call) + text);
}

// ---- Missing values ----

Result missing(const Call& call, uint64_t bits) {
  auto letter = static_cast<char16_t>(~bits >> 40 & 0xFF);
  if (letter == u'-') letter = u'_';
  if (!call.has(FMT_FIELD_DECIMAL)) return tail(call, std::u16string(1, letter));
  if (call.width > call.capacity) return onlyStars(call, call.width);
  Result result{0, call.width, std::u16string(static_cast<size_t>(call.capacity), u' ')};
  int place = call.width - (call.precision < 0 ? 6 : call.precision) - 1;
  if (place < 0) {
    if (call.has(FMT_GROUP)) return result;
    place = call.width - 1;
  }
  if (place >= 0) result.units[static_cast<size_t>(place)] = letter;
  return result;
}

}  // namespace

std::u16string wide(const std::string& text) { return {text.begin(), text.end()}; }

int decimalLength(int number) { return static_cast<int>(std::to_string(std::abs(number)).size()); }

int groupSize(const Signs& signs) {
  if (signs.grouping.empty()) return 0;
  for (const char16_t unit : signs.grouping) {
    if (unit < u'0' || unit > u'9') return 3;
  }
  int size = 0;
  for (const char16_t unit : signs.grouping) size = size * 10 + (unit - u'0');
  return size;
}

int separatorCount(int digits, int size) {
  if (size < 1 || digits < size) return 0;
  return digits / size - (digits % size == 0 ? 1 : 0);
}

std::u16string grouped(const std::u16string& digits, int size, char16_t separator) {
  std::u16string text;
  for (size_t i = 0; i < digits.size(); ++i) {
    if (i != 0 && (digits.size() - i) % static_cast<size_t>(size) == 0) text += separator;
    text += digits[i];
  }
  return text;
}

Result formatDouble(const Signs& signs, double value, int32_t width, int32_t precision, uint32_t flags,
                    int32_t capacity) {
  const auto bits = std::bit_cast<uint64_t>(value);
  const bool isMissing = bits >> 48 == 0xFFFF;
  Call call{signs, std::fabs(value),       std::abs(width), precision, flags, capacity, false, false,
            false, !isMissing && value < 0};
  call.left = call.has(FMT_LEFT) || width < 0;
  call.zero = call.has(FMT_ZERO) && !call.left && width != 0;
  call.space = call.has(FMT_SPACE) && !call.has(FMT_PLUS) && !call.left && !call.zero;
  if (isMissing) return missing(call, bits);
  const bool best = call.has(FMT_BEST) || precision == 99;
  if (best || call.has(FMT_FIELD_DECIMAL | FMT_FIELD_EXPONENT)) return fieldFormat(call, best);
  return conversion(call);
}

}  // namespace oracle
