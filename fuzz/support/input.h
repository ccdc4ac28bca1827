// The fuzzer's bytes, read from the front: first what chooses a case, then its text. When they run out, zeros follow.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace fuzz {

using Bytes = std::vector<uint8_t>;
using Span = std::span<const uint8_t>;
using Room = std::span<uint8_t>;

class Input {
 public:
  Input(const uint8_t* data, size_t size) : rest_(data, size) {}

  bool empty() const { return rest_.empty(); }

  uint8_t byte() {
    if (rest_.empty()) return 0;
    const uint8_t value = rest_.front();
    rest_ = rest_.subspan(1);
    return value;
  }
  uint16_t word() {
    const unsigned low = byte();
    return static_cast<uint16_t>(low | unsigned{byte()} << 8);
  }
  uint32_t longWord() {
    const uint32_t low = word();
    return low | uint32_t{word()} << 16;
  }

  // What is left, at most `longest` bytes of it.
  Bytes text(size_t longest) {
    const Span taken = rest_.first(std::min(longest, rest_.size()));
    rest_ = rest_.subspan(taken.size());
    return {taken.begin(), taken.end()};
  }

 private:
  Span rest_;
};

// Tries one case. Every target defines this, and the entry that a fuzzer calls calls it.
void check(Input input);

}  // namespace fuzz
