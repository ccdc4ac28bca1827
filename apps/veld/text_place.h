// Lines and columns of a text in any encoding.
#pragma once

#include <cstdint>
#include <vector>

#include "character_form.h"

namespace veld {

// Follows a text and tells the line and the column of its end, both from 1. Columns count characters, in utf-e bytes.
// The text is taken to be well-formed; behind a fault the place is what the form of the encoding suggests.
class TextPlace {
 public:
  TextPlace(QZNLS& nls, CEI cei) : form_(nls, cei) {}

  // Goes on over text. A character at its end that isn't whole is open: it counts when the rest of it comes.
  void advance(Bytes text);
  // Goes on over bytes that are no character, open ones among them: one column.
  void advanceOverFault();
  // Counts the open bytes, of a shift sequence that was only begun, as characters.
  void closeOpen();
  // The same when a character is known to begin behind the open bytes: what they are part of is one column.
  void endOpen();
  // Forgets the open bytes, which will come again, and returns their number.
  size_t dropOpen();

  uint64_t line() const { return line_; }
  uint64_t column() const { return column_; }
  // The shift state of a shifted encoding.
  bool inDouble() const { return inDouble_; }

 private:
  size_t passShift(Bytes text);
  bool mayBeCutShift(Bytes text) const;
  size_t skipWholeLines(Bytes text);
  size_t walk(Bytes text);

  CharacterForm form_;
  uint64_t line_ = 1;
  uint64_t column_ = 1;
  bool inDouble_ = false;
  std::vector<uint8_t> open_;
};

}  // namespace veld
