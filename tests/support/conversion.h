// Whole texts through a pipeline, where there are many of them: without guard pages around them.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "veldnls/pipeline.h"

namespace test {

struct Converted {
  NlsStatus status = 0;
  std::vector<uint8_t> bytes = {};
  bool substituted = false;
};

// Of a text in one call, with room for whatever it becomes, and a progress record, so that an end inside a character
// has a status of its own.
Converted convertWhole(TranscodingPipeline* pipeline, std::span<const uint8_t> text);

}  // namespace test
