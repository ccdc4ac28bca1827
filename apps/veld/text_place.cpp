#include "text_place.h"

namespace veld {

// Takes the shift sequence with which the text begins, and returns its length, or 0.
size_t TextPlace::passShift(Bytes text) {
  if (!form_.isShifted()) return 0;
  const MultiByteProfile& profile = form_.row().profile;
  if (text[0] != profile.shiftOut[0] && text[0] != profile.shiftIn[0]) return 0;
  if (startsWithShift(text, profile.shiftOut, profile.shiftLength)) {
    inDouble_ = true;
  } else if (startsWithShift(text, profile.shiftIn, profile.shiftLength)) {
    inDouble_ = false;
  } else {
    return 0;
  }
  return profile.shiftLength;
}

bool TextPlace::mayBeCutShift(Bytes text) const {
  const MultiByteProfile& profile = form_.row().profile;
  return form_.isShifted() && text.size() < profile.shiftLength &&
         (startsWithShift(text, profile.shiftOut, text.size()) || startsWithShift(text, profile.shiftIn, text.size()));
}

size_t TextPlace::skipWholeLines(Bytes text) {
  const size_t lines = form_.hasPlainLineEnds() ? form_.countLineEnds(text) : 0;
  if (lines == 0) return 0;
  line_ += lines;
  column_ = 1;
  size_t behind = text.size();
  while (!form_.endsLine(text.subspan(behind - 1, 1))) --behind;
  return behind;
}

// Returns how far it came: to the end, or to an open character.
size_t TextPlace::walk(Bytes text) {
  size_t place = skipWholeLines(text);
  while (place < text.size()) {
    const Bytes rest = text.subspan(place);
    if (const size_t shift = passShift(rest)) {
      place += shift;
      continue;
    }
    const size_t length = form_.lengthAt(rest, inDouble_);
    if (length > rest.size() || mayBeCutShift(rest)) break;
    if (form_.endsLine(rest.first(length))) {
      ++line_;
      column_ = 1;
    } else {
      ++column_;
    }
    place += length;
  }
  return place;
}

void TextPlace::advance(Bytes text) {
  if (open_.empty()) {
    const Bytes rest = text.subspan(walk(text));
    open_.assign(rest.begin(), rest.end());
    return;
  }
  open_.insert(open_.end(), text.begin(), text.end());
  const size_t walked = walk(open_);
  open_.erase(open_.begin(), open_.begin() + static_cast<ptrdiff_t>(walked));
}

void TextPlace::advanceOverFault() {
  open_.clear();
  ++column_;
}

void TextPlace::closeOpen() {
  column_ += open_.size() / (inDouble_ ? 2 : 1);
  open_.clear();
}

void TextPlace::endOpen() {
  if (open_.empty()) return;
  if (mayBeCutShift(open_)) return closeOpen();
  advanceOverFault();
}

size_t TextPlace::dropOpen() {
  const size_t count = open_.size();
  open_.clear();
  return count;
}

}  // namespace veld
