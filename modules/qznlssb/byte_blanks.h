// The blank rule for bytes of a code page: a byte is a blank by its meaning, for EBCDIC pages have theirs elsewhere.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "veldnls/status.h"

namespace veldnls {

// The status of a run that leaves `length` bytes at `rest` unread for want of room: 0 if there are none, or only blanks
// that may be dropped; otherwise nlsOutputTruncated.
inline NlsStatus statusOfBytes(bool dropBlanks, const char16_t* toUnicode, const uint8_t* rest, size_t length) {
  if (length == 0) return 0;
  const auto isBlank = [toUnicode](uint8_t byte) { return toUnicode[byte] == u' '; };
  return dropBlanks && std::all_of(rest, rest + length, isBlank) ? 0 : nlsOutputTruncated;
}

}  // namespace veldnls
