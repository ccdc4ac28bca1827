#include "repertoire.h"

#include "failure.h"
#include "names.h"
#include "route.h"
#include "unicode_scan.h"
#include "unwritable.h"
#include "veldnls/cei.h"

namespace veld {

namespace {

constexpr char32_t beyondBmp = 0x10000;

bool isUnicodeForm(const EncodingDescriptor& row) {
  return row.encodingClass == NLS_CLASS_UTF8 || row.encodingClass == NLS_CLASS_UTF16 ||
         row.encodingClass == NLS_CLASS_UTF32;
}

bool isSurrogate(char32_t character) { return isHighSurrogate(character) || isLowSurrogate(character); }

}  // namespace

Repertoire::Repertoire(QZNLS& nls, CEI cei)
    : cei_(cei),
      name_(displayName(nls, cei)),
      unicode_(isUnicodeForm(rowOf(nls, cei))),
      shifted_(rowOf(nls, cei).encodingClass == NLS_CLASS_SHIFTED),
      toUtf16_(makePipeline(nls, cei, U_L_UNICODE_CE)),
      characters_(characterCount, false) {
  if (cei == U_ANY_CE) throw Failure(name_ + " stands for every encoding; name one");
  if (unicode_) {
    for (char32_t c = 0; c < characterCount; ++c) characters_[c] = !isSurrogate(c);
    return;
  }
  const auto meanings = byteMeanings(nls, cei);
  if (!meanings) {
    throw Failure(name_ + " has no code-page table; name another encoding (\"veld encodings\" lists them)");
  }
  bytes_ = *meanings;
  findCharacters(nls);
}

void Repertoire::findCharacters(QZNLS& nls) {
  const Pipeline fromUtf16 = makePipeline(nls, U_L_UNICODE_CE, cei_);
  if (fromUtf16 == nullptr) return findReadable();
  Unwritable unwritable(nls, cei_);
  std::array<uint8_t, roomOfACharacter> output;
  for (char32_t c = 0; c < beyondBmp; ++c) {
    if (isSurrogate(c) || unwritable.has(c)) continue;
    const std::array<uint8_t, utf16Unit> unit{static_cast<uint8_t>(c), static_cast<uint8_t>(c >> 8)};
    characters_[c] = convertShort(*fromUtf16, unit, output).whole;
  }
}

// A page that can only be read has what its bytes stand for.
void Repertoire::findReadable() {
  for (const char16_t meaning : bytes_) {
    if (meaning != noMeaning) characters_[meaning] = true;
  }
}

bool Repertoire::hasFourByteCodes() const { return cei_ == U_GB18030_CE; }

char32_t Repertoire::read(Bytes code, bool inDouble) const {
  std::array<uint8_t, roomOfACharacter> output;
  const Converted converted = convertShort(*toUtf16_, code, output, inDouble);
  // A first byte that is a shift-in makes the second a single byte.
  if (!converted.whole || converted.size != utf16Unit || converted.inDouble != inDouble) return noCharacter;
  return unitAt(output, 0, utf16Unit, ByteOrder::little);
}

char32_t Repertoire::atByte(uint8_t byte) const { return bytes_[byte] == noMeaning ? noCharacter : bytes_[byte]; }

char32_t Repertoire::atTwoBytes(uint8_t first, uint8_t second) const {
  return read(std::array<uint8_t, 2>{first, second}, shifted_);
}

char32_t Repertoire::atFourBytes(const std::array<uint8_t, 4>& code) const {
  return hasFourByteCodes() ? read(code, false) : noCharacter;
}

}  // namespace veld
