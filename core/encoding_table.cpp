#include "core/registry.h"

namespace veldnls {

constexpr EncodingDescriptor encodingTable[NLS_CEI_COUNT] = {
#include "encodings/rows.inc"
};

namespace {

consteval bool everyRowStandsAtItsCei() {
  for (CEI cei = 0; cei < NLS_CEI_COUNT; ++cei) {
    if (encodingTable[cei].cei != cei) return false;
  }
  return true;
}

static_assert(everyRowStandsAtItsCei());

}  // namespace

}  // namespace veldnls
