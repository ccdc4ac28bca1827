// The run functions that the setup slots install. Each is a resumable form; its plain form is withoutProgress of it.
// Contracts stand at NlsTranscode and NlsUnicodeStage in veldnls/pipeline.h.
#pragma once

#include <type_traits>

#include "veldnls/pipeline.h"

namespace veldnls {

using RunFunction = std::remove_pointer_t<NlsUnicodeStage>;

// Single byte to single byte, through the source side's `byteMap`. Nothing is ever substituted.
RunFunction byteToByte;

// The same for a source with direction marks: at the end `flags` of a progress record is, as a whole word, 1 if the
// last mark among the converted bytes was the shift-in byte, else 0. An empty output isn't refused at once, so that
// blanks alone may be dropped.
RunFunction byteToByteDirectional;

// Single byte to UTF-16, UTF-32 and UTF-EBCDIC. A byte without a meaning comes out as U+FFFD, unreported.
RunFunction byteToUnicode;

// Single byte to UTF-8, likewise.
RunFunction byteToUtf8;

// Wide text to single byte. A call that converts replaces `flags` of the progress record as a whole, by the
// substitution bit. A surrogate pair is one substitution byte; cut by the end of a call's input it is two. Without a
// progress record an odd last byte of UTF-16 is dropped.
RunFunction utf16ToByte;
RunFunction utf32ToByte;

// UTF-8 to single byte. At an incomplete end `consumed` leaves out the bytes that are held; the other run functions
// count them.
RunFunction utf8ToByte;

// UTF-EBCDIC to single byte.
RunFunction utfeToByte;

template <NlsUnicodeStage run>
NlsStatus withoutProgress(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                          uint32_t outputSize, uint32_t* outputLength, const TranscodeOptions* options) {
  return run(pipeline, input, inputLength, output, outputSize, outputLength, nullptr, options);
}

}  // namespace veldnls
