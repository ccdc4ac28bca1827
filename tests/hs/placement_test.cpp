// Placement over long random runs, against the model.
#include <gtest/gtest.h>

#include <random>

#include "hs/index_memory.h"
#include "hs/placement_model.h"

namespace {

using test::PoolRun;

class Placement : public testing::TestWithParam<uint32_t> {};

TEST_P(Placement, FollowsTheModel) {
  for (uint32_t seed = 0; seed < 8; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 generator(seed);
    const auto below = [&generator](uint32_t bound) { return static_cast<uint32_t>(generator() % bound); };
    test::HostRecords host;
    // Two pools, so that chunks don't all follow each other.
    PoolRun runs[] = {{host, seed % 3 * 1500, 1024 * (seed % 4), GetParam()}, {host, 1024, 2048, GetParam()}};
    for (int step = 0; step < 3000; ++step) {
      PoolRun& run = runs[below(4) == 0 ? 1 : 0];
      const uint32_t action = below(100);
      if (action < 55) {
        const uint32_t size = 1 + below(below(20) == 0 ? 6000 : 200);
        const uint32_t flags = (below(2) != 0 ? XM_ZERO : 0) | (below(4) == 0 ? XM_LENGTH_HEADER : 0);
        run.take(size, flags, static_cast<uint8_t>(1 + below(255)));
      } else if (action < 99 || step % 10 != 0) {
        run.give(generator());
      } else {
        run.reset();
      }
      if (step % 16 == 0) run.compare();
      if (testing::Test::HasFatalFailure()) return;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Flags, Placement,
                         testing::Values(0, XM_LENGTH_HEADER, XM_ZERO, XM_LENGTH_HEADER | XM_ZERO, XM_MARK_STYLE,
                                         XM_MARK_STYLE | XM_ZERO));

struct LongRun {
  uint32_t flags;
  uint32_t refusedPercent;  // of index memory
  bool bothCopies;
};

void PrintTo(const LongRun& run, std::ostream* out) {
  *out << std::hex << run.flags << std::dec << ", " << run.refusedPercent << "% refused"
       << (run.bothCopies ? ", both copies" : "");
}

// Pools with many blocks alive, so that chains are long and chunks many.
class LongPlacement : public testing::TestWithParam<LongRun> {
 protected:
  static constexpr uint32_t seeds = 3;
  static constexpr int steps = 5000;
  static constexpr size_t mostHeld = 1200;

  uint32_t below(uint32_t bound) { return static_cast<uint32_t>(generator_() % bound); }

  void step(PoolRun& run) {
    if (GetParam().bothCopies) run.use(below(2) != 0 ? test::ownCopy : test::secondCopy());
    // The pools fill up, and from then on neither grow nor shrink for long.
    const bool takes = run.heldCount() < mostHeld ? below(100) < 70 : below(2) != 0;
    if (!takes) {
      run.give(generator_());
      return;
    }
    const uint32_t size = 1 + below(below(40) == 0 ? 3000 : 120);
    const uint32_t flags = (below(8) == 0 ? XM_ZERO : 0) | (below(4) == 0 ? XM_LENGTH_HEADER : 0);
    run.take(size, flags, static_cast<uint8_t>(1 + below(255)));
  }

  void runOnce(uint32_t seed) {
    generator_.seed(seed);
    test::HostRecords host;
    const uint32_t flags = GetParam().flags;
    // A fixed chunk; one that grows; two that grow by turns and so have many chunks.
    PoolRun runs[] = {
        {host, 100'000, 0, flags}, {host, 0, 16 * 1024, flags}, {host, 1024, 1024, flags}, {host, 0, 1024, flags}};
    for (int i = 0; i < 4 * steps; ++i) {
      PoolRun& run = runs[i < steps ? 0 : i < 2 * steps ? 1 : 2 + below(2)];
      step(run);
      if (i % 500 == 0) run.compare();
      if (i % steps == steps - 1) {
        sawIndex_ |= run.hasIndexedChunk();
        sawDirectory_ |= run.hasDirectory();
        if (below(2) != 0) run.reset();
      }
      if (HasFatalFailure()) return;
    }
    for (const PoolRun& run : runs) run.compare();
  }

  std::mt19937 generator_;
  bool sawIndex_ = false;
  bool sawDirectory_ = false;
};

TEST_P(LongPlacement, FollowsTheModel) {
  const uint32_t percent = GetParam().refusedPercent;
  const test::RefuseIndexMemory refuse(percent);
  for (uint32_t seed = 0; seed < seeds; ++seed) {
    SCOPED_TRACE(seed);
    runOnce(seed);
    if (HasFatalFailure()) return;
  }
  // The runs were what they were to be.
  EXPECT_EQ(test::RefuseIndexMemory::given() > 0, percent < 100);
  EXPECT_EQ(test::RefuseIndexMemory::refused() > 0, percent > 0);
  const bool hasChains = (GetParam().flags & XM_MARK_STYLE) == 0;
  EXPECT_EQ(sawIndex_, hasChains && percent < 100);
  EXPECT_EQ(sawDirectory_, percent < 100);
}

INSTANTIATE_TEST_SUITE_P(Runs, LongPlacement,
                         testing::Values(LongRun{0, 0, false}, LongRun{XM_LENGTH_HEADER, 0, false},
                                         LongRun{XM_ZERO, 50, false}, LongRun{0, 90, true},
                                         LongRun{XM_LENGTH_HEADER | XM_ZERO, 0, true}, LongRun{0, 100, false},
                                         LongRun{XM_MARK_STYLE, 0, false}, LongRun{XM_MARK_STYLE | XM_ZERO, 50, true},
                                         LongRun{XM_MARK_STYLE, 100, false}));

}  // namespace
