#include "seam.h"

#include <algorithm>

namespace veld {

namespace {

bool startsWith(Bytes text, Bytes start) {
  return text.size() >= start.size() && std::equal(start.begin(), start.end(), text.begin());
}

bool endsWith(Bytes text, Bytes end) { return text.size() >= end.size() && startsWith(text.last(end.size()), end); }

}  // namespace

Seam::Seam(const EncodingDescriptor& row) {
  if (row.encodingClass != NLS_CLASS_SHIFTED) return;
  shiftOut_ = Bytes(row.profile.shiftOut).first(row.profile.shiftLength);
  shiftIn_ = Bytes(row.profile.shiftIn).first(row.profile.shiftLength);
}

size_t Seam::write(Output& output, Bytes piece) {
  if (shiftIn_.empty() || piece.empty()) {
    output.write(piece);
    return piece.size();
  }
  if (closed_ && startsWith(piece, shiftOut_)) {
    piece = piece.subspan(shiftOut_.size());
    closed_ = false;
  }
  const size_t waited = finish(output);
  closed_ = endsWith(piece, shiftIn_);
  if (closed_) piece = piece.first(piece.size() - shiftIn_.size());
  output.write(piece);
  return waited + piece.size();
}

size_t Seam::finish(Output& output) {
  if (!closed_) return 0;
  closed_ = false;
  output.write(shiftIn_);
  return shiftIn_.size();
}

}  // namespace veld
