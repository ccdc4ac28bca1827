// The multi-byte rows and what tests of their module share.
#pragma once

#include <random>
#include <vector>

#include "modules/qznlsmb/stages.h"
#include "transcode/harness.h"

namespace transcode_test {

// All rows of the two multi-byte classes that have a double-byte set: the named ones, and the aliases' own.
const std::vector<CEI>& multiByteRows();

// How a stage to the row writes.
veldnls::TargetRule targetRule(CEI cei);

inline constexpr CEI unicodeForms[] = {U_UTF8_CE, U_L_UNICODE_CE, U_B_UNICODE_CE, U_L_UCS4_CE, U_B_UCS4_CE, U_UTFE_CE};

// A pipeline's record filled by a setup slot itself, so that aliases and pairs that a pipeline copies can run too.
class StageRoute {
 public:
  StageRoute(CEI source, CEI target);
  TranscodingPipeline* operator->() { return &record_; }
  operator TranscodingPipeline*() { return &record_; }

  // The same route by a stage of another pace, as far as the row allows.
  void setPace(veldnls::Pace pace);

  NlsStatus setup = 0;

 private:
  TranscodingPipeline record_{};
};

// A text of the row with characters of all kinds that it has, shifts among them, and now and then whatever.
Bytes randomText(CEI cei, size_t length, std::mt19937& random);
// A text of a Unicode form, likewise.
Bytes randomUnicode(CEI form, CEI towards, size_t length, std::mt19937& random);

}  // namespace transcode_test
