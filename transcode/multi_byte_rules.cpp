#include <cstring>

#include "transcode/text_rules.h"
#include "veldnls/cei.h"

namespace veldnls {

namespace {

// A list ends at its first range with a low byte of 0.
bool isInRanges(uint8_t byte, const NlsByteRange (&ranges)[4]) {
  for (const NlsByteRange& range : ranges) {
    if (range.low == 0) return false;
    if (byte >= range.low && byte <= range.high) return true;
  }
  return false;
}

bool isWithin(uint8_t byte, uint8_t low, uint8_t high) { return byte >= low && byte <= high; }
bool isGraphic(uint8_t byte) { return isWithin(byte, 0xA1, 0xFE); }
bool isGb18030Digit(uint8_t byte) { return isWithin(byte, 0x30, 0x39); }

// Bytes of the character at a position, whose first byte isn't ASCII; 0 if it is faulty.
using LengthRule = size_t (*)(const EncodedText& text, size_t position, const MultiByteProfile& profile);

size_t byRanges(const EncodedText& text, size_t position, const MultiByteProfile& profile) {
  if (!isInRanges(text.at(position), profile.leadRanges)) return 0;
  if (!text.has(position, 2)) return 0;
  return isInRanges(text.at(position + 1), profile.trailRanges) ? 2 : 0;
}

size_t withKatakana(const EncodedText& text, size_t position, const MultiByteProfile& profile) {
  return isWithin(text.at(position), 0xA1, 0xDF) ? 1 : byRanges(text, position, profile);
}

// The third byte decides between two bytes and four, so that the byte behind a two-byte character must be a graphic
// one: ASCII there, or the end of the text, makes it a fault. Leads below A1 are none.
size_t gb18030(const EncodedText& text, size_t position, const MultiByteProfile&) {
  if (!isGraphic(text.at(position)) || !text.has(position, 2)) return 0;
  if (isGraphic(text.at(position + 2))) return 2;
  const bool fourBytes = isGb18030Digit(text.at(position + 1)) && isWithin(text.at(position + 2), 0x81, 0xFE) &&
                         isGb18030Digit(text.at(position + 3));
  return fourBytes ? 4 : 0;
}

size_t eucTw(const EncodedText& text, size_t position, const MultiByteProfile&) {
  const uint8_t lead = text.at(position);
  const uint8_t second = text.at(position + 1);
  if (isGraphic(lead)) return isGraphic(second) ? 2 : 0;
  const bool planeShift = lead == 0x8E && isWithin(second, 0xA2, 0xAD);
  return planeShift && isGraphic(text.at(position + 2)) && isGraphic(text.at(position + 3)) ? 4 : 0;
}

size_t eucJp(const EncodedText& text, size_t position, const MultiByteProfile&) {
  const uint8_t lead = text.at(position);
  const uint8_t second = text.at(position + 1);
  if (lead == 0x8E) return isWithin(second, 0xA1, 0xDF) ? 2 : 0;
  if (lead == 0x8F) return isGraphic(second) && isGraphic(text.at(position + 2)) ? 3 : 0;
  return isGraphic(lead) && isGraphic(second) ? 2 : 0;
}

LengthRule ruleOf(CEI cei) {
  switch (cei) {
    case U_EUCTW_CE:
      return eucTw;
    case U_EUCJP_CE:
      return eucJp;
    case U_MS932_CE:
    case U_SHIFTJIS_CE:
      return withKatakana;
    case U_GB18030_CE:
      return gb18030;
    default:
      return byRanges;
  }
}

class Shifts {
 public:
  explicit Shifts(const MultiByteProfile& profile) : profile_(profile), length_(profile.shiftLength) {}

  // Bytes of a shift sequence at a position, after which `inDouble` holds; 0 if there is none.
  size_t take(const EncodedText& text, size_t position, bool& inDouble) const {
    const uint8_t* at = text.bytes + position;
    if (*at != profile_.shiftOut[0] && *at != profile_.shiftIn[0]) return 0;
    if (length_ == 0 || !text.has(position, length_)) return 0;
    const bool isOut = std::memcmp(at, profile_.shiftOut, length_) == 0;
    if (!isOut && std::memcmp(at, profile_.shiftIn, length_) != 0) return 0;
    inDouble = isOut;
    return length_;
  }

 private:
  const MultiByteProfile& profile_;
  size_t length_;
};

}  // namespace

size_t faultOfShifted(const EncodedText& text, const MultiByteProfile& profile, const uint8_t* map) {
  const Shifts shifts(profile);
  bool inDouble = false;
  for (size_t position = 0; position < text.length;) {
    if (const size_t shift = shifts.take(text, position, inDouble); shift != 0) {
      position += shift;
    } else if (!inDouble) {
      if (map[text.at(position)] == 0) return position;
      ++position;
    } else {
      if (!isInRanges(text.at(position), profile.leadRanges) || !text.has(position, 2)) return position;
      if (!isInRanges(text.at(position + 1), profile.trailRanges)) return position + 1;
      position += 2;
    }
  }
  return noFault;
}

size_t faultOfMultiByte(const EncodedText& text, const EncodingDescriptor& row) {
  const LengthRule rule = ruleOf(row.cei);
  for (size_t position = 0; position < text.length;) {
    const size_t length = text.at(position) < 0x80 ? 1 : rule(text, position, row.profile);
    if (length == 0) return position;
    position += length;
  }
  return noFault;
}

}  // namespace veldnls
