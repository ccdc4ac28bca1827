// Hand-paired byte maps between two single-byte encodings, which go before those that are built.
#pragma once

#include <cstdint>
#include <span>

#include "veldnls/encoding.h"

namespace veldnls {

// Short names of source and target as the encoding table has them, four UTF-16LE units each.
inline constexpr uint32_t directKeyBytes = 16;

struct DirectByteMap {
  uint8_t key[directKeyBytes];
  const uint8_t* map;  // 256 bytes
};

// The table, ascending by the bytes of the key.
std::span<const DirectByteMap> directByteMaps();

// The map of a pair among `rows`, or null.
const uint8_t* findDirectByteMap(std::span<const DirectByteMap> rows, const EncodingDescriptor& source,
                                 const EncodingDescriptor& target);

}  // namespace veldnls
