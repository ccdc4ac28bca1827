#include "modules/qznlssb/units_to_byte.h"

#include <algorithm>

#include "core/kernels/kernels.h"
#include "core/kernels/pace.h"
#include "core/text/blanks.h"
#include "modules/qznlssb/units.h"

namespace veldnls {

namespace {

const uint8_t* addressOf(const uint8_t* units, uint32_t index) { return units + size_t{utf16UnitBytes} * index; }

uint32_t unitAt(const uint8_t* units, uint32_t index) { return load16<std::endian::little>(addressOf(units, index)); }

}  // namespace

UnitRun unitsToByte(const TranscodingPipeline& pipeline, const uint8_t* units, uint32_t count, uint8_t* output,
                    uint32_t outputSize, bool dropBlanks) {
  const uint8_t* const* pages = pipeline.source.fromUnicode;
  const uint8_t substitution = substitutionByte(pipeline);
  UnitRun run;
  KernelPace pace;
  while (run.read < count && run.written < outputSize) {
    if (pace.due()) {
      const size_t most = std::min(count - run.read, outputSize - run.written);
      const size_t taken = kernels().pagesToBytes(pages, addressOf(units, run.read), output + run.written, most);
      run.read += static_cast<uint32_t>(taken);
      run.written += static_cast<uint32_t>(taken);
      pace.took(taken);
      if (taken == most) break;
    }
    const uint32_t unit = unitAt(units, run.read++);
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
    run.status =
        statusOfRest(dropBlanks, addressOf(units, run.read), size_t{utf16UnitBytes} * (count - run.read), utf16Blank);
  } else if (run.substituted) {
    run.status = nlsSubstituted;
  }
  return run;
}

}  // namespace veldnls
