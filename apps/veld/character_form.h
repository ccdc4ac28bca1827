// Where the characters of an encoding end, and its lines.
#pragma once

#include "pipeline.h"

namespace veld {

inline constexpr uint8_t firstBeyondAscii = 0x80;
inline constexpr uint8_t singleShiftThree = 0x8F;  // leads characters of three bytes in euc-jp

class CharacterForm {
 public:
  CharacterForm(QZNLS& nls, CEI cei);

  const EncodingDescriptor& row() const { return row_; }
  bool isShifted() const { return kind_ == Kind::shifted; }

  // The length of the character with which a text begins, which may be more than the text has. `inDouble` is the shift
  // state.
  size_t lengthAt(Bytes text, bool inDouble) const;

  // True for U+000A, and in EBCDIC for U+0085 too: bytes 15 and 25. The character is whole.
  bool endsLine(Bytes character) const;
  // True where a byte that ends a line stands in no other character.
  bool hasPlainLineEnds() const;
  // How many of them a text has, where they are plain.
  size_t countLineEnds(Bytes text) const;

 private:
  enum class Kind { bytes, utf8, utf16, utf32, multiByte, gb18030, shifted };

  static Kind kindOf(const EncodingDescriptor& row);
  size_t multiByteLength(uint8_t lead) const;
  size_t utf16Length(Bytes text) const;

  const EncodingDescriptor& row_;
  Kind kind_;
  bool ebcdic_;
};

// The same of gb18030 alone.
size_t gb18030Length(Bytes text);

// True when a byte lies in one of the ranges.
bool liesIn(uint8_t byte, const NlsByteRange (&ranges)[4]);

// True when a text begins with so many bytes of a shift sequence.
inline bool startsWithShift(Bytes text, const uint8_t (&sequence)[4], size_t length) {
  if (text.size() < length) return false;
  for (size_t i = 0; i < length; ++i) {
    if (text[i] != sequence[i]) return false;
  }
  return true;
}

}  // namespace veld
