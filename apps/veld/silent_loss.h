// Losses that pipelines don't report, found in the source text.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "chain.h"
#include "unicode_scan.h"
#include "veldnls/nls.h"

namespace veld {

// What counts, by the pair:
//   single-byte source     bytes without a meaning; to another single-byte encoding also those that stand there for
//                          another character, since byte maps pair leftover bytes
//   to us-ascii as copies  bytes from 0x80 on
//   utf-8                  values beyond U+10FFFF; to UTF-16 forms also plane 16, whose characters lose their upper
//                          bits; the UTF-8 and UTF-EBCDIC targets pass through UTF-16
//   UTF-16                 unpaired surrogates
//   UTF-32                 surrogates and values beyond U+10FFFF
// Nothing counts where a wild card takes the text as it is.
class SilentLoss {
 public:
  // Both encodings are resolved.
  SilentLoss(QZNLS& nls, CEI from, CEI to);

  // The part of a block that can be judged and converted before more follows. What is left at the end of a file is the
  // part of a character. Stages to code pages look at a surrogate pair only when all of it is there, so a block must
  // not be cut inside a pair for their sake too.
  Bytes judgeable(Bytes block) const;

  // The place in such a part of the first character that is lost.
  std::optional<size_t> first(Bytes block) const;

 private:
  enum class Form { bytes, utf8, utf16, utf32 };
  using ByteSet = std::array<bool, 256>;

  void countBytes(QZNLS& nls, CEI from, CEI to);
  void countWithoutMeaning(QZNLS& nls, CEI from);
  void countChangedMeaning(QZNLS& nls, CEI from, CEI to);

  Form form_ = Form::bytes;
  ByteOrder order_ = ByteOrder::little;
  uint8_t lostTrail_ = 0;  // of plane 16 in utf-8
  ByteSet lost_{};
};

}  // namespace veld
