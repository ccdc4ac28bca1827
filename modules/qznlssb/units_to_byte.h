// The second half of the routes that pass through UTF-16: units to bytes of a code page.
#pragma once

#include <cstdint>

#include "veldnls/pipeline.h"
#include "veldnls/status.h"

namespace veldnls {

struct UnitRun {
  uint32_t read = 0;  // units; a surrogate pair, though one substitution, counts two, as the text goes on behind it
  uint32_t written = 0;
  bool substituted = false;
  // nlsOutputTruncated if units remain; else 0 when blanks were dropped, even after a substitution; else
  // nlsSubstituted or 0.
  NlsStatus status = 0;
};

// Converts `count` UTF-16LE units until they end or the output is full. A unit without a byte becomes the target's
// substitution byte, and so does a surrogate pair as a whole. `units` and `output` don't overlap.
UnitRun unitsToByte(const TranscodingPipeline& pipeline, const uint8_t* units, uint32_t count, uint8_t* output,
                    uint32_t outputSize, bool dropBlanks);

}  // namespace veldnls
