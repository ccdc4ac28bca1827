#include "modules/qznlssb/blanks.h"
#include "modules/qznlssb/report.h"
#include "modules/qznlssb/run_functions.h"
#include "modules/qznlssb/run_input.h"
#include "modules/qznlssb/units.h"
#include "modules/qznlssb/utf8_sequence.h"
#include "veldnls/nls.h"

namespace veldnls {

namespace {

constexpr uint32_t inputScratch = 2048;
constexpr uint8_t utf8Blank = 0x20;
constexpr uint32_t firstSupplementary = 0x10000;

struct Utf8Run {
  uint32_t read;
  uint32_t written;
  bool substituted;
  bool incomplete;  // what remains is the beginning of a sequence
};

// Converts until the input ends, the output is full or, if `stopAtIncomplete`, the last sequence isn't whole.
Utf8Run convert(const TranscodingPipeline& pipeline, const RunText& text, uint8_t* output, uint32_t outputSize,
                bool stopAtIncomplete) {
  const uint8_t* const* pages = pipeline.source.fromUnicode;
  const uint8_t substitution = substitutionByte(pipeline);
  const uint8_t* bytes = text.bytes;
  const uint32_t length = text.length;
  uint32_t read = 0;
  uint32_t written = 0;
  bool substituted = false;
  while (read < length) {
    const uint32_t remaining = length - read;
    if (stopAtIncomplete && remaining <= utf8ExtraBytes(bytes[read])) return {read, written, substituted, true};
    if (written == outputSize) break;
    uint32_t advance = 0;
    const uint32_t code = readUtf8(bytes + read, remaining, advance);
    read += advance;
    const int byte = code < firstSupplementary ? byteOf(pages, static_cast<char16_t>(code)) : noByte;
    if (byte == noByte) substituted = true;
    output[written++] = byte == noByte ? substitution : static_cast<uint8_t>(byte);
  }
  return {read, written, substituted, false};
}

NlsStatus statusOf(const Utf8Run& run, const RunText& text, bool dropBlanks) {
  if (run.incomplete) return nlsIncompleteInput;
  const NlsStatus rest = statusOfRest(dropBlanks, run.read, text.length,
                                      [&text](uint32_t index) { return text.bytes[index] == utf8Blank; });
  if (rest != 0) return rest;
  return run.substituted ? nlsSubstituted : 0;
}

}  // namespace

NlsStatus utf8ToByte(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                     uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                     const TranscodeOptions* options) {
  beginReport(outputLength, progress);
  if (inputLength == 0) return 0;
  if (outputSize == 0) return nlsOutputTruncated;
  RunInput<inputScratch> work(pipeline->nls->pool);
  if (!work.open(input, inputLength, output, outputSize, progress)) return nlsNoMemory;
  const RunText& text = work.text();
  const Utf8Run run = convert(*pipeline, text, static_cast<uint8_t*>(output), outputSize, progress != nullptr);
  const NlsStatus status = statusOf(run, text, mayDropBlanks(*pipeline, options));
  reportLength(outputLength, run.written);
  if (progress == nullptr) return status;
  if (run.substituted) progress->flags |= NLS_PROGRESS_SUBSTITUTED;
  reportTaken(*progress, text, run.read, status);
  if (run.incomplete) hold(*progress, text.bytes + run.read, text.length - run.read);
  return status;
}

}  // namespace veldnls
