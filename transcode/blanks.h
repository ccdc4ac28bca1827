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

// Whether NLS_ALLOW_BLANK_TRUNCATION is set for the call (`options` may be null) or for the pipeline.
bool allowsBlankTruncation(const TranscodingPipeline* pipeline, const TranscodeOptions* options);

// True when `length` bytes are whole blanks and nothing else.
bool isAllBlank(const uint8_t* text, size_t length, Blank blank);

// The status of a run that leaves `length` bytes at `rest` unread: nlsOutputTruncated becomes 0 by the blank rule, any
// other status stays.
NlsStatus applyBlankRule(NlsStatus status, const TranscodingPipeline* pipeline, const TranscodeOptions* options,
                         const uint8_t* rest, size_t length, Blank blank);

}  // namespace veldnls
