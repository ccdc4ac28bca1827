// The blank rule: text that doesn't fit may be dropped without a status if it is all blanks and the caller allows it.
#pragma once

#include <cstddef>
#include <cstdint>

#include "veldnls/pipeline.h"

namespace veldnls {

// A blank as it stands in a text: `size` bytes (1, 2 or 4), `value` their little-endian reading.
struct Blank {
  uint32_t size;
  uint32_t value;
};

inline constexpr Blank utf8Blank{1, 0x20};
inline constexpr Blank utfEbcdicBlank{1, 0x40};
inline constexpr Blank utf16Blank{2, 0x20};
inline constexpr Blank utf16BigEndianBlank{2, 0x2000};
inline constexpr Blank utf32Blank{4, 0x20};
inline constexpr Blank utf32BigEndianBlank{4, 0x20000000};

// Whether NLS_ALLOW_BLANK_TRUNCATION is set for the pipeline or for the call, whose options may be null.
inline bool mayDropBlanks(const TranscodeOptions& ofPipeline, const TranscodeOptions* ofCall) {
  const uint32_t given = ofPipeline.words[0] | (ofCall != nullptr ? ofCall->words[0] : 0);
  return (given & NLS_ALLOW_BLANK_TRUNCATION) != 0;
}

// True when `length` bytes are whole blanks and nothing else.
bool isAllBlank(const uint8_t* text, size_t length, Blank blank);

// The status of a run that leaves `length` bytes at `rest` unread for want of room: 0 if there are none, or only blanks
// that may be dropped; otherwise nlsOutputTruncated.
NlsStatus statusOfRest(bool dropBlanks, const uint8_t* rest, size_t length, Blank blank);

}  // namespace veldnls
