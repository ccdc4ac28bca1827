#include "modules/qznlssb/tables.h"

#include <algorithm>

namespace veldnls {

namespace {

#include "pages/tables.inc"

constexpr int toTableCount = 142;
constexpr int fromTableCount = 141;  // aeasteuro has none

template <class Table, size_t count>
constexpr int present(const Table (&tables)[count]) {
  return static_cast<int>(count) - static_cast<int>(std::ranges::count(tables, nullptr));
}

}  // namespace

constexpr const char16_t* const byteToUnicodeTables[] = {
#include "pages/to_by_cei.inc"
};

constexpr const uint8_t* const* const byteFromUnicodeTables[] = {
#include "pages/from_by_cei.inc"
};

static_assert(present(byteToUnicodeTables) == toTableCount);
static_assert(present(byteFromUnicodeTables) == fromTableCount);

}  // namespace veldnls
