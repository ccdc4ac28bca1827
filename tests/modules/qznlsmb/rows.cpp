#include "modules/qznlsmb/rows.h"

#include <algorithm>

#include "modules/qznlsmb/skip_source.h"
#include "modules/qznlsmb/tables.h"
#include "transcode/stages.h"

namespace transcode_test {

namespace {

bool isUnicode(const EncodingDescriptor& of) {
  return of.encodingClass >= NLS_CLASS_UTF8 && of.encodingClass <= NLS_CLASS_UTF32;
}

bool isMultiByte(const EncodingDescriptor& of) { return of.encodingClass >= NLS_CLASS_SHIFTED; }

// Of the classes with a byte order, the rows of the other one.
bool isBigEndian(const EncodingDescriptor& of) { return of.cei == U_B_UNICODE_CE || of.cei == U_B_UCS4_CE; }

NlsMultiByteSetup slotOf(const EncodingDescriptor& source, const EncodingDescriptor& target) {
  const MultiByteModule& module = *nls()->multiByteModule;
  if (!isMultiByte(source)) {
    switch (source.encodingClass) {
      case NLS_CLASS_SINGLE_BYTE:
        return module.setupByteToMultibyte;
      case NLS_CLASS_UTF8:
        return source.cei == U_UTFE_CE ? module.setupUtfeToMultibyte : module.setupUtf8ToMultibyte;
      case NLS_CLASS_UTF16:
        return module.setupUtf16ToMultibyte;
      default:
        return module.setupUtf32ToMultibyte;
    }
  }
  switch (target.encodingClass) {
    case NLS_CLASS_SINGLE_BYTE:
      return module.setupMultibyteToByte;
    case NLS_CLASS_UTF8:
      return target.cei == U_UTFE_CE ? module.setupMultibyteToUtfe : module.setupMultibyteToUtf8;
    case NLS_CLASS_UTF16:
      return module.setupMultibyteToUtf16;
    default:
      return module.setupMultibyteToUtf32;
  }
}

void append(Bytes& bytes, Span more) { bytes.insert(bytes.end(), more.begin(), more.end()); }

class Dice {
 public:
  explicit Dice(std::mt19937& random) : random_(random) {}
  uint32_t below(uint32_t bound) { return static_cast<uint32_t>(random_()) % bound; }
  uint8_t byte() { return static_cast<uint8_t>(below(256)); }
  bool oneIn(uint32_t count) { return below(count) == 0; }

 private:
  std::mt19937& random_;
};

}  // namespace

const std::vector<CEI>& multiByteRows() {
  static const std::vector<CEI> rows = [] {
    std::vector<CEI> found;
    for (CEI cei = 0; cei < NLS_CEI_COUNT; ++cei) {
      if (isMultiByte(row(cei)) && row(cei).profile.doubleByteSet != 0) found.push_back(cei);
    }
    return found;
  }();
  return rows;
}

StageRoute::StageRoute(CEI source, CEI target) {
  // Loads the module if it isn't yet.
  const Pipeline loads(U_SHIFTJIS_CE, U_L_UNICODE_CE);
  const EncodingDescriptor& from = row(source);
  const EncodingDescriptor& to = row(target);
  record_.nls = nls();
  record_.sourceCei = source;
  record_.targetCei = target;
  PipelineSide& side = record_.source;
  side.cei = source;
  side.peerCei = target;
  side.swapInput = isBigEndian(from) ? 1 : 0;
  side.swapOutput = isBigEndian(to) ? 1 : 0;
  side.padChar = isUnicode(from) || isUnicode(to) ? from.padChar : to.padChar;
  side.unitSize = static_cast<uint8_t>(to.unitSize);
  if (isMultiByte(from)) side.sourceProfile = &from.profile;
  if (isMultiByte(to)) side.targetProfile = &to.profile;
  side.encodingClass = from.encodingClass;
  side.options = &record_.options;
  record_.transcode = veldnls::plain<veldnls::multiByteTranscodeResumable>;
  record_.transcodeResumable = veldnls::multiByteTranscodeResumable;
  setup = slotOf(from, to)(nls()->multiByteModule, &side, &from, &to);
}

void StageRoute::setPace(veldnls::Pace pace) {
  PipelineSide& side = record_.source;
  const EncodingDescriptor& from = row(side.cei);
  const EncodingDescriptor& to = row(side.peerCei);
  if (isMultiByte(from)) {
    side.stage = veldnls::multibyteToUnicode(veldnls::characterRuleOf(from), side.peerCei,
                                             std::min(pace, veldnls::paceOfRow(from)));
    return;
  }
  side.stage = veldnls::unicodeToMultibyte(targetRule(to.cei), side.cei, pace);
}

veldnls::TargetRule targetRule(CEI cei) {
  using veldnls::TargetRule;
  if (cei == U_GB18030_CE && nls()->multiByteModule->gbModule != nullptr) return TargetRule::gb18030;
  if (veldnls::characterRuleOf(row(cei)) == veldnls::CharacterRule::iso2022) return TargetRule::iso2022;
  return row(cei).profile.shiftLength != 0 ? TargetRule::modes : TargetRule::pairs;
}

Bytes randomText(CEI cei, size_t length, std::mt19937& random) {
  Dice dice(random);
  const MultiByteProfile& profile = row(cei).profile;
  const NlsPairTable& pairs = veldnls::toUnicodeSets[profile.doubleByteSet].table;
  const auto sequence = [&](const uint8_t* bytes) { return Span(bytes, profile.shiftLength); };
  // Rows of seven bits whose set has eight.
  const uint16_t mask = cei == U_ISO2022KR_CE || cei == U_ISO2022CNGB_CE || cei == U_ISO2022CNCNS_CE ? 0x7F7F : 0xFFFF;
  Bytes text;
  bool inDouble = false;
  const auto mapped = [&] {
    if (pairs.count == 0) return;
    const uint16_t code = pairs.pairs[dice.below(pairs.count)].key & mask;
    text.push_back(static_cast<uint8_t>(code >> 8));
    text.push_back(static_cast<uint8_t>(code));
  };
  while (text.size() < length) {
    const uint32_t kind = dice.below(40);
    if (kind == 0) {
      text.push_back(dice.byte());
    } else if (kind == 1) {
      append(text, Span(profile.doubleBlank, 2));
    } else if (kind == 2) {
      append(text, hex("1B 24 29 43"));
    } else if (kind == 3) {
      append(text, sequence(dice.oneIn(2) ? profile.shiftIn : profile.shiftOut));
    } else if (kind < 8) {
      inDouble = !inDouble;
      append(text, sequence(inDouble ? profile.shiftOut : profile.shiftIn));
    } else if (kind == 8 && cei == U_GB18030_CE) {
      append(text, Bytes{static_cast<uint8_t>(0x81 + dice.below(5)), static_cast<uint8_t>(0x30 + dice.below(11)),
                         static_cast<uint8_t>(0x81 + dice.below(126)), static_cast<uint8_t>(0x30 + dice.below(10))});
    } else if (kind == 9) {
      for (uint32_t i = dice.below(40); i > 0; --i) text.push_back(static_cast<uint8_t>(0x20 + dice.below(95)));
    } else if (inDouble || (profile.shiftLength == 0 && dice.oneIn(2))) {
      mapped();
    } else {
      text.push_back(dice.oneIn(4) ? dice.byte() : static_cast<uint8_t>(0x20 + dice.below(95)));
    }
  }
  return text;
}

Bytes randomUnicode(CEI form, CEI towards, size_t length, std::mt19937& random) {
  Dice dice(random);
  const NlsPairTable& pairs = veldnls::fromUnicodeSets[row(towards).profile.doubleByteSet].table;
  std::u32string text;
  while (text.size() < length) {
    const uint32_t kind = dice.below(40);
    if (kind == 0) {
      text.push_back(static_cast<char32_t>(dice.below(0x110000)));
    } else if (kind == 1) {
      text.push_back(0x3000);
    } else if (kind == 2) {
      text.push_back(static_cast<char32_t>(0xFF61 + dice.below(63)));
    } else if (kind == 3) {
      text.push_back(static_cast<char32_t>(0x7E + dice.below(0x24)));
    } else if (kind == 4) {
      for (uint32_t i = dice.below(40); i > 0; --i) text.push_back(static_cast<char32_t>(0x20 + dice.below(95)));
    } else if (kind == 5) {
      text.push_back(static_cast<char32_t>(dice.below(0x10000)));
    } else if (kind < 14 || pairs.count == 0) {
      text.push_back(static_cast<char32_t>(dice.below(0x80)));
    } else {
      text.push_back(pairs.pairs[dice.below(pairs.count)].key);
    }
  }
  const bool big = isBigEndian(row(form));
  Bytes bytes;
  switch (row(form).encodingClass) {
    case NLS_CLASS_UTF16:
      bytes = utf16(text, big);
      break;
    case NLS_CLASS_UTF32:
      bytes = utf32(text, big);
      break;
    default:
      bytes = utf8(text);
      break;
  }
  if (form == U_UTFE_CE) {
    const Pipeline recode(U_UTF8_CE, U_UTFE_CE);
    bytes = run(recode, bytes, 8 * bytes.size() + 8).bytes;
  }
  for (uint32_t i = dice.below(3); i > 0 && !bytes.empty(); --i) {
    bytes[dice.below(static_cast<uint32_t>(bytes.size()))] = dice.byte();
  }
  return bytes;
}

}  // namespace transcode_test
