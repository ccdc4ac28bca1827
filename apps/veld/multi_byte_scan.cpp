#include "multi_byte_scan.h"

#include "veldnls/cei.h"

namespace veld {

namespace {

constexpr uint8_t firstBeyondAscii = 0x80;
constexpr uint8_t escape = 0x1B;
constexpr size_t designatorLength = 4;

}  // namespace

MultiByteScan::MultiByteScan(const EncodingDescriptor& row) : row_(row), kind_(kindOf(row)) {}

MultiByteScan::Kind MultiByteScan::kindOf(const EncodingDescriptor& row) {
  switch (row.cei) {
    case U_JIS7_CE:
    case U_ISO2022JP_CE:
    case U_ISO2022KR_CE:
    case U_ISO2022CNGB_CE:
    case U_ISO2022CNCNS_CE:
      return Kind::iso2022;
    case U_EUCJP_CE:
      return Kind::highBit;
    case U_GB18030_CE:
      return Kind::gb18030;
    default:
      return row.encodingClass == NLS_CLASS_SHIFTED ? Kind::shifted : Kind::leadByte;
  }
}

MultiByteScan::Shift MultiByteScan::shiftAt(Bytes text, bool& inDouble) const {
  using enum Shift::What;
  if (kind_ != Kind::shifted && kind_ != Kind::iso2022) return {none, 0};
  const MultiByteProfile& profile = row_.profile;
  const bool designates = kind_ == Kind::iso2022 && profile.shiftLength == 1;
  if (designates && text[0] == escape) {
    return text.size() < designatorLength ? Shift{cut, 0} : Shift{sequence, designatorLength};
  }
  const bool inKnown = kind_ == Kind::shifted || inDouble;
  const bool outKnown = kind_ == Kind::shifted || !inDouble;
  const bool begins = (inKnown && text[0] == profile.shiftIn[0]) || (outKnown && text[0] == profile.shiftOut[0]);
  if (!begins) return {none, 0};
  if (text.size() < profile.shiftLength) return {cut, 0};
  if (inKnown && startsWithShift(text, profile.shiftIn, profile.shiftLength)) {
    inDouble = false;
  } else if (outKnown && startsWithShift(text, profile.shiftOut, profile.shiftLength)) {
    inDouble = true;
  } else {
    return {kind_ == Kind::shifted ? broken : none, profile.shiftLength};
  }
  return {sequence, profile.shiftLength};
}

// The length of the character with which the text begins; it may be more than the text has.
size_t MultiByteScan::lengthAt(Bytes text, bool inDouble) const {
  switch (kind_) {
    case Kind::leadByte:
      return liesIn(text[0], row_.profile.leadRanges) ? 2 : 1;
    case Kind::highBit:
      return text[0] >= firstBeyondAscii ? 2 : 1;
    case Kind::gb18030:
      return gb18030Length(text);
    case Kind::shifted:
    case Kind::iso2022:
      break;
  }
  return inDouble ? 2 : 1;
}

std::optional<MultiByteScan::Found> MultiByteScan::find(Bytes text, bool inDouble) const {
  size_t place = 0;
  while (place < text.size()) {
    const Bytes rest = text.subspan(place);
    const Shift shift = shiftAt(rest, inDouble);
    if (shift.what == Shift::What::broken) return Found{place, shift.length};
    if (shift.what == Shift::What::cut) return std::nullopt;
    if (shift.what == Shift::What::sequence) {
      place += shift.length;
      continue;
    }
    const size_t length = lengthAt(rest, inDouble);
    if (length > rest.size()) return std::nullopt;
    if (length == 1 && lost_[rest[0]]) return Found{place, length};
    place += length;
  }
  return std::nullopt;
}

}  // namespace veld
