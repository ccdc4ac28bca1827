// Growth of pools, merging of chunks, the limit and its account.
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <cstring>

#include "hs/pools_host.h"
#include "hs/src/poison.h"

namespace {

class Chunks : public testing::Test {
 protected:
  XmPool* make(uint32_t initial, uint32_t extension, uint32_t flags = 0) {
    return xmcreate(&host.vector, initial, extension, flags);
  }
  uint8_t* take(XmPool* pool, uint32_t size, uint32_t flags = 0) {
    return static_cast<uint8_t*>(xmalloc(&host.vector, pool, size, flags));
  }

  test::HostRecords host;
  XmContext* context = host.memory.context;
};

TEST_F(Chunks, GrowthIsAMultipleOfTheExtension) {
  XmPool* pool = make(0, 3000);
  EXPECT_EQ(pool->extensionSize, 3072u);
  take(pool, 8);
  EXPECT_EQ(pool->chunks->end - pool->chunks->start, 3072);
  XmPool* other = make(0, 3000);
  take(other, 3073);
  EXPECT_EQ(other->chunks->end - other->chunks->start, 2 * 3072);
  XmPool* exact = make(0, 3000);
  take(exact, 3072);
  EXPECT_EQ(exact->chunks->end - exact->chunks->start, 3072);
  EXPECT_EQ(exact->chunks->bump, nullptr);
}

TEST_F(Chunks, FirstChunkIsNeverMerged) {
  XmPool* pool = make(1024, 1024);
  XmChunk* first = pool->chunks;
  EXPECT_EQ(first->state, XM_CHUNK_FIRST);
  take(pool, 1024);
  uint8_t* second = take(pool, 1024);
  EXPECT_EQ(second, first->end);
  EXPECT_EQ(first->end - first->start, 1024);
  ASSERT_NE(first->next, nullptr);
  EXPECT_EQ(first->next->start, second);
  EXPECT_EQ(first->next->state, 0u);
}

TEST_F(Chunks, NeighboursMergeWhenNothingRemained) {
  XmPool* pool = make(1024, 1024);
  take(pool, 1024);
  uint8_t* second = take(pool, 1024);
  XmChunk* chunk = pool->chunks->next;
  ASSERT_EQ(chunk->bump, nullptr);
  EXPECT_EQ(take(pool, 512), second + 1024);
  EXPECT_EQ(chunk->next, nullptr);
  EXPECT_EQ(chunk->end, second + 2048);
  EXPECT_EQ(chunk->bump, second + 1536);
}

TEST_F(Chunks, NeighboursMergeWithWhatRemained) {
  XmPool* pool = make(0, 1024);
  uint8_t* first = take(pool, 1000);
  EXPECT_EQ(take(pool, 1024), first + 1000);
  EXPECT_EQ(pool->chunks->end, first + 2048);
  EXPECT_EQ(pool->chunks->next, nullptr);
}

TEST_F(Chunks, BlocksMergeAcrossTheSeamOfChunks) {
  XmPool* pool = make(0, 1024);
  uint8_t* first = take(pool, 1024);
  uint8_t* second = take(pool, 1024);
  ASSERT_EQ(second, first + 1024);
  xmfree(&host.vector, pool, second, 1024);
  xmfree(&host.vector, pool, first, 1024);
  EXPECT_EQ(test::freeBlocks(pool->chunks), (std::vector<test::Block>{{first, 2048}}));
}

TEST_F(Chunks, AChunkInBetweenKeepsThemApart) {
  XmPool* pool = make(0, 1024);
  take(pool, 1024);
  XmPool* other = make(1024, 0);
  take(pool, 1024);
  EXPECT_EQ(test::chunksOf(pool).size(), 2u);
  xmdestroy(&host.vector, other);
}

// A chunk that was reset counts as used; zero memory behind it makes it zero again from its fresh end on.
TEST_F(Chunks, ZeroMemoryBehindUsedMemoryClearsWhatRemained) {
  XmPool* pool = make(0, 1024, XM_ZERO);
  uint8_t* block = take(pool, 1024);
  std::memset(block, 0xAB, 1024);
  xmreset(&host.vector, pool);
  XmChunk* chunk = pool->chunks;
  ASSERT_EQ(chunk->state & XM_CHUNK_ZERO, 0u);
  take(pool, 512);
  uint8_t* across = take(pool, 1024);
  EXPECT_EQ(across, block + 512);
  EXPECT_EQ(chunk->state & XM_CHUNK_ZERO, XM_CHUNK_ZERO);
  EXPECT_TRUE(test::allBytes(across, 1024, 0));
}

TEST_F(Chunks, NewMemoryBringsItsZeroBitWhenNothingRemained) {
  XmPool* pool = make(0, 1024, XM_ZERO);
  take(pool, 1024);
  xmreset(&host.vector, pool);
  take(pool, 1024);
  ASSERT_EQ(pool->chunks->state & XM_CHUNK_ZERO, 0u);
  take(pool, 512);
  EXPECT_EQ(pool->chunks->state & XM_CHUNK_ZERO, XM_CHUNK_ZERO);
}

// Memory that isn't known to be zero takes the bit from the chunk that it continues.
TEST_F(Chunks, MemoryNotZeroTakesTheZeroBit) {
  XmPool* pool = make(0, 1024, XM_ZERO);
  take(pool, 512);
  ASSERT_EQ(pool->chunks->state & XM_CHUNK_ZERO, XM_CHUNK_ZERO);
  pool->flags &= ~XM_ZERO;
  take(pool, 1024);
  EXPECT_EQ(pool->chunks->next, nullptr);
  EXPECT_EQ(pool->chunks->state & XM_CHUNK_ZERO, 0u);
}

TEST_F(Chunks, MemoryUsedBeforeIsClearedForAZeroPool) {
  XmPool* used = make(8192, 0);
  std::memset(take(used, 8192), 0xAB, 8192);
  uint8_t* start = used->chunks->start;
  xmdestroy(&host.vector, used);
  XmPool* pool = make(8192, 0, XM_ZERO);
  ASSERT_EQ(pool->chunks->start, start);
  EXPECT_EQ(pool->chunks->state & XM_CHUNK_ZERO, XM_CHUNK_ZERO);
  EXPECT_TRUE(test::allBytes(take(pool, 8192), 8192, 0));
}

TEST_F(Chunks, InUseAndHighWaterFollowTheChunks) {
  const uint32_t before = context->inUse;
  XmPool* pool = make(4096, 2048);
  EXPECT_EQ(context->inUse, before + 4096);
  take(pool, 4096);
  take(pool, 2048);
  take(pool, 2048);
  EXPECT_EQ(context->inUse, before + 8192);
  EXPECT_EQ(context->highWater, before + 8192);
  xmdestroy(&host.vector, pool);
  EXPECT_EQ(context->inUse, before);
  EXPECT_EQ(context->highWater, before + 8192);
}

TEST_F(Chunks, BelowTheLimitInUseNothingGrowsButBlocksStillServe) {
  XmPool* pool = make(1024, 1024);
  EXPECT_EQ(xmsetlimit(&host.vector, context->inUse - 1), 0u);
  EXPECT_NE(take(pool, 1000), nullptr);
  EXPECT_EQ(take(pool, 32), nullptr);
  EXPECT_NE(take(pool, 24), nullptr);
  EXPECT_EQ(make(1024, 0), nullptr);
  EXPECT_NE(make(0, 0), nullptr);
  EXPECT_EQ(xmsysalloc(&host.vector, 1, nullptr), nullptr);
  xmsetlimit(&host.vector, UINT32_C(0x7FFFFFFF));
  EXPECT_NE(take(pool, 32), nullptr);
}

TEST_F(Chunks, TheLimitIsReachedExactly) {
  xmsetlimit(&host.vector, context->inUse + 1000);
  EXPECT_EQ(xmsysalloc(&host.vector, 1001, nullptr), nullptr);
  void* memory = xmsysalloc(&host.vector, 1000, nullptr);
  EXPECT_NE(memory, nullptr);
  EXPECT_EQ(xmsysalloc(&host.vector, 1, nullptr), nullptr);
  xmsysfree(&host.vector, memory, 1000);
  EXPECT_NE(xmsysalloc(&host.vector, 1, nullptr), nullptr);
}

// The sum is taken in 64 bits.
TEST_F(Chunks, AHugeSizeDoesNotWrapAroundTheLimit) {
  EXPECT_EQ(xmsysalloc(&host.vector, UINT32_MAX, nullptr), nullptr);
  xmsetlimit(&host.vector, UINT32_MAX);
  EXPECT_EQ(xmsysalloc(&host.vector, UINT32_MAX, nullptr), nullptr);
}

TEST_F(Chunks, AFailedGrowthLeavesNothing) {
  XmPool* pool = make(1024, 1024);
  take(pool, 1024);
  const uint32_t inUse = context->inUse;
  for (int n = 1;; ++n) {
    const test::RefuseNth refuse(host.memory, n);
    uint8_t* block = take(pool, 1024);
    if (block != nullptr) {
      EXPECT_FALSE(refuse.refused());
      // The request, its chunk's descriptor, its chunk's memory.
      EXPECT_EQ(n, 4);
      EXPECT_EQ(test::RefuseNth::sizes(), (std::vector<uint32_t>{1024, sizeof(XmChunk), 1024}));
      break;
    }
    EXPECT_TRUE(refuse.refused());
    EXPECT_EQ(context->inUse, inUse);
    EXPECT_EQ(test::chunksOf(pool).size(), 1u);
  }
}

// Whether the system lets so much memory be written to.
bool systemGives(size_t size) {
  void* pages = mmap(nullptr, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (pages == MAP_FAILED) return false;
  const bool given = mprotect(pages, size, PROT_READ | PROT_WRITE) == 0;
  munmap(pages, size);
  return given;
}

TEST_F(Chunks, AChunkAboveTwoGibibytesServes) {
#if defined(VELDNLS_ADDRESS_SANITIZER)
  GTEST_SKIP() << "the sanitizer would mark gigabytes";
#endif
  constexpr uint32_t size = UINT32_C(0xC0000000);
  if (!systemGives(size)) GTEST_SKIP() << "this system doesn't give 3 GiB";
  xmsetlimit(&host.vector, UINT32_MAX);
  XmPool* pool = make(1024, 1024);
  uint8_t* block = take(pool, size);
  ASSERT_NE(block, nullptr);
  block[size - 1] = 1;
  xmfree(&host.vector, pool, block, static_cast<int32_t>(size));
  EXPECT_EQ(test::freeBlocks(pool->chunks->next), (std::vector<test::Block>{{block, size}}));
  EXPECT_EQ(take(pool, size), block);
  xmdestroy(&host.vector, pool);
}

}  // namespace
