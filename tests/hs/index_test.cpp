// Indexes beside the chains: when there is one, that callers' errors have the same outcome with and without, what it
// costs, and that its memory comes back.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <random>

#include "hs/index_memory.h"
#include "hs/pools_host.h"
#include "hs/src/poison.h"
#include "hs/src/pool.h"
#include "hs/src/range.h"
#include "hs/touched_pages.h"
#include "support/death.h"

namespace {

constexpr uint32_t chunkBytes = 64 * 1024;

class Index : public testing::Test {
 protected:
  uint8_t* take(XmPool* pool, uint32_t size) { return static_cast<uint8_t*>(xmalloc(&host.vector, pool, size, 0)); }
  void give(XmPool* pool, void* block, uint32_t size) { xmfree(&host.vector, pool, block, static_cast<int32_t>(size)); }

  // Fills a pool with blocks of this size and frees every second one.
  std::vector<uint8_t*> makeHoles(XmPool* pool, uint32_t size, size_t count) {
    std::vector<uint8_t*> kept;
    std::vector<uint8_t*> freed;
    for (size_t i = 0; i < count; ++i) (i % 2 == 0 ? freed : kept).push_back(take(pool, size));
    for (uint8_t* block : freed) give(pool, block, size);
    return kept;
  }

  size_t indexBytes() {
    size_t bytes = 0;
    for (const XmRange* range = veldnls::hs::blockOf(context)->indexRanges; range != nullptr; range = range->next) {
      bytes += (range->granules - range->freeGranules) * XM_GRANULE;
    }
    return bytes;
  }

  test::HostRecords host;
  XmContext* context = host.memory.context;
};

TEST_F(Index, ComesWithALongWalk) {
  XmPool* pool = xmcreate(&host.vector, chunkBytes, 0, 0);
  makeHoles(pool, 64, 8);
  take(pool, 1000);
  EXPECT_EQ(pool->chunks->index, nullptr);
  makeHoles(pool, 64, 40);
  take(pool, 1000);
  EXPECT_NE(pool->chunks->index, nullptr);
  EXPECT_GT(indexBytes(), 0u);
  xmdestroy(&host.vector, pool);
  EXPECT_EQ(indexBytes(), 0u);
}

TEST_F(Index, TakesNothingOfWhatIsCounted) {
  XmPool* pool = xmcreate(&host.vector, chunkBytes, 0, 0);
  const uint32_t inUse = context->inUse;
  xmsetlimit(&host.vector, 0);
  const test::RefuseNth refuse(host.memory, 0);
  makeHoles(pool, 64, 100);
  EXPECT_NE(pool->chunks->index, nullptr);
  EXPECT_EQ(context->inUse, inUse);
  EXPECT_EQ(test::RefuseNth::sizes(), std::vector<uint32_t>(100, 64));
}

TEST_F(Index, EndsWithReset) {
  XmPool* pool = xmcreate(&host.vector, 0, 1024, 0);
  XmPool* other = xmcreate(&host.vector, 0, 1024, 0);
  for (int i = 0; i < 20; ++i) {
    take(pool, 1024);
    take(other, 1024);
  }
  XmPool* holes = xmcreate(&host.vector, chunkBytes, 0, 0);
  makeHoles(holes, 64, 100);
  ASSERT_NE(pool->index, nullptr);
  ASSERT_NE(holes->chunks->index, nullptr);
  for (XmPool* each : {pool, other, holes}) xmreset(&host.vector, each);
  EXPECT_EQ(pool->index, nullptr);
  EXPECT_EQ(holes->chunks->index, nullptr);
  EXPECT_EQ(indexBytes(), 0u);
  EXPECT_EQ(take(holes, 8), holes->chunks->start);
}

TEST_F(Index, EndsWithTheContext) {
  VeldMemoryRecord memory{};
  VeldInputVector vector{};
  vector.memory = &memory;
  xminit(&vector);
  std::vector<void*> blocks;
  for (int i = 0; i < 200; ++i) blocks.push_back(xmalloc(&vector, XM_SUPERVISOR_POOL, 64, 0));
  for (size_t i = 0; i < blocks.size(); i += 2) xmfree(&vector, XM_SUPERVISOR_POOL, blocks[i], XM_SIZE_IN_HEADER);
  EXPECT_NE(memory.context->supervisor.chunks->index, nullptr);
  hsmemterm(&vector, memory.context);
  xmterm(&vector, memory.context);
}

// A chain whose blocks overlap is walked: the index knows blocks apart from each other only.
TEST_F(Index, EndsWithAnOverlap) {
  XmPool* pool = xmcreate(&host.vector, chunkBytes, 0, 0);
  const test::Ending ending = test::runInChild([&] {
    const auto kept = makeHoles(pool, 64, 100);
    if (indexBytes() == 0) std::abort();
    give(pool, kept[3] + 32, 64);
    if (indexBytes() != 0) std::abort();
    for (int i = 0; i < 20; ++i) take(pool, 2000);
    if (indexBytes() != 0) std::abort();
  });
  EXPECT_EQ(ending.signal, 0);
  EXPECT_EQ(ending.errors, "xmfree() ERROR: free chain overlap detected!");
}

// A double free changes nothing, so the index stays.
TEST_F(Index, OutlivesADoubleFree) {
  XmPool* pool = xmcreate(&host.vector, chunkBytes, 0, 0);
  const test::Ending ending = test::runInChild([&] {
    makeHoles(pool, 64, 100);
    const size_t bytes = indexBytes();
    give(pool, pool->chunks->start, 64);
    give(pool, pool->chunks->start + 64 * 20, 64);
    if (indexBytes() != bytes || bytes == 0) std::abort();
  });
  EXPECT_EQ(ending.signal, 0);
  EXPECT_NE(ending.errors, "");
}

// What a caller that errs gets to see: places of blocks by calls, as text.
void erringCalls(const VeldInputVector* host, uint32_t seed, uint32_t flags) {
  std::mt19937 generator(seed);
  const auto below = [&generator](size_t bound) { return static_cast<uint32_t>(generator() % bound); };
  XmPool* pool = xmcreate(host, chunkBytes, 0, flags);
  const uint8_t* start = pool->chunks->start;
  std::vector<test::Block> held;
  std::vector<test::Block> freed;
  const auto give = [&](uint8_t* at, uint32_t size) { xmfree(host, pool, at, static_cast<int32_t>(size)); };
  for (int i = 0; i < 3000; ++i) {
    const uint32_t action = below(1000);
    if (held.size() < 10 || (held.size() < 300 && action < 520)) {
      const uint32_t size = 8 * (1 + below(30));
      auto* block = static_cast<uint8_t*>(xmalloc(host, pool, size, 0));
      std::printf("%ld\n", block != nullptr ? static_cast<long>(block - start) : -1L);
      if (block != nullptr) held.push_back({block, size});
    } else if (action < 990 || freed.empty()) {
      const size_t index = below(held.size());
      give(held[index].at, held[index].size);
      freed.push_back(held[index]);
      held[index] = held.back();
      held.pop_back();
    } else if (action < 994 || (flags & XM_LENGTH_HEADER) != 0) {
      // Once more what was freed, be it free still or not.
      const test::Block block = freed[below(freed.size())];
      give(block.at, block.size);
    } else {
      // Too much, from somewhere inside.
      const test::Block block = held[below(held.size())];
      give(block.at + below(block.size), block.size);
    }
  }
  for (const test::Block& block : test::freeBlocks(pool->chunks)) {
    std::printf("%ld %u\n", static_cast<long>(block.at - start), block.size);
  }
}

TEST_F(Index, ErrorsHaveTheSameOutcomeWithout) {
  for (uint32_t seed = 0; seed < 20; ++seed) {
    SCOPED_TRACE(seed);
    const test::Ending with = test::runInChild([&] { erringCalls(&host.vector, seed, 0); });
    const test::Ending without = test::runInChild([&] {
      const test::RefuseIndexMemory refuse(100);
      erringCalls(&host.vector, seed, 0);
    });
    EXPECT_EQ(with.signal, 0);
    EXPECT_EQ(with.output, without.output);
    EXPECT_EQ(with.errors, without.errors);
    EXPECT_NE(with.errors, "");
  }
}

// Blocks that callers' errors have put on the chain twice: a walk ends all the same.
TEST_F(Index, OverlappingBlocksMakeNoCircle) {
  XmPool* pool = xmcreate(&host.vector, 1024, 0, 0);
  uint8_t* block = take(pool, 64);
  take(pool, 8);
  const test::Ending ending = test::runInChild([&] {
    give(pool, block, 32);
    give(pool, block + 16, 48);
    for (int i = 0; i < 20; ++i) take(pool, 8);
    take(pool, 100);
  });
  EXPECT_EQ(ending.signal, 0);
}

// Nanoseconds for one free and one allocation with so many blocks alive: the least of several samples.
double costAt(const VeldInputVector* host, size_t live) {
  std::mt19937 generator(1);
  XmPool* pool = xmcreate(host, chunkBytes, chunkBytes, 0);
  const auto takeOne = [&] {
    const auto size = static_cast<uint32_t>(16 + generator() % 497);
    return test::Block{static_cast<uint8_t*>(xmalloc(host, pool, size, 0)), size};
  };
  std::vector<test::Block> blocks(live);
  for (test::Block& block : blocks) block = takeOne();
  const auto sample = [&](int calls) {
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < calls; ++i) {
      test::Block& block = blocks[generator() % live];
      xmfree(host, pool, block.at, static_cast<int32_t>(block.size));
      block = takeOne();
    }
    return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count() / calls;
  };
  sample(static_cast<int>(8 * live));
  double least = sample(2000);
  for (int i = 0; i < 30; ++i) least = std::min(least, sample(2000));
  xmdestroy(host, pool);
  return least;
}

TEST_F(Index, ManyBlocksCostAtMostThreeTimesFew) {
#if defined(VELDNLS_ADDRESS_SANITIZER)
  GTEST_SKIP() << "the sanitizer's cost isn't the pools'";
#endif
  if (test::threadSanitizer) GTEST_SKIP() << "the sanitizer's cost isn't the pools'";
  // Another process may take the processor in any one of them.
  double least = costAt(&host.vector, 8192) / costAt(&host.vector, 256);
  for (int i = 0; i < 4 && least > 3; ++i) {
    least = std::min(least, costAt(&host.vector, 8192) / costAt(&host.vector, 256));
  }
  EXPECT_LE(least, 3);
}

struct Growing {
  const char* name;
  uint32_t flags;
  uint32_t step;
  uint32_t size;
};

void PrintTo(const Growing& growing, std::ostream* out) { *out << growing.name; }

// Two pools that grow by turns, so that their chunks don't merge.
class GrowingIndex : public Index, public testing::WithParamInterface<Growing> {
 protected:
  // Pages that an allocation touches by which a pool with so many blocks alive grows: the middle one of several, since
  // now and then one builds the directory anew.
  size_t pagesAt(size_t live) {
    XmPool* pools[2];
    for (XmPool*& pool : pools) pool = xmcreate(&host.vector, 0, GetParam().step, GetParam().flags);
    for (size_t i = 0; i < live; ++i) {
      for (XmPool* pool : pools) take(pool, GetParam().size);
    }
    std::vector<size_t> pages;
    while (pages.size() < 31) {
      for (XmPool* pool : pools) {
        const uint32_t inUse = context->inUse;
        const test::TouchedPages touched(context);
        take(pool, GetParam().size);
        if (context->inUse != inUse) pages.push_back(touched.count());
      }
    }
    for (XmPool* pool : pools) xmdestroy(&host.vector, pool);
    std::sort(pages.begin(), pages.end());
    return pages[pages.size() / 2];
  }
};

TEST_P(GrowingIndex, ManyChunksCostAtMostThreeTimesFew) {
  const size_t few = pagesAt(256);
  EXPECT_GE(few, 1u);
  EXPECT_LE(pagesAt(8192), 3 * few);
}

INSTANTIATE_TEST_SUITE_P(Pools, GrowingIndex,
                         testing::Values(Growing{"two blocks a chunk", 0, 8192, 4000},
                                         Growing{"one block a chunk", 0, 1024, 1000},
                                         Growing{"headed blocks", XM_LENGTH_HEADER, 1024, 1000},
                                         Growing{"mark-style, two", XM_MARK_STYLE, 8192, 4000},
                                         Growing{"mark-style, one", XM_MARK_STYLE, 1024, 1000}));

}  // namespace
