// The stages that the reference of multi-byte conversion is made of.
#pragma once

#include "reference/multi_byte.h"

namespace transcode_test {

struct StageOutcome {
  NlsStatus status = 0;
  Bytes bytes = {};
  size_t read = 0;
  bool substituted = false;
  bool doubleMode = false;  // of a multi-byte source, at the end
};

StageOutcome multiByteToUnicode(const EncodingText& source, const TextForm& target, Span input, size_t capacity,
                                const RunState& state);
StageOutcome unicodeToMultiByte(const TextForm& source, const EncodingText& target, Span input, size_t capacity,
                                const RunState& state);
StageOutcome byteToMultiByte(const EncodingText& source, const EncodingText& target, Span input, size_t capacity,
                             const RunState& state);
StageOutcome multiByteToByte(const EncodingText& source, const EncodingText& target, Span input, size_t capacity,
                             const RunState& state);

}  // namespace transcode_test
