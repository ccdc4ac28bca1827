#include <algorithm>
#include <iterator>

#include "core/registry.h"
#include "veldnls/status.h"

namespace veldnls {

namespace {

struct MibEnumPair {
  int32_t mibEnum;
  CEI cei;
};

// Sorted by MIBenum. Where rows share a number, this is the one that owns it.
constexpr MibEnumPair mibEnums[] = {
#include "encodings/mib_enums.inc"
};

static_assert(std::is_sorted(std::begin(mibEnums), std::end(mibEnums),
                             [](const MibEnumPair& a, const MibEnumPair& b) { return a.mibEnum < b.mibEnum; }));

}  // namespace

NlsStatus encodingFromMibEnum(int32_t mib, CEI* cei) {
  const auto* const found = std::lower_bound(std::begin(mibEnums), std::end(mibEnums), mib,
                                             [](const MibEnumPair& pair, int32_t key) { return pair.mibEnum < key; });
  const bool known = found != std::end(mibEnums) && found->mibEnum == mib;
  *cei = known ? found->cei : 0;
  return known ? 0 : nlsUnknownMibEnum;
}

}  // namespace veldnls
