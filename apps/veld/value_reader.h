// Text of a locale as values, by its parsers.
#pragma once

#include <string_view>

#include "date_format.h"
#include "locale_handle.h"
#include "value_kinds.h"

namespace veld {

struct Read {
  Value value = {};
  std::optional<Fault> fault = {};
  std::string warning = {};  // what the value doesn't tell
};

// The first place from here on that holds no blank or tab.
size_t skipBlanks(std::u16string_view text, size_t from);

// Whole numbers in hexadecimal or decimal, with blanks around them.
Read readNatural(Locale& locale, std::u16string_view text, bool isHex);

// Reads whole texts: what follows a value, but for blanks, is a fault. Amounts may have the currency's symbol in front
// or behind, percents the sign behind and, when they are negative, parentheses; both are what the formatters write.
class ValueReader {
 public:
  // Every kind but octal. Throws Failure for formats of dates that can't be used.
  ValueReader(QZNLS& nls, Locale& locale, Kind kind, const DateChoice& choice);

  Read read(std::u16string_view text);

 private:
  Read readNumber(std::u16string_view text, size_t offset);
  Read readBare(std::u16string_view text, size_t start, size_t end, bool hasSigns);
  Read readInteger(std::u16string_view text);
  Read readMoney(std::u16string_view text);
  Read readPercent(std::u16string_view text);
  Read readDate(std::u16string_view text);
  NlsStatus callDateSlot(std::u16string_view text, Value& value, int32_t& consumed);
  Fault whereDateFails(std::u16string_view text);

  QZNLS& nls_;
  Locale& locale_;
  Kind kind_;
  DateSlot slot_{};
};

}  // namespace veld
