// Looks through multi-byte text for single bytes that the library reads without a word as something else.
#pragma once

#include <array>
#include <optional>

#include "character_form.h"

namespace veld {

// Walks as the library's conversions do: by lead bytes, or by shift sequences and designators.
class MultiByteScan {
 public:
  explicit MultiByteScan(const EncodingDescriptor& row);

  // A byte that counts as lost where it stands by itself.
  void lose(uint8_t byte) { lost_[byte] = true; }

  struct Found {
    size_t place;
    size_t length;
  };
  // The first of them, or of the shift sequences that are none: the library takes a byte with which one begins, and
  // whatever follows, for one. `inDouble` is the shift state at the start.
  std::optional<Found> find(Bytes text, bool inDouble) const;

 private:
  enum class Kind { leadByte, highBit, gb18030, shifted, iso2022 };
  // What stands at a place, ahead of the character.
  struct Shift {
    enum class What { none, sequence, cut, broken } what;
    size_t length;
  };

  static Kind kindOf(const EncodingDescriptor& row);
  Shift shiftAt(Bytes text, bool& inDouble) const;
  size_t lengthAt(Bytes text, bool inDouble) const;

  const EncodingDescriptor& row_;
  Kind kind_;
  std::array<bool, 256> lost_{};
};

}  // namespace veld
