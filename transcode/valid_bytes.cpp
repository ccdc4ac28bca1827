#include "transcode/valid_bytes.h"

#include <algorithm>

namespace veldnls {

namespace {

#include "valid_bytes/maps.inc"

constexpr int mapCount = 156;

}  // namespace

constexpr const uint8_t* const validByteMaps[] = {
#include "valid_bytes/by_cei.inc"
};

static_assert(std::ranges::count(validByteMaps, nullptr) == NLS_CEI_COUNT - mapCount);

}  // namespace veldnls
