#include <algorithm>
#include <limits>

#include "core/registry.h"
#include "transcode/pipeline.h"
#include "veldnls/cei.h"

namespace veldnls {

namespace {

struct Ratio {
  uint8_t times;
  uint8_t over;
};

constexpr int estimateClasses = 5;

// By source class, then target class; the last row and column serve both multi-byte classes. Not upper bounds: shift
// sequences can lengthen a text beyond it.
constexpr Ratio ratios[estimateClasses][estimateClasses] = {
    {{1, 1}, {3, 1}, {2, 1}, {4, 1}, {1, 1}},  //
    {{1, 1}, {3, 1}, {2, 1}, {4, 1}, {2, 1}},  //
    {{1, 2}, {3, 1}, {2, 1}, {2, 1}, {2, 1}},  //
    {{1, 4}, {3, 1}, {1, 1}, {1, 1}, {4, 1}},  //
    {{1, 1}, {3, 1}, {2, 1}, {4, 1}, {2, 1}},
};

int estimateClass(CEI cei) {
  const EncodingDescriptor* row = encodingRow(cei);
  return row == nullptr ? NLS_CLASS_SINGLE_BYTE : std::min(row->encodingClass, estimateClasses - 1);
}

}  // namespace

NlsStatus estimateOutputLength(QZNLS*, CEI source, const void*, uint32_t inputLength, CEI target, uint32_t* size) {
  if (source == target || source == U_ANY_CE || target == U_ANY_CE) {
    *size = inputLength;
    return 0;
  }
  const Ratio ratio = ratios[estimateClass(source)][estimateClass(target)];
  const uint64_t exact = uint64_t{inputLength} * ratio.times / ratio.over;
  *size = static_cast<uint32_t>(std::min<uint64_t>(exact, std::numeric_limits<uint32_t>::max()));
  return 0;
}

}  // namespace veldnls
