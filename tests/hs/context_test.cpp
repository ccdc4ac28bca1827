// The context and the handles that mean a pool of it.
#include <gtest/gtest.h>

#include <cstring>
#include <string_view>
#include <thread>

#include "hs/pools_host.h"
#include "veldnls/hostlib/ht.h"

namespace {

std::string_view eyeCatcher(const XmPool& pool) { return {reinterpret_cast<const char*>(pool.eyeCatcher), 4}; }

TEST(Context, IsMadeAsItStands) {
  const test::HostRecords host;
  XmContext* context = host.memory.context;
  ASSERT_NE(context, nullptr);
  EXPECT_EQ(context->initialised, 1);
  EXPECT_EQ(context->pageSize % 4096, 0);
  EXPECT_EQ(context->granule, 1024);
  EXPECT_EQ(context->limit, 0x7FFFFFFFu);
  EXPECT_EQ(context->limit2, 0x7FFFFFFFu);
  EXPECT_EQ(context->highMemoryState, -1);
  EXPECT_EQ(eyeCatcher(context->poolHeaders), "POOH");
  EXPECT_EQ(context->poolHeaders.kind, XM_KIND_CELLS);
  EXPECT_EQ(context->poolHeaders.cellSize, sizeof(XmPool));
  EXPECT_EQ(context->poolHeaders.initialSize, 0x8000u);
  EXPECT_EQ(context->poolHeaders.extensionSize, 0x4000u);
  EXPECT_EQ(eyeCatcher(context->chunkDescriptors), "PUDL");
  EXPECT_EQ(context->chunkDescriptors.kind, XM_KIND_CELLS);
  EXPECT_EQ(context->chunkDescriptors.cellSize, sizeof(XmChunk));
  EXPECT_EQ(context->chunkDescriptors.initialSize, 0x8000u);
  EXPECT_EQ(context->chunkDescriptors.extensionSize, 0x4000u);
  EXPECT_EQ(eyeCatcher(context->supervisor), "SUPV");
  EXPECT_EQ(context->supervisor.kind, XM_KIND_VARIABLE);
  EXPECT_EQ(context->supervisor.flags, XM_LENGTH_HEADER);
  EXPECT_EQ(context->supervisor.initialSize, 0x10000u);
  EXPECT_EQ(context->supervisor.extensionSize, 0x100000u);
  EXPECT_EQ(context->supervisor.creator, htThreadSelf());
  const XmPool* pool = context->defaultPool;
  EXPECT_EQ(eyeCatcher(*pool), "POOL");
  EXPECT_EQ(pool->initialSize, 0x2000u);
  EXPECT_EQ(pool->extensionSize, 0x1000u);
  EXPECT_EQ(pool->flags, XM_LENGTH_HEADER);
  EXPECT_EQ(context->pools, pool);
  EXPECT_EQ(context->inUse, 0x8000u + 0x8000u + 0x10000u + 0x2000u);
  EXPECT_EQ(context->highWater, context->inUse);
}

TEST(Context, ASecondInitGivesTheSame) {
  test::HostRecords host;
  XmContext* context = host.memory.context;
  EXPECT_EQ(xminit(&host.vector), context);
  EXPECT_EQ(host.memory.context, context);
}

TEST(Context, NeedsAMemoryRecord) {
  EXPECT_EQ(xminit(nullptr), nullptr);
  VeldInputVector vector{};
  EXPECT_EQ(xminit(&vector), nullptr);
}

TEST(Context, TermClearsTheRecordThatNamesIt) {
  VeldMemoryRecord memory{};
  VeldInputVector vector{};
  vector.memory = &memory;
  XmContext* first = xminit(&vector);
  ASSERT_NE(first, nullptr);
  hsmemterm(&vector, first);
  memory.context = nullptr;
  XmContext* second = xminit(&vector);
  ASSERT_NE(second, nullptr);
  EXPECT_NE(first, second);
  xmterm(&vector, first);
  EXPECT_EQ(memory.context, second);
  xmterm(&vector, nullptr);
  EXPECT_EQ(memory.context, second);
  hsmemterm(&vector, second);
  xmterm(&vector, second);
  EXPECT_EQ(memory.context, nullptr);
}

TEST(Context, EachAllocationOfInitMayFail) {
  VeldMemoryRecord memory{};
  VeldInputVector vector{};
  vector.memory = &memory;
  int n = 1;
  for (;; ++n) {
    const test::RefuseNth refuse(memory, n);
    XmContext* context = xminit(&vector);
    EXPECT_EQ(memory.context, context);
    if (context != nullptr) {
      EXPECT_FALSE(refuse.refused());
      break;
    }
    EXPECT_TRUE(refuse.refused());
  }
  // The context; descriptor, its first chunk, memory of the headers; descriptor, memory of the supervisor; record,
  // descriptor, memory of the default pool.
  EXPECT_EQ(n, 10);
  EXPECT_NE(xmalloc(&vector, XM_THREAD_POOL, 100, 0), nullptr);
  hsmemterm(&vector, memory.context);
  xmterm(&vector, memory.context);
}

// A pool goes on with the context that it was made in.
TEST(Context, PoolsKeepTheirOwn) {
  test::HostRecords host;
  XmPool* pool = xmcreate(&host.vector, 0, 1024, 0);
  XmContext* context = host.memory.context;
  hsmemterm(&host.vector, context);
  host.memory.context = nullptr;
  XmContext* other = xminit(&host.vector);
  const uint32_t inUse = context->inUse;
  const uint32_t otherInUse = other->inUse;
  EXPECT_NE(xmalloc(&host.vector, pool, 1000, 0), nullptr);
  EXPECT_EQ(context->inUse, inUse + 1024);
  EXPECT_EQ(other->inUse, otherInUse);
  xmdestroy(&host.vector, pool);
  EXPECT_EQ(context->inUse, inUse);
  xmterm(&host.vector, context);
}

TEST(Context, ARecordWithoutContextHasNoPools) {
  VeldMemoryRecord memory{};
  VeldInputVector vector{};
  for (VeldMemoryRecord* record : {static_cast<VeldMemoryRecord*>(nullptr), &memory}) {
    vector.memory = record;
    for (const VeldInputVector* host : {static_cast<const VeldInputVector*>(nullptr), &std::as_const(vector)}) {
      EXPECT_EQ(xmalloc(host, XM_THREAD_POOL, 8, 0), nullptr);
      EXPECT_EQ(xmalloc(host, XM_SUPERVISOR_POOL, 8, 0), nullptr);
      EXPECT_EQ(xmcreate(host, 1024, 0, 0), nullptr);
      EXPECT_EQ(xmreset(host, XM_THREAD_POOL), xmNullPool);
      EXPECT_EQ(xmsysalloc(host, 8, nullptr), nullptr);
      EXPECT_EQ(hshimalloc(host, 8), nullptr);
      EXPECT_EQ(xmsetlimit(host, 8), 0u);
      xmdestroy(host, XM_THREAD_POOL);
      xmsysfree(host, &vector, 8);
      hshifree(host, &vector, 8);
    }
  }
}

class Handles : public testing::Test {
 protected:
  test::HostRecords host;
  XmContext* context = host.memory.context;
};

TEST_F(Handles, SupervisorIsItsPool) {
  auto* block = static_cast<uint8_t*>(xmalloc(&host.vector, XM_SUPERVISOR_POOL, 100, 0));
  EXPECT_EQ(block, context->supervisor.chunks->start + 8);
  xmfree(&host.vector, XM_SUPERVISOR_POOL, block, XM_SIZE_IN_HEADER);
  EXPECT_EQ(context->supervisor.chunks->freeChain, block - 8);
  EXPECT_EQ(xmreset(&host.vector, XM_SUPERVISOR_POOL), 0u);
}

TEST_F(Handles, BuiltInPoolsAreNotDestroyed) {
  xmdestroy(&host.vector, XM_SUPERVISOR_POOL);
  xmdestroy(&host.vector, &context->poolHeaders);
  xmdestroy(&host.vector, &context->chunkDescriptors);
  EXPECT_NE(xmalloc(&host.vector, XM_SUPERVISOR_POOL, 100, 0), nullptr);
  EXPECT_NE(xmcreate(&host.vector, 1024, 0, 0), nullptr);
}

TEST_F(Handles, AThreadWithoutPoolUsesTheDefaultPool) {
  const uint8_t* start = context->defaultPool->chunks->start;
  // No key.
  EXPECT_EQ(xmalloc(&host.vector, XM_THREAD_POOL, 8, 0), start + 8);
  // A key without a value, and a record without a pool.
  ASSERT_EQ(htTlsCreate(&host.threadBlock.threadKey), 0);
  EXPECT_EQ(xmalloc(&host.vector, XM_THREAD_POOL, 8, 0), start + 24);
  VeldThreadMemory record{};
  htTlsSet(host.threadBlock.threadKey, &record);
  EXPECT_EQ(xmalloc(&host.vector, XM_THREAD_POOL, 8, 0), start + 40);
  // No record of keys.
  host.vector.threadBlock = nullptr;
  EXPECT_EQ(xmalloc(&host.vector, XM_THREAD_POOL, 8, 0), start + 56);
  htTlsDelete(host.threadBlock.threadKey);
}

TEST_F(Handles, AThreadsOwnPoolIsItsOwn) {
  ASSERT_EQ(htTlsCreate(&host.threadBlock.threadKey), 0);
  VeldThreadMemory record{xmcreate(&host.vector, 1024, 0, 0)};
  htTlsSet(host.threadBlock.threadKey, &record);
  EXPECT_EQ(xmalloc(&host.vector, XM_THREAD_POOL, 8, 0), record.pool->chunks->start);
  void* elsewhere = nullptr;
  std::thread([&] { elsewhere = xmalloc(&host.vector, XM_THREAD_POOL, 8, 0); }).join();
  EXPECT_EQ(elsewhere, context->defaultPool->chunks->start + 8);
  xmdestroy(&host.vector, XM_THREAD_POOL);
  EXPECT_EQ(test::poolCount(context), 1);
  htTlsDelete(host.threadBlock.threadKey);
}

TEST_F(Handles, AThreadsRecordMayHoldASpecialHandle) {
  ASSERT_EQ(htTlsCreate(&host.threadBlock.threadKey), 0);
  VeldThreadMemory record{XM_SUPERVISOR_POOL};
  htTlsSet(host.threadBlock.threadKey, &record);
  EXPECT_EQ(xmalloc(&host.vector, XM_THREAD_POOL, 8, 0), context->supervisor.chunks->start + 8);
  record.pool = XM_THREAD_POOL;
  EXPECT_EQ(xmalloc(&host.vector, XM_THREAD_POOL, 8, 0), context->defaultPool->chunks->start + 8);
  host.memory.context = nullptr;
  record.pool = XM_SUPERVISOR_POOL;
  EXPECT_EQ(xmalloc(&host.vector, XM_THREAD_POOL, 8, 0), nullptr);
  host.memory.context = context;
  htTlsDelete(host.threadBlock.threadKey);
}

TEST_F(Handles, AfterTheDefaultPoolsEndThereIsNone) {
  xmdestroy(&host.vector, XM_THREAD_POOL);
  EXPECT_EQ(context->defaultPool, nullptr);
  EXPECT_EQ(xmalloc(&host.vector, XM_THREAD_POOL, 8, 0), nullptr);
  EXPECT_NE(xmalloc(&host.vector, XM_SUPERVISOR_POOL, 8, 0), nullptr);
}

}  // namespace
