// Losses that pipelines don't report, found in the source text.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "locate.h"
#include "multi_byte_scan.h"
#include "unicode_scan.h"
#include "utf_ebcdic_scan.h"

namespace veld {

// What counts, by the pair:
//   single-byte source     bytes without a meaning; to another single-byte encoding also those that stand there for
//                          another character, since byte maps pair leftover bytes
//   to us-ascii as copies  bytes from 0x80 on
//   multi-byte source      single bytes without a meaning, which become blanks or, in 7-bit encodings, Latin; a byte
//                          that begins a shift sequence which isn't one
//   utf-8                  values beyond U+10FFFF; to UTF-16 forms also plane 16, whose characters lose their upper
//                          bits; the UTF-8 and UTF-EBCDIC targets pass through UTF-16
//   UTF-16                 unpaired surrogates
//   UTF-32                 surrogates and values beyond U+10FFFF
//   code page as target    the characters of Unwritable
// Nothing counts where a wild card takes the text as it is.
class SilentLoss {
 public:
  // Both encodings are resolved.
  SilentLoss(QZNLS& nls, CEI from, CEI to);

  // The part of a block that can be judged and converted before more follows. What is left at the end of a file is the
  // part of a character. Stages to code pages look at a surrogate pair only when all of it is there, so a block must
  // not be cut inside a pair for their sake too.
  Bytes judgeable(Bytes block) const;

  // The first character in such a part that is lost. `before` is the state ahead of the block.
  std::optional<Extent> first(Bytes block, const ChainState& before);

 private:
  enum class Form { bytes, multiByte, utf8, utfEbcdic, utf16, utf32 };
  using ByteSet = std::array<bool, 256>;

  void countBytes(QZNLS& nls, CEI from, CEI to);
  void countWithoutMeaning(QZNLS& nls, CEI from);
  void countChangedMeaning(QZNLS& nls, CEI from, CEI to);
  void countSingles(QZNLS& nls, CEI from);
  std::optional<Extent> firstOfMultiByte(Bytes block, const ChainState& before);
  std::optional<size_t> find(Bytes block);
  size_t lengthAt(Bytes text) const;

  CharacterForm characters_;
  Form form_ = Form::bytes;
  ByteOrder order_ = ByteOrder::little;
  Unwritable unwritable_;
  Utf8Scan utf8_;
  std::optional<UtfEbcdicScan> utfEbcdic_;
  std::optional<MultiByteScan> multiByte_;
  ByteSet lost_{};
};

}  // namespace veld
