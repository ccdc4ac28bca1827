#include <algorithm>

#include "core/kernels/kernels.h"
#include "core/text/blanks.h"
#include "core/text/run_input.h"
#include "modules/qznlssb/run_functions.h"
#include "veldnls/nls.h"

namespace veldnls {

namespace {

// Stack room for a copy of the input.
constexpr uint32_t copyScratchSize = 1024;

// Maps as many bytes of `text` as the output takes and reports them.
NlsStatus mapBytes(const TranscodingPipeline& pipeline, const RunText& text, uint8_t* output, uint32_t outputSize,
                   uint32_t* outputLength, TranscodeProgress* progress, const TranscodeOptions* options) {
  const uint32_t count = std::min(text.length, outputSize);
  const Blank blank{1, pipeline.source.padChar & 0xFF};
  const NlsStatus status =
      statusOfRest(mayDropBlanks(pipeline.options, options), text.bytes + count, text.length - count, blank);
  kernels().byteMap(pipeline.source.byteMap, text.bytes, output, count);
  reportLength(outputLength, count);
  if (progress != nullptr) progress->consumed = count;
  return status;
}

// 1 if the last direction mark of a text is the shift-in byte, 0 if it is the shift-out byte or there is none.
uint32_t lastDirection(const MultiByteProfile& marks, const uint8_t* text, uint32_t length) {
  for (uint32_t i = length; i > 0; --i) {
    if (text[i - 1] == marks.shiftIn[0]) return 1;
    if (text[i - 1] == marks.shiftOut[0]) return 0;
  }
  return 0;
}

}  // namespace

NlsStatus byteToByte(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                     uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                     const TranscodeOptions* options) {
  if (const auto ended = beginOrEnd(inputLength, outputSize, 1, outputLength, progress)) return *ended;
  RunInput<copyScratchSize> work(pipeline->nls->pool);
  // No record for the input: bytes that some other conversion left in the caller's stay there.
  if (!work.open(input, inputLength, output, outputSize, nullptr)) return nlsNoMemory;
  return mapBytes(*pipeline, work.text(), static_cast<uint8_t*>(output), outputSize, outputLength, progress, options);
}

NlsStatus byteToByteDirectional(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                                uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                                const TranscodeOptions* options) {
  beginRun(nullptr, progress);
  RunInput<copyScratchSize> work(pipeline->nls->pool);
  if (!work.open(input, inputLength, output, outputSize, nullptr)) return nlsNoMemory;
  const NlsStatus status =
      mapBytes(*pipeline, work.text(), static_cast<uint8_t*>(output), outputSize, outputLength, progress, options);
  if (progress != nullptr) {
    progress->flags = lastDirection(*pipeline->source.directionMarks, work.text().bytes, progress->consumed);
  }
  return status;
}

}  // namespace veldnls
