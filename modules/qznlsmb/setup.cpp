#include "modules/qznlsmb/setup.h"

#include <algorithm>
#include <atomic>

#include "core/qznlsstub.h"
#include "modules/qznlsgb/qznlsgb.h"
#include "modules/qznlsmb/direct_run.h"
#include "modules/qznlsmb/qznlsmb.h"
#include "modules/qznlsmb/scanners.h"
#include "modules/qznlsmb/skip_source.h"
#include "modules/qznlsmb/source_tables.h"
#include "modules/qznlsmb/stages.h"
#include "modules/qznlsmb/tables.h"
#include "veldnls/cei.h"
#include "veldnls/status.h"

namespace veldnls {

namespace {

// A map of the route between a single-byte and a multi-byte row. Rows with the same blank are of one kind.
const uint8_t* byteMap(const EncodingDescriptor& source, const EncodingDescriptor& target, bool toAscii) {
  if (source.padChar == target.padChar) return source.padChar == 0x20 ? asciiPassthrough : identity;
  return toAscii ? ebcdicToAscii : asciiToEbcdic;
}

const uint16_t* kanaPairs(const EncodingDescriptor& target) {
  if (target.baseCei != U_SHIFTJIS_CE) return nullptr;
  if (target.cei == U_DECJP_CE || target.cei == U_EUCJP_CE) return eucHalfWidthKatakana;
  return halfWidthKatakana[target.profile.singleByteSet];
}

bool loadGbModule(MultiByteModule& module) {
  if (loadedGbModule(module) != nullptr) return true;
  auto* fresh = reinterpret_cast<Gb18030Module*>(nlsLoadExtension(module.host, u"qznlsgb", 7, nullptr));
  if (fresh == nullptr) return false;
  Gb18030Module* present = nullptr;
  const std::atomic_ref<Gb18030Module*> slot(module.gbModule);
  if (!slot.compare_exchange_strong(present, fresh, std::memory_order_acq_rel)) fresh->destroy(fresh);
  return true;
}

// In routes of two stages both profiles of a side are set.
bool isOneOfTwoStages(const PipelineSide& side) {
  return side.sourceProfile != nullptr && side.targetProfile != nullptr;
}

Pace paceOf(const PipelineSide& side, Pace ofRow) {
  return isOneOfTwoStages(side) ? std::min(ofRow, Pace::kernels) : ofRow;
}

// Inner loops read and write GB18030 by its own module's tables.
bool hasOtherGbModule(MultiByteModule& module, const EncodingDescriptor& row) {
  const Gb18030Module* gb = row.cei == U_GB18030_CE ? loadedGbModule(module) : nullptr;
  return gb != nullptr && (gb->toUnicode != gbToUnicode || gb->fromUnicode != gbFromUnicode);
}

Pace paceOfSource(MultiByteModule& module, const PipelineSide& side, const EncodingDescriptor& source) {
  return hasOtherGbModule(module, source) ? Pace::everyCharacter : paceOf(side, paceOfRow(source));
}

Pace paceOfTarget(MultiByteModule& module, const PipelineSide& side, const EncodingDescriptor& target) {
  const bool hasLoop = target.profile.shiftLength != 0 || isAsciiSet(target.profile.singleByteSet);
  if (hasOtherGbModule(module, target) || !hasLoop) return Pace::everyCharacter;
  return paceOf(side, Pace::kernelsForAll);
}

TargetRule targetRuleOf(MultiByteModule& module, const EncodingDescriptor& target) {
  if (target.cei == U_GB18030_CE && loadedGbModule(module) != nullptr) return TargetRule::gb18030;
  if (characterRuleOf(target) == CharacterRule::iso2022) return TargetRule::iso2022;
  return target.profile.shiftLength != 0 ? TargetRule::modes : TargetRule::pairs;
}

}  // namespace

NlsStatus setupByteToMultibyte(MultiByteModule* /*module*/, PipelineSide* side, const EncodingDescriptor* source,
                               const EncodingDescriptor* target) {
  side->singleMap = byteMap(*source, *target, isAsciiSet(target->profile.singleByteSet));
  side->stage = byteToMultibyte;
  return 0;
}

NlsStatus setupMultibyteToByte(MultiByteModule* /*module*/, PipelineSide* side, const EncodingDescriptor* source,
                               const EncodingDescriptor* target) {
  const CharacterRule rule = characterRuleOf(*source);
  side->singleMap = byteMap(*source, *target, !isAsciiSet(source->profile.singleByteSet));
  side->scan = scannerOf(rule == CharacterRule::gb18030 ? CharacterRule::leadByte : rule);
  side->stage = multibyteToByte;
  return 0;
}

NlsStatus setupUnicodeToMultibyte(MultiByteModule* module, PipelineSide* side, const EncodingDescriptor* source,
                                  const EncodingDescriptor* target) {
  side->pairs = &fromUnicodeSets[target->profile.doubleByteSet].table;
  side->singleMap = singleFromUnicode[target->profile.singleByteSet];
  side->kanaPairs = kanaPairs(*target);
  const TargetRule rule = targetRuleOf(*module, *target);
  const Pace pace = paceOfTarget(*module, *side, *target);
  side->stage = unicodeToMultibyte(rule, source->cei, pace);
  if (isOneOfTwoStages(*side) && pace != Pace::everyCharacter) side->directForm = directFormOf(rule);
  return 0;
}

NlsStatus setupUtfeToMultibyte(MultiByteModule* module, PipelineSide* side, const EncodingDescriptor* source,
                               const EncodingDescriptor* target) {
  side->scan = scanUtfe;
  return setupUnicodeToMultibyte(module, side, source, target);
}

NlsStatus setupMultibyteToUnicode(MultiByteModule* module, PipelineSide* side, const EncodingDescriptor* source,
                                  const EncodingDescriptor* target) {
  const CharacterRule rule = characterRuleOf(*source);
  if (rule == CharacterRule::gb18030 && !loadGbModule(*module)) return nlsModuleUnavailable;
  side->pairs = &toUnicodeSets[source->profile.doubleByteSet].table;
  side->toUnicode = singleToUnicode[source->profile.singleByteSet];
  side->scan = scannerOf(rule);
  const Pace pace = paceOfSource(*module, *side, *source);
  side->stage = multibyteToUnicode(rule, target->cei, pace);
  if (!isOneOfTwoStages(*side) || pace < Pace::kernels) return 0;
  side->directForm = directFormOf(rule);
  if (side->directForm != 0) side->direct = directRun;
  return 0;
}

}  // namespace veldnls
