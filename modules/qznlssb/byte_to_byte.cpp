#include <algorithm>

#include "modules/qznlssb/blanks.h"
#include "modules/qznlssb/report.h"
#include "modules/qznlssb/run_functions.h"
#include "modules/qznlssb/run_input.h"
#include "veldnls/nls.h"

namespace veldnls {

namespace {

constexpr uint32_t inputScratch = 1024;

// Maps as many bytes of `text` as the output takes and reports them.
NlsStatus mapBytes(const TranscodingPipeline& pipeline, const RunText& text, uint8_t* output, uint32_t outputSize,
                   uint32_t* outputLength, TranscodeProgress* progress, const TranscodeOptions* options) {
  const uint32_t count = std::min(text.length, outputSize);
  const auto pad = static_cast<uint8_t>(pipeline.source.padChar);
  const NlsStatus status = statusOfRest(mayDropBlanks(pipeline, options), count, text.length,
                                        [&text, pad](uint32_t index) { return text.bytes[index] == pad; });
  const uint8_t* map = pipeline.source.byteMap;
  for (uint32_t i = 0; i < count; ++i) output[i] = map[text.bytes[i]];
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
  beginReport(outputLength, progress);
  if (inputLength == 0) return 0;
  if (outputSize == 0) return nlsOutputTruncated;
  RunInput<inputScratch> work(pipeline->nls->pool);
  if (!work.open(input, inputLength, output, outputSize, nullptr)) return nlsNoMemory;
  return mapBytes(*pipeline, work.text(), static_cast<uint8_t*>(output), outputSize, outputLength, progress, options);
}

NlsStatus byteToByteDirectional(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                                uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                                const TranscodeOptions* options) {
  beginReport(nullptr, progress);
  RunInput<inputScratch> work(pipeline->nls->pool);
  if (!work.open(input, inputLength, output, outputSize, nullptr)) return nlsNoMemory;
  const NlsStatus status =
      mapBytes(*pipeline, work.text(), static_cast<uint8_t*>(output), outputSize, outputLength, progress, options);
  if (progress != nullptr) {
    progress->flags = lastDirection(*pipeline->source.directionMarks, work.text().bytes, progress->consumed);
  }
  return status;
}

}  // namespace veldnls
