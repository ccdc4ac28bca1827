#include "hs/src/max_tree.h"

#include <algorithm>
#include <array>
#include <bit>

namespace veldnls::hs {

namespace {

constexpr std::array<uint32_t, MaxTree::width> bits = [] {
  std::array<uint32_t, MaxTree::width> each{};
  for (uint32_t i = 0; i < MaxTree::width; ++i) each[i] = uint32_t{1} << i;
  return each;
}();

uint32_t largestOf(const uint32_t* node) {
  uint32_t largest = 0;
  for (uint32_t i = 0; i < MaxTree::width; ++i) largest = std::max(largest, node[i]);
  return largest;
}

}  // namespace

size_t MaxTree::bytesFor(uint32_t count) {
  size_t numbers = padded(count);
  for (uint32_t size = padded(count); size > width; numbers += size) size = padded(size / width);
  return numbers * sizeof(uint32_t);
}

void MaxTree::open(uint32_t* numbers, uint32_t count) {
  numbers_ = numbers;
  places_ = padded(count);
  levels_ = 1;
  starts_[0] = 0;
  for (uint32_t size = places_; size > width; ++levels_) {
    starts_[levels_] = starts_[levels_ - 1] + size;
    size = padded(size / width);
  }
}

void MaxTree::set(uint32_t place, uint32_t number) {
  uint32_t old = numbers_[place];
  numbers_[place] = number;
  for (uint32_t level = 1; level < levels_; ++level) {
    const uint32_t* below = node(level - 1, place / width);
    place /= width;
    uint32_t& parent = numbers_[starts_[level] + place];
    const uint32_t before = parent;
    if (number >= before) {
      parent = number;
    } else if (old == before) {
      parent = largestOf(below);
    }
    if (parent == before) return;
    old = before;
    number = parent;
  }
}

uint32_t MaxTree::largest() const { return largestOf(node(levels_ - 1, 0)); }

uint32_t MaxTree::firstFrom(uint32_t least) const {
  uint32_t place = 0;
  for (uint32_t level = levels_; level-- > 0;) {
    const uint32_t* numbers = node(level, place);
    // One bit for each number, without a branch for each: where the first one stands can't be foretold.
    uint32_t found = 0;
    for (uint32_t i = 0; i < width; ++i) found |= numbers[i] >= least ? bits[i] : 0;
    if (found == 0) return nowhere;
    place = place * width + static_cast<uint32_t>(std::countr_zero(found));
  }
  return place;
}

uint32_t MaxTree::lastBefore(uint32_t place) const {
  uint32_t level = 0;
  for (;; ++level, place /= width) {
    if (level == levels_) return nowhere;
    const uint32_t first = level + 1 == levels_ ? 0 : place / width * width;
    while (place > first && numbers_[starts_[level] + place - 1] == 0) --place;
    if (place > first) break;
  }
  for (--place; level-- > 0;) {
    place = place * width + width - 1;
    while (numbers_[starts_[level] + place] == 0) --place;
  }
  return place;
}

}  // namespace veldnls::hs
