// One object for all runs of a target, and the encodings that it converts between.
#pragma once

#include "core/kernels/kernels.h"
#include "fuzz/support/input.h"
#include "support/conversion.h"
#include "support/host.h"
#include "veldnls/pipeline.h"

namespace fuzz {

// An object that lives as long as the program, with its host's records.
test::NlsHost& host();

// A row of the table, chosen by two bytes: one of all single-byte pages and Unicode forms or of all multi-byte
// encodings, but often a Unicode form or a page of one of the kinds that have rules of their own.
const EncodingDescriptor& chooseEncoding(Input& input);
// One of the multi-byte encodings, chosen by two bytes.
CEI chooseMultiByte(Input& input);

// True for the first half of a surrogate pair.
inline bool isHighSurrogate(unsigned unit) { return (unit & 0xFC00) == 0xD800; }

// While one lives, the kernels are those of the tier that `choice` stands for, or the best where there is no such tier.
class OnTier {
 public:
  explicit OnTier(unsigned choice);
  ~OnTier();
  OnTier(const OnTier&) = delete;
  OnTier& operator=(const OnTier&) = delete;

 private:
  veldnls::KernelTier before_;
};

// A pipeline of the object; null if the pair is refused.
struct Pipeline : test::Pipeline {
  Pipeline(CEI source, CEI target, const TranscodeOptions* options = nullptr)
      : test::Pipeline(host().nls, source, target, options) {}
};

// What a text becomes, at most six bytes for each of its own and a few more, whatever the status is.
Bytes outputOf(TranscodingPipeline* pipeline, Span text);

}  // namespace fuzz
