// What the allocator says of callers' errors.
#include <gtest/gtest.h>

#include <csignal>
#include <cstring>

#include "hs/pools_host.h"
#include "hs/src/poison.h"
#include "support/death.h"

namespace {

constexpr char overlap[] = "xmfree() ERROR: free chain overlap detected!";

class Messages : public testing::Test {
 protected:
  uint8_t* take(XmPool* from, uint32_t size) { return static_cast<uint8_t*>(xmalloc(&host.vector, from, size, 0)); }
  void give(XmPool* to, void* block, int32_t size) { xmfree(&host.vector, to, block, size); }

  test::HostRecords host;
  XmPool* pool = xmcreate(&host.vector, 1024, 0, 0);
  XmPool* headed = xmcreate(&host.vector, 1024, 0, XM_LENGTH_HEADER);
};

TEST_F(Messages, ZeroLengthInTheHeaderCrashes) {
  uint8_t* block = take(headed, 32);
  veldnls::hs::writeClosed(block - 8, uint32_t{0});
  const test::Ending ending = test::runInChild([&] { give(headed, block, XM_SIZE_IN_HEADER); });
  EXPECT_EQ(ending.signal, SIGSEGV);
  EXPECT_EQ(ending.output, "BAD LEN ****\nBAD LEB ****\n");
  EXPECT_EQ(ending.errors, "");
}

// Less than the smallest block is as good as nothing.
TEST_F(Messages, LengthInTheHeaderBelowABlockCrashes) {
  uint8_t* block = take(headed, 32);
  veldnls::hs::writeClosed(block - 8, uint32_t{7});
  const test::Ending ending = test::runInChild([&] { give(headed, block, XM_SIZE_IN_HEADER); });
  EXPECT_EQ(ending.signal, SIGSEGV);
  EXPECT_EQ(ending.output, "BAD LEN ****\nBAD LEB ****\n");
}

TEST_F(Messages, OddLengthInTheHeaderIsRoundedDown) {
  uint8_t* block = take(headed, 32);
  take(headed, 8);
  veldnls::hs::writeClosed(block - 8, uint32_t{29});
  give(headed, block, XM_SIZE_IN_HEADER);
  EXPECT_EQ(test::freeBlocks(headed->chunks), (std::vector<test::Block>{{block - 8, 24}}));
}

TEST_F(Messages, ZeroSizeWithoutHeaderCrashesToo) {
  uint8_t* block = take(pool, 32);
  const test::Ending ending = test::runInChild([&] { give(pool, block, 0); });
  EXPECT_EQ(ending.signal, SIGSEGV);
  EXPECT_EQ(ending.output, "BAD LEN ****\nBAD LEB ****\n");
}

TEST_F(Messages, DoubleFreeIsReportedAndDoesNotHang) {
  for (XmPool* which : {pool, headed}) {
    uint8_t* block = take(which, 40);
    take(which, 8);
    const test::Ending ending = test::runInChild([&] {
      give(which, block, 40);
      const auto chain = test::freeBlocks(which->chunks);
      give(which, block, 40);
      if (test::freeBlocks(which->chunks) != chain) std::abort();
      if (take(which, 40) != block || take(which, 40) == block) std::abort();
    });
    EXPECT_EQ(ending.signal, 0);
    EXPECT_EQ(ending.errors, overlap);
    EXPECT_EQ(ending.output, "");
  }
}

// The block has become part of a larger one.
TEST_F(Messages, DoubleFreeInsideAMergedBlockIsNotLinkedAgain) {
  uint8_t* blocks[3];
  for (uint8_t*& block : blocks) block = take(pool, 16);
  take(pool, 8);
  const test::Ending ending = test::runInChild([&] {
    for (uint8_t* block : blocks) give(pool, block, 16);
    for (uint8_t* block : blocks) give(pool, block, 16);
    const auto chain = test::freeBlocks(pool->chunks);
    if (chain != std::vector<test::Block>{{blocks[0], 48}}) std::abort();
  });
  EXPECT_EQ(ending.signal, 0);
  EXPECT_EQ(ending.errors, std::string(overlap) + overlap + overlap);
}

TEST_F(Messages, OverlapWithTheBlockBeforeIsLinked) {
  uint8_t* block = take(pool, 64);
  take(pool, 8);
  const test::Ending ending = test::runInChild([&] {
    give(pool, block, 32);
    give(pool, block + 16, 48);
    const auto chain = test::freeBlocks(pool->chunks);
    if (chain != std::vector<test::Block>{{block, 32}, {block + 16, 48}}) std::abort();
  });
  EXPECT_EQ(ending.signal, 0);
  EXPECT_EQ(ending.errors, overlap);
}

TEST_F(Messages, OverlapWithTheNextBlockIsLinked) {
  uint8_t* block = take(pool, 64);
  take(pool, 8);
  const test::Ending ending = test::runInChild([&] {
    give(pool, block + 32, 32);
    give(pool, block, 48);
    const auto chain = test::freeBlocks(pool->chunks);
    if (chain != std::vector<test::Block>{{block, 48}, {block + 32, 32}}) std::abort();
  });
  EXPECT_EQ(ending.signal, 0);
  EXPECT_EQ(ending.errors, overlap);
}

TEST_F(Messages, ABlockPastTheEndOfItsChunkIsReported) {
  uint8_t* block = take(pool, 1024);
  const test::Ending ending = test::runInChild([&] {
    give(pool, block + 512, 1024);
    const auto chain = test::freeBlocks(pool->chunks);
    if (chain != std::vector<test::Block>{{block + 512, 1024}}) std::abort();
  });
  EXPECT_EQ(ending.signal, 0);
  EXPECT_EQ(ending.errors, overlap);
}

// What is allocated afterwards ends with the chunk, however far the block was said to reach.
TEST_F(Messages, AnAllocationAfterAFreePastTheEndStaysInTheChunk) {
  uint8_t* block = take(pool, 1024);
  const test::Ending ending = test::runInChild([&] {
    give(pool, block + 512, 1024);
    if (take(pool, 600) != nullptr) std::abort();
    if (take(pool, 500) != block + 512) std::abort();
    if (test::freeBlocks(pool->chunks) != std::vector<test::Block>{{block + 1016, 8}}) std::abort();
    if (take(pool, 8) != block + 1016 || take(pool, 8) != nullptr) std::abort();
  });
  EXPECT_EQ(ending.signal, 0);
  EXPECT_EQ(ending.errors, overlap);
}

// -2 as a length is nearly 4 GiB.
TEST_F(Messages, ANegativeLengthGivesNoMoreThanThereIs) {
  uint8_t* block = take(pool, 64);
  const test::Ending ending = test::runInChild([&] {
    give(pool, block, -2);
    if (take(pool, 100'000) != nullptr) std::abort();
    if (take(pool, 1024) != block) std::abort();
  });
  EXPECT_EQ(ending.signal, 0);
  EXPECT_EQ(ending.errors, overlap);
}

// Not even the record of a free block has room there.
TEST_F(Messages, ABlockInTheLastBytesIsReportedAndNotLinked) {
  uint8_t* block = take(pool, 1024);
  uint8_t* neighbour = take(headed, 8) - 8;
  ASSERT_EQ(neighbour, block + 1024);
  const auto header = veldnls::hs::readClosed<uint64_t>(neighbour);
  const test::Ending ending = test::runInChild([&] {
    give(pool, block + 1020, 8);
    if (pool->chunks->freeChain != nullptr) std::abort();
    if (veldnls::hs::readClosed<uint64_t>(neighbour) != header) std::abort();
  });
  EXPECT_EQ(ending.signal, 0);
  EXPECT_EQ(ending.errors, overlap);
}

TEST_F(Messages, AnExactFitToTheEndIsSilent) {
  uint8_t* block = take(pool, 1024);
  const test::Ending ending = test::runInChild([&] { give(pool, block, 1024); });
  EXPECT_EQ(ending.signal, 0);
  EXPECT_EQ(ending.errors, "");
}

TEST_F(Messages, AllocationOrExit) {
  auto* block = static_cast<uint8_t*>(xmallocOrExit(&host.vector, 100));
  EXPECT_TRUE(test::allBytes(block, 100, 0));
  xmfree(&host.vector, XM_THREAD_POOL, block, XM_SIZE_IN_HEADER);
  EXPECT_EQ(xmallocOrExit(&host.vector, 0), XM_NO_BYTES);
  const test::Ending ending = test::runInChild([&] {
    const test::RefuseNth refuse(host.memory, 1);
    xmallocOrExit(&host.vector, 100);
  });
  EXPECT_EQ(ending.signal, 0);
  EXPECT_EQ(ending.exitCode, 1);
}

}  // namespace
