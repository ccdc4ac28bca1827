// The places of a text that aren't well-formed, block after block.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "text_place.h"

namespace veld {

struct TextFault {
  uint64_t offset;
  uint64_t line;
  uint64_t column;
  std::vector<uint8_t> bytes;  // those that stand at the fault, at most four
};

// Asks the library's validation, which tells the first fault of a buffer. Behind a fault the text goes on with the next
// byte, or the next unit of UTF-16 and UTF-32, in the shift state that held at the fault.
class FaultFinder {
 public:
  // Throws Failure for an encoding that the library can't validate.
  FaultFinder(QZNLS& nls, CEI cei);

  // Called with each fault; returns false to look no further.
  using Tell = std::function<bool(const TextFault&)>;

  // Looks through the next block, which begins at that offset of the text. With `more` a fault near the end waits for
  // what follows. Returns how many bytes are done; the rest begins the next block.
  size_t look(Bytes block, uint64_t offset, bool more, const Tell& tell);

  // The line of the text's end.
  uint64_t line() const { return place_.line(); }

 private:
  std::optional<size_t> faultBehind(size_t start);

  QZNLS& nls_;
  CEI cei_;
  const EncodingDescriptor& row_;
  size_t unit_;
  TextPlace place_;
  std::vector<uint8_t> work_;  // the block, behind room for a shift sequence
};

}  // namespace veld
