// Values as text of a locale, by its formatters.
#pragma once

#include "date_format.h"
#include "locale_handle.h"
#include "value_kinds.h"

namespace veld {

// How the digits of a number are shown.
enum class Conversion {
  shortest,  // as few as bring the value back, or with a precision fixed
  fixed,
  general,
  exponent,
  best,  // the last three of these fill a field
  field,
  fieldExponent,
  integerPart,
  fractionPart,
};

struct WriteOptions {
  Conversion conversion = Conversion::shortest;
  std::optional<int32_t> width = {};
  std::optional<int32_t> precision = {};
  std::optional<bool> group = {};
  uint32_t flags = 0;  // those of FMT_PLUS to FMT_KEEP_ZEROS
  bool upper = false;
  bool prefix = false;
  bool parentheses = false;
  bool noFraction = false;
  DateChoice date = {};
};

// Widths and precisions in use, both ways.
inline constexpr int32_t greatestWidth = 4000;
inline constexpr int32_t greatestPrecision = 1000;

struct Written {
  std::optional<std::u16string> text = {};
  std::optional<Fault> fault = {};  // beside a text where the library gives both
};

// Writes a date, a time or a datetime.
Written writeDate(Locale& locale, Kind kind, const DateSlot& slot, const Value& value);

class ValueWriter {
 public:
  // Throws Failure for formats of dates and precisions that can't be used.
  ValueWriter(QZNLS& nls, Locale& locale, Kind kind, const WriteOptions& options);

  Written write(const Value& value);

 private:
  Written writeNumber(double value);
  Written writeShortest(double value);
  Written showNumber(double value, uint32_t conversion, int32_t precision);
  bool comesBack(const Written& written, double value);
  Written writeMoney(double amount);
  Written writePercent(double value);
  Written writeInteger(int64_t value);
  Written writeNatural(uint64_t value);
  uint32_t flags(bool groups) const;
  int32_t leastDigits(bool fillsWidth, int32_t unitsInFront) const;

  Locale& locale_;
  Kind kind_;
  WriteOptions options_;
  DateSlot slot_{};
};

}  // namespace veld
