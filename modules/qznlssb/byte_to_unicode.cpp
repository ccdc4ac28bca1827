#include <algorithm>
#include <cstring>

#include "modules/qznlssb/blanks.h"
#include "modules/qznlssb/report.h"
#include "modules/qznlssb/run_functions.h"
#include "modules/qznlssb/swap.h"
#include "modules/qznlssb/units.h"
#include "veldnls/nls.h"

namespace veldnls {

namespace {

constexpr uint32_t utf32UnitBytes = 4;

uint32_t smallestOutput(int32_t targetClass) {
  switch (targetClass) {
    case NLS_CLASS_UTF16:
      return unitBytes;
    case NLS_CLASS_UTF32:
      return utf32UnitBytes;
    default:
      return 1;
  }
}

// The UTF-16 form of the input, `length` bytes of it.
struct Expanded {
  const uint8_t* units;
  uint32_t length;
};

NlsStatus copyToUtf16(const TranscodingPipeline& pipeline, Expanded text, uint8_t* output, uint32_t outputSize,
                      uint32_t* outputLength, TranscodeProgress* progress, const TranscodeOptions* options) {
  const uint32_t size = std::min(text.length, outputSize) / unitBytes * unitBytes;
  // The rest is looked at from outputSize on. An odd size leaves half a unit at the end, which is no blank.
  const bool dropBlanks = mayDropBlanks(pipeline, options) && outputSize % unitBytes == 0;
  const NlsStatus status = statusOfRest(dropBlanks, size / unitBytes, text.length / unitBytes,
                                        [text](uint32_t index) { return unitAt(text.units, index) == unicodeBlank; });
  if (pipeline.source.swapOutput != 0) {
    swapUtf16(text.units, size, output);
  } else {
    std::memcpy(output, text.units, size);
  }
  reportLength(outputLength, size);
  if (progress != nullptr) progress->consumed = size / unitBytes;
  return status;
}

NlsConvertResumable encoderFromUtf16(const TranscodingPipeline& pipeline) {
  const QZNLS& nls = *pipeline.nls;
  if (pipeline.target.encodingClass == NLS_CLASS_UTF32) return nls.convertUtf16ToUtf32Resumable;
  return pipeline.target.cei == U_UTFE_CE ? nls.convertUtf16ToUtfEbcdicResumable : nls.convertUtf16ToUtf8Resumable;
}

NlsStatus encodeFromUtf16(const TranscodingPipeline& pipeline, Expanded text, uint8_t* output, uint32_t outputSize,
                          uint32_t* outputLength, TranscodeProgress* progress, const TranscodeOptions* options) {
  TranscodeOptions given = options != nullptr ? *options : TranscodeOptions{};
  if (mayDropBlanks(pipeline, options)) given.words[0] |= NLS_ALLOW_BLANK_TRUNCATION;
  // A private record: bytes that some other conversion left in the caller's don't belong to this text.
  TranscodeProgress inner{};
  uint32_t written = 0;
  const NlsConvertResumable encode = encoderFromUtf16(pipeline);
  const NlsStatus status = encode(pipeline.nls, text.units, text.length, output, outputSize, &written,
                                  progress != nullptr ? &inner : nullptr, &given);
  if (pipeline.target.encodingClass == NLS_CLASS_UTF32 && pipeline.source.swapOutput != 0) {
    swapUtf32(output, written, output);
  }
  reportLength(outputLength, written);
  if (progress != nullptr) {
    progress->consumed = inner.consumed / unitBytes;
    progress->flags |= inner.flags & NLS_PROGRESS_SUBSTITUTED;
  }
  return status;
}

}  // namespace

NlsStatus byteToUnicode(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                        uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                        const TranscodeOptions* options) {
  beginReport(outputLength, progress);
  if (inputLength == 0) return 0;
  if (outputSize < smallestOutput(pipeline->target.encodingClass)) return nlsOutputTruncated;
  const uint64_t unitsSize = uint64_t{inputLength} * unitBytes;
  Scratch<unitScratch> scratch(pipeline->nls->pool);
  uint8_t* units = scratch.reserve(std::max<uint64_t>(estimateUnitBytes(*pipeline, input, inputLength), unitsSize));
  if (units == nullptr) return nlsNoMemory;
  const auto* bytes = static_cast<const uint8_t*>(input);
  const char16_t* toUnicode = pipeline->source.toUnicode;
  for (size_t i = 0; i < inputLength; ++i) storeUnit(units + unitBytes * i, toUnicode[bytes[i]]);
  const auto finish = pipeline->target.encodingClass == NLS_CLASS_UTF16 ? copyToUtf16 : encodeFromUtf16;
  return finish(*pipeline, {units, static_cast<uint32_t>(unitsSize)}, static_cast<uint8_t*>(output), outputSize,
                outputLength, progress, options);
}

}  // namespace veldnls
