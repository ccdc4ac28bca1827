#include "modules/qznlssb/byte_map.h"

#include "core/qznlsstub.h"
#include "modules/qznlssb/tables.h"

namespace veldnls {

namespace {

constexpr uint32_t byteCount = 256;

// The first byte of a code page with this value, or byteCount. Undefined bytes are equal to each other.
uint32_t firstByteOf(const char16_t* toUnicode, char16_t value) {
  uint32_t byte = 0;
  while (byte < byteCount && toUnicode[byte] != value) ++byte;
  return byte;
}

// No more bytes of the target are used by value than of the source, so that enough are left over.
void pairBytes(const char16_t* source, const char16_t* target, uint8_t* map) {
  bool sourceUsed[byteCount] = {};
  bool targetUsed[byteCount] = {};
  for (uint32_t byte = 0; byte < byteCount; ++byte) {
    const uint32_t partner = firstByteOf(target, source[byte]);
    if (partner == byteCount) continue;
    map[byte] = static_cast<uint8_t>(partner);
    sourceUsed[byte] = true;
    targetUsed[partner] = true;
  }
  uint32_t spare = 0;
  for (uint32_t byte = 0; byte < byteCount; ++byte) {
    if (sourceUsed[byte]) continue;
    while (targetUsed[spare]) ++spare;
    map[byte] = static_cast<uint8_t>(spare++);
  }
}

}  // namespace

NlsStatus buildByteMap(QZNLS* nls, TranscodingPipeline* pipeline, const EncodingDescriptor* source,
                       const EncodingDescriptor* target) {
  const char16_t* sourceTable = byteToUnicodeTables[source->cei];
  const char16_t* targetTable = byteToUnicodeTables[target->cei];
  // A source without a way back, as aeasteuro, is refused although the map wouldn't need it.
  if (byteFromUnicodeTables[source->cei] == nullptr || sourceTable == nullptr || targetTable == nullptr) {
    return nlsUnknownEncoding;
  }
  auto* map = static_cast<uint8_t*>(nlsPoolAlloc(nls->pool, byteCount, zeroFill));
  if (map == nullptr) return nlsUnknownEncoding;
  pairBytes(sourceTable, targetTable, map);
  pipeline->source.byteMap = map;
  pipeline->flags |= NLS_PIPELINE_OWNS_BYTE_MAP;
  return 0;
}

}  // namespace veldnls
