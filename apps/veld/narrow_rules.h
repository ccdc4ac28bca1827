// In what the library's rule for an encoding is narrower than the encoding.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "pipeline.h"

namespace veld {

// Text that "veld convert" writes without a loss may break the rule. That is found by asking: each character is written
// and validated by itself, which takes some milliseconds.
class NarrowRules {
 public:
  NarrowRules(QZNLS& nls, CEI cei);

  // Whether a fault, with the bytes that stand there, may be sound text.
  bool mayBeSound(Bytes fault) const { return anywhere_ || faultBytes_[fault[0]]; }
  // What to tell of such a fault.
  const std::vector<std::string>& notes() const { return notes_; }

 private:
  void ask(QZNLS& nls, CEI cei, const std::string& rule);

  bool anywhere_ = false;               // of a rule that looks beyond a character
  std::array<bool, 256> faultBytes_{};  // at which a rule stops in a sound character
  std::vector<std::string> notes_;
};

}  // namespace veld
