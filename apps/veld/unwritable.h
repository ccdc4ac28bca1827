// Characters that the library writes to a code page without a word, and that are read there as something else.
#pragma once

#include <array>
#include <memory>

#include "veldnls/nls.h"

namespace veld {

// Such a character has a best fit, or a code that the page writes and doesn't read; or it becomes a byte that begins a
// character of two bytes or a shift sequence. They are looked for when they are asked for, 256 in a row.
class Unwritable {
 public:
  // None.
  Unwritable();
  // Those of a target; none for Unicode forms.
  Unwritable(QZNLS& nls, CEI to);
  ~Unwritable();
  Unwritable(const Unwritable&) = delete;
  Unwritable& operator=(const Unwritable&) = delete;

  // True for code pages, which may have some.
  bool mayHaveAny() const { return target_ != nullptr; }
  // Only the low 16 bits of characters beyond U+FFFF are looked up.
  bool hasAllBeyondBmp() const { return beyondBmp_; }

  bool has(char32_t character) {
    if (character > 0xFFFF) return beyondBmp_;
    return isMarked(character) && (known_[character >> 8] || learn(character));
  }
  // True when one of the blocks from `first` on, of 64 characters each, has some.
  bool hasInBlocks(size_t first, size_t count);
  // False for characters up to U+FFFF that are known to be none: the 64 of a block, and the character's place there.
  bool mayHave(size_t block, size_t place) const { return (marks_[block] >> place & 1) != 0; }

 private:
  struct Target;
  bool isMarked(char32_t character) const { return mayHave(character >> 6, character & 63); }
  bool learn(char32_t character);

  std::unique_ptr<const Target> target_;
  bool beyondBmp_ = false;
  std::array<bool, 256> known_{};
  std::array<uint64_t, 1024> marks_{};  // of the characters, and of all that aren't known yet
};

}  // namespace veld
