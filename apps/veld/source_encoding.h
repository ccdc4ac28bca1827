// The encoding of files that are read.
#pragma once

#include <string>

#include "input.h"
#include "veldnls/nls.h"

namespace veld {

// The name "utf-16" leaves the byte order to each text.
class SourceEncoding {
 public:
  // Throws Failure for a name that stands for no encoding.
  SourceEncoding(QZNLS& nls, const std::string& name);

  CEI cei() const { return cei_; }
  // The encoding of a file whose reading begins. Takes off a byte order mark that tells it; without one UTF-16 is
  // little-endian.
  CEI begin(Input& input) const;

 private:
  CEI cei_;
  bool marked_;
};

}  // namespace veld
