#include <algorithm>

#include "core/kernels/kernels.h"
#include "core/text/blanks.h"
#include "core/text/run_input.h"
#include "core/text/units.h"
#include "core/text/utf8.h"
#include "modules/qznlssb/byte_blanks.h"
#include "modules/qznlssb/run_functions.h"
#include "veldnls/nls.h"

namespace veldnls {

namespace {

// Bytes that are expanded at once on their way through kernels.
constexpr size_t pieceSize = 512;

struct Converted {
  size_t read;
  size_t written;
};

// Converts as far as pieces fit whole. No page has surrogates, so that a unit is a character.
Converted convertPieces(const char16_t* toUnicode, const uint8_t* bytes, size_t length, uint8_t* output,
                        size_t outputSize) {
  const Kernels& kernel = kernels();
  uint8_t units[pieceSize * utf16UnitBytes];
  Converted done{0, 0};
  while (done.read < length) {
    const size_t count = std::min(length - done.read, pieceSize);
    kernel.expand(toUnicode, bytes + done.read, units, count);
    const KernelRun run = kernel.utf16ToUtf8.little(units, count, output + done.written, outputSize - done.written);
    done = {done.read + run.read, done.written + run.written};
    if (run.read < count) break;
  }
  return done;
}

}  // namespace

NlsStatus byteToUtf8(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                     uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                     const TranscodeOptions* options) {
  beginRun(outputLength, progress);
  RunInput<runScratchSize> work(pipeline->nls->pool);
  if (!work.open(input, inputLength, output, outputSize, nullptr)) return nlsNoMemory;
  const uint8_t* bytes = work.text().bytes;
  const char16_t* toUnicode = pipeline->source.toUnicode;
  auto* out = static_cast<uint8_t*>(output);
  auto [read, written] = convertPieces(toUnicode, bytes, inputLength, out, outputSize);
  while (read < inputLength) {
    const char16_t value = toUnicode[bytes[read]];
    const size_t length = utf8Length(value);
    if (length > outputSize - written) break;
    writeUtf8(out + written, value, length);
    written += length;
    ++read;
  }
  reportLength(outputLength, static_cast<uint32_t>(written));
  if (progress != nullptr) progress->consumed = static_cast<uint32_t>(read);
  return statusOfBytes(mayDropBlanks(pipeline->options, options), toUnicode, bytes + read, inputLength - read);
}

}  // namespace veldnls
