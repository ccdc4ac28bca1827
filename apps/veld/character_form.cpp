#include "character_form.h"

#include <cstring>

#include "names.h"
#include "unicode_scan.h"
#include "veldnls/cei.h"

namespace veld {

namespace {

constexpr uint8_t lineFeed = 0x0A;
constexpr uint8_t ebcdicLineEnds[] = {0x15, 0x25};  // U+000A and U+0085; which is which depends on the page
constexpr uint8_t ebcdicBlank = 0x40;
constexpr uint8_t singleShiftTwo = 0x8E;
constexpr uint8_t firstTrailOfTwo = 0x3A;  // second bytes below it belong to characters of four

size_t utf8LengthByLead(uint8_t lead) {
  if (lead < 0xC0) return 1;
  if (lead < 0xE0) return 2;
  if (lead < 0xF0) return 3;
  if (lead < 0xF8) return 4;
  return lead < 0xFC ? 5 : 6;
}

// Of bytes that are rare.
size_t countOf(uint8_t byte, Bytes text) {
  size_t count = 0;
  const uint8_t* const end = text.data() + text.size();
  for (const uint8_t* place = text.data(); place != end; ++place) {
    const void* const found = std::memchr(place, byte, static_cast<size_t>(end - place));
    if (found == nullptr) break;
    place = static_cast<const uint8_t*>(found);
    ++count;
  }
  return count;
}

// What the library takes for one character, sound or not: a lead byte and the trail bytes behind it.
size_t utf8Length(Bytes text) {
  const size_t length = utf8LengthByLead(text[0]);
  size_t present = 1;
  while (present < length && present < text.size() && (text[present] & 0xC0) == 0x80) ++present;
  return present == text.size() ? length : present;
}

}  // namespace

bool liesIn(uint8_t byte, const NlsByteRange (&ranges)[4]) {
  for (const NlsByteRange& range : ranges) {
    if (range.low == 0) return false;
    if (byte >= range.low && byte <= range.high) return true;
  }
  return false;
}

size_t gb18030Length(Bytes text) {
  if (text[0] <= firstBeyondAscii) return 1;
  return text.size() > 1 && text[1] < firstTrailOfTwo ? 4 : 2;
}

CharacterForm::CharacterForm(QZNLS& nls, CEI cei)
    : row_(rowOf(nls, cei)), kind_(kindOf(row_)), ebcdic_(row_.padChar == ebcdicBlank) {}

CharacterForm::Kind CharacterForm::kindOf(const EncodingDescriptor& row) {
  switch (row.encodingClass) {
    case NLS_CLASS_UTF8:
      return row.cei == U_UTF8_CE ? Kind::utf8 : Kind::bytes;
    case NLS_CLASS_UTF16:
      return Kind::utf16;
    case NLS_CLASS_UTF32:
      return Kind::utf32;
    case NLS_CLASS_SHIFTED:
      return Kind::shifted;
    case NLS_CLASS_MULTI_BYTE:
      return row.cei == U_GB18030_CE ? Kind::gb18030 : Kind::multiByte;
    default:
      return Kind::bytes;
  }
}

size_t CharacterForm::multiByteLength(uint8_t lead) const {
  if (lead < firstBeyondAscii) return 1;
  if (row_.cei == U_EUCTW_CE && lead == singleShiftTwo) return 4;
  if (row_.cei == U_EUCJP_CE) return lead == singleShiftThree ? 3 : 2;
  return liesIn(lead, row_.profile.leadRanges) ? 2 : 1;
}

size_t CharacterForm::utf16Length(Bytes text) const {
  const ByteOrder order = byteOrderOf(row_.cei);
  if (text.size() < utf16Unit || !isHighSurrogate(unitAt(text, 0, utf16Unit, order))) return utf16Unit;
  if (text.size() < 2 * utf16Unit) return 2 * utf16Unit;
  return isLowSurrogate(unitAt(text, utf16Unit, utf16Unit, order)) ? 2 * utf16Unit : utf16Unit;
}

size_t CharacterForm::lengthAt(Bytes text, bool inDouble) const {
  switch (kind_) {
    case Kind::utf8:
      return utf8Length(text);
    case Kind::utf16:
      return utf16Length(text);
    case Kind::utf32:
      return utf32Unit;
    case Kind::multiByte:
      return multiByteLength(text[0]);
    case Kind::gb18030:
      return gb18030Length(text);
    case Kind::shifted:
      return inDouble ? 2 : 1;
    case Kind::bytes:
      break;
  }
  return 1;
}

bool CharacterForm::endsLine(Bytes character) const {
  if (kind_ == Kind::utf16 || kind_ == Kind::utf32) {
    return unitAt(character, 0, character.size(), byteOrderOf(row_.cei)) == lineFeed;
  }
  if (character.size() != 1) return false;
  return ebcdic_ ? character[0] == ebcdicLineEnds[0] || character[0] == ebcdicLineEnds[1] : character[0] == lineFeed;
}

bool CharacterForm::hasPlainLineEnds() const {
  return kind_ != Kind::utf16 && kind_ != Kind::utf32 && kind_ != Kind::shifted;
}

size_t CharacterForm::countLineEnds(Bytes text) const {
  return ebcdic_ ? countOf(ebcdicLineEnds[0], text) + countOf(ebcdicLineEnds[1], text) : countOf(lineFeed, text);
}

}  // namespace veld
