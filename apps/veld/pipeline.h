// The library's pipelines, held and made.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "veldnls/nls.h"

namespace veld {

using Bytes = std::span<const uint8_t>;

struct DestroyPipeline {
  void operator()(TranscodingPipeline* pipeline) const { pipeline->destroy(pipeline); }
};
using Pipeline = std::unique_ptr<TranscodingPipeline, DestroyPipeline>;

// The library's pipeline between two encodings, or null where it refuses one. To gb18030 the library writes four-byte
// codes only if it has read gb18030 before, so such a pipeline is made first.
Pipeline makePipeline(QZNLS& nls, CEI from, CEI to);

// Bytes that a character becomes in any encoding, or a few of them, with shifts and designators ahead of each.
inline constexpr size_t roomOfACharacter = 64;

// What became of one short text.
struct Converted {
  bool whole = false;     // all came over, and nothing is left
  size_t size = 0;        // bytes written
  bool inDouble = false;  // the shift state behind it
};

// Runs a text of one or few characters through a pipeline, on from a shift state. Output that doesn't fit isn't whole.
Converted convertShort(TranscodingPipeline& pipeline, Bytes text, std::span<uint8_t> output, bool inDouble = false);

}  // namespace veld
