// What the routes through UTF-16LE share: room for that form of a text, and the bytes of its units in a code page.
#pragma once

#include <cstdint>

#include "core/text/units.h"
#include "veldnls/cei.h"
#include "veldnls/nls.h"
#include "veldnls/pipeline.h"

namespace veldnls {

// UTF-16 form of a text: up to this many bytes it stands on the stack.
inline constexpr uint32_t unitScratchSize = 1024;

// Bytes of UTF-16 to set aside for a text of the source's encoding.
inline uint32_t estimateUnitBytes(const TranscodingPipeline& pipeline, const void* input, uint32_t inputLength) {
  uint32_t size = 0;
  pipeline.nls->estimateOutputLength(pipeline.nls, pipeline.source.cei, input, inputLength, U_L_UNICODE_CE, &size);
  return size;
}

// The byte of a unit in the code page whose from-table is `pages`, or noByte. A zero in a page is a byte for U+0000
// only.
inline constexpr int noByte = -1;
inline int byteOf(const uint8_t* const* pages, uint32_t unit) {
  const uint8_t* page = pages[unit >> 8];
  if (page == nullptr) return noByte;
  const uint8_t byte = page[unit & 0xFF];
  return byte != 0 || unit == 0 ? byte : noByte;
}

inline uint8_t substitutionByte(const TranscodingPipeline& pipeline) {
  return static_cast<uint8_t>(pipeline.target.substitution);
}

}  // namespace veldnls
