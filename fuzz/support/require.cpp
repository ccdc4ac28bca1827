#include "fuzz/support/require.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "support/guard.h"

namespace fuzz {

void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", what);
  std::abort();
}

void requireEqual(std::span<const uint8_t> actual, std::span<const uint8_t> expected, const char* what) {
  if (std::ranges::equal(actual, expected)) return;
  std::fprintf(stderr, "actual:   %s\nexpected: %s\n", test::toHex(actual).c_str(), test::toHex(expected).c_str());
  require(false, what);
}

}  // namespace fuzz
