#include "broken_end.h"

#include "names.h"
#include "unicode_scan.h"
#include "veldnls/cei.h"

namespace veld {

namespace {

bool isBetween(uint8_t byte, uint8_t low, uint8_t high) { return byte >= low && byte <= high; }

// Whether a lead byte of utf-8 can stand ahead of that second byte.
bool canFollow(uint8_t lead, uint8_t second) {
  switch (lead) {
    case 0xE0:
      return isBetween(second, 0xA0, 0xBF);
    case 0xED:
      return isBetween(second, 0x80, 0x9F);
    case 0xF0:
      return isBetween(second, 0x90, 0xBF);
    case 0xF4:
      return isBetween(second, 0x80, 0x8F);
    default:
      return isBetween(second, 0x80, 0xBF);
  }
}

size_t brokenUtf8(const CharacterForm& form, Bytes text) {
  const size_t length = form.lengthAt(text, false);
  const bool isOpen = length > text.size();
  const bool canBegin = isBetween(text[0], 0xC2, 0xF4) && (text.size() == 1 || canFollow(text[0], text[1]));
  if (isOpen) return canBegin ? 0 : text.size();
  return length;
}

size_t brokenGb18030(Bytes text) {
  if (!isBetween(text[0], 0x81, 0xFE)) return 1;
  if (text.size() > 1 && !isBetween(text[1], 0x30, 0x39)) return 1;
  return text.size() > 2 && !isBetween(text[2], 0x81, 0xFE) ? 1 : 0;
}

size_t brokenUtf16(Bytes text, ByteOrder order) {
  if (text.size() < 2 * utf16Unit || !isHighSurrogate(unitAt(text, 0, utf16Unit, order))) return 0;
  return isLowSurrogate(unitAt(text, utf16Unit, utf16Unit, order)) ? 0 : utf16Unit;
}

}  // namespace

size_t brokenStart(const CharacterForm& form, Bytes text) {
  if (form.row().cei == U_UTF8_CE) return brokenUtf8(form, text);
  if (form.row().encodingClass == NLS_CLASS_UTF16) return brokenUtf16(text, byteOrderOf(form.row().cei));
  return form.row().cei == U_GB18030_CE ? brokenGb18030(text) : 0;
}

std::vector<uint8_t> brokenSubstitute(const CharacterForm& form) {
  if (form.row().cei == U_UTF8_CE) return {0xEF, 0xBF, 0xBD};
  if (form.row().encodingClass == NLS_CLASS_UTF16) {
    return byteOrderOf(form.row().cei) == ByteOrder::little ? std::vector<uint8_t>{0xFD, 0xFF}
                                                            : std::vector<uint8_t>{0xFF, 0xFD};
  }
  return {static_cast<uint8_t>(form.row().padChar)};
}

}  // namespace veld
