// Pools as a whole.
#include <gtest/gtest.h>

#include <string_view>

#include "hs/pools_host.h"
#include "hs/src/poison.h"
#include "veldnls/hostlib/ht.h"

namespace {

class Pools : public testing::Test {
 protected:
  test::HostRecords host;
  XmContext* context = host.memory.context;
};

TEST_F(Pools, RecordTellsWhatWasAsked) {
  const XmPool* pool = xmcreate(&host.vector, 1025, 1, XM_ZERO);
  EXPECT_EQ(std::string_view(reinterpret_cast<const char*>(pool->eyeCatcher), 4), "POOL");
  EXPECT_EQ(pool->kind, XM_KIND_VARIABLE);
  EXPECT_EQ(pool->flags, XM_ZERO);
  EXPECT_EQ(pool->initialSize, 2048u);
  EXPECT_EQ(pool->extensionSize, 1024u);
  EXPECT_EQ(pool->lockDepth, 0);
  EXPECT_EQ(pool->owner, 0u);
  EXPECT_EQ(pool->creator, htThreadSelf());
  EXPECT_EQ(pool->context, context);
  EXPECT_EQ(pool->index, nullptr);
  EXPECT_EQ(pool->chunks->end - pool->chunks->start, 2048);
  EXPECT_EQ(pool->chunks->bump, pool->chunks->start);
  EXPECT_EQ(pool->chunks->state, XM_CHUNK_FIRST | XM_CHUNK_ZERO);
  EXPECT_EQ(pool->chunks->owner, nullptr);
}

TEST_F(Pools, WithoutInitialSizeThereIsNoChunk) {
  XmPool* pool = xmcreate(&host.vector, 0, 1024, 0);
  EXPECT_EQ(pool->chunks, nullptr);
  EXPECT_EQ(xmreset(&host.vector, pool), 0u);
  EXPECT_NE(xmalloc(&host.vector, pool, 8, 0), nullptr);
  EXPECT_EQ(pool->chunks->state & XM_CHUNK_FIRST, 0u);
  XmPool* never = xmcreate(&host.vector, 0, 0, 0);
  EXPECT_EQ(xmalloc(&host.vector, never, 8, 0), nullptr);
}

TEST_F(Pools, HugeSizesAreRefusedOrCut) {
  EXPECT_EQ(xmcreate(&host.vector, UINT32_MAX, 0, 0), nullptr);
  EXPECT_EQ(xmcreate(&host.vector, UINT32_C(0x80000000), 0, 0), nullptr);
  XmPool* pool = xmcreate(&host.vector, 0, UINT32_MAX, 0);
  EXPECT_EQ(pool->extensionSize, UINT32_C(0xFFFFFC00));
  EXPECT_EQ(xmalloc(&host.vector, pool, 8, 0), nullptr);
}

TEST_F(Pools, ListHasTheNewestFirst) {
  XmPool* first = xmcreate(&host.vector, 0, 0, 0);
  XmPool* second = xmcreate(&host.vector, 0, 0, 0);
  XmPool* third = xmcreate(&host.vector, 0, 0, 0);
  EXPECT_EQ(context->pools, third);
  EXPECT_EQ(third->next, second);
  EXPECT_EQ(second->previous, third);
  EXPECT_EQ(first->next, context->defaultPool);
  xmdestroy(&host.vector, second);
  EXPECT_EQ(third->next, first);
  EXPECT_EQ(first->previous, third);
  xmdestroy(&host.vector, third);
  EXPECT_EQ(context->pools, first);
  EXPECT_EQ(first->previous, nullptr);
  xmdestroy(&host.vector, first);
  EXPECT_EQ(context->pools, context->defaultPool);
}

TEST_F(Pools, CheckedCreationGivesAStatus) {
  XmPool* pool = nullptr;
  EXPECT_EQ(xmcreateChecked(&host.vector, &pool, nullptr, 1024, 0, 0), 0u);
  ASSERT_NE(pool, nullptr);
  EXPECT_EQ(pool->initialSize, 1024u);
  const test::RefuseNth refuse(host.memory, 1);
  EXPECT_EQ(xmcreateChecked(&host.vector, &pool, nullptr, 1024, 0, 0), xmCreateFailed);
  EXPECT_EQ(pool, nullptr);
}

TEST_F(Pools, EachAllocationOfCreateMayFail) {
  const uint32_t inUse = context->inUse;
  int n = 1;
  for (;; ++n) {
    const test::RefuseNth refuse(host.memory, n);
    XmPool* pool = xmcreate(&host.vector, 4096, 1024, 0);
    if (pool != nullptr) break;
    EXPECT_TRUE(refuse.refused());
    EXPECT_EQ(context->inUse, inUse);
    EXPECT_EQ(test::poolCount(context), 1);
  }
  EXPECT_EQ(n, 4);
  EXPECT_EQ(test::RefuseNth::sizes(), (std::vector<uint32_t>{sizeof(XmPool), sizeof(XmChunk), 4096}));
}

TEST_F(Pools, DeadRecordsAreFilled) {
  XmPool* pool = xmcreate(&host.vector, 1024, 0, 0);
  const XmChunk* chunk = pool->chunks;
  xmdestroy(&host.vector, pool);
  // The second word of a dead cell links it.
  constexpr size_t linkEnd = 2 * sizeof(void*);
  veldnls::hs::openMemory(pool, sizeof *pool);
  veldnls::hs::openMemory(chunk, sizeof *chunk);
  EXPECT_TRUE(test::allBytes(pool, sizeof(void*), 0x11));
  EXPECT_TRUE(test::allBytes(reinterpret_cast<const uint8_t*>(pool) + linkEnd, sizeof *pool - linkEnd, 0x11));
  EXPECT_TRUE(test::allBytes(chunk, sizeof(void*), 0x11));
  EXPECT_TRUE(test::allBytes(reinterpret_cast<const uint8_t*>(chunk) + linkEnd, sizeof *chunk - linkEnd, 0x11));
}

TEST_F(Pools, DestroyOfNoPoolDoesNothing) {
  xmdestroy(&host.vector, nullptr);
  xmdestroy(nullptr, nullptr);
  EXPECT_EQ(test::poolCount(context), 1);
}

TEST_F(Pools, LockIsReentered) {
  XmPool* pool = xmcreate(&host.vector, 1024, 0, 0);
  xmpoollock(pool);
  EXPECT_EQ(pool->owner, htThreadSelf());
  xmpoollock(pool);
  EXPECT_EQ(pool->lockDepth, 2);
  void* block = xmalloc(&host.vector, pool, 8, 0);
  EXPECT_NE(block, nullptr);
  EXPECT_EQ(pool->lockDepth, 2);
  xmfree(&host.vector, pool, block, 8);
  xmreset(&host.vector, pool);
  xmpoolunlock(pool);
  EXPECT_EQ(pool->owner, htThreadSelf());
  xmpoolunlock(pool);
  EXPECT_EQ(pool->owner, 0u);
  EXPECT_EQ(pool->lockDepth, 0);
}

// Requests go on without the host's records: a real pool knows its context.
TEST_F(Pools, ARealPoolNeedsNoRecords) {
  XmPool* pool = xmcreate(&host.vector, 0, 1024, XM_LENGTH_HEADER);
  void* block = xmalloc(nullptr, pool, 2000, 0);
  EXPECT_NE(block, nullptr);
  xmfree(nullptr, pool, block, XM_SIZE_IN_HEADER);
  EXPECT_EQ(xmreset(nullptr, pool), 0u);
  xmdestroy(nullptr, pool);
  EXPECT_EQ(test::poolCount(context), 1);
}

TEST_F(Pools, TheHostIsAskedBeforeABlockServes) {
  XmPool* pool = xmcreate(&host.vector, 1024, 0, 0);
  const test::RefuseNth refuse(host.memory, 2);
  EXPECT_EQ(xmalloc(&host.vector, pool, 0, 0), XM_NO_BYTES);
  EXPECT_NE(xmalloc(&host.vector, pool, 16, 0), nullptr);
  EXPECT_EQ(xmalloc(&host.vector, pool, 24, 0), nullptr);
  EXPECT_NE(xmalloc(&host.vector, pool, 32, 0), nullptr);
  EXPECT_EQ(test::RefuseNth::sizes(), (std::vector<uint32_t>{16, 24, 32}));
}

}  // namespace
