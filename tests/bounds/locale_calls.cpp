#include "bounds/locale_calls.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstring>

#include "transcode/harness.h"
#include "veldnls/nls.h"
#include "veldnls/status.h"

namespace bounds_test {

namespace {

using transcode_test::nls;

QZLocale* german() {
  static QZLocale* locale = nls()->createLocale(nls(), u"de_DE", 5);
  return locale;
}

uint64_t bitsOf(Span bytes) {
  uint64_t bits = 0;
  std::memcpy(&bits, bytes.data(), sizeof bits);
  return bits;
}

// ---- Formatters ----

using Format = NlsStatus (*)(uint64_t bits, char16_t* output, int32_t capacity, int32_t* length);

char16_t* unitsOf(Room room) { return reinterpret_cast<char16_t*>(room.data()); }
int32_t unitCountOf(Span bytes) { return static_cast<int32_t>(bytes.size() / sizeof(char16_t)); }

// A text that is cut fills its room.
template <Format format>
CallResult writeText(Span input, Room output) {
  int32_t length = 0;
  const NlsStatus status = format(bitsOf(input), unitsOf(output), unitCountOf(output), &length);
  return {status, status == 0 || status == nlsFieldTooNarrow ? static_cast<size_t>(length) * sizeof(char16_t) : 0};
}

// The output of an integer is written up to its end, or not at all.
template <Format format>
CallResult writeCleared(Span input, Room output) {
  int32_t length = 0;
  const NlsStatus status = format(bitsOf(input), unitsOf(output), unitCountOf(output), &length);
  return {status, length == 0 ? 0 : output.size()};
}

// A number that has no room leaves stars, as many as there are.
template <Format format>
CallResult writeField(Span input, Room output) {
  int32_t length = 0;
  const NlsStatus status = format(bitsOf(input), unitsOf(output), unitCountOf(output), &length);
  if (status == 0 || status == nlsDigitsLost) return {status, static_cast<size_t>(length) * sizeof(char16_t)};
  size_t written = 0;
  while (written + 1 < output.size() && output[written + 1] == 0) written += sizeof(char16_t);
  return {status, written};
}

template <int32_t width, int32_t precision, uint32_t flags>
NlsStatus formatDouble(uint64_t bits, char16_t* output, int32_t capacity, int32_t* length) {
  const double value = std::bit_cast<double>(bits);
  return german()->formatDouble(german(), value, width, precision, flags, output, capacity, length);
}

// Amounts have at most seven digits in front of the point, so that separators fit whatever room the field has.
double amount(uint64_t bits) { return static_cast<double>(static_cast<int64_t>(bits) % 1000000000) / 128; }

NlsStatus formatCurrency(uint64_t bits, char16_t* output, int32_t capacity, int32_t* length) {
  return german()->formatCurrency(german(), amount(bits), 20, 2, 0, output, capacity, length);
}

NlsStatus formatPercent(uint64_t bits, char16_t* output, int32_t capacity, int32_t* length) {
  return german()->formatPercent(german(), amount(bits), 20, 1, FMT_PERCENT_PARENTHESES, output, capacity, length);
}

template <class Value, auto slot, uint32_t flags>
NlsStatus formatInteger(uint64_t bits, char16_t* output, int32_t capacity, int32_t* length) {
  return (german()->*slot)(german(), static_cast<Value>(bits), 40, 0, flags, output, capacity, length);
}

NlsStatus formatPointer(uint64_t bits, char16_t* output, int32_t capacity, int32_t* length) {
  const auto* value = reinterpret_cast<const void*>(static_cast<uintptr_t>(bits));
  return german()->formatPointer(german(), value, 0, FMT_POINTER_PREFIX, output, capacity, length);
}

NlsStatus formatDate(uint64_t bits, char16_t* output, int32_t capacity, int32_t* length) {
  const auto part = static_cast<uint32_t>(bits);
  return german()->formatDate(german(), part % 12 + 1, part / 12 % 28 + 1, 1582 + part / 336 % 18419,
                              static_cast<int32_t>(part % 3), output, capacity, length);
}

double seconds(uint64_t bits) { return static_cast<double>(bits % 569318630400); }

NlsStatus formatTime(uint64_t bits, char16_t* output, int32_t capacity, int32_t* length) {
  return german()->formatTime(german(), seconds(bits), static_cast<int32_t>(bits % 2), output, capacity, length);
}

NlsStatus formatDateTime(uint64_t bits, char16_t* output, int32_t capacity, int32_t* length) {
  return german()->formatDateTime(german(), seconds(bits), 0, output, capacity, length);
}

void addFormatters(std::vector<CallRow>& rows) {
  const auto add = [&rows](const char* name, CallResult (*call)(Span, Room), Shortening shortening) {
    rows.push_back({.name = name,
                    .input = TextKind::real,
                    .call = call,
                    .outputUnit = sizeof(char16_t),
                    .inputSize = sizeof(uint64_t),
                    .shortening = shortening});
  };
  add("formatDouble_fixed", writeField<formatDouble<0, 3, FMT_FIXED>>, Shortening::stars);
  add("formatDouble_field", writeField<formatDouble<24, 5, FMT_EXPONENT | FMT_PLUS>>, Shortening::stars);
  add("formatDouble_zeros", writeField<formatDouble<30, 2, FMT_FIXED | FMT_ZERO>>, Shortening::stars);
  add("formatDouble_general", writeField<formatDouble<0, 9, FMT_GENERAL>>, Shortening::fitted);
  add("formatDouble_best", writeField<formatDouble<12, 0, FMT_BEST>>, Shortening::fitted);
  add("formatDouble_decimal", writeField<formatDouble<16, 3, FMT_FIELD_DECIMAL | FMT_GROUP>>, Shortening::fitted);
  add("formatDouble_exponent", writeField<formatDouble<14, 0, FMT_FIELD_EXPONENT>>, Shortening::fitted);
  add("formatCurrency", writeField<formatCurrency>, Shortening::stars);
  add("formatPercent", writeField<formatPercent>, Shortening::stars);
  add("formatInt32", writeCleared<formatInteger<int32_t, &QZLocale::formatInt32, FMT_GROUP>>, Shortening::prefix);
  add("formatInt64", writeCleared<formatInteger<int64_t, &QZLocale::formatInt64, FMT_ZERO>>, Shortening::prefix);
  add("formatUInt32", writeCleared<formatInteger<uint32_t, &QZLocale::formatUInt32, FMT_HEX | FMT_ALT_HEX>>,
      Shortening::prefix);
  add("formatUInt64", writeCleared<formatInteger<uint64_t, &QZLocale::formatUInt64, FMT_LEFT>>, Shortening::prefix);
  add("formatPointer", writeCleared<formatPointer>, Shortening::prefix);
  add("formatDate", writeText<formatDate>, Shortening::prefix);
  add("formatTime", writeText<formatTime>, Shortening::prefix);
  add("formatDateTime", writeText<formatDateTime>, Shortening::prefix);
}

// ---- Parsers and other readers of text ----

const char16_t* textOf(Span text) { return reinterpret_cast<const char16_t*>(text.data()); }

// Stores value and count, at whatever address the output begins.
template <class Value>
CallResult answer(NlsStatus status, Value value, int32_t consumed, Room output) {
  std::memcpy(output.data(), &value, sizeof value);
  std::memcpy(output.data() + sizeof value, &consumed, sizeof consumed);
  return {status, sizeof value + sizeof consumed};
}

template <class Value, class Parse>
CallRow parserRow(const char* name, TextKind input, Parse parse) {
  return {.name = name,
          .input = input,
          .call =
              [parse](Span text, Room output) {
                Value value{};
                int32_t consumed = 0;
                const NlsStatus status = parse(textOf(text), unitCountOf(text), &value, &consumed);
                EXPECT_LE(consumed, unitCountOf(text));
                return answer(status, value, consumed, output);
              },
          .inputUnit = sizeof(char16_t),
          .outputSize = sizeof(Value) + sizeof(int32_t)};
}

template <class Value, auto slot, uint32_t flags>
CallRow integerRow(const char* name) {
  return parserRow<Value>(name, TextKind::number,
                          [](const char16_t* text, int32_t length, Value* value, int32_t* consumed) {
                            return (german()->*slot)(german(), text, length, flags, value, consumed);
                          });
}

void addParsers(std::vector<CallRow>& rows) {
  rows.push_back(parserRow<double>("parseDouble", TextKind::number,
                                   [](const char16_t* text, int32_t length, double* value, int32_t* consumed) {
                                     return german()->parseDouble(german(), text, length, value, consumed);
                                   }));
  rows.push_back(integerRow<int32_t, &QZLocale::parseInt32, 0>("parseInt32"));
  rows.push_back(integerRow<int64_t, &QZLocale::parseInt64, PARSE_ALLOW_TRAILING_BLANKS>("parseInt64"));
  rows.push_back(integerRow<uint32_t, &QZLocale::parseUInt32, PARSE_HEX>("parseUInt32"));
  rows.push_back(integerRow<uint64_t, &QZLocale::parseUInt64, PARSE_HEX | PARSE_ALLOW_TRAILING_BLANKS>("parseUInt64"));
  rows.push_back(parserRow<uint32_t>(
      "parseDate", TextKind::moment, [](const char16_t* text, int32_t length, uint32_t* day, int32_t* consumed) {
        uint32_t month = 0, year = 0;
        return german()->parseDate(german(), text, length, 2, &month, day, &year, consumed);
      }));
  rows.push_back(parserRow<double>("parseTime", TextKind::moment,
                                   [](const char16_t* text, int32_t length, double* value, int32_t* consumed) {
                                     return german()->parseTime(german(), text, length, 1, value, consumed);
                                   }));
  rows.push_back(parserRow<double>("parseDateTime", TextKind::moment,
                                   [](const char16_t* text, int32_t length, double* value, int32_t* consumed) {
                                     return german()->parseDateTime(german(), text, length, 0, value, consumed);
                                   }));
  // The first half of the text against the rest, which begins where it ends.
  rows.push_back(parserRow<int32_t>(
      "compareText", TextKind::utf16le, [](const char16_t* text, int32_t length, int32_t* order, int32_t*) {
        const int32_t half = length / 2;
        *order = german()->compareText(german(), text, half, text + half, length - half, NLS_COMPARE_IGNORES_BLANKS);
        return NlsStatus{0};
      }));
  rows.push_back(parserRow<int32_t>("createLocale", TextKind::localeName,
                                    [](const char16_t* name, int32_t length, int32_t* made, int32_t*) {
                                      QZLocale* locale = nls()->createLocale(nls(), name, length);
                                      *made = locale != nullptr ? 1 : 0;
                                      return locale != nullptr ? locale->destroy(locale) : NlsStatus{0};
                                    }));
}

// ---- What locales tell of themselves ----

void addNames(std::vector<CallRow>& rows) {
  const auto add = [&rows](const char* name, NlsStatus (*call)(char16_t*, int32_t*), size_t units) {
    rows.push_back({.name = name,
                    .input = TextKind::bytes,
                    .call = [call](Span, Room output) -> CallResult {
                      int32_t length = 0;
                      const NlsStatus status = call(unitsOf(output), &length);
                      return {status, static_cast<size_t>(length) * sizeof(char16_t)};
                    },
                    .inputSize = 0,
                    .outputSize = units * sizeof(char16_t)});
  };
  add(
      "getLanguage",
      [](char16_t* language, int32_t* length) { return german()->getLanguage(german(), language, length); }, 2);
  add(
      "getLocaleName", [](char16_t* name, int32_t* length) { return german()->getLocaleName(german(), name, length); },
      5);
}

}  // namespace

void addLocaleCalls(std::vector<CallRow>& rows) {
  addFormatters(rows);
  addParsers(rows);
  addNames(rows);
}

}  // namespace bounds_test
