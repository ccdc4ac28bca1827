// Mark-style pools.
#include <gtest/gtest.h>

#include <cstring>

#include "hs/pools_host.h"

namespace {

class Mark : public testing::Test {
 protected:
  XmPool* make(uint32_t initial, uint32_t extension, uint32_t flags = 0) {
    return xmcreate(&host.vector, initial, extension, flags | XM_MARK_STYLE);
  }
  uint8_t* take(XmPool* pool, uint32_t size, uint32_t flags = 0) {
    return static_cast<uint8_t*>(xmalloc(&host.vector, pool, size, flags));
  }

  test::HostRecords host;
};

TEST_F(Mark, KindFollowsTheFlag) { EXPECT_EQ(make(1024, 0)->kind, XM_KIND_MARK); }

TEST_F(Mark, SizesRoundToEightWithoutHeader) {
  XmPool* pool = make(1024, 0, XM_LENGTH_HEADER);
  uint8_t* start = pool->chunks->start;
  EXPECT_EQ(take(pool, 1), start);
  EXPECT_EQ(take(pool, 9), start + 8);
  EXPECT_EQ(take(pool, 8), start + 24);
}

TEST_F(Mark, FreeFreesNothingAndResetReclaimsAll) {
  XmPool* pool = make(1024, 0);
  uint8_t* start = pool->chunks->start;
  uint8_t* block = take(pool, 1024);
  EXPECT_EQ(block, start);
  EXPECT_EQ(pool->chunks->bump, nullptr);
  xmfree(&host.vector, pool, block, 1024);
  xmfree(&host.vector, pool, block, XM_SIZE_IN_HEADER);
  EXPECT_EQ(take(pool, 8), nullptr);
  EXPECT_EQ(xmreset(&host.vector, pool), 0u);
  EXPECT_EQ(take(pool, 1024), start);
}

TEST_F(Mark, NewChunksAreTakenFromAtTheHead) {
  XmPool* pool = make(1024, 2048);
  XmChunk* first = pool->chunks;
  take(pool, 1000);
  uint8_t* block = take(pool, 2049);
  ASSERT_NE(pool->chunks, first);
  EXPECT_EQ(pool->chunks->start, block);
  EXPECT_EQ(pool->chunks->end - pool->chunks->start, 4096);
  EXPECT_EQ(pool->chunks->next, first);
  // The room that is left in the first chunk serves what fits there, and moves it to the head.
  EXPECT_EQ(take(pool, 2048 - 8), block + 2056);
  EXPECT_EQ(take(pool, 16), first->start + 1000);
  EXPECT_EQ(pool->chunks, first);
  // The chunk at the head is asked first.
  EXPECT_EQ(take(pool, 8), first->start + 1016);
  EXPECT_EQ(first->bump, nullptr);
}

// The room of an older chunk counts before its memory is continued.
TEST_F(Mark, MemoryThatContinuesAnOlderChunkIsTakenWhereItStopped) {
  XmPool* pool = make(0, 1024);
  uint8_t* block = take(pool, 1000);
  XmChunk* chunk = pool->chunks;
  EXPECT_EQ(take(pool, 100), block + 1000);
  EXPECT_EQ(pool->chunks, chunk);
  EXPECT_EQ(chunk->next, nullptr);
  EXPECT_EQ(chunk->end - chunk->start, 2048);
}

TEST_F(Mark, ZeroFlagClears) {
  XmPool* pool = make(1024, 0);
  std::memset(take(pool, 512), 0xAB, 512);
  xmreset(&host.vector, pool);
  EXPECT_TRUE(test::allBytes(take(pool, 256, XM_ZERO), 256, 0));
}

}  // namespace
