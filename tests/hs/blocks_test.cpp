// Pools of variable blocks: sizes, placement, free chain.
#include <gtest/gtest.h>

#include <cstring>

#include "hs/pools_host.h"
#include "hs/src/poison.h"
#include "support/guard.h"

namespace {

using test::Block;
using test::freeBlocks;

class Blocks : public testing::Test {
 protected:
  XmPool* make(uint32_t initial, uint32_t extension, uint32_t flags = 0) {
    return xmcreate(&host.vector, initial, extension, flags);
  }
  uint8_t* take(XmPool* pool, uint32_t size, uint32_t flags = 0) {
    return static_cast<uint8_t*>(xmalloc(&host.vector, pool, size, flags));
  }
  void give(XmPool* pool, void* block, int32_t size) { xmfree(&host.vector, pool, block, size); }

  test::HostRecords host;
};

TEST_F(Blocks, SizeZeroGivesOneWhichIsNoMemory) {
  XmPool* pool = make(1024, 0);
  EXPECT_EQ(take(pool, 0), XM_NO_BYTES);
  give(pool, XM_NO_BYTES, 0);
  give(pool, XM_NO_BYTES, XM_SIZE_IN_HEADER);
  give(pool, nullptr, 0);
  give(pool, nullptr, XM_SIZE_IN_HEADER);
  EXPECT_EQ(pool->chunks->bump, pool->chunks->start);
  EXPECT_EQ(pool->chunks->freeChain, nullptr);
}

TEST_F(Blocks, NullHandleIsNoPool) {
  EXPECT_EQ(take(nullptr, 0), nullptr);
  EXPECT_EQ(take(nullptr, 8), nullptr);
  uint64_t memory = 0;
  give(nullptr, &memory, 8);
}

TEST_F(Blocks, SizesRoundToEight) {
  XmPool* pool = make(1024, 0);
  uint8_t* start = pool->chunks->start;
  EXPECT_EQ(take(pool, 1), start);
  EXPECT_EQ(take(pool, 8), start + 8);
  EXPECT_EQ(take(pool, 9), start + 16);
  EXPECT_EQ(take(pool, 1), start + 32);
}

TEST_F(Blocks, LengthHeaderOfOneCallAddsEight) {
  XmPool* pool = make(1024, 0);
  uint8_t* start = pool->chunks->start;
  uint8_t* headed = take(pool, 9, XM_LENGTH_HEADER);
  EXPECT_EQ(headed, start + 8);
  EXPECT_EQ(veldnls::hs::readClosed<uint32_t>(start), 24u);
  EXPECT_EQ(take(pool, 8), start + 24);
  give(pool, headed, XM_SIZE_IN_HEADER);
  EXPECT_EQ(freeBlocks(pool->chunks), (std::vector<Block>{{start, 24}}));
}

TEST_F(Blocks, LengthHeaderOfPoolRoundsToSixteen) {
  XmPool* pool = make(1024, 0, XM_LENGTH_HEADER);
  uint8_t* start = pool->chunks->start;
  EXPECT_EQ(take(pool, 1), start + 8);
  EXPECT_EQ(take(pool, 8), start + 16 + 8);
  EXPECT_EQ(take(pool, 9), start + 32 + 8);
  EXPECT_EQ(take(pool, 24), start + 64 + 8);
  EXPECT_EQ(pool->chunks->bump, start + 96);
  EXPECT_EQ(veldnls::hs::readClosed<uint32_t>(start + 32), 32u);
}

// In a pool with headers the size of xmfree isn't looked at.
TEST_F(Blocks, PoolWithHeadersFreesByTheHeader) {
  XmPool* pool = make(1024, 0, XM_LENGTH_HEADER);
  uint8_t* block = take(pool, 40);
  take(pool, 8);
  give(pool, block, 3);
  EXPECT_EQ(freeBlocks(pool->chunks), (std::vector<Block>{{block - 8, 48}}));
}

TEST_F(Blocks, FreedSizeRoundsToEight) {
  XmPool* pool = make(1024, 0);
  uint8_t* block = take(pool, 13);
  take(pool, 8);
  give(pool, block, 13);
  EXPECT_EQ(freeBlocks(pool->chunks), (std::vector<Block>{{block, 16}}));
}

TEST_F(Blocks, FreeAndTakeAgainGivesTheSameAddress) {
  for (const uint32_t flags : {0u, XM_LENGTH_HEADER}) {
    XmPool* pool = make(4096, 0, flags);
    take(pool, 24);
    uint8_t* block = take(pool, 100);
    take(pool, 24);
    give(pool, block, 100);
    EXPECT_EQ(take(pool, 100), block);
    EXPECT_EQ(pool->chunks->freeChain, nullptr);
  }
}

TEST_F(Blocks, FirstLargerBlockIsSplitAndItsFrontTaken) {
  XmPool* pool = make(1024, 0);
  uint8_t* small = take(pool, 16);
  take(pool, 8);
  uint8_t* large = take(pool, 64);
  take(pool, 8);
  give(pool, small, 16);
  give(pool, large, 64);
  EXPECT_EQ(take(pool, 24), large);
  EXPECT_EQ(freeBlocks(pool->chunks), (std::vector<Block>{{small, 16}, {large + 24, 40}}));
  EXPECT_EQ(take(pool, 32), large + 24);
  // A remainder of 8 bytes is a block too.
  EXPECT_EQ(freeBlocks(pool->chunks), (std::vector<Block>{{small, 16}, {large + 56, 8}}));
  EXPECT_EQ(take(pool, 8), small);
  EXPECT_EQ(take(pool, 8), small + 8);
  EXPECT_EQ(take(pool, 8), large + 56);
  EXPECT_EQ(pool->chunks->freeChain, nullptr);
}

// The chain goes by addresses: a larger block that comes first is split before an exact one is seen.
TEST_F(Blocks, TheWalkStopsAtTheFirstLargerBlock) {
  XmPool* pool = make(1024, 0);
  uint8_t* large = take(pool, 64);
  take(pool, 8);
  uint8_t* exact = take(pool, 16);
  take(pool, 8);
  give(pool, exact, 16);
  give(pool, large, 64);
  EXPECT_EQ(take(pool, 16), large);
  EXPECT_EQ(freeBlocks(pool->chunks), (std::vector<Block>{{large + 16, 48}, {exact, 16}}));
}

TEST_F(Blocks, LastFreeBlockGrowsIntoFreshMemory) {
  XmPool* pool = make(1024, 0);
  uint8_t* first = take(pool, 16);
  take(pool, 8);
  uint8_t* last = take(pool, 32);
  give(pool, first, 16);
  give(pool, last, 32);
  EXPECT_EQ(take(pool, 48), last);
  EXPECT_EQ(pool->chunks->bump, last + 48);
  EXPECT_EQ(freeBlocks(pool->chunks), (std::vector<Block>{{first, 16}}));
}

TEST_F(Blocks, LastFreeBlockGrowsUpToTheEnd) {
  XmPool* pool = make(1024, 0);
  uint8_t* start = pool->chunks->start;
  uint8_t* block = take(pool, 512);
  give(pool, block, 512);
  EXPECT_EQ(take(pool, 1032), nullptr);
  EXPECT_EQ(take(pool, 1024), start);
  EXPECT_EQ(pool->chunks->bump, nullptr);
  EXPECT_EQ(pool->chunks->freeChain, nullptr);
}

// A free block that doesn't end at the fresh memory stays, and fresh memory is taken.
TEST_F(Blocks, FreeBlockApartFromFreshMemoryIsLeft) {
  XmPool* pool = make(1024, 0);
  uint8_t* block = take(pool, 32);
  uint8_t* kept = take(pool, 8);
  give(pool, block, 32);
  EXPECT_EQ(take(pool, 40), kept + 8);
  EXPECT_EQ(freeBlocks(pool->chunks), (std::vector<Block>{{block, 32}}));
}

TEST_F(Blocks, NeighboursMergeInEveryOrder) {
  const int orders[][3] = {{0, 1, 2}, {0, 2, 1}, {1, 0, 2}, {1, 2, 0}, {2, 0, 1}, {2, 1, 0}};
  for (const auto& order : orders) {
    XmPool* pool = make(1024, 0);
    uint8_t* blocks[3];
    for (uint8_t*& block : blocks) block = take(pool, 24);
    take(pool, 8);
    for (const int index : order) give(pool, blocks[index], 24);
    EXPECT_EQ(freeBlocks(pool->chunks), (std::vector<Block>{{blocks[0], 72}}));
  }
}

TEST_F(Blocks, BlocksApartStayApartInAddressOrder) {
  XmPool* pool = make(1024, 0);
  uint8_t* blocks[5];
  for (uint8_t*& block : blocks) block = take(pool, 16);
  give(pool, blocks[4], 16);
  give(pool, blocks[0], 16);
  give(pool, blocks[2], 16);
  EXPECT_EQ(freeBlocks(pool->chunks), (std::vector<Block>{{blocks[0], 16}, {blocks[2], 16}, {blocks[4], 16}}));
}

TEST_F(Blocks, AddressInNoChunkIsIgnored) {
  XmPool* pool = make(1024, 0);
  XmPool* other = make(1024, 0);
  uint8_t* foreign = take(other, 16);
  give(pool, foreign, 16);
  EXPECT_EQ(pool->chunks->freeChain, nullptr);
  EXPECT_EQ(other->chunks->freeChain, nullptr);
}

// What stands before a foreign address isn't looked at: here it can't even be read.
TEST_F(Blocks, ForeignHeaderIsNotRead) {
  XmPool* pool = make(1024, 0);
  test::GuardedBuffer foreign(16, test::GuardedBuffer::At::start);
  give(pool, foreign.data(), XM_SIZE_IN_HEADER);
  EXPECT_EQ(pool->chunks->freeChain, nullptr);
}

// The header would begin before the chunk, or end behind it.
TEST_F(Blocks, HeaderOutsideTheChunkIsNotRead) {
  XmPool* pool = make(1024, 0);
  uint8_t* start = pool->chunks->start;
  take(pool, 1024);
  give(pool, start, XM_SIZE_IN_HEADER);
  give(pool, start + 1028, XM_SIZE_IN_HEADER);
  EXPECT_EQ(pool->chunks->freeChain, nullptr);
}

TEST_F(Blocks, PoolThatCannotGrowIsFullWithItsFirstChunk) {
  XmPool* pool = make(1024, 0);
  EXPECT_NE(take(pool, 1000), nullptr);
  EXPECT_EQ(take(pool, 32), nullptr);
  EXPECT_NE(take(pool, 24), nullptr);
  EXPECT_EQ(pool->chunks->bump, nullptr);
  EXPECT_EQ(take(pool, 1), nullptr);
}

TEST_F(Blocks, SizesThatCannotBeRoundedGiveNull) {
  XmPool* pool = make(1024, 1024, XM_LENGTH_HEADER);
  EXPECT_EQ(take(pool, UINT32_MAX), nullptr);
  EXPECT_EQ(take(pool, UINT32_MAX - 8), nullptr);
  EXPECT_EQ(take(pool, UINT32_MAX - 2048), nullptr);
  EXPECT_NE(take(pool, 8), nullptr);
}

TEST_F(Blocks, ZeroFlagClearsUsedMemory) {
  XmPool* pool = make(1024, 0);
  uint8_t* block = take(pool, 64);
  take(pool, 8);
  std::memset(block, 0xAB, 64);
  give(pool, block, 64);
  EXPECT_EQ(take(pool, 64, XM_ZERO), block);
  EXPECT_TRUE(test::allBytes(block, 64, 0));
}

TEST_F(Blocks, ZeroFlagKeepsTheHeader) {
  XmPool* pool = make(1024, 0, XM_LENGTH_HEADER | XM_ZERO);
  uint8_t* block = take(pool, 56);
  take(pool, 8);
  std::memset(block, 0xAB, 56);
  give(pool, block, XM_SIZE_IN_HEADER);
  EXPECT_EQ(take(pool, 56), block);
  EXPECT_TRUE(test::allBytes(block, 56, 0));
  EXPECT_EQ(veldnls::hs::readClosed<uint32_t>(block - 8), 64u);
}

// A block that takes in fresh memory is partly used.
TEST_F(Blocks, ZeroFlagClearsABlockGrownIntoFreshMemory) {
  XmPool* pool = make(1024, 0, XM_ZERO);
  uint8_t* block = take(pool, 64);
  std::memset(block, 0xAB, 64);
  give(pool, block, 64);
  EXPECT_EQ(take(pool, 128), block);
  EXPECT_TRUE(test::allBytes(block, 128, 0));
}

TEST_F(Blocks, ResetFreesAllAndKeepsTheChunks) {
  XmPool* pool = make(1024, 1024, XM_ZERO);
  uint8_t* first = take(pool, 64);
  std::memset(first, 0xAB, 64);
  take(pool, 1000);
  take(pool, 2000);
  give(pool, first, 64);
  const size_t chunks = test::chunksOf(pool).size();
  EXPECT_EQ(xmreset(&host.vector, pool), 0u);
  EXPECT_EQ(test::chunksOf(pool).size(), chunks);
  for (const XmChunk* chunk : test::chunksOf(pool)) {
    EXPECT_EQ(chunk->bump, chunk->start);
    EXPECT_EQ(chunk->freeChain, nullptr);
    EXPECT_EQ(chunk->state & XM_CHUNK_ZERO, 0u);
  }
  // What was used is no longer taken for zero.
  EXPECT_EQ(take(pool, 64), first);
  EXPECT_TRUE(test::allBytes(first, 64, 0));
}

TEST_F(Blocks, ResetOfNoPool) { EXPECT_EQ(xmreset(&host.vector, nullptr), xmNullPool); }

}  // namespace
