// AddressSanitizer sees into pools: what the allocator holds can't be touched.
#include <gtest/gtest.h>

#include "hs/pools_host.h"
#include "hs/src/poison.h"
#include "support/death.h"

namespace {

#ifdef VELDNLS_ADDRESS_SANITIZER

using veldnls::hs::isClosed;

class Poison : public testing::Test {
 protected:
  uint8_t* take(XmPool* pool, uint32_t size) { return static_cast<uint8_t*>(xmalloc(&host.vector, pool, size, 0)); }

  test::HostRecords host;
};

TEST_F(Poison, UseAfterFreeIsSeen) {
  XmPool* pool = xmcreate(&host.vector, 1024, 0, XM_LENGTH_HEADER);
  uint8_t* block = take(pool, 64);
  const test::Ending fine = test::runInChild([&] { *const_cast<volatile uint8_t*>(block + 63) = 1; });
  EXPECT_EQ(fine.errors, "");
  const test::Ending ending = test::runInChild([&] {
    xmfree(&host.vector, pool, block, XM_SIZE_IN_HEADER);
    *const_cast<volatile uint8_t*>(block + 63) = 1;
  });
  EXPECT_TRUE(ending.signal != 0 || ending.exitCode != 0);
  EXPECT_NE(ending.errors.find("use-after-poison"), std::string::npos) << ending.errors;
}

TEST_F(Poison, OnlyWhatWasAskedForIsOpen) {
  XmPool* pool = xmcreate(&host.vector, 1024, 0, XM_LENGTH_HEADER);
  uint8_t* block = take(pool, 13);
  EXPECT_TRUE(isClosed(block - 8));
  EXPECT_TRUE(isClosed(block - 1));
  EXPECT_FALSE(isClosed(block));
  EXPECT_FALSE(isClosed(block + 12));
  EXPECT_TRUE(isClosed(block + 13));
  EXPECT_TRUE(isClosed(block + 24));
}

TEST_F(Poison, ClearingKeepsTheRestClosed) {
  XmPool* pool = xmcreate(&host.vector, 1024, 0, XM_ZERO);
  uint8_t* block = take(pool, 64);
  xmfree(&host.vector, pool, block, 64);
  EXPECT_EQ(take(pool, 61), block);
  EXPECT_FALSE(isClosed(block + 60));
  EXPECT_TRUE(isClosed(block + 61));
}

TEST_F(Poison, ResetAndDestroyClose) {
  XmPool* pool = xmcreate(&host.vector, 1024, 0, XM_MARK_STYLE);
  uint8_t* block = take(pool, 64);
  xmreset(&host.vector, pool);
  EXPECT_TRUE(isClosed(block));
  block = take(pool, 64);
  EXPECT_FALSE(isClosed(block));
  const XmChunk* chunk = pool->chunks;
  xmdestroy(&host.vector, pool);
  EXPECT_TRUE(isClosed(block));
  EXPECT_TRUE(isClosed(chunk));
  EXPECT_TRUE(isClosed(pool));
}

// Pages that went back to the system may serve others.
TEST_F(Poison, ReturnedPagesAreOpen) {
  XmPool* pool = xmcreate(&host.vector, 65536, 0, XM_EXECUTABLE);
  const uint8_t* start = pool->chunks->start;
  EXPECT_TRUE(isClosed(start));
  xmdestroy(&host.vector, pool);
  EXPECT_FALSE(isClosed(start));
}

#endif

}  // namespace
