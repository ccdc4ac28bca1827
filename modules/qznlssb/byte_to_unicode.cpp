#include <algorithm>

#include "core/kernels/kernels.h"
#include "core/text/blanks.h"
#include "core/text/run_input.h"
#include "core/text/swap.h"
#include "modules/qznlssb/byte_blanks.h"
#include "modules/qznlssb/run_functions.h"
#include "modules/qznlssb/units.h"
#include "veldnls/nls.h"

namespace veldnls {

namespace {

uint32_t smallestOutput(int32_t targetClass) {
  switch (targetClass) {
    case NLS_CLASS_UTF16:
      return utf16UnitBytes;
    case NLS_CLASS_UTF32:
      return utf32UnitBytes;
    default:
      return 1;
  }
}

// The whole input as UTF-16 in scratch memory, `length` bytes of it.
struct Expanded {
  const uint8_t* units;
  uint32_t length;
};

// Expands straight into the output, which mustn't overlap the input.
NlsStatus expandToUtf16(const TranscodingPipeline& pipeline, const uint8_t* bytes, uint32_t length, uint8_t* output,
                        uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                        const TranscodeOptions* options) {
  const char16_t* toUnicode = pipeline.source.toUnicode;
  const uint32_t count = std::min(length, outputSize / utf16UnitBytes);
  kernels().expand(toUnicode, bytes, output, count);
  const uint32_t size = count * utf16UnitBytes;
  if (pipeline.source.swapOutput != 0) swapUnits16(output, output, size);
  reportLength(outputLength, size);
  if (progress != nullptr) progress->consumed = count;
  // The rest is looked at from outputSize on. An odd size leaves half a unit at the end, which is no blank.
  const bool dropBlanks = mayDropBlanks(pipeline.options, options) && outputSize % utf16UnitBytes == 0;
  return statusOfBytes(dropBlanks, toUnicode, bytes + count, length - count);
}

NlsConvertResumable encoderFromUtf16(const TranscodingPipeline& pipeline) {
  const QZNLS& nls = *pipeline.nls;
  if (pipeline.target.encodingClass == NLS_CLASS_UTF32) return nls.convertUtf16ToUtf32Resumable;
  return pipeline.target.cei == U_UTFE_CE ? nls.convertUtf16ToUtfEbcdicResumable : nls.convertUtf16ToUtf8Resumable;
}

NlsStatus encodeFromUtf16(const TranscodingPipeline& pipeline, Expanded text, uint8_t* output, uint32_t outputSize,
                          uint32_t* outputLength, TranscodeProgress* progress, const TranscodeOptions* options) {
  TranscodeOptions given = options != nullptr ? *options : TranscodeOptions{};
  given.words[0] &= ~NLS_SWAPPED_INPUT;
  if (mayDropBlanks(pipeline.options, options)) given.words[0] |= NLS_ALLOW_BLANK_TRUNCATION;
  // A private record: bytes that some other conversion left in the caller's don't belong to this text. No page has
  // surrogates, so that nothing is substituted.
  TranscodeProgress inner{};
  uint32_t written = 0;
  const NlsConvertResumable encode = encoderFromUtf16(pipeline);
  const NlsStatus status = encode(pipeline.nls, text.units, text.length, output, outputSize, &written,
                                  progress != nullptr ? &inner : nullptr, &given);
  if (pipeline.target.encodingClass == NLS_CLASS_UTF32 && pipeline.source.swapOutput != 0) {
    swapUnits32(output, output, written);
  }
  reportLength(outputLength, written);
  if (progress != nullptr) progress->consumed = inner.consumed / utf16UnitBytes;
  return status;
}

}  // namespace

NlsStatus byteToUnicode(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                        uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                        const TranscodeOptions* options) {
  const uint32_t smallest = smallestOutput(pipeline->target.encodingClass);
  if (const auto ended = beginOrEnd(inputLength, outputSize, smallest, outputLength, progress)) return *ended;
  if (pipeline->target.encodingClass == NLS_CLASS_UTF16) {
    RunInput<unitScratchSize> work(pipeline->nls->pool);
    if (!work.open(input, inputLength, output, outputSize, nullptr)) return nlsNoMemory;
    return expandToUtf16(*pipeline, work.text().bytes, inputLength, static_cast<uint8_t*>(output), outputSize,
                         outputLength, progress, options);
  }
  const uint64_t unitsSize = uint64_t{inputLength} * utf16UnitBytes;
  Scratch<unitScratchSize> scratch(pipeline->nls->pool);
  uint8_t* units = scratch.reserve(std::max<uint64_t>(estimateUnitBytes(*pipeline, input, inputLength), unitsSize));
  if (units == nullptr) return nlsNoMemory;
  kernels().expand(pipeline->source.toUnicode, static_cast<const uint8_t*>(input), units, inputLength);
  return encodeFromUtf16(*pipeline, {units, static_cast<uint32_t>(unitsSize)}, static_cast<uint8_t*>(output),
                         outputSize, outputLength, progress, options);
}

}  // namespace veldnls
