// Looks through multi-byte text for what the library reads or writes without a word as something else.
#pragma once

#include <array>
#include <optional>
#include <vector>

#include "character_form.h"
#include "unwritable.h"

namespace veld {

// Walks as the library's conversions do: by lead bytes, or by shift sequences and designators.
class MultiByteScan {
 public:
  MultiByteScan(QZNLS& nls, CEI cei);

  // A byte that counts as lost where it stands by itself.
  void lose(uint8_t byte);

  struct Found {
    size_t place;
    size_t length;
  };
  // The first of them, or of the longer characters that are `unwritable`, or of the shift sequences that are none: the
  // library takes a byte with which one begins, and whatever follows, for one. `inDouble` is the shift state at the
  // start. All calls take the same `unwritable`.
  std::optional<Found> find(Bytes text, bool inDouble, Unwritable& unwritable);

 private:
  enum class Kind { leadByte, highBit, gb18030, shifted, iso2022 };
  // What stands at a place, ahead of the character.
  struct Shift {
    enum class What { none, sequence, cut, broken } what;
    size_t length;
  };

  // What is known of a code of more than one byte.
  enum class Verdict : uint8_t { unknown, written, lost };

  static Kind kindOf(const EncodingDescriptor& row);
  bool designates() const;
  bool mayBeginShift(uint8_t byte) const;
  uint8_t lengthOf(uint8_t lead) const;
  Shift shiftAt(Bytes text, bool& inDouble) const;
  size_t lengthAt(Bytes text, bool inDouble) const;
  bool isLost(Bytes code, bool inDouble, Unwritable& unwritable);
  Verdict judge(Bytes code, bool inDouble, Unwritable& unwritable) const;

  const EncodingDescriptor& row_;
  Kind kind_;
  Pipeline toUtf16_;
  // By byte, the length of the character that it leads in single-byte mode and in the other; 0 for those that have to
  // be looked at: bytes that count as lost, and with which a shift sequence may begin.
  std::array<std::array<uint8_t, 256>, 2> lengths_{};
  std::array<bool, 256> lost_{};
  std::vector<Verdict> verdicts_;  // by code: those of two bytes, and behind them those of four
};

}  // namespace veld
