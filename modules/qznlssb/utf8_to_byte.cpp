#include <algorithm>

#include "core/kernels/kernels.h"
#include "core/kernels/pace.h"
#include "core/text/blanks.h"
#include "core/text/run_input.h"
#include "core/text/utf8.h"
#include "modules/qznlssb/run_functions.h"
#include "modules/qznlssb/units.h"
#include "modules/qznlssb/units_to_byte.h"
#include "veldnls/nls.h"

namespace veldnls {

namespace {

// Units that a text is decoded to at once on its way through kernels.
constexpr size_t pieceUnits = 512;

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
  size_t read = 0;
  size_t written = 0;
  bool substituted = false;
  const auto ended = [&](bool incomplete) -> Utf8Run {
    return {static_cast<uint32_t>(read), static_cast<uint32_t>(written), substituted, incomplete};
  };
  KernelPace pace;
  while (read < length) {
    if (pace.due()) {
      uint8_t units[pieceUnits * utf16UnitBytes];
      const size_t room = std::min<size_t>(pieceUnits, outputSize - written);
      const KernelRun decoded = kernels().utf8ToUtf16(bytes + read, length - read, units, room);
      const auto count = static_cast<uint32_t>(decoded.written);
      const UnitRun run = unitsToByte(pipeline, units, count, output + written, count, false);
      read += decoded.read;
      written += run.written;
      substituted |= run.substituted;
      pace.took(decoded.read);
      if (read == length) break;
    }
    const size_t remaining = length - read;
    if (stopAtIncomplete && remaining <= utf8TrailCount[bytes[read]]) return ended(true);
    if (written == outputSize) break;
    const Utf8Sequence next = readUtf8(bytes + read, remaining);
    read += next.length;
    const int byte = next.value < firstSupplementary ? byteOf(pages, next.value) : noByte;
    if (byte == noByte) substituted = true;
    output[written++] = byte == noByte ? substitution : static_cast<uint8_t>(byte);
  }
  return ended(false);
}

// Every byte that is left is looked at, so that nothing but blanks is ever dropped.
NlsStatus statusOf(const Utf8Run& run, const RunText& text, bool dropBlanks) {
  if (run.incomplete) return nlsIncompleteInput;
  const NlsStatus rest = statusOfRest(dropBlanks, text.bytes + run.read, text.length - run.read, utf8Blank);
  if (rest != 0) return rest;
  return run.substituted ? nlsSubstituted : 0;
}

// Unlike the other routes, this one counts as consumed only what was converted: not the bytes that it holds.
void reportIncomplete(TranscodeProgress& progress, const RunText& text, uint32_t read) {
  settle(progress, text, read, nlsIncompleteInput);
  progress.consumed = read - std::min(read, text.prefixed);
}

}  // namespace

NlsStatus utf8ToByte(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                     uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                     const TranscodeOptions* options) {
  if (const auto ended = beginOrEnd(inputLength, outputSize, 1, outputLength, progress)) return *ended;
  RunInput<runScratchSize> work(pipeline->nls->pool);
  if (!work.open(input, inputLength, output, outputSize, progress)) return nlsNoMemory;
  const RunText& text = work.text();
  const Utf8Run run = convert(*pipeline, text, static_cast<uint8_t*>(output), outputSize, progress != nullptr);
  const NlsStatus status = statusOf(run, text, mayDropBlanks(pipeline->options, options));
  reportLength(outputLength, run.written);
  if (progress == nullptr) return status;
  if (run.substituted) progress->flags |= NLS_PROGRESS_SUBSTITUTED;
  if (run.incomplete) {
    reportIncomplete(*progress, text, run.read);
  } else {
    settle(*progress, text, run.read, status);
  }
  return status;
}

}  // namespace veldnls
