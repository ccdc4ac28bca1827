#include "locale/numbers/double_options.h"
#include "locale/numbers/integer_text.h"

namespace veldnls {

NlsStatus formatPointer(const void* value, int32_t width, uint32_t flags, char16_t* output, int32_t capacity,
                        int32_t* length) {
  IntegerText text;
  if (value == nullptr) {
    text.digitCount = 3;
    std::copy_n(u"NIL", text.digitCount, text.digits);
    return writeIntegerText(text, false, output, std::max(capacity, 0), length);
  }
  const auto number = reinterpret_cast<uintptr_t>(value);
  text.digitCount = (static_cast<int32_t>(std::bit_width(number)) + 3) / 4;
  for (int32_t i = 0; i < text.digitCount; ++i) {
    text.digits[i] = u"0123456789ABCDEF"[number >> 4 * (text.digitCount - 1 - i) & 0xF];
  }
  if ((flags & FMT_POINTER_PREFIX) != 0) {
    text.prefix[text.prefixLength++] = u'0';
    text.prefix[text.prefixLength++] = u'x';
  }
  text.fillWithBlanks(absoluteWidth(width), (flags & FMT_POINTER_LEFT) != 0);
  return writeIntegerText(text, false, output, std::max(capacity, 0), length);
}

}  // namespace veldnls
