#include "modules/qznlssb/direct_byte_maps.h"

#include <cstring>

#include "core/text/units.h"

namespace veldnls {

namespace {

constexpr uint32_t shortNameUnits = 4;

void putShortName(uint8_t* at, const EncodingDescriptor& row) {
  for (uint32_t i = 0; i < shortNameUnits; ++i) store16(at + i * utf16UnitBytes, row.shortName[i]);
}

}  // namespace

// No pair of encodings needs a map by hand: buildByteMap serves them all.
std::span<const DirectByteMap> directByteMaps() { return {}; }

const uint8_t* findDirectByteMap(std::span<const DirectByteMap> rows, const EncodingDescriptor& source,
                                 const EncodingDescriptor& target) {
  uint8_t key[directKeyBytes];
  putShortName(key, source);
  putShortName(key + directKeyBytes / 2, target);
  size_t low = 0;
  size_t end = rows.size();
  while (low < end) {
    const size_t middle = (low + end) / 2;
    const int order = std::memcmp(key, rows[middle].key, directKeyBytes);
    if (order == 0) return rows[middle].map;
    if (order < 0) {
      end = middle;
    } else {
      low = middle + 1;
    }
  }
  return nullptr;
}

}  // namespace veldnls
