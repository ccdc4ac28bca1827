// Looks through utf-e text for characters that a code page takes as others.
#pragma once

#include <array>
#include <optional>

#include "pipeline.h"
#include "unwritable.h"

namespace veld {

// Reads the form itself, since the library's stages between Unicode forms leave out bits of it.
class UtfEbcdicScan {
 public:
  explicit UtfEbcdicScan(QZNLS& nls);

  // The length of the character that a byte leads; 1 for those that lead none.
  size_t lengthAt(uint8_t lead) const { return lengths_[lead]; }
  // The character with which the text begins, if it is whole and well-formed.
  std::optional<char32_t> read(Bytes text) const;
  // The place of the first character of `unwritable`.
  std::optional<size_t> find(Bytes text, Unwritable& unwritable) const;
  // The text without a part of a character at its end that can't be judged before more follows.
  Bytes judgeable(Bytes text) const;

 private:
  bool isTrail(uint8_t byte) const;

  std::array<uint8_t, 256> plain_{};    // by byte, the one that stands for it in the form below EBCDIC
  std::array<uint8_t, 256> lengths_{};  // by lead byte
};

}  // namespace veld
