// How a multi-byte text is cut into characters.
#include <algorithm>

#include "reference/multi_byte.h"

namespace transcode_test {

namespace {

constexpr uint8_t escape = 0x1B;
constexpr size_t designatorLength = 4;

bool startsWith(Span text, const Bytes& sequence) {
  return text.size() >= sequence.size() && std::ranges::equal(text.first(sequence.size()), sequence);
}

Scanned character(Span text, size_t skipped, bool doubleMode) {
  if (!doubleMode) return {skipped, 1, false};
  return {skipped, text.size() - skipped >= 2 ? size_t{2} : size_t{0}, true};
}

Scanned needsMore(size_t skipped, bool doubleMode) { return {skipped, 0, doubleMode}; }

Scanned scanGb18030(Span text) {
  if (text[0] <= 0x80) return {0, 1, false};
  if (text.size() < 2) return {0, 0, false};
  if (text[1] >= 0x3A) return {0, 2, true};
  return {0, text.size() < 4 ? size_t{0} : size_t{4}, true};
}

// Whatever begins like a shift sequence is taken for one.
Scanned scanShifted(const EncodingText& row, Span text, bool doubleMode) {
  size_t at = 0;
  while (at < text.size() && (text[at] == row.shiftIn[0] || text[at] == row.shiftOut[0])) {
    if (text.size() - at < row.shiftLength()) return needsMore(at, doubleMode);
    doubleMode = !startsWith(text.subspan(at), row.shiftIn);
    at += row.shiftLength();
  }
  return character(text, at, doubleMode);
}

// In each mode only the sequence that ends it is known. Behind a first one another is looked at only while `margin`
// bytes are left.
Scanned scanIso2022(const EncodingText& row, bool hasDesignators, Span text, bool doubleMode, size_t margin) {
  size_t at = 0;
  const auto atDesignator = [&] { return hasDesignators && at < text.size() && text[at] == escape; };
  size_t before = 0;
  do {
    before = at;
    if (atDesignator()) {
      if (text.size() - at < designatorLength) return needsMore(at, doubleMode);
      at += designatorLength;
    }
    const Bytes& end = doubleMode ? row.shiftIn : row.shiftOut;
    if (at < text.size() && text[at] == end[0]) {
      if (text.size() - at < end.size()) return needsMore(at, doubleMode);
      if (!startsWith(text.subspan(at), end)) break;
      at += end.size();
      doubleMode = !doubleMode;
      if (doubleMode && atDesignator()) {
        if (text.size() - at < designatorLength) return needsMore(at, doubleMode);
        at += designatorLength;
      }
    }
  } while (at != before && text.size() - at >= margin);
  return character(text, at, doubleMode);
}

}  // namespace

Scanned scan(const EncodingText& row, Span text, bool doubleMode, bool isPiece, bool toByte) {
  const size_t margin = isPiece ? 1 : 2 * row.shiftLength();
  switch (row.cei) {
    case 158:
    case 167:
      return scanIso2022(row, false, text, doubleMode, margin);
    case 168:
    case 169:
    case 172:
      return scanIso2022(row, true, text, doubleMode, margin);
    case 205:
      if (!toByte) return scanGb18030(text);
      break;
    default:
      if (row.encodingClass == 4) return scanShifted(row, text, doubleMode);
      break;
  }
  const bool leads = row.cei == 134 ? text[0] >= 0x80 : isWithin(row.leadRanges, text[0]);
  return character(text, 0, leads);
}

}  // namespace transcode_test
