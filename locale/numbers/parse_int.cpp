#include <limits>

#include "locale/numbers/decimal_text.h"
#include "locale/numbers/parsers.h"
#include "locale/numbers/text_reader.h"

namespace veldnls {
namespace {

struct Format {
  char16_t separator;
  uint32_t base;
  int32_t* pairs;       // counts the separators, each of which takes the unit behind it along; null where none does
  bool trailingBlanks;  // may be consumed
};

// The last value that takes another digit, and the last digit that it takes.
struct Limit {
  uint64_t value;
  uint32_t digit;
};

constexpr uint32_t noDigit = 16;

inline uint32_t digitValue(char16_t unit, uint32_t base) {
  if (isDigitUnit(unit)) return static_cast<uint32_t>(unit - u'0');
  if (base == 16 && unit >= u'A' && unit <= u'F') return static_cast<uint32_t>(unit - u'A') + 10;
  if (base == 16 && unit >= u'a' && unit <= u'f') return static_cast<uint32_t>(unit - u'a') + 10;
  return noDigit;
}

// Whether a number may end in front of the next unit.
NlsStatus readEnd(TextReader& reader, const Format& format) {
  if (format.trailingBlanks && reader.is(u' ')) {
    reader.skipBlanks();
    return reader.ended() || reader.is(u'\0') ? 0 : nlsNoDigits;
  }
  const bool ends = reader.is(u'\0') || (!format.trailingBlanks && reader.is(u' '));
  return ends ? 0 : nlsNoDigits;
}

// Skips the digits and separators that follow an overflow; those of unsigned numbers may be hexadecimal in either base.
NlsStatus skipOverflow(TextReader& reader, const Format& format) {
  const uint32_t base = format.pairs != nullptr ? 10 : 16;
  while (!reader.ended() && (*reader.at == format.separator || digitValue(*reader.at, base) != noDigit)) ++reader.at;
  return nlsNumberOverflow;
}

// Reads digits up to one that might overflow, or another unit.
template <uint32_t base>
uint64_t readSafeDigits(TextReader& reader, uint64_t value, uint64_t limit) {
  const char16_t* at = reader.at;
  for (; at != reader.end && value < limit; ++at) {
    const uint32_t digit = digitValue(*at, base);
    if (digit == noDigit) break;
    value = value * base + digit;
  }
  reader.at = at;
  return value;
}

NlsStatus readDigits(TextReader& reader, const Format& format, const Limit& limit, uint64_t* value) {
  for (;;) {
    *value = format.base == 16 ? readSafeDigits<16>(reader, *value, limit.value)
                               : readSafeDigits<10>(reader, *value, limit.value);
    if (reader.ended()) return 0;
    const uint32_t digit = digitValue(*reader.at, format.base);
    if (digit != noDigit) {
      if (*value > limit.value || (*value == limit.value && digit > limit.digit)) {
        *value = 0;
        return skipOverflow(reader, format);
      }
      *value = *value * format.base + digit;
    } else if (*reader.at != format.separator || format.base != 10) {
      return readEnd(reader, format);
    } else if (format.pairs != nullptr && reader.at + 1 != reader.end) {
      ++reader.at;
      ++*format.pairs;
    }
    ++reader.at;
  }
}

// A text of nothing but digits, too few for an overflow, is what most calls bring. False for any other.
template <class Integer>
bool parsePlain(const char16_t* text, int32_t length, Integer* value, int32_t* consumed) {
  if (length < 1 || length > std::numeric_limits<Integer>::digits10) return false;
  Integer number = 0;
  for (int32_t i = 0; i < length; ++i) {
    if (!isDigitUnit(text[i])) return false;
    number = static_cast<Integer>(number * 10 + (text[i] - u'0'));
  }
  *value = number;
  *consumed = length;
  return true;
}

template <class Integer>
NlsStatus parseSigned(const LocaleNumber& locale, const char16_t* text, int32_t length, uint32_t flags, Integer* value,
                      int32_t* consumed) {
  if (parsePlain(text, length, value, consumed)) return 0;
  *value = 0;
  *consumed = 0;
  if (length < 0) return nlsNegativeLength;
  TextReader reader{text, text + length};
  reader.skipBlanks();
  const bool negative = reader.is(u'-');
  const bool sign = negative || reader.is(u'+');
  if (sign) {
    ++reader.at;
    reader.skipBlanks();
  }
  NlsStatus status = sign ? nlsNoDigits : 0;
  uint64_t magnitude = 0;
  int32_t pairs = 0;
  if (!reader.ended()) {
    constexpr auto largest = static_cast<uint64_t>(std::numeric_limits<Integer>::max());
    const Format format{locale.groupSeparator, 10, &pairs, (flags & PARSE_ALLOW_TRAILING_BLANKS) != 0};
    status = readDigits(reader, format, {largest / 10, negative ? 8U : 7U}, &magnitude);
  }
  *value = static_cast<Integer>(negative ? -magnitude : magnitude);
  // Both units of a pair count as one place.
  *consumed = static_cast<int32_t>(reader.at - text) - pairs;
  return status;
}

// Moves behind sign and prefix; false if no number can follow.
bool readUnsignedStart(TextReader& reader, bool hex) {
  if (reader.is(u'-') || (hex && reader.is(u'+'))) return false;
  if (reader.is(u'+')) {
    ++reader.at;
    reader.skipBlanks();
    return !reader.ended();
  }
  if (hex && reader.end - reader.at >= 2 && reader.at[0] == u'0' && (reader.at[1] == u'x' || reader.at[1] == u'X')) {
    reader.at += 2;
  }
  return true;
}

template <class Integer>
NlsStatus parseUnsigned(const LocaleNumber& locale, const char16_t* text, int32_t length, uint32_t flags,
                        Integer* value, int32_t* consumed) {
  if ((flags & PARSE_HEX) == 0 && parsePlain(text, length, value, consumed)) return 0;
  *value = 0;
  *consumed = 0;
  if (length < 0) return nlsNegativeLength;
  TextReader reader{text, text + length};
  reader.skipBlanks();
  NlsStatus status = 0;
  if (!reader.ended()) {
    const bool hex = (flags & PARSE_HEX) != 0;
    const Format format{locale.groupSeparator, hex ? 16U : 10U, nullptr, (flags & PARSE_ALLOW_TRAILING_BLANKS) != 0};
    constexpr uint64_t largest = std::numeric_limits<Integer>::max();
    const Limit limit{largest / format.base, static_cast<uint32_t>(largest % format.base)};
    uint64_t number = 0;
    status = readUnsignedStart(reader, hex) ? readDigits(reader, format, limit, &number) : nlsNoDigits;
    *value = static_cast<Integer>(number);
  }
  *consumed = static_cast<int32_t>(reader.at - text);
  return status;
}

}  // namespace

NlsStatus parseInt32(const LocaleNumber& locale, const char16_t* text, int32_t length, uint32_t flags, int32_t* value,
                     int32_t* consumed) {
  return parseSigned(locale, text, length, flags, value, consumed);
}

NlsStatus parseInt64(const LocaleNumber& locale, const char16_t* text, int32_t length, uint32_t flags, int64_t* value,
                     int32_t* consumed) {
  return parseSigned(locale, text, length, flags, value, consumed);
}

NlsStatus parseUInt32(const LocaleNumber& locale, const char16_t* text, int32_t length, uint32_t flags, uint32_t* value,
                      int32_t* consumed) {
  return parseUnsigned(locale, text, length, flags, value, consumed);
}

NlsStatus parseUInt64(const LocaleNumber& locale, const char16_t* text, int32_t length, uint32_t flags, uint64_t* value,
                      int32_t* consumed) {
  return parseUnsigned(locale, text, length, flags, value, consumed);
}

}  // namespace veldnls
