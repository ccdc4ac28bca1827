// How integers and pointers end up in their output.
#pragma once

#include <algorithm>
#include <limits>

#include "locale/numbers/decimal_text.h"
#include "locale/numbers/formats.h"

namespace veldnls {

// A text from left to right: blanks, prefix, zeros, digits, blanks.
struct IntegerText {
  static constexpr int32_t maxDigits = 66;  // separators among them included

  int64_t leftBlanks = 0;
  char16_t prefix[2];
  int32_t prefixLength = 0;
  int64_t zeros = 0;
  int32_t digitCount = 0;
  char16_t digits[maxDigits];
  int64_t rightBlanks = 0;

  // Without the blanks behind it.
  int64_t numberLength() const { return leftBlanks + prefixLength + zeros + digitCount; }
  // Adds the blanks that a number without any needs to fill a field.
  void fillWithBlanks(int32_t width, bool left) {
    (left ? rightBlanks : leftBlanks) = std::max<int64_t>(width - numberLength(), 0);
  }
};

// Writes the first units of a text that is longer than the output, or, if `keepEnd`, those of the number that come
// last.
void writeCutIntegerText(const IntegerText& text, bool keepEnd, char16_t* output, int32_t capacity);

// Writes a text and fills the output behind it with U+0000.
inline NlsStatus writeIntegerText(const IntegerText& text, bool keepEnd, char16_t* output, int32_t capacity,
                                  int32_t* length) {
  const int64_t total = text.numberLength() + text.rightBlanks;
  if (total > capacity) {
    *length = static_cast<int32_t>(std::min<int64_t>(total, std::numeric_limits<int32_t>::max()));
    writeCutIntegerText(text, keepEnd, output, capacity);
    return nlsFieldTooNarrow;
  }
  *length = static_cast<int32_t>(total);
  char16_t* at = output;
  fillUnits(at, static_cast<int32_t>(text.leftBlanks), u' ');
  at += text.leftBlanks;
  for (int32_t i = 0; i < text.prefixLength; ++i) *at++ = text.prefix[i];
  fillUnits(at, static_cast<int32_t>(text.zeros), u'0');
  at += text.zeros;
  at = copyUnits(text.digits, text.digitCount, at);
  fillUnits(at, static_cast<int32_t>(text.rightBlanks), u' ');
  at += text.rightBlanks;
  fillUnits(at, static_cast<int32_t>(output + capacity - at), u'\0');
  return 0;
}

}  // namespace veldnls
