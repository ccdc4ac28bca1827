#include "transcode/routes.h"

#include "core/registry.h"
#include "transcode/module_load.h"
#include "transcode/stages.h"
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

template <NlsMultiByteSetup MultiByteModule::*setup>
NlsStatus throughMultiByte(QZNLS* nls, TranscodingPipeline* pipeline, const EncodingDescriptor* source,
                           const EncodingDescriptor* target) {
  MultiByteModule* module = beginMultiByte(nls, pipeline, source, target);
  if (module == nullptr) return nlsModuleUnavailable;
  const NlsStatus status = (module->*setup)(module, &pipeline->source, source, target);
  installRuns<multiByteTranscodeResumable>(pipeline);
  return status;
}

// Between single-byte and multi-byte text the blank is the target's.
template <NlsMultiByteSetup MultiByteModule::*setup>
NlsStatus bytesThroughMultiByte(QZNLS* nls, TranscodingPipeline* pipeline, const EncodingDescriptor* source,
                                const EncodingDescriptor* target) {
  pipeline->source.padChar = target->padChar;
  return throughMultiByte<setup>(nls, pipeline, source, target);
}

NlsStatus eightBitToMultiByte(QZNLS* nls, TranscodingPipeline* pipeline, const EncodingDescriptor* source,
                              const EncodingDescriptor* target) {
  const Route route = pipeline->sourceCei == U_UTFE_CE ? throughMultiByte<&MultiByteModule::setupUtfeToMultibyte>
                                                       : throughMultiByte<&MultiByteModule::setupUtf8ToMultibyte>;
  return route(nls, pipeline, source, target);
}

NlsStatus multiByteToEightBit(QZNLS* nls, TranscodingPipeline* pipeline, const EncodingDescriptor* source,
                              const EncodingDescriptor* target) {
  const Route route = pipeline->targetCei == U_UTFE_CE ? throughMultiByte<&MultiByteModule::setupMultibyteToUtfe>
                                                       : throughMultiByte<&MultiByteModule::setupMultibyteToUtf8>;
  return route(nls, pipeline, source, target);
}

NlsStatus betweenMultiByte(QZNLS* nls, TranscodingPipeline* pipeline, const EncodingDescriptor* source,
                           const EncodingDescriptor* target) {
  if (beginMultiByte(nls, pipeline, source, target) == nullptr) return nlsModuleUnavailable;
  const NlsStatus status = setupTwoStage(nls, pipeline, source, target);
  installRuns<twoStageTranscodeResumable>(pipeline);
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
        throughMultiByte<&MultiByteModule::setupUtf16ToMultibyte>,
    },
    {
        wideToByte,
        wideToEightBit<utf32ToUtf8, utf32ToUtfEbcdic>,
        fromWide<utf32ToUtf16>,
        betweenOrders<utf32Swap>,
        throughMultiByte<&MultiByteModule::setupUtf32ToMultibyte>,
    },
    {
        bytesThroughMultiByte<&MultiByteModule::setupMultibyteToByte>,
        multiByteToEightBit,
        throughMultiByte<&MultiByteModule::setupMultibyteToUtf16>,
        throughMultiByte<&MultiByteModule::setupMultibyteToUtf32>,
        betweenMultiByte,
    },
};

// A setup that fails leaves the copy in place, unreported: with the first stage alone the run would write UTF-16.
NlsStatus checkMultiByte(QZNLS* nls, TranscodingPipeline* pipeline, const EncodingDescriptor* source,
                         const EncodingDescriptor* target) {
  if (multiByteModule(nls) == nullptr) return nlsModuleUnavailable;
  pipeline->source.sourceProfile = &source->profile;
  pipeline->source.targetProfile = &target->profile;
  if (setupTwoStage(nls, pipeline, source, target) == 0) pipeline->transcodeResumable = twoStageTranscodeResumable;
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
