#include "transcode/routes.h"

#include "core/registry.h"
#include "transcode/module_load.h"
#include "transcode/stages.h"
#include "transcode/user_tables.h"
#include "veldnls/cei.h"
#include "veldnls/status.h"

namespace veldnls {

namespace {

using Route = NlsStatus (*)(QZNLS* nls, TranscodingPipeline* pipeline, const EncodingDescriptor* source,
                            const EncodingDescriptor* target);

const EncodingDescriptor* utf16Row() { return encodingRow(U_L_UNICODE_CE); }
const EncodingDescriptor* utf32Row() { return encodingRow(U_L_UCS4_CE); }

bool isMultiByte(const EncodingDescriptor* row) { return row->encodingClass >= NLS_CLASS_SHIFTED; }

// Whether a row's units have the byte order opposite to that of the form which stages work in. Its blank tells.
bool hasOppositeOrder(const EncodingDescriptor* row) {
  if (row->encodingClass == NLS_CLASS_UTF16) return row->padChar != utf16Row()->padChar;
  if (row->encodingClass == NLS_CLASS_UTF32) return row->padChar != utf32Row()->padChar;
  return false;
}

template <NlsUnicodeStage utf8, NlsUnicodeStage utfEbcdic>
NlsStatus fromEightBit(QZNLS*, TranscodingPipeline* pipeline, const EncodingDescriptor*, const EncodingDescriptor*) {
  pipeline->sourceCei == U_UTFE_CE ? installRuns<utfEbcdic>(pipeline) : installRuns<utf8>(pipeline);
  return 0;
}

NlsStatus betweenEightBit(QZNLS*, TranscodingPipeline* pipeline, const EncodingDescriptor*, const EncodingDescriptor*) {
  pipeline->targetCei == U_UTFE_CE ? installRuns<utf8ToUtfEbcdic>(pipeline) : installRuns<utfEbcdicToUtf8>(pipeline);
  return 0;
}

template <NlsUnicodeStage stage>
NlsStatus fromWide(QZNLS*, TranscodingPipeline* pipeline, const EncodingDescriptor*, const EncodingDescriptor*) {
  pipeline->source.swapInput != 0 ? installRuns<swapped<stage>>(pipeline) : installRuns<stage>(pipeline);
  return 0;
}

template <NlsUnicodeStage utf8, NlsUnicodeStage utfEbcdic>
NlsStatus wideToEightBit(QZNLS* nls, TranscodingPipeline* pipeline, const EncodingDescriptor* source,
                         const EncodingDescriptor* target) {
  const Route route = pipeline->targetCei == U_UTFE_CE ? fromWide<utfEbcdic> : fromWide<utf8>;
  return route(nls, pipeline, source, target);
}

// Two names of the same order stay a copy. Only a session's encoding makes such a pair.
template <NlsUnicodeStage stage>
NlsStatus betweenOrders(QZNLS*, TranscodingPipeline* pipeline, const EncodingDescriptor*,
                        const EncodingDescriptor* target) {
  if (pipeline->source.swapInput != 0 || hasOppositeOrder(target)) installRuns<stage>(pipeline);
  return 0;
}

// The single-byte module's setup installs the runs itself.
template <NlsSingleByteSetup SingleByteModule::*setup>
NlsStatus throughSingleByte(QZNLS* nls, TranscodingPipeline* pipeline, const EncodingDescriptor* source,
                            const EncodingDescriptor* target) {
  const SingleByteModule* module = singleByteModule(nls);
  if (module == nullptr) return nlsModuleUnavailable;
  return (module->*setup)(nls, pipeline, source, target);
}

// The multi-byte module's setup fills a side and its stage; the runs are of this folder. Loads the module and sets the
// profiles of the rows that are multi-byte ones.
MultiByteModule* beginMultiByte(QZNLS* nls, TranscodingPipeline* pipeline, const EncodingDescriptor* source,
                                const EncodingDescriptor* target) {
  MultiByteModule* module = multiByteModule(nls);
  if (module == nullptr) return nullptr;
  if (isMultiByte(source)) pipeline->source.sourceProfile = &source->profile;
  if (isMultiByte(target)) pipeline->source.targetProfile = &target->profile;
  return module;
}

// Gives a pipeline the overlays of two encodings, if the host's list relates them. Without memory it has none.
void addOverlays(TranscodingPipeline* pipeline, CEI source, CEI target, CodeOverlay** fromSource,
                 CodeOverlay** toTarget) {
  QZNLS* nls = pipeline->nls;
  const uint32_t built = buildUserTables(nls, source, target, nls->userCharacterTables, fromSource, toTarget);
  if ((built & builtFromSource) != 0) pipeline->flags |= NLS_PIPELINE_OWNS_SOURCE_OVERLAY;
  if ((built & builtToTarget) != 0) pipeline->flags |= NLS_PIPELINE_OWNS_TARGET_OVERLAY;
}

using AddOverlays = void (*)(TranscodingPipeline* pipeline);

void addNoOverlays(TranscodingPipeline*) {}

void addOverlaysBetween(TranscodingPipeline* pipeline) {
  addOverlays(pipeline, pipeline->sourceCei, pipeline->targetCei, &pipeline->source.overlay, &pipeline->target.overlay);
}

void addOverlaysToUnicode(TranscodingPipeline* pipeline) {
  addOverlays(pipeline, pipeline->sourceCei, U_L_UNICODE_CE, &pipeline->source.overlay, &pipeline->target.overlay);
}

// The overlay lands on the target side, which a route of one stage doesn't read: from UTF-8, UTF-EBCDIC and UTF-32 user
// characters are substituted.
void addUnreadOverlays(TranscodingPipeline* pipeline) {
  addOverlays(pipeline, U_L_UNICODE_CE, pipeline->targetCei, &pipeline->source.overlay, &pipeline->target.overlay);
}

// From UTF-16 it lands on the side that the stage reads.
void addOverlayFromUtf16(TranscodingPipeline* pipeline) {
  addOverlays(pipeline, U_L_UNICODE_CE, pipeline->targetCei, nullptr, &pipeline->source.overlay);
}

template <NlsMultiByteSetup MultiByteModule::*setup, AddOverlays addUserTables>
NlsStatus throughMultiByte(QZNLS* nls, TranscodingPipeline* pipeline, const EncodingDescriptor* source,
                           const EncodingDescriptor* target) {
  MultiByteModule* module = beginMultiByte(nls, pipeline, source, target);
  if (module == nullptr) return nlsModuleUnavailable;
  const NlsStatus status = (module->*setup)(module, &pipeline->source, source, target);
  if (status == 0) addUserTables(pipeline);
  installRuns<multiByteTranscodeResumable>(pipeline);
  return status;
}

// Between single-byte and multi-byte text the blank is the target's.
template <NlsMultiByteSetup MultiByteModule::*setup>
NlsStatus bytesThroughMultiByte(QZNLS* nls, TranscodingPipeline* pipeline, const EncodingDescriptor* source,
                                const EncodingDescriptor* target) {
  pipeline->source.padChar = target->padChar;
  return throughMultiByte<setup, addNoOverlays>(nls, pipeline, source, target);
}

NlsStatus eightBitToMultiByte(QZNLS* nls, TranscodingPipeline* pipeline, const EncodingDescriptor* source,
                              const EncodingDescriptor* target) {
  constexpr Route fromUtfe = throughMultiByte<&MultiByteModule::setupUtfeToMultibyte, addUnreadOverlays>;
  constexpr Route fromUtf8 = throughMultiByte<&MultiByteModule::setupUtf8ToMultibyte, addUnreadOverlays>;
  const Route route = pipeline->sourceCei == U_UTFE_CE ? fromUtfe : fromUtf8;
  return route(nls, pipeline, source, target);
}

NlsStatus multiByteToEightBit(QZNLS* nls, TranscodingPipeline* pipeline, const EncodingDescriptor* source,
                              const EncodingDescriptor* target) {
  constexpr Route toUtfe = throughMultiByte<&MultiByteModule::setupMultibyteToUtfe, addOverlaysToUnicode>;
  constexpr Route toUtf8 = throughMultiByte<&MultiByteModule::setupMultibyteToUtf8, addOverlaysToUnicode>;
  const Route route = pipeline->targetCei == U_UTFE_CE ? toUtfe : toUtf8;
  return route(nls, pipeline, source, target);
}

NlsStatus betweenMultiByte(QZNLS* nls, TranscodingPipeline* pipeline, const EncodingDescriptor* source,
                           const EncodingDescriptor* target) {
  if (beginMultiByte(nls, pipeline, source, target) == nullptr) return nlsModuleUnavailable;
  const NlsStatus status = setupTwoStage(nls, pipeline, source, target);
  if (status == 0) addOverlaysBetween(pipeline);
  pipeline->transcode = twoStageTranscode;
  pipeline->transcodeResumable = twoStageTranscodeResumable;
  return status;
}

// Both multi-byte classes take the same routes.
constexpr int routeClasses = 5;
int routeClass(const EncodingDescriptor* row) { return isMultiByte(row) ? routeClasses - 1 : row->encodingClass; }

constexpr Route byteToUnicode = throughSingleByte<&SingleByteModule::setupByteToUnicode>;
constexpr Route wideToByte = throughSingleByte<&SingleByteModule::setupWideToByte>;

// By source class, then target class.
constexpr Route convertedRoutes[routeClasses][routeClasses] = {
    {
        throughSingleByte<&SingleByteModule::setupByteToByte>,
        byteToUnicode,
        byteToUnicode,
        byteToUnicode,
        bytesThroughMultiByte<&MultiByteModule::setupByteToMultibyte>,
    },
    {
        throughSingleByte<&SingleByteModule::setupUtf8ToByte>,
        betweenEightBit,
        fromEightBit<utf8ToUtf16, utfEbcdicToUtf16>,
        fromEightBit<utf8ToUtf32, utfEbcdicToUtf32>,
        eightBitToMultiByte,
    },
    {
        wideToByte,
        wideToEightBit<utf16ToUtf8, utf16ToUtfEbcdic>,
        betweenOrders<utf16Swap>,
        fromWide<utf16ToUtf32>,
        throughMultiByte<&MultiByteModule::setupUtf16ToMultibyte, addOverlayFromUtf16>,
    },
    {
        wideToByte,
        wideToEightBit<utf32ToUtf8, utf32ToUtfEbcdic>,
        fromWide<utf32ToUtf16>,
        betweenOrders<utf32Swap>,
        throughMultiByte<&MultiByteModule::setupUtf32ToMultibyte, addUnreadOverlays>,
    },
    {
        bytesThroughMultiByte<&MultiByteModule::setupMultibyteToByte>,
        multiByteToEightBit,
        throughMultiByte<&MultiByteModule::setupMultibyteToUtf16, addOverlaysToUnicode>,
        throughMultiByte<&MultiByteModule::setupMultibyteToUtf32, addOverlaysToUnicode>,
        betweenMultiByte,
    },
};

// A setup that fails leaves the copy in place, unreported: with the first stage alone the run would write UTF-16.
NlsStatus checkMultiByte(QZNLS* nls, TranscodingPipeline* pipeline, const EncodingDescriptor* source,
                         const EncodingDescriptor* target) {
  if (multiByteModule(nls) == nullptr) return nlsModuleUnavailable;
  pipeline->source.sourceProfile = &source->profile;
  pipeline->source.targetProfile = &target->profile;
  if (setupTwoStage(nls, pipeline, source, target) != 0) return 0;
  addOverlaysBetween(pipeline);
  pipeline->transcodeResumable = twoStageTranscodeResumable;
  return 0;
}

}  // namespace

NlsStatus installUnconvertedRoute(QZNLS* nls, TranscodingPipeline* pipeline, const EncodingDescriptor* source,
                                  const EncodingDescriptor* target) {
  switch (target->encodingClass) {
    case NLS_CLASS_SINGLE_BYTE:
      return 0;
    case NLS_CLASS_UTF8:
      pipeline->transcodeResumable = pipeline->targetCei == U_UTFE_CE ? utfEbcdicRoundTrip : utf8RoundTrip;
      return 0;
    case NLS_CLASS_UTF16:
      pipeline->transcodeResumable = utf16Check;
      return 0;
    case NLS_CLASS_UTF32:
      pipeline->transcodeResumable = utf32Check;
      return 0;
    default:
      return checkMultiByte(nls, pipeline, source, target);
  }
}

NlsStatus installConvertedRoute(QZNLS* nls, TranscodingPipeline* pipeline, const EncodingDescriptor* source,
                                const EncodingDescriptor* target) {
  pipeline->source.swapInput = hasOppositeOrder(source) ? 1 : 0;
  // Between the two orders of one form the swap stage itself turns the text around.
  pipeline->source.swapOutput = source->encodingClass != target->encodingClass && hasOppositeOrder(target) ? 1 : 0;
  return convertedRoutes[routeClass(source)][routeClass(target)](nls, pipeline, source, target);
}

NlsStatus setupTwoStage(QZNLS* nls, TranscodingPipeline* pipeline, const EncodingDescriptor* source,
                        const EncodingDescriptor* target) {
  MultiByteModule* module = multiByteModule(nls);
  if (module == nullptr) return nlsModuleUnavailable;
  const EncodingDescriptor* utf16 = utf16Row();

  PipelineSide& out = pipeline->target;
  out.cei = U_L_UNICODE_CE;
  out.peerCei = pipeline->targetCei;
  out.padChar = target->padChar;
  out.unitSize = static_cast<uint8_t>(target->unitSize);
  out.sourceProfile = &utf16->profile;
  out.targetProfile = &target->profile;

  PipelineSide& in = pipeline->source;
  in.padChar = utf16->padChar;
  in.unitSize = static_cast<uint8_t>(utf16->unitSize);
  in.peerCei = U_L_UNICODE_CE;
  in.targetProfile = &utf16->profile;

  NlsStatus status = module->setupMultibyteToUtf16(module, &in, source, utf16);
  if (status == 0) status = module->setupUtf16ToMultibyte(module, &out, utf16, target);
  pipeline->twoStage = status == 0 ? 1 : 0;
  return status;
}

}  // namespace veldnls
