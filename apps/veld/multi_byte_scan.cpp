#include "multi_byte_scan.h"

#include "names.h"
#include "unicode_scan.h"
#include "veldnls/cei.h"

namespace veld {

namespace {

constexpr uint8_t escape = 0x1B;
constexpr size_t designatorLength = 4;
constexpr size_t codesOfTwoBytes = 0x10000;
constexpr size_t codesOfFourBytes = 39420;  // of gb18030, up to U+FFFF

// The place of a code among all of its length, and those of two bytes ahead of those of four; no less than their number
// for what is beyond.
size_t indexOf(Bytes code) {
  if (code.size() == 2) return static_cast<size_t>(code[0] << 8 | code[1]);
  constexpr std::array<uint8_t, 4> first{0x81, 0x30, 0x81, 0x30};
  constexpr std::array<uint8_t, 4> last{0xFE, 0x39, 0xFE, 0x39};
  size_t index = 0;
  for (size_t i = 0; i < code.size(); ++i) {
    if (code[i] < first[i] || code[i] > last[i]) return codesOfTwoBytes + codesOfFourBytes;
    index = index * static_cast<size_t>(last[i] - first[i] + 1) + static_cast<size_t>(code[i] - first[i]);
  }
  return codesOfTwoBytes + index;
}

}  // namespace

MultiByteScan::MultiByteScan(QZNLS& nls, CEI cei)
    : row_(rowOf(nls, cei)),
      kind_(kindOf(row_)),
      toUtf16_(makePipeline(nls, cei, U_L_UNICODE_CE)),
      verdicts_(codesOfTwoBytes + (kind_ == Kind::gb18030 ? codesOfFourBytes : 0)) {
  for (size_t i = 0; i < lost_.size(); ++i) {
    const auto byte = static_cast<uint8_t>(i);
    if (mayBeginShift(byte)) continue;
    lengths_[0][byte] = lengthOf(byte);
    lengths_[1][byte] = 2;
  }
}

void MultiByteScan::lose(uint8_t byte) {
  lost_[byte] = true;
  if (lengthOf(byte) == 1) lengths_[0][byte] = 0;
}

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

// Those of one byte are told by designators.
bool MultiByteScan::designates() const { return kind_ == Kind::iso2022 && row_.profile.shiftLength == 1; }

bool MultiByteScan::mayBeginShift(uint8_t byte) const {
  if (kind_ != Kind::shifted && kind_ != Kind::iso2022) return false;
  return byte == row_.profile.shiftIn[0] || byte == row_.profile.shiftOut[0] || (designates() && byte == escape);
}

MultiByteScan::Shift MultiByteScan::shiftAt(Bytes text, bool& inDouble) const {
  using enum Shift::What;
  if (!mayBeginShift(text[0])) return {none, 0};
  const MultiByteProfile& profile = row_.profile;
  if (designates() && text[0] == escape) {
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

// In single-byte mode. In gb18030 it may be four bytes instead of two.
uint8_t MultiByteScan::lengthOf(uint8_t lead) const {
  switch (kind_) {
    case Kind::leadByte:
      return liesIn(lead, row_.profile.leadRanges) ? 2 : 1;
    case Kind::highBit:
      return lead >= firstBeyondAscii ? 2 : 1;
    case Kind::gb18030:
      return lead > firstBeyondAscii ? 2 : 1;
    case Kind::shifted:
    case Kind::iso2022:
      break;
  }
  return 1;
}

// It may be more than the text has.
size_t MultiByteScan::lengthAt(Bytes text, bool inDouble) const {
  return kind_ == Kind::gb18030 ? gb18030Length(text) : inDouble ? 2 : lengthOf(text[0]);
}

MultiByteScan::Verdict MultiByteScan::judge(Bytes code, bool inDouble, Unwritable& unwritable) const {
  if (toUtf16_ == nullptr) return Verdict::written;
  std::array<uint8_t, roomOfACharacter> output;
  const Converted read = convertShort(*toUtf16_, code, output, inDouble);
  if (!read.whole || read.size != utf16Unit) return Verdict::written;
  return unwritable.has(unitAt(output, 0, utf16Unit, ByteOrder::little)) ? Verdict::lost : Verdict::written;
}

bool MultiByteScan::isLost(Bytes code, bool inDouble, Unwritable& unwritable) {
  const size_t index = indexOf(code);
  if (index >= verdicts_.size()) return false;
  if (verdicts_[index] == Verdict::unknown) verdicts_[index] = judge(code, inDouble, unwritable);
  return verdicts_[index] == Verdict::lost;
}

std::optional<MultiByteScan::Found> MultiByteScan::find(Bytes text, bool inDouble, Unwritable& unwritable) {
  size_t place = 0;
  while (place < text.size()) {
    const uint8_t byte = text[place];
    const uint8_t quick = lengths_[inDouble ? 1 : 0][byte];
    if (quick == 1) {
      ++place;
      continue;
    }
    if (quick == 2 && text.size() - place > 1 &&
        verdicts_[static_cast<size_t>(byte << 8 | text[place + 1])] == Verdict::written) {
      place += 2;
      continue;
    }
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
    if (length == 1 ? lost_[byte] : isLost(rest.first(length), inDouble, unwritable)) return Found{place, length};
    place += length;
  }
  return std::nullopt;
}

}  // namespace veld
