#include "modules/qznlssb/setup.h"

#include "modules/qznlssb/byte_map.h"
#include "modules/qznlssb/run_functions.h"
#include "modules/qznlssb/tables.h"
#include "veldnls/cei.h"
#include "veldnls/nls.h"
#include "veldnls/status.h"

namespace veldnls {

namespace {

template <NlsUnicodeStage run>
void install(TranscodingPipeline& pipeline) {
  pipeline.transcode = withoutProgress<run>;
  pipeline.transcodeResumable = run;
}

void describeSide(PipelineSide& side, const EncodingDescriptor& row) {
  side.cei = row.cei;
  side.encodingClass = row.encodingClass;
  side.padChar = row.padChar;
  side.substitution = row.substitution;
  side.unitSize = static_cast<uint8_t>(row.unitSize);
}

void describeSides(TranscodingPipeline& pipeline, const EncodingDescriptor& source, const EncodingDescriptor& target) {
  describeSide(pipeline.source, source);
  describeSide(pipeline.target, target);
}

// The half that both slots to a code page share. False: the target has no from-table.
bool setupToByte(TranscodingPipeline& pipeline, const EncodingDescriptor& source, const EncodingDescriptor& target) {
  const uint8_t* const* table = byteFromUnicodeTables[target.cei];
  if (table == nullptr) return false;
  describeSides(pipeline, source, target);
  pipeline.source.fromUnicode = table;
  return true;
}

}  // namespace

NlsStatus setupByteToByte(QZNLS* nls, TranscodingPipeline* pipeline, const EncodingDescriptor* source,
                          const EncodingDescriptor* target) {
  return setupWithDirectMaps(directByteMaps(), nls, pipeline, source, target);
}

NlsStatus setupWithDirectMaps(std::span<const DirectByteMap> maps, QZNLS* nls, TranscodingPipeline* pipeline,
                              const EncodingDescriptor* source, const EncodingDescriptor* target) {
  pipeline->source.padChar = source->padChar;
  if ((source->flags & NLS_ENCODING_DIRECTIONAL) != 0) {
    install<byteToByteDirectional>(*pipeline);
    pipeline->source.directionMarks = &source->profile;
  } else {
    install<byteToByte>(*pipeline);
  }
  const uint8_t* map = findDirectByteMap(maps, *source, *target);
  if (map == nullptr) return buildByteMap(nls, pipeline, source, target);
  pipeline->source.byteMap = map;
  return 0;
}

NlsStatus setupByteToUnicode(QZNLS* /*nls*/, TranscodingPipeline* pipeline, const EncodingDescriptor* source,
                             const EncodingDescriptor* target) {
  const char16_t* table = byteToUnicodeTables[source->cei];
  if (table == nullptr) return nlsModuleUnavailable;
  describeSides(*pipeline, *source, *target);
  pipeline->source.toUnicode = table;
  if (target->cei == U_UTF8_CE) {
    install<byteToUtf8>(*pipeline);
  } else {
    install<byteToUnicode>(*pipeline);
  }
  return 0;
}

NlsStatus setupWideToByte(QZNLS* /*nls*/, TranscodingPipeline* pipeline, const EncodingDescriptor* source,
                          const EncodingDescriptor* target) {
  if (!setupToByte(*pipeline, *source, *target)) return nlsModuleUnavailable;
  if (source->encodingClass == NLS_CLASS_UTF32) {
    install<utf32ToByte>(*pipeline);
  } else {
    install<utf16ToByte>(*pipeline);
  }
  return 0;
}

NlsStatus setupUtf8ToByte(QZNLS* /*nls*/, TranscodingPipeline* pipeline, const EncodingDescriptor* source,
                          const EncodingDescriptor* target) {
  if (!setupToByte(*pipeline, *source, *target)) return nlsModuleUnavailable;
  if (source->cei == U_UTF8_CE) {
    install<utf8ToByte>(*pipeline);
  } else {
    install<utfeToByte>(*pipeline);
  }
  return 0;
}

}  // namespace veldnls
