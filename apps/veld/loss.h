// What became of a character that didn't come over, and why.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "character_form.h"
#include "utf_ebcdic_scan.h"

namespace veld {

enum class LossReason {
  malformed,   // the bytes are no character of the source
  unassigned,  // they have the form of one, and the source has none there
  unmappable,  // the target has no place for it
  cut,         // the text ends inside it
};

// The word of a machine-readable report.
std::string reasonName(LossReason reason);

struct Loss {
  uint64_t offset;
  uint64_t line;
  uint64_t column;
  std::vector<uint8_t> bytes;
  LossReason reason;
  std::optional<char32_t> character;  // where the source has one
};

// Bytes as "E2 82".
std::string hexBytes(Bytes bytes);
// A code point as "U+20AC".
std::string codePoint(char32_t character);

// Tells why characters of one encoding don't come over.
class LossJudge {
 public:
  LossJudge(QZNLS& nls, CEI from);

  // Sets the loss's reason and character. `bytes` is a character that was replaced or lost, `inDouble` the shift state
  // ahead of it.
  void judge(Loss& loss, bool inDouble) const;

 private:
  bool isMalformed(Bytes bytes, bool inDouble) const;
  bool isFaultInText(Bytes bytes, bool inDouble) const;
  std::optional<char32_t> read(Bytes bytes, bool inDouble) const;

  QZNLS& nls_;
  CEI from_;
  CharacterForm form_;
  Pipeline toUtf32_;
  std::optional<UtfEbcdicScan> utfEbcdic_;  // of that source
};

}  // namespace veld
