#include "modules/qznlssb/units_to_byte.h"

#include "modules/qznlssb/blanks.h"
#include "modules/qznlssb/units.h"

namespace veldnls {

namespace {

bool isHighSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xD800; }
bool isLowSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xDC00; }

}  // namespace

UnitRun unitsToByte(const TranscodingPipeline& pipeline, const uint8_t* units, uint32_t count, uint8_t* output,
                    uint32_t outputSize, bool dropBlanks) {
  const uint8_t* const* pages = pipeline.source.fromUnicode;
  const uint8_t substitution = substitutionByte(pipeline);
  UnitRun run;
  while (run.read < count && run.written < outputSize) {
    const char16_t unit = unitAt(units, run.read++);
    const int byte = byteOf(pages, unit);
    if (byte != noByte) {
      output[run.written++] = static_cast<uint8_t>(byte);
      continue;
    }
    // No code page has a page for surrogates; one that had would convert each of a pair by itself.
    const bool pair = pages[unit >> 8] == nullptr && isHighSurrogate(unit) && run.read < count &&
                      isLowSurrogate(unitAt(units, run.read));
    if (pair) ++run.read;
    output[run.written++] = substitution;
    run.substituted = true;
  }
  if (run.read < count) {
    run.status = statusOfRest(dropBlanks, run.read, count,
                              [units](uint32_t index) { return unitAt(units, index) == unicodeBlank; });
  } else if (run.substituted) {
    run.status = nlsSubstituted;
  }
  return run;
}

}  // namespace veldnls
