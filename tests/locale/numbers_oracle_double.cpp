#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <vector>

#include "locale/numbers_oracle.h"
#include "veldnls/number_flags.h"
#include "veldnls/status.h"

namespace oracle {
namespace {

struct Call {
  const Signs& signs;
  double value;  // the magnitude
  int width;     // the magnitude
  int precision;
  uint32_t flags;
  int capacity;
  bool left;
  bool zero;
  bool space;
  bool negative;

  bool has(uint32_t flag) const { return (flags & flag) != 0; }
};

std::u16string wide(const std::string& text) { return {text.begin(), text.end()}; }

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

int decimalLength(int number) { return static_cast<int>(std::to_string(std::abs(number)).size()); }

std::string exponentText(int exponent, bool upper) {
  std::string digits = std::to_string(std::abs(exponent));
  if (digits.size() < 2) digits.insert(0, "0");
  return (upper ? "E" : "e") + std::string(exponent < 0 ? "-" : "+") + digits;
}

Result conversion(const Call& call) {
  constexpr uint32_t conversions =
      FMT_FIXED | FMT_FRACTION_ONLY | FMT_INTEGER_ONLY | FMT_EXPONENT | FMT_EXPONENT_UPPER | FMT_FIELD_DECIMAL;
  const bool general = call.has(FMT_GENERAL | FMT_GENERAL_UPPER) || !call.has(conversions);
  uint32_t flags = call.flags;
  if (general) flags &= ~(FMT_FRACTION_ONLY | FMT_INTEGER_ONLY | FMT_EXPONENT | FMT_EXPONENT_UPPER);
  const bool exponent = (flags & (FMT_EXPONENT | FMT_EXPONENT_UPPER)) != 0;
  int precision = call.precision < 0 ? 6 : std::min(call.precision, 350);
  if (general && precision == 0) precision = 6;
  const int field = call.width == 0 ? call.capacity : call.width;

  std::string digits;  // those behind the last are zeros
  const auto digit = [&](int place) {
    return static_cast<size_t>(place) < digits.size() ? digits[static_cast<size_t>(place)] : '0';
  };
  int integerCount = 0;
  int length = 0;
  int x = 0;
  bool inExponentForm = false;
  bool rounded = true;

  const auto significantToFront = [&] { digits.erase(0, digits.find_first_not_of('0')); };
  const auto fixedForm = [&](int zeros) {
    if (general && call.value != 0) {
      length = std::max(zeros + precision, 1);
    } else if (!general) {
      length = precision + integerCount;
    }
    if (integerCount == 0) {
      digits.insert(0, "0");
      integerCount = 1;
      ++length;
    }
  };
  const auto exponentOrGeneral = [&] {
    int zeros = 0;
    if (integerCount > 0) {
      x = integerCount - 1;
    } else {
      zeros = static_cast<int>(digits.find_first_not_of('0'));
      x = -(zeros + 1);
    }
    if (exponent) {
      length = precision + 1;
      integerCount = 1;
      inExponentForm = true;
      if (call.value != 0) significantToFront();
    } else if (x < -4 || precision <= x) {
      const int exponentDigits = decimalLength(x);
      integerCount = 1;
      inExponentForm = true;
      length = precision;
      if ((x < 0 && exponentDigits + 2 < field) || (x > 0 && exponentDigits + 1 < field)) {
        const int room = field - (x < 0 ? 2 : 1) - exponentDigits - (call.negative ? 1 : 0);
        if (room != 0) length = room < 3 ? 1 : std::min(room - 1, precision + 1);
      }
      significantToFront();
    } else {
      fixedForm(zeros);
    }
  };

  if (call.value == 0) {
    integerCount = 1;
    length = call.precision < 1 || call.precision > 98 ? 2 : call.precision + 1;
    if (exponent || general) {
      exponentOrGeneral();
    } else if ((flags & FMT_FIXED) != 0) {
      fixedForm(0);
    }
  } else {
    const Exact exact = exactDigits(call.value);
    if ((flags & FMT_INTEGER_ONLY) != 0) {
      digits = exact.integer.empty() ? "0" : exact.integer;
      integerCount = length = static_cast<int>(digits.size());
      rounded = false;
    } else if ((flags & FMT_FRACTION_ONLY) != 0) {
      digits = "0" + exact.fraction;
      integerCount = 1;
      fixedForm(0);
    } else {
      integerCount = static_cast<int>(exact.integer.size());
      digits = exact.integer;
      if (precision + integerCount <= 350) digits += exact.fraction;
      if (exponent || general) {
        exponentOrGeneral();
      } else {
        fixedForm(0);
      }
    }
  }

  std::string shown;
  for (int i = 0; i < length; ++i) shown += digit(i);
  if (rounded && digit(length) >= '5') {
    int place = length - 1;
    while (place >= 0 && shown[static_cast<size_t>(place)] == '9') shown[static_cast<size_t>(place--)] = '0';
    if (place >= 0) {
      ++shown[static_cast<size_t>(place)];
    } else if (inExponentForm) {
      shown[0] = '1';
      ++x;
    } else {
      shown.insert(0, "1");
      ++integerCount;
    }
  }
  if (general && !call.has(FMT_KEEP_ZEROS)) {
    while (static_cast<int>(shown.size()) > integerCount && shown.back() == '0') shown.pop_back();
  }
  std::u16string integer = wide(shown.substr(0, static_cast<size_t>(integerCount)));
  std::u16string rest = wide(shown.substr(static_cast<size_t>(integerCount)));
  if (call.has(FMT_POINT) || !rest.empty()) rest.insert(rest.begin(), call.signs.point);
  if (inExponentForm) {
    const bool upper = (flags & (FMT_GENERAL_UPPER | FMT_EXPONENT_UPPER)) != 0;
    rest += wide(exponentText(x, upper));
  }
  const int plus = call.has(FMT_PLUS) ? 1 : 0;
  const int space = call.space ? 1 : 0;
  if (call.has(FMT_GROUP)) {
    const int size = groupSize(call.signs);
    const int separators = separatorCount(integerCount, size);
    if (separators > 0 && static_cast<int>(integer.size() + rest.size()) + separators + plus + space <= call.capacity) {
      integer = grouped(integer, size, call.signs.separator);
    }
  }
  std::u16string text = integer + rest;
  if (call.zero && static_cast<int>(text.size()) < field) {
    if (field > call.capacity) {
      return {nlsFieldTooNarrow, field, std::u16string(static_cast<size_t>(call.capacity), u'*')};
    }
    const int zeros = field - static_cast<int>(text.size()) - (call.negative || plus != 0 ? 1 : 0) - space;
    text.insert(0, static_cast<size_t>(zeros), u'0');
  }
  if (call.negative) {
    text.insert(0, 1, u'-');
  } else if (plus != 0) {
    text.insert(0, 1, u'+');
  } else if (space != 0) {
    text.insert(0, 1, u' ');
  }
  return tail(call, text);
}

double powerOfTen(int n) {
  const double table[] = {1, 10, 100, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8};
  const int magnitude = std::abs(n);
  double power = magnitude <= 8 ? table[magnitude] : table[magnitude % 8];
  if (magnitude > 8) {
    double square = 1e8;
    for (int rest = magnitude / 8; rest != 0; rest /= 2) {
      if (rest % 2 != 0) power *= square;
      square *= square;
    }
  }
  return n < 0 ? 1 / power : power;
}

double roundingHalf(int p) {
  const std::string text = "0.5e-" + std::to_string(p);
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

int shifted(int value, int bits) { return static_cast<int>(std::floor(std::ldexp(value, -bits))); }

int expLength(int x) { return 1 + (x < 0 ? 1 : 0) + decimalLength(x); }

// An output in which every place is checked.
struct Field {
  std::u16string units;
  int start = 0;

  char16_t& operator[](int place) { return units.at(static_cast<size_t>(start + place)); }
  void fill(int from, int count, char16_t unit) {
    for (int i = 0; i < count; ++i) (*this)[from + i] = unit;
  }
};

uint32_t exponentField(const Signs& signs, Field field, std::u16string& out, bool negative, int width, int precision,
                       double value) {
  uint32_t status = 0;
  int binary = 0;
  std::frexp(value, &binary);
  int x = 0;
  double m = 0;
  if (binary < 0) {
    x = std::max(-shifted(binary * -77 + 255, 8), -308);
    m = value * powerOfTen(-x);
    if (m >= 1) {
      m *= 0.10000000000000002;
      ++x;
    }
  } else {
    x = shifted(binary * 77, 8);
    if (binary < 308) {
      ++x;
      m = value / powerOfTen(x);
    } else {
      m = value / powerOfTen(x) / 10;
      ++x;
    }
  }
  if (m < 0.10000000000000002 && value != powerOfTen(x - 1)) {
    if (value == 0) {
      x = 1;
    } else {
      m *= 10;
      --x;
    }
  }
  --x;
  int digits = 0;
  int expLen = 0;
  bool point = true;
  const auto scaleDown = [&] {
    m *= 0.10000000000000002;
    ++x;
  };
  if (precision < 0) {
    expLen = x >= -99 && x <= 99 ? 4 : 5;
    digits = width - expLen - 1;
    if (digits > 1 - precision) {
      const int excess = digits - (1 - precision);
      field.start += excess;
      width -= excess;
      digits = 1 - precision;
    } else if (digits < 1 - precision) {
      status = nlsDigitsLost;
    }
    if (digits > 0) {
      if (digits < 15 || m == 0) m += 0.5 / powerOfTen(digits);
      m *= 1.0000000000000018;
      if (m >= 1) {
        scaleDown();
        if (x == 100) {
          ++expLen;
          --digits;
        }
      }
    }
    if (digits < 1) precision = 99;
  }
  if (precision > 0) {
    expLen = expLength(x);
    digits = width - expLen;
    int k = digits - 1;
    if (k < 0) return nlsFieldTooNarrow;
    if (k < 3) {
      point = false;
      x -= k;
      expLen = expLength(x);
      if (width < expLen + digits) {
        --digits;
        ++x;
        expLen = expLength(x);
      }
      if (expLength(x - 1) < expLen) {
        --x;
        --expLen;
        k = digits + 1;
      } else {
        k = digits;
      }
    }
    digits = k;
    if (digits > 0) {
      if (digits < 15) m += 0.5 / powerOfTen(digits);
      m *= 1.0000000000000018;
      if (m >= 1) {
        scaleDown();
        const int change = expLength(x) - expLen;
        expLen += change;
        digits -= change;
        if (!point) x += change;
      }
    }
    if (digits < 1) return nlsFieldTooNarrow;
  }
  std::string taken = exactDigits(m).fraction;
  taken.resize(static_cast<size_t>(std::min(digits, 14)), '0');
  if (precision > 0) {
    while (taken.size() > 1 && taken.back() == '0') taken.pop_back();
    const int left = static_cast<int>(taken.size());
    if (!point) {
      x += digits - left;
      expLen = expLength(x);
    }
    if (left == 1) point = false;
    digits = left;
  }
  taken.resize(static_cast<size_t>(digits), '0');
  int at = width - digits - 1 - expLen + (point ? 0 : 1);
  const auto put = [&](char16_t unit) { field[at++] = unit; };
  if (negative) put(u'-');
  put(static_cast<char16_t>(taken[0]));
  if (point) put(signs.point);
  for (size_t i = 1; i < taken.size(); ++i) put(static_cast<char16_t>(taken[i]));
  put(u'E');
  if (x < 0) {
    put(u'-');
  } else if (precision < 33) {
    put(u'+');
  }
  const int magnitude = std::abs(x);
  bool higher = precision < 0;
  for (const int unit : {1000, 100, 10, 1}) {
    const int value10 = magnitude / unit % 10;
    if (value10 != 0 || unit == 1 || (higher && unit <= 10)) {
      put(static_cast<char16_t>(u'0' + value10));
      higher = true;
    }
  }
  out = field.units;
  return status;
}

Result fieldFormat(const Call& call, bool best) {
  const int size = std::min(call.width, call.capacity);
  Field out{std::u16string(static_cast<size_t>(call.capacity), untouched)};
  bool negative = call.negative;
  int width = size - (negative ? 1 : 0);
  if (width < 0 || call.capacity == 0) return {nlsFieldTooNarrow, size, out.units};
  const double value = call.value;
  const bool whole = value == std::floor(value);
  out.fill(0, size, u' ');
  uint32_t status = 0;
  const auto finish = [&](uint32_t with) {
    if (with == nlsFieldTooNarrow) out.fill(0, size, u'*');
    return Result{with, size, out.units};
  };
  int binary = 0;
  std::frexp(value, &binary);
  int estimate = shifted(binary * 77 + (binary * 77 < 0 ? 255 : 0), 8);
  const int firstEstimate = estimate;
  int precision = call.precision < 0 ? 6 : call.precision;
  const bool decimal = call.has(FMT_FIELD_DECIMAL);
  if (call.has(FMT_FIELD_EXPONENT)) {
    precision = 7 - size < 0 ? 7 - size : -1;
    return finish(exponentField(call.signs, out, out.units, negative, width, precision, value));
  }
  const auto fallBack = [&] {
    const uint32_t with = exponentField(call.signs, out, out.units, negative, width, 99, value);
    return finish(decimal && with == 0 ? nlsDigitsLost : with);
  };
  if (best && estimate < 1) {
    const int k = estimate < -99 ? 2 : 1;
    if (width > 2 && ((estimate < -9 && k + 3 < width) ||
                      (width > 4 && ((value != 0 && value < 0.00001) || estimate + width < 3)))) {
      return fallBack();
    }
    precision = width - 2;
    if (precision < 2) precision = width - 1;
    estimate = 0;
  }
  if (estimate > width || estimate == 32) return fallBack();
  if (width == 0) {
    if (value >= 0.5) return fallBack();
    width = 1;
    negative = false;
    precision = 0;
  }
  if (best && estimate > 0) precision = 99;
  int room = 0;
  const auto measure = [&] { room = width - precision - (precision > 0 ? 1 : 0); };
  measure();
  if (room < estimate) {
    if (decimal) status = nlsDigitsLost;
    precision = estimate == width ? 0 : width - estimate - 1;
    measure();
  }
  if (whole && best) {
    precision = 0;
    room = width;
  }
  double scaled = 0;
  const auto scale = [&] {
    if (whole) {
      scaled = value;
    } else {
      scaled = value;
      if (precision <= 15 - estimate) scaled += roundingHalf(precision);
      scaled *= 1.0000000000000002;
    }
  };
  bool second = false;
  Exact exact;
  for (;;) {
    scale();
    exact = exactDigits(scaled);
    if (static_cast<int>(exact.integer.size()) <= room) break;
    if (precision == 0 || second) return fallBack();
    --precision;
    measure();
    if (decimal) status = nlsDigitsLost;
    second = true;
  }
  std::string integer = exact.integer;
  if (integer.empty() && room > 0) integer = "0";
  int count = static_cast<int>(integer.size());
  int at = room - count;
  if (negative) out[at++] = u'-';
  for (const char c : integer) out[at++] = static_cast<char16_t>(c);
  int integerEnd = at;
  if (precision != 0) {
    out[at++] = call.signs.point;
    if (whole) {
      out.fill(at, precision, u'0');
    } else {
      int lead = firstEstimate < 0 ? 1 - firstEstimate : 0;
      int kept = 0;
      if (count < 15) {
        kept = std::min(precision, 15 - count + lead);
        for (int i = 0; i < kept; ++i) {
          out[at + i] = static_cast<size_t>(i) < exact.fraction.size()
                            ? static_cast<char16_t>(exact.fraction[static_cast<size_t>(i)])
                            : u'0';
        }
        while (kept > 0 && out[at + kept - 1] == u'0') --kept;
      } else {
        lead = count - 15;
      }
      out.fill(at + 15 - count + lead, std::max(precision + count - lead - 15, 0), u'0');
      if (best && kept < precision) {
        const int whole_ = width + (negative ? 1 : 0);
        int shift = precision - kept;
        if (kept == 0) {
          if (count > 0) {
            shift = precision + 1;
          } else {
            out[0] = u'0';
            shift = whole_ - 1;
          }
        }
        for (int i = whole_ - 1; i >= shift; --i) out[i] = out[i - shift];
        out.fill(0, shift, u' ');
        integerEnd += shift;
        if (!second && count == 0 && kept != 0) {
          const int text = shift + (negative ? 1 : 0);  // the point's place
          out[text - 1] = u'0';
          if (negative) out[text - 2] = u'-';
        }
      }
    }
  }
  if (call.has(FMT_GROUP) && decimal && status == 0) {
    const int groups = groupSize(call.signs);
    const int separators = separatorCount(count, groups);
    if (separators > 0 && count + separators <= room) {
      const std::u16string text = grouped(wide(integer), groups, call.signs.separator);
      int from = integerEnd - static_cast<int>(text.size());
      if (negative) out[from - 1] = u'-';
      for (const char16_t unit : text) out[from++] = unit;
    }
  }
  return finish(status);
}

Result missing(const Call& call, uint64_t bits) {
  auto letter = static_cast<char16_t>(~bits >> 40 & 0xFF);
  if (letter == u'-') letter = u'_';
  if (!call.has(FMT_FIELD_DECIMAL)) return tail(call, std::u16string(1, letter));
  if (call.width > call.capacity) {
    return {nlsFieldTooNarrow, call.width, std::u16string(static_cast<size_t>(call.capacity), u'*')};
  }
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
