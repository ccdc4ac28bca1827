// The pieces that a conversion in blocks gives, as one text.
#pragma once

#include "output.h"

namespace veld {

// Every piece of a text in a shifted encoding begins and ends in single-byte mode. Where one ends with a shift-in and
// the next begins with a shift-out, neither is written, so that the text doesn't depend on where it was cut. Only
// characters that are shift sequences themselves, which count as lost in such a target, can be taken for one there.
class Seam {
 public:
  // The row of the target; of no effect where that isn't shifted.
  explicit Seam(const EncodingDescriptor& row);

  // Returns how many bytes were written.
  size_t write(Output& output, Bytes piece);
  // Writes what waits for the next piece; returns the same.
  size_t finish(Output& output);

 private:
  Bytes shiftOut_;
  Bytes shiftIn_;
  bool closed_ = false;  // a shift-in waits
};

}  // namespace veld
