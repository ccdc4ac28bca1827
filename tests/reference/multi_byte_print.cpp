#include <ostream>

#include "reference/multi_byte.h"

namespace transcode_test {

void PrintTo(const MultiByteOutcome& outcome, std::ostream* stream) {
  PrintTo(outcome.outcome, stream);
  *stream << (outcome.doubleMode ? ", double mode" : "");
}

}  // namespace transcode_test
