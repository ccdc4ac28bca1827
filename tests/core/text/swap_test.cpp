#include "core/text/swap.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/guard.h"

namespace test {
namespace {

using Bytes = std::vector<uint8_t>;
using Swap = void (*)(uint8_t* output, const uint8_t* input, size_t length);

struct Width {
  size_t unit;
  Swap swap;
};
constexpr Width widths[] = {{2, veldnls::swapUnits16}, {4, veldnls::swapUnits32}};

Bytes counted(size_t length) {
  Bytes bytes(length);
  for (size_t i = 0; i < length; ++i) bytes[i] = static_cast<uint8_t>(i + 1);
  return bytes;
}

Bytes swapped(Bytes bytes, size_t unit) {
  for (size_t i = 0; i + unit <= bytes.size(); i += unit) {
    std::reverse(bytes.begin() + static_cast<std::ptrdiff_t>(i), bytes.begin() + static_cast<std::ptrdiff_t>(i + unit));
  }
  return bytes;
}

TEST(Swap, EveryLengthLeavesTheRestAlone) {
  for (const Width& width : widths) {
    for (size_t length = 0; length < 70; ++length) {
      const size_t whole = length / width.unit * width.unit;
      Bytes input = counted(length);
      const Bytes wanted =
          swapped(Bytes(input.begin(), input.begin() + static_cast<std::ptrdiff_t>(whole)), width.unit);
      // The rest is neither read nor written: both buffers end with the last whole unit.
      GuardedBuffer text(std::span<const uint8_t>(input).first(whole));
      GuardedBuffer output(whole);
      width.swap(output.data(), text.data(), length);
      ASSERT_EQ(Bytes(output.bytes().begin(), output.bytes().end()), wanted) << width.unit << ", " << length;
    }
  }
}

TEST(Swap, OverlapAtEveryDistance) {
  for (const Width& width : widths) {
    for (const size_t length : {width.unit, 3 * width.unit, 32 * width.unit}) {
      const Bytes wanted = swapped(counted(length), width.unit);
      for (size_t place = 0; place <= 2 * length; ++place) {
        GuardedBuffer buffer(3 * length);
        const Bytes input = counted(length);
        std::copy(input.begin(), input.end(), buffer.data() + length);
        uint8_t* output = buffer.data() + place;
        width.swap(output, buffer.data() + length, length);
        ASSERT_EQ(Bytes(output, output + length), wanted) << width.unit << ", " << length << " at " << place;
        // Nothing but the two areas was touched.
        for (size_t i = 0; i < buffer.size(); ++i) {
          const bool inside = (i >= place && i < place + length) || (i >= length && i < 2 * length);
          ASSERT_TRUE(inside || buffer.data()[i] == 0xCD) << i;
        }
      }
    }
  }
}

}  // namespace
}  // namespace test
