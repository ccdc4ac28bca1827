#include "modules/qznlssb/decoded_to_byte.h"

#include <algorithm>

#include "core/text/blanks.h"
#include "modules/qznlssb/units.h"
#include "modules/qznlssb/units_to_byte.h"

namespace veldnls {

namespace {

// Room for a surrogate pair: with less than a unit of it a decoder wouldn't even look at an incomplete input.
constexpr uint32_t smallestUnitRoom = 4;

// How many bytes of a text the first `count` of its units come from. Decodes once more into `units`.
uint32_t bytesOfUnits(QZNLS* nls, const uint8_t* bytes, uint32_t length, NlsConvertResumable decode, uint8_t* units,
                      uint32_t count) {
  TranscodeProgress part{};
  decode(nls, bytes, length, units, count * utf16UnitBytes, nullptr, &part, nullptr);
  return part.consumed;
}

}  // namespace

NlsStatus decodedToByte(TranscodingPipeline* pipeline, const RunText& text, const uint8_t* readable,
                        NlsConvertResumable decode, void* output, uint32_t outputSize, uint32_t* outputLength,
                        TranscodeProgress* progress, const TranscodeOptions* options) {
  QZNLS* nls = pipeline->nls;
  const uint32_t room = std::max(estimateUnitBytes(*pipeline, readable, text.length), smallestUnitRoom);
  Scratch<unitScratchSize> scratch(nls->pool);
  uint8_t* units = scratch.reserve(room);
  if (units == nullptr) return nlsNoMemory;
  TranscodeProgress whole{};
  uint32_t unitsSize = 0;
  const NlsStatus decoded =
      decode(nls, readable, text.length, units, room, &unitsSize, progress != nullptr ? &whole : nullptr, nullptr);

  const uint32_t count = unitsSize / utf16UnitBytes;
  const UnitRun run = unitsToByte(*pipeline, units, count, static_cast<uint8_t*>(output), outputSize,
                                  mayDropBlanks(pipeline->options, options));
  reportLength(outputLength, run.written);
  const NlsStatus status = run.status != 0 ? run.status : decoded;
  if (progress == nullptr) return status;
  if (run.substituted) progress->flags |= NLS_PROGRESS_SUBSTITUTED;
  if (decoded == nlsIncompleteInput && run.status != nlsOutputTruncated) {
    settle(*progress, text, text.length - whole.heldCount, nlsIncompleteInput);
    return nlsIncompleteInput;
  }
  const uint32_t taken =
      run.read == count ? text.length : bytesOfUnits(nls, readable, text.length, decode, units, run.read);
  settle(*progress, text, taken, status);
  return status;
}

}  // namespace veldnls
