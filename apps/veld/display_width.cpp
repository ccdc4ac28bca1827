#include "display_width.h"

#include <clocale>
#include <cwchar>

namespace veld {

namespace {

// The C library knows widths by locale; standard error is UTF-8 whatever locale the process has. Null where the system
// has no such locale.
locale_t utf8Locale() {
  static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return locale;
}

wchar_t codePointOf(std::u16string_view character) {
  if (character.size() < 2) return static_cast<wchar_t>(character[0]);
  return static_cast<wchar_t>(0x10000 + (character[0] - 0xD800) * 0x400 + (character[1] - 0xDC00));
}

}  // namespace

size_t displayWidth(std::u16string_view character) {
  if (utf8Locale() == nullptr) return 1;
  const locale_t before = uselocale(utf8Locale());
  const int width = wcwidth(codePointOf(character));
  uselocale(before);
  return width < 0 ? 1 : static_cast<size_t>(width);
}

}  // namespace veld
