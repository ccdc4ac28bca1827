#include "locale/numbers/grouping.h"

#include "locale/numbers/decimal_text.h"
#include "locale/numbers/parsers.h"

namespace veldnls {

GroupSizes::GroupSizes(const LocaleNumber& locale) {
  sizes_[0] = -1;
  const NlsText60& text = locale.numberGrouping;
  for (int32_t i = 0; i < text.count; ++i) {
    const char16_t unit = text.text[i];
    if (isDigitUnit(unit)) sizes_[count_++] = static_cast<int8_t>(unit - u'0');
    if (unit == u'-') {
      sizes_[count_++] = -1;
      return;
    }
  }
}

int32_t groupSize(const LocaleNumber& locale) {
  const NlsText60& text = locale.numberGrouping;
  if (text.count == 1 && isDigitUnit(text.text[0])) return text.text[0] - u'0';
  int32_t size = 0;
  int32_t consumed = 0;
  // A list of sizes is no number: doubles know one size, unlike integers.
  return parseInt32(locale, text.text, text.count, 0, &size, &consumed) == 0 ? size : 3;
}

int32_t countSeparators(int32_t count, int32_t size) { return size > 0 && count > 0 ? (count - 1) / size : 0; }

char16_t* copyGrouped(const char16_t* digits, int32_t count, int32_t size, char16_t separator, char16_t* out) {
  if (size <= 0) return copyUnits(digits, count, out);
  int32_t group = count - countSeparators(count, size) * size;
  for (; count > 0; count -= group, group = size) {
    out = copyUnits(digits, group, out);
    digits += group;
    if (count > group) *out++ = separator;
  }
  return out;
}

}  // namespace veldnls
