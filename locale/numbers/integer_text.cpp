#include "locale/numbers/integer_text.h"

namespace veldnls {
namespace {

char16_t unitAt(const IntegerText& text, int64_t place) {
  if (place < text.leftBlanks) return u' ';
  place -= text.leftBlanks;
  if (place < text.prefixLength) return text.prefix[place];
  place -= text.prefixLength;
  if (place < text.zeros) return u'0';
  place -= text.zeros;
  return place < text.digitCount ? text.digits[place] : u' ';
}

}  // namespace

void writeCutIntegerText(const IntegerText& text, bool keepEnd, char16_t* output, int32_t capacity) {
  const int64_t number = text.numberLength();
  const int64_t skipped = keepEnd && number > capacity ? number - capacity : 0;
  for (int32_t i = 0; i < capacity; ++i) output[i] = unitAt(text, skipped + i);
}

}  // namespace veldnls
