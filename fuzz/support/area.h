// Memory between two guard pages, in which buffers of any size lie at one end.
#pragma once

#include <cstring>

#include "fuzz/support/input.h"
#include "fuzz/support/require.h"
#include "support/guard.h"

namespace fuzz {

inline constexpr uint8_t canary = 0xCD;

enum class At { end, start };

class Area {
 public:
  explicit Area(size_t size) : bytes_(size) {}

  Room place(size_t size, At at) {
    require(size + margin <= bytes_.size(), "a buffer is longer than its area");
    return at == At::end ? bytes_.bytes().last(size) : bytes_.bytes().first(size);
  }

  // The bytes beside a buffer that was placed, on the side where there is no guard page.
  static Room beside(Room buffer, At at) {
    return at == At::end ? Room(buffer.data() - margin, margin) : Room(buffer.data() + buffer.size(), margin);
  }

 private:
  static constexpr size_t margin = 16;

  test::GuardedBuffer bytes_;
};

inline bool isUntouched(Span bytes) {
  return std::ranges::all_of(bytes, [](uint8_t byte) { return byte == canary; });
}

}  // namespace fuzz
