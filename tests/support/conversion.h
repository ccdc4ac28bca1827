// Pipelines, and whole texts through one, where there are many of them: without guard pages around them.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "veldnls/cei.h"
#include "veldnls/nls.h"
#include "veldnls/pipeline.h"

namespace test {

// A pipeline of an object; null if the pair is refused. One that can't be ended ends the process.
class Pipeline {
 public:
  Pipeline(QZNLS* nls, CEI source, CEI target, const TranscodeOptions* options = nullptr);
  ~Pipeline();
  Pipeline(const Pipeline&) = delete;
  Pipeline& operator=(const Pipeline&) = delete;

  TranscodingPipeline* operator->() const { return pipeline_; }
  operator TranscodingPipeline*() const { return pipeline_; }

 private:
  TranscodingPipeline* pipeline_;
};

struct Converted {
  NlsStatus status = 0;
  std::vector<uint8_t> bytes = {};
  bool substituted = false;
};

// Of a text in one call, with room for whatever it becomes, and a progress record, so that an end inside a character
// has a status of its own.
Converted convertWhole(TranscodingPipeline* pipeline, std::span<const uint8_t> text);

}  // namespace test
