#include "modules/qznlsmb/scanners.h"

#include <cstring>

#include "core/text/i8.h"
#include "veldnls/cei.h"

namespace veldnls {

namespace {

constexpr uint32_t designatorLength = 4;

// Takes sequences off the front of a text.
struct Front {
  const uint8_t* at;
  uint32_t left;

  bool startsWith(const uint8_t* sequence, uint32_t length) const {
    return left >= length && std::memcmp(at, sequence, length) == 0;
  }
  bool startsWith(uint8_t byte) const { return left != 0 && *at == byte; }
  void skip(uint32_t length) {
    at += length;
    left -= length;
  }
};

// The character at a front, in text with shifts.
const uint8_t* characterAt(const Front& front, uint32_t* length, NlsBool8 inDouble) {
  *length = inDouble == 0 ? 1 : front.left >= 2 ? 2 : 0;
  return front.at;
}

// The front when the bytes for the sequence that begins there are missing.
const uint8_t* cutAt(const Front& front, uint32_t* length) {
  *length = 0;
  return front.at;
}

const uint8_t* singleAt(const uint8_t* position, uint32_t* length, NlsBool8* inDouble) {
  *inDouble = 0;
  *length = 1;
  return position;
}

const uint8_t* doubleAt(const uint8_t* position, uint32_t* length, NlsBool8* inDouble) {
  *inDouble = 1;
  *length = *length >= 2 ? 2 : 0;
  return position;
}

bool isLead(const MultiByteProfile& profile, uint8_t byte) {
  for (const NlsByteRange& range : profile.leadRanges) {
    if (range.low == 0) return false;
    if (byte >= range.low && byte <= range.high) return true;
  }
  return false;
}

bool hasDesignators(CEI cei) { return cei != U_JIS7_CE && cei != U_ISO2022JP_CE; }

// The front of ISO 2022 text, where a designator or the sequence that ends the mode may stand.
struct Iso2022Front {
  const MultiByteProfile& profile;
  bool designators;
  Front front;
  bool inDouble;

  const uint8_t* ownSequence() const { return inDouble ? profile.shiftIn : profile.shiftOut; }
  bool atDesignator() const { return designators && front.startsWith(escape); }
  bool atShift() const { return front.startsWith(ownSequence(), profile.shiftLength); }

  // Steps over what stands at the front: a designator, a shift, and a designator behind a shift-out. False: the bytes
  // for one of them are missing.
  bool step() {
    if (!skipDesignator()) return false;
    if (!front.startsWith(ownSequence()[0])) return true;
    if (front.left < profile.shiftLength) return false;
    if (!atShift()) return true;
    front.skip(profile.shiftLength);
    inDouble = !inDouble;
    return !inDouble || skipDesignator();
  }

 private:
  bool skipDesignator() {
    if (!atDesignator()) return true;
    if (front.left < designatorLength) return false;
    front.skip(designatorLength);
    return true;
  }
};

// `margin`: how many bytes must remain for another sequence to be looked for.
const uint8_t* scanSequences(const PipelineSide* side, const uint8_t* position, uint32_t* length, NlsBool8* inDouble,
                             uint32_t margin) {
  const MultiByteProfile& profile = *side->sourceProfile;
  Iso2022Front text{profile, hasDesignators(side->cei), {position, *length}, *inDouble != 0};
  bool whole = text.step();
  const auto atAnother = [&text] { return text.atDesignator() || text.front.startsWith(text.ownSequence()[0]); };
  while (whole && text.front.at != position && text.front.left >= margin && atAnother()) {
    const uint8_t* before = text.front.at;
    whole = text.step();
    if (text.front.at == before) break;
  }
  *inDouble = text.inDouble ? 1 : 0;
  return whole ? characterAt(text.front, length, *inDouble) : cutAt(text.front, length);
}

}  // namespace

CharacterRule characterRuleOf(const EncodingDescriptor& row) {
  switch (row.cei) {
    case U_JIS7_CE:
    case U_ISO2022JP_CE:
    case U_ISO2022KR_CE:
    case U_ISO2022CNGB_CE:
    case U_ISO2022CNCNS_CE:
      return CharacterRule::iso2022;
    case U_EUCJP_CE:
      return CharacterRule::highBit;
    case U_GB18030_CE:
      return CharacterRule::gb18030;
    default:
      return row.encodingClass == NLS_CLASS_SHIFTED ? CharacterRule::shifted : CharacterRule::leadByte;
  }
}

NlsScanCharacter scannerOf(CharacterRule rule) {
  constexpr NlsScanCharacter scanners[characterRuleCount] = {scanLeadByte, scanHighBit, scanShifted, scanIso2022,
                                                             scanGb18030};
  return scanners[static_cast<int>(rule)];
}

const uint8_t* scanLeadByte(const PipelineSide* side, const uint8_t* position, uint32_t* length, NlsBool8* inDouble) {
  const bool leads = *length != 0 && isLead(*side->sourceProfile, *position);
  return leads ? doubleAt(position, length, inDouble) : singleAt(position, length, inDouble);
}

const uint8_t* scanHighBit(const PipelineSide* /*side*/, const uint8_t* position, uint32_t* length,
                           NlsBool8* inDouble) {
  const bool leads = *length != 0 && *position >= 0x80;
  return leads ? doubleAt(position, length, inDouble) : singleAt(position, length, inDouble);
}

const uint8_t* scanShifted(const PipelineSide* side, const uint8_t* position, uint32_t* length, NlsBool8* inDouble) {
  const MultiByteProfile& profile = *side->sourceProfile;
  Front front{position, *length};
  // A row without shifts has none to step over: its empty sequences begin with no byte.
  while (profile.shiftLength != 0 && (front.startsWith(profile.shiftIn[0]) || front.startsWith(profile.shiftOut[0]))) {
    if (front.left < profile.shiftLength) return cutAt(front, length);
    *inDouble = front.startsWith(profile.shiftIn, profile.shiftLength) ? 0 : 1;
    front.skip(profile.shiftLength);
  }
  return characterAt(front, length, *inDouble);
}

const uint8_t* scanIso2022(const PipelineSide* side, const uint8_t* position, uint32_t* length, NlsBool8* inDouble) {
  return scanSequences(side, position, length, inDouble, 2u * side->sourceProfile->shiftLength);
}

const uint8_t* scanIso2022Piece(const PipelineSide* side, const uint8_t* position, uint32_t* length,
                                NlsBool8* inDouble) {
  return scanSequences(side, position, length, inDouble, 1);
}

const uint8_t* scanGb18030(const PipelineSide* /*side*/, const uint8_t* position, uint32_t* length,
                           NlsBool8* inDouble) {
  if (*length == 0 || *position <= 0x80) return singleAt(position, length, inDouble);
  const bool four = *length >= 2 && position[1] < 0x3A;
  if (!four) return doubleAt(position, length, inDouble);
  *inDouble = 1;
  *length = *length >= 4 ? 4 : 0;
  return position;
}

const uint8_t* scanUtfe(const PipelineSide* /*side*/, const uint8_t* position, uint32_t* length,
                        NlsBool8* /*inDouble*/) {
  const int trails = *length != 0 ? i8TrailCount[ebcdicToI8[*position]] : 0;
  const uint32_t needed = trails < 1 ? 1 : static_cast<uint32_t>(trails) + 1;
  *length = *length != 0 && *length < needed ? 0 : needed;
  return position;
}

}  // namespace veldnls
