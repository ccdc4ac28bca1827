// The characters of an encoding, and the codes that they have.
#pragma once

#include <string>
#include <vector>

#include "byte_meanings.h"
#include "pipeline.h"

namespace veld {

inline constexpr char32_t noCharacter = 0xFFFFFFFF;
inline constexpr char32_t characterCount = 0x110000;

class Repertoire {
 public:
  // Throws Failure for an encoding without a code-page table.
  Repertoire(QZNLS& nls, CEI cei);

  const std::string& name() const { return name_; }
  // Unicode forms have every character, and no codes to compare.
  bool isUnicode() const { return unicode_; }
  bool hasFourByteCodes() const;

  // True for characters that a conversion takes without a loss.
  bool has(char32_t character) const { return characters_[character]; }

  // The character that stands at a code, or noCharacter.
  char32_t atByte(uint8_t byte) const;
  char32_t atTwoBytes(uint8_t first, uint8_t second) const;
  char32_t atFourBytes(const std::array<uint8_t, 4>& code) const;

 private:
  void findCharacters(QZNLS& nls);
  void findReadable();
  char32_t read(Bytes code, bool inDouble) const;

  CEI cei_;
  std::string name_;
  bool unicode_;
  bool shifted_;
  Pipeline toUtf16_;
  ByteMeanings bytes_{};
  std::vector<bool> characters_;
};

}  // namespace veld
