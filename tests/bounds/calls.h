// The table of calls that are run with every size of buffer. A new capability adds rows here, and nothing else.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "bounds/texts.h"

namespace bounds_test {

struct CallResult {
  uint32_t status = 0;
  size_t written = 0;  // bytes of the output that the call reports

  bool operator==(const CallResult&) const = default;
};

using Room = std::span<uint8_t>;

// How the output of a call with little room compares with that of one with plenty.
enum class Shortening {
  prefix,           // it is the beginning
  pairBecomesFFFD,  // but a surrogate pair of which only the first unit has room becomes U+FFFD
  closed,           // the same but for a shift-in that ends it
  reversed,         // digits: the low ones remain, last one first
  stars,            // it has stars in their place
  fitted,           // it is another text, made for its room, or stars
};

struct CallRow {
  std::string name;
  TextKind input;
  std::function<CallResult(Span input, Room output)> call;
  size_t inputUnit = 1;  // input lengths and rooms are multiples of these
  size_t outputUnit = 1;
  std::optional<size_t> inputSize = {};  // calls with an input, or a room, of one size only
  std::optional<size_t> outputSize = {};
  Shortening shortening = Shortening::prefix;
  bool bigEndianOutput = false;  // of the units that pairBecomesFFFD looks at
  size_t closing = 0;            // the most bytes at the end by which `closed` texts differ
};

std::vector<CallRow> callRows();

}  // namespace bounds_test
