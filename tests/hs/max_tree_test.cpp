// The tree of maxima against plain searches through a row.
#include "hs/src/max_tree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace {

using veldnls::hs::MaxTree;

class Row {
 public:
  explicit Row(uint32_t count) : memory_(MaxTree::bytesFor(count) / sizeof(uint32_t)), numbers_(count) {
    tree_.open(memory_.data(), count);
  }

  void set(uint32_t place, uint32_t number) {
    tree_.set(place, number);
    numbers_[place] = number;
  }

  void compare(uint32_t least, uint32_t place) const {
    const auto begin = numbers_.begin();
    const auto first = std::find_if(begin, numbers_.end(), [least](uint32_t number) { return number >= least; });
    ASSERT_EQ(tree_.firstFrom(least),
              first != numbers_.end() ? static_cast<uint32_t>(first - begin) : MaxTree::nowhere);
    ASSERT_EQ(tree_.lastBefore(place), lastBefore(place));
    ASSERT_EQ(tree_.last(), lastBefore(static_cast<uint32_t>(numbers_.size())));
    ASSERT_EQ(tree_.largest(), *std::max_element(begin, numbers_.end()));
    ASSERT_EQ(tree_.at(place), numbers_[place]);
  }

 private:
  uint32_t lastBefore(uint32_t place) const {
    while (place > 0 && numbers_[place - 1] == 0) --place;
    return place > 0 ? place - 1 : MaxTree::nowhere;
  }

  std::vector<uint32_t> memory_;
  std::vector<uint32_t> numbers_;
  MaxTree tree_;
};

class MaxTreeRows : public testing::TestWithParam<uint32_t> {};

TEST_P(MaxTreeRows, AnswersAsTheRowDoes) {
  const uint32_t count = GetParam();
  constexpr uint32_t steps = 4000;
  std::mt19937 generator(count);
  Row row(count);
  const auto below = [&generator](uint32_t bound) { return static_cast<uint32_t>(generator() % bound); };
  for (uint32_t step = 0; step < steps; ++step) {
    // At last most numbers are 0 again, so that whole groups are empty.
    const bool clears = below(steps) < step;
    row.set(below(count), clears ? 0 : 1 + below(50));
    row.compare(1 + below(50), below(count));
    if (HasFatalFailure()) return;
  }
}

INSTANTIATE_TEST_SUITE_P(Counts, MaxTreeRows,
                         testing::Values(1, 2, 15, 16, 17, 255, 256, 257, 4095, 4096, 4097, 70000));

TEST(MaxTree, HasRoomForTheLargestChunk) {
  constexpr uint32_t count = 2 * 4096 * 1024;
  EXPECT_LT(MaxTree::bytesFor(count), count * sizeof(uint32_t) * 11 / 10);
  Row row(count);
  EXPECT_NO_FATAL_FAILURE(row.compare(1, count - 1));
  row.set(count - 1, 7);
  row.set(0, 3);
  EXPECT_NO_FATAL_FAILURE(row.compare(4, count - 1));
}

}  // namespace
