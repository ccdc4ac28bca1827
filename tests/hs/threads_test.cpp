// Many threads on the same pools.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstring>
#include <functional>
#include <latch>
#include <random>
#include <thread>
#include <vector>

#include "support/host.h"
#include "veldnls/hostlib/ht.h"
#include "veldnls/hostlib/xm.h"

namespace {

constexpr int threadCount = 4;
constexpr int rounds = 20'000;

struct Held {
  uint8_t* at;
  uint32_t size;
};

bool isFilled(const Held& block, uint8_t mark) {
  for (uint32_t i = 0; i < block.size; ++i) {
    if (block.at[i] != mark) return false;
  }
  return true;
}

// Takes and frees blocks, each filled with the thread's mark, and finds them as it left them.
void hammer(const VeldInputVector* host, XmPool* pool, uint8_t mark, std::atomic<int>& errors, size_t mostHeld = 20) {
  std::mt19937 generator(mark);
  const auto below = [&generator](size_t bound) { return static_cast<uint32_t>(generator() % bound); };
  std::vector<Held> held;
  for (int i = 0; i < rounds; ++i) {
    if (held.size() < mostHeld && below(3) != 0) {
      const uint32_t size = 1 + below(500);
      auto* block = static_cast<uint8_t*>(xmalloc(host, pool, size, XM_LENGTH_HEADER));
      if (block == nullptr) {
        ++errors;
        continue;
      }
      std::memset(block, mark, size);
      held.push_back({block, size});
    } else if (!held.empty()) {
      const size_t index = below(held.size());
      if (!isFilled(held[index], mark)) ++errors;
      xmfree(host, pool, held[index].at, XM_SIZE_IN_HEADER);
      held[index] = held.back();
      held.pop_back();
    }
  }
  for (const Held& block : held) xmfree(host, pool, block.at, XM_SIZE_IN_HEADER);
}

void inThreads(const std::function<void(uint8_t)>& body) {
  std::latch start(threadCount);
  std::vector<std::thread> threads;
  for (int i = 0; i < threadCount; ++i) {
    threads.emplace_back([&body, &start, i] {
      start.arrive_and_wait();
      body(static_cast<uint8_t>(i + 1));
    });
  }
  for (std::thread& thread : threads) thread.join();
}

TEST(PoolThreads, ShareOnePool) {
  test::HostRecords host;
  XmPool* pool = xmcreate(&host.vector, 1024, 1024, XM_LENGTH_HEADER);
  std::atomic<int> errors{0};
  inThreads([&](uint8_t mark) { hammer(&host.vector, pool, mark, errors); });
  EXPECT_EQ(errors, 0);
  EXPECT_EQ(pool->owner, 0u);
  // All is free again: the first chunk is one block, or never was used up.
  EXPECT_EQ(pool->chunks->freeChain, pool->chunks->start);
  xmdestroy(&host.vector, pool);
}

// Long chains, in two pools that grow by turns: with indexes of chains and directories of chunks.
TEST(PoolThreads, ShareIndexedPools) {
  test::HostRecords host;
  XmPool* growing = xmcreate(&host.vector, 1024, 1024, XM_LENGTH_HEADER);
  XmPool* fixed = xmcreate(&host.vector, 1 << 20, 1024, XM_LENGTH_HEADER);
  std::atomic<int> errors{0};
  inThreads([&](uint8_t mark) {
    hammer(&host.vector, mark % 2 == 0 ? growing : fixed, mark, errors, 300);
    hammer(&host.vector, mark % 2 == 0 ? fixed : growing, mark, errors, 300);
  });
  EXPECT_EQ(errors, 0);
  EXPECT_NE(fixed->chunks->index, nullptr);
  EXPECT_EQ(fixed->chunks->freeChain, fixed->chunks->start);
  xmdestroy(&host.vector, growing);
  xmdestroy(&host.vector, fixed);
}

TEST(PoolThreads, ShareTheSpecialHandles) {
  test::HostRecords host;
  std::atomic<int> errors{0};
  inThreads(
      [&](uint8_t mark) { hammer(&host.vector, mark % 2 == 0 ? XM_THREAD_POOL : XM_SUPERVISOR_POOL, mark, errors); });
  EXPECT_EQ(errors, 0);
}

TEST(PoolThreads, MakeAndEndPools) {
  test::HostRecords host;
  const uint32_t inUse = host.memory.context->inUse;
  std::atomic<int> errors{0};
  inThreads([&](uint8_t mark) {
    for (int i = 0; i < 2000; ++i) {
      XmPool* pool = xmcreate(&host.vector, 2048, 1024, i % 2 == 0 ? XM_MARK_STYLE : XM_ZERO);
      if (pool == nullptr) {
        ++errors;
        continue;
      }
      for (uint32_t size = 1; size < 5000; size *= 2) {
        void* block = xmalloc(&host.vector, pool, size, 0);
        if (block == nullptr) {
          ++errors;
        } else {
          std::memset(block, mark, size);
        }
      }
      if (i % 3 == 0) xmreset(&host.vector, pool);
      xmdestroy(&host.vector, pool);
    }
  });
  EXPECT_EQ(errors, 0);
  EXPECT_EQ(host.memory.context->inUse, inUse);
  EXPECT_EQ(host.memory.context->pools, host.memory.context->defaultPool);
}

std::atomic<int> optionReads{0};

TEST(PoolThreads, AgreeOnTheHighMemoryState) {
  test::HostRecords host;
  optionReads = 0;
  host.memory.readOption = [](const char*, int32_t* value) -> int32_t {
    ++optionReads;
    // Time for the others to arrive.
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    *value = 1;
    return 0;
  };
  std::atomic<int> errors{0};
  inThreads([&](uint8_t) {
    for (int i = 0; i < 20; ++i) {
      void* memory = hshimalloc(&host.vector, 4096);
      if (memory == nullptr) ++errors;
      hshifree(&host.vector, memory, 4096);
    }
  });
  EXPECT_EQ(errors, 0);
  EXPECT_EQ(optionReads, 1);
}

TEST(PoolThreads, LimitMovesWhilePoolsGrow) {
  test::HostRecords host;
  inThreads([&](uint8_t mark) {
    XmPool* pool = xmcreate(&host.vector, 0, 1024, 0);
    for (int i = 0; i < 500; ++i) {
      if (mark == 1) xmsetlimit(&host.vector, i % 2 == 0 ? 0 : UINT32_C(0x7FFFFFFF));
      if (pool != nullptr) xmalloc(&host.vector, pool, 600, 0);
    }
    xmdestroy(&host.vector, pool);
  });
  EXPECT_EQ(host.memory.context->pools, host.memory.context->defaultPool);
}

TEST(PoolThreads, TheHolderOfALockKeepsOthersOut) {
  test::HostRecords host;
  XmPool* pool = xmcreate(&host.vector, 1024, 0, 0);
  std::atomic<bool> done{false};
  xmpoollock(pool);
  std::thread other([&] {
    xmalloc(&host.vector, pool, 8, 0);
    done = true;
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_FALSE(done);
  EXPECT_NE(xmalloc(&host.vector, pool, 8, 0), nullptr);
  xmpoolunlock(pool);
  other.join();
  EXPECT_TRUE(done);
  EXPECT_EQ(pool->lockDepth, 0);
}

}  // namespace
