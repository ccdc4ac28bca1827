// Memory of chunks: neighbours, reuse, what the system gets back.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "hs/pools_host.h"
#include "hs/src/poison.h"
#include "support/death.h"

namespace {

constexpr uint32_t mebibyte = 1 << 20;

class Ranges : public testing::Test {
 protected:
  uint8_t* take(uint32_t size, int* zero = nullptr) {
    return static_cast<uint8_t*>(xmsysalloc(&host.vector, size, zero));
  }
  void give(void* memory, uint32_t size) { xmsysfree(&host.vector, memory, size); }

  test::HostRecords host;
  XmContext* context = host.memory.context;
};

// Pages of the address space of this process.
long addressSpacePages() {
  long pages = 0;
  std::FILE* file = std::fopen("/proc/self/statm", "r");
  if (file == nullptr || std::fscanf(file, "%ld", &pages) != 1) pages = -1;
  if (file != nullptr) std::fclose(file);
  return pages;
}

size_t residentPages(uint8_t* memory, size_t size) {
  const auto page = static_cast<size_t>(4096);
  std::vector<unsigned char> present(size / page);
  if (mincore(memory, size, present.data()) != 0) return SIZE_MAX;
  size_t count = 0;
  for (const unsigned char entry : present) count += entry & 1;
  return count;
}

TEST_F(Ranges, PiecesAreNeighboursInGranules) {
  uint8_t* first = take(1);
  EXPECT_EQ(reinterpret_cast<uintptr_t>(first) % 1024, 0u);
  EXPECT_EQ(take(1024), first + 1024);
  EXPECT_EQ(take(1025), first + 2048);
  EXPECT_EQ(take(8), first + 4096);
}

TEST_F(Ranges, NothingIsNoMemory) { EXPECT_EQ(take(0), nullptr); }

TEST_F(Ranges, NeighboursAreGivenBackAtOnce) {
  const uint32_t inUse = context->inUse;
  uint8_t* first = take(2048);
  take(4096);
  give(first, 2048 + 4096);
  EXPECT_EQ(context->inUse, inUse);
  EXPECT_EQ(take(6144), first);
}

TEST_F(Ranges, TheLowestRoomThatFitsIsTaken) {
  uint8_t* small = take(1024);
  take(1024);
  uint8_t* large = take(4096);
  uint8_t* last = take(1024);
  give(small, 1024);
  give(large, 4096);
  EXPECT_EQ(take(2048), large);
  EXPECT_EQ(take(2048), large + 2048);
  EXPECT_EQ(take(1024), small);
  EXPECT_EQ(take(1024), last + 1024);
}

TEST_F(Ranges, WhatIsNotHandedOutIsIgnored) {
  uint8_t* memory = take(4096);
  const uint32_t inUse = context->inUse;
  uint64_t foreign[4] = {};
  give(foreign, sizeof foreign);
  give(nullptr, 1024);
  give(memory, 8192);
  EXPECT_EQ(context->inUse, inUse);
  // Inside what is handed out, but not where a piece can begin.
  give(memory + 8, 1024);
  give(memory + 1023, 1);
  EXPECT_EQ(context->inUse, inUse);
  give(memory, 4096);
  give(memory, 4096);
  EXPECT_EQ(context->inUse, inUse - 4096);
}

// Pieces of odd sizes that are given back together: the account ends at nothing.
TEST_F(Ranges, TheAccountDoesNotFallBelowZero) {
  uint8_t* first = take(1);
  take(1024);
  context->inUse = 1025;
  give(first, 2048);
  EXPECT_EQ(context->inUse, 0u);
}

// A range that can't be made accessible goes back at once.
TEST_F(Ranges, FailedAccessLeavesNoRange) {
#if defined(VELDNLS_ADDRESS_SANITIZER)
  GTEST_SKIP() << "the sanitizer's own memory counts against the limit of the system";
#endif
  if (test::threadSanitizer) GTEST_SKIP() << "the sanitizer's own memory counts against the limit of the system";
  constexpr int notLimited = 77;
  const test::Ending ending = test::runInChild([&] {
    const rlimit limit{32 * size_t{mebibyte}, 32 * size_t{mebibyte}};
    if (setrlimit(RLIMIT_DATA, &limit) != 0) _exit(notLimited);
    void* probe = mmap(nullptr, 100 * size_t{mebibyte}, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (probe != MAP_FAILED) _exit(notLimited);
    const long before = addressSpacePages();
    for (int i = 0; i < 10; ++i) {
      if (take(100 * mebibyte) != nullptr) std::abort();
    }
    if (addressSpacePages() > before + 256) std::abort();
    if (take(1024) == nullptr) std::abort();
  });
  if (ending.exitCode == notLimited) GTEST_SKIP() << "this system doesn't limit the data of a process";
  EXPECT_EQ(ending.signal, 0);
}

TEST_F(Ranges, ZeroIsAskedFor) {
  uint8_t* memory = take(4096);
  std::memset(memory, 0xAB, 4096);
  give(memory, 4096);
  int zero = 1;
  // Partly used before, partly fresh.
  EXPECT_EQ(take(8192, &zero), memory);
  EXPECT_EQ(zero, 1);
  EXPECT_TRUE(test::allBytes(memory, 8192, 0));
  zero = 0;
  take(1024, &zero);
  EXPECT_EQ(zero, 0);
}

TEST_F(Ranges, APieceAboveTheRangeGetsItsOwn) {
  const long before = addressSpacePages();
  uint8_t* large = take(200 * mebibyte);
  ASSERT_NE(large, nullptr);
  large[0] = large[200 * size_t{mebibyte} - 1] = 1;
  uint8_t* small = take(1024);
  EXPECT_TRUE(small < large || small >= large + 200 * size_t{mebibyte});
  EXPECT_GE(addressSpacePages(), before + 200 * 256);
  give(large, 200 * mebibyte);
  EXPECT_LT(addressSpacePages(), before + 256);
}

TEST_F(Ranges, SeveralRangesServeAndEnd) {
  const long before = addressSpacePages();
  std::vector<uint8_t*> pieces;
  for (int i = 0; i < 10; ++i) {
    pieces.push_back(take(30 * mebibyte));
    ASSERT_NE(pieces.back(), nullptr);
    pieces.back()[0] = pieces.back()[30 * mebibyte - 1] = 1;
  }
  for (uint8_t* piece : pieces) give(piece, 30 * mebibyte);
  EXPECT_LT(addressSpacePages(), before + 256);
  EXPECT_NE(take(1024), nullptr);
}

TEST_F(Ranges, CreateAndDestroyDoesNotGrowTheAddressSpace) {
  long after = 0;
  for (int i = 0; i < 2000; ++i) {
    XmPool* pool = xmcreate(&host.vector, 4096, 8192, 0);
    for (uint32_t size = 1; size < 200'000; size *= 3) ASSERT_NE(xmalloc(&host.vector, pool, size, 0), nullptr);
    xmdestroy(&host.vector, pool);
    if (i == 10) after = addressSpacePages();
  }
  EXPECT_LE(addressSpacePages(), after + 64);
}

TEST_F(Ranges, LargeMemoryGivenBackLeavesTheSystem) {
  constexpr uint32_t size = 16 * mebibyte;
  uint8_t* memory = take(size);
  std::memset(memory, 1, size);
  auto* firstPage = reinterpret_cast<uint8_t*>((reinterpret_cast<uintptr_t>(memory) + 4095) / 4096 * 4096);
  EXPECT_GE(residentPages(firstPage, size - 8192), 4000u);
  give(memory, size);
  EXPECT_LT(residentPages(firstPage, size - 8192), 64u);
}

TEST(RangesOfContexts, CyclesOfContextsLeaveNothing) {
  long after = 0;
  for (int i = 0; i < 200; ++i) {
    test::HostRecords host;
    EXPECT_NE(xmalloc(&host.vector, XM_THREAD_POOL, 100'000, 0), nullptr);
    if (i == 10) after = addressSpacePages();
  }
  EXPECT_LE(addressSpacePages(), after + 256);
}

}  // namespace
