#include "modules/qznlssb/blanks.h"
#include "modules/qznlssb/report.h"
#include "modules/qznlssb/run_functions.h"
#include "modules/qznlssb/run_input.h"
#include "veldnls/nls.h"

namespace veldnls {

namespace {

constexpr uint32_t inputScratch = 2048;

uint32_t utf8Length(char16_t value) { return value < 0x80 ? 1 : value < 0x800 ? 2 : 3; }

void putUtf8(uint8_t* at, char16_t value, uint32_t length) {
  if (length == 1) {
    at[0] = static_cast<uint8_t>(value);
    return;
  }
  at[length - 1] = static_cast<uint8_t>(0x80 | (value & 0x3F));
  if (length == 2) {
    at[0] = static_cast<uint8_t>(0xC0 | value >> 6);
    return;
  }
  at[1] = static_cast<uint8_t>(0x80 | (value >> 6 & 0x3F));
  at[0] = static_cast<uint8_t>(0xE0 | value >> 12);
}

}  // namespace

NlsStatus byteToUtf8(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                     uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                     const TranscodeOptions* options) {
  beginReport(outputLength, progress);
  RunInput<inputScratch> work(pipeline->nls->pool);
  if (!work.open(input, inputLength, output, outputSize, nullptr)) return nlsNoMemory;
  const uint8_t* bytes = work.text().bytes;
  const char16_t* toUnicode = pipeline->source.toUnicode;
  auto* out = static_cast<uint8_t*>(output);
  uint32_t read = 0;
  uint32_t written = 0;
  while (read < inputLength) {
    const char16_t value = toUnicode[bytes[read]];
    const uint32_t length = utf8Length(value);
    if (length > outputSize - written) break;
    putUtf8(out + written, value, length);
    written += length;
    ++read;
  }
  reportLength(outputLength, written);
  if (progress != nullptr) progress->consumed = read;
  return statusOfRest(mayDropBlanks(*pipeline, options), read, inputLength,
                      [bytes, toUnicode](uint32_t index) { return toUnicode[bytes[index]] == unicodeBlank; });
}

}  // namespace veldnls
