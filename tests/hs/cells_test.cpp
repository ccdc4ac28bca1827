// Fixed cells, as the allocator's own records use them.
#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "hs/pools_host.h"

namespace {

constexpr size_t initialBytes = 0x8000;
constexpr size_t extensionBytes = 0x4000;
constexpr size_t headersInFirst = initialBytes / sizeof(XmPool);

// More than a chunk of cells serves, if each call lost one.
constexpr int manyCalls = 600;

class Cells : public testing::Test {
 protected:
  XmPool* make() { return xmcreate(&host.vector, 0, 0, 0); }

  // Takes all descriptors there are for chunks of two pools, by turns, so that no chunk continues another.
  void useUpDescriptors(XmPool* pool, XmPool* other) {
    while (descriptors->chunks->bump != nullptr) {
      ASSERT_NE(xmalloc(&host.vector, pool, 1024, 0), nullptr);
      std::swap(pool, other);
    }
  }

  test::HostRecords host;
  XmPool* headers = &host.memory.context->poolHeaders;
  XmPool* descriptors = &host.memory.context->chunkDescriptors;
};

TEST_F(Cells, ComeInAddressOrder) {
  const XmPool* first = make();
  EXPECT_EQ(make(), first + 1);
  EXPECT_EQ(make(), first + 2);
}

TEST_F(Cells, FreedCellsServeFirstLatestFirst) {
  XmPool* first = make();
  XmPool* second = make();
  xmdestroy(&host.vector, first);
  xmdestroy(&host.vector, second);
  EXPECT_EQ(make(), second);
  EXPECT_EQ(make(), first);
}

// One more cell would fit, and isn't handed out.
TEST_F(Cells, TheLastCellOfAChunkIsNeverHandedOut) {
  // The default pool has the first cell.
  for (size_t i = 1; i + 1 < headersInFirst; ++i) ASSERT_NE(make(), nullptr);
  const XmChunk* chunk = headers->chunks;
  EXPECT_EQ(chunk->bump, nullptr);
  EXPECT_EQ(chunk->next, nullptr);
  const XmPool* next = make();
  ASSERT_NE(chunk->next, nullptr);
  EXPECT_EQ(reinterpret_cast<const uint8_t*>(next), chunk->next->start);
  EXPECT_EQ(chunk->next->end - chunk->next->start, static_cast<ptrdiff_t>(extensionBytes));
}

TEST_F(Cells, ChunksThatContinueAnOlderOneMerge) {
  // The context's other chunks are all made; nothing comes between the chunks that follow.
  const XmChunk* first = headers->chunks;
  while (headers->chunks->next == nullptr) ASSERT_NE(make(), nullptr);
  const XmChunk* second = first->next;
  const uint8_t* secondEnd = second->end;
  while (second->end == secondEnd) {
    ASSERT_NE(make(), nullptr);
    ASSERT_EQ(second->next, nullptr);
  }
  EXPECT_EQ(second->end - second->start, static_cast<ptrdiff_t>(2 * extensionBytes));
  // The cell that was held back is never used: cells go on where the new memory begins.
  EXPECT_EQ(second->bump, secondEnd + sizeof(XmPool));
}

TEST_F(Cells, ForeignAddressesAreIgnored) {
  uint64_t foreign[32] = {};
  xmfree(&host.vector, headers, foreign, XM_SIZE_IN_HEADER);
  EXPECT_EQ(headers->chunks->freeChain, nullptr);
}

TEST_F(Cells, WhatIsNoCellIsIgnored) {
  XmChunk* chunk = headers->chunks;
  make();
  for (uint8_t* address : {chunk->start + 8, chunk->start + sizeof(XmPool) - 1, chunk->end - 8, chunk->end - 1}) {
    xmfree(&host.vector, headers, address, sizeof(XmPool));
    EXPECT_EQ(chunk->freeChain, nullptr);
  }
}

// In a chunk that has grown cells begin anew with each step.
TEST_F(Cells, WhatIsNoCellOfAMergedChunkIsIgnored) {
  while (headers->chunks->next == nullptr) ASSERT_NE(make(), nullptr);
  XmChunk* chunk = headers->chunks->next;
  XmPool* last = nullptr;
  while (chunk->end - chunk->start == static_cast<ptrdiff_t>(extensionBytes)) {
    last = make();
    ASSERT_NE(last, nullptr);
  }
  uint8_t* seam = chunk->start + extensionBytes;
  ASSERT_EQ(reinterpret_cast<uint8_t*>(last), seam);
  constexpr size_t cellsOfStep = extensionBytes / sizeof(XmPool);
  static_assert(extensionBytes % sizeof(XmPool) != 0);
  for (uint8_t* address : {seam + 8, seam - 8, chunk->start + cellsOfStep * sizeof(XmPool)}) {
    xmfree(&host.vector, headers, address, sizeof(XmPool));
    EXPECT_EQ(chunk->freeChain, nullptr);
  }
  xmdestroy(&host.vector, last);
  EXPECT_EQ(chunk->freeChain, seam);
}

TEST_F(Cells, ACellIsAllThatOneCallGets) {
  EXPECT_EQ(xmalloc(&host.vector, headers, sizeof(XmPool) + 1, 0), nullptr);
  EXPECT_EQ(xmalloc(&host.vector, headers, 100'000, 0), nullptr);
  EXPECT_NE(xmalloc(&host.vector, headers, sizeof(XmPool), 0), nullptr);
  EXPECT_NE(xmalloc(&host.vector, headers, 1, 0), nullptr);
}

TEST_F(Cells, TheFirstDescriptorChunkDescribesItself) {
  const XmChunk* chunk = descriptors->chunks;
  EXPECT_EQ(reinterpret_cast<const uint8_t*>(chunk), chunk->start);
  EXPECT_EQ(chunk->end - chunk->start, static_cast<ptrdiff_t>(initialBytes));
  EXPECT_EQ(chunk->owner, descriptors);
  EXPECT_EQ(headers->chunks->owner, nullptr);
  // The cell behind its own descriptor went to the first chunk that was asked for.
  EXPECT_EQ(headers->chunks, chunk + 1);
}

TEST_F(Cells, FailedCallsGiveTheirCellsBack) {
  XmPool* pool = xmcreate(&host.vector, 0, 1024, 0);
  xmsetlimit(&host.vector, 0);
  for (int i = 0; i < manyCalls; ++i) {
    ASSERT_EQ(xmalloc(&host.vector, pool, 8, 0), nullptr);
    ASSERT_EQ(xmcreate(&host.vector, 1024, 0, 0), nullptr);
  }
  EXPECT_NE(descriptors->chunks->bump, nullptr);
  EXPECT_NE(headers->chunks->bump, nullptr);
}

TEST_F(Cells, MergedChunksGiveTheirDescriptorsBack) {
  XmPool* pool = xmcreate(&host.vector, 0, 1024, 0);
  for (int i = 0; i < manyCalls; ++i) ASSERT_NE(xmalloc(&host.vector, pool, 1024, 0), nullptr);
  EXPECT_EQ(test::chunksOf(pool).size(), 1u);
  EXPECT_NE(descriptors->chunks->bump, nullptr);
}

TEST_F(Cells, DescriptorsHostThemselvesWhenTheyRunOut) {
  XmPool* pool = xmcreate(&host.vector, 0, 1024, 0);
  XmPool* other = xmcreate(&host.vector, 0, 1024, 0);
  useUpDescriptors(pool, other);
  while (descriptors->chunks->next == nullptr) ASSERT_NE(xmalloc(&host.vector, pool, 1024, 0), nullptr);
  const XmChunk* second = descriptors->chunks->next;
  EXPECT_EQ(reinterpret_cast<const uint8_t*>(second), second->start);
  EXPECT_EQ(second->end - second->start, static_cast<ptrdiff_t>(extensionBytes));
  EXPECT_EQ(second->owner, descriptors);
  // All of the first but the last, and of the second its own and at least the one behind it.
  size_t used = 0;
  for (const XmPool* user : {pool, other}) used += test::chunksOf(user).size();
  constexpr size_t cells = initialBytes / sizeof(XmChunk) - 1;
  constexpr size_t contextChunks = 4;  // its own, pool headers, supervisor, default pool
  EXPECT_GE(used, cells - contextChunks + 1);
  EXPECT_LE(used, cells - contextChunks + 2);
  bool behindUsed = false;
  for (const XmPool* user : {pool, other}) {
    for (const XmChunk* chunk : test::chunksOf(user)) behindUsed |= chunk == second + 1;
  }
  EXPECT_TRUE(behindUsed);
  xmdestroy(&host.vector, pool);
  xmdestroy(&host.vector, other);
}

// The cell that a walk along the chunks comes upon first, or null.
const uint8_t* firstCell(const XmPool* cells) {
  for (const XmChunk* chunk : test::chunksOf(cells)) {
    if (chunk->freeChain != nullptr) return chunk->freeChain;
    if (chunk->bump != nullptr && chunk->end - chunk->bump >= static_cast<ptrdiff_t>(cells->cellSize)) {
      return chunk->bump;
    }
  }
  return nullptr;
}

TEST_F(Cells, TheFirstChunkThatHasOneServesAmongMany) {
  std::vector<XmPool*> pools(24);
  for (XmPool*& pool : pools) pool = xmcreate(&host.vector, 0, 1024, 0);
  const auto takeOfEach = [&] {
    for (XmPool* pool : pools) ASSERT_NE(xmalloc(&host.vector, pool, 1024, 0), nullptr);
  };
  for (int i = 0; i < 300; ++i) takeOfEach();
  ASSERT_GT(test::chunksOf(descriptors).size(), 20u);
  ASSERT_NE(descriptors->index, nullptr);
  // Leaves free cells in all chunks.
  for (XmPool*& pool : pools) {
    if ((&pool - pools.data()) % 3 == 0) continue;
    xmdestroy(&host.vector, pool);
    pool = xmcreate(&host.vector, 0, 1024, 0);
  }
  int compared = 0;
  for (int i = 0; i < 250; ++i) {
    for (XmPool* pool : pools) {
      const uint8_t* expected = firstCell(descriptors);
      auto* block = static_cast<uint8_t*>(xmalloc(&host.vector, pool, 1024, 0));
      const XmChunk* chunk = test::chunksOf(pool).back();
      // Else the memory continues an older chunk, and the cell is free again.
      if (chunk->start != block || expected == nullptr) continue;
      ASSERT_EQ(reinterpret_cast<const uint8_t*>(chunk), expected);
      ++compared;
    }
  }
  EXPECT_GT(compared, 1000);
  for (XmPool* pool : pools) xmdestroy(&host.vector, pool);
}

// The limit forbids the chunk of descriptors, or just the chunk that the call is for.
TEST_F(Cells, PoolsOutliveRefusedGrowthOfTheDescriptors) {
  XmContext* context = host.memory.context;
  XmPool* pool = xmcreate(&host.vector, 0, 1024, 0);
  XmPool* other = xmcreate(&host.vector, 0, 1024, 0);
  useUpDescriptors(pool, other);
  const size_t chunks = test::chunksOf(pool).size();
  const uint32_t inUse = context->inUse;

  xmsetlimit(&host.vector, inUse + extensionBytes - 1);
  EXPECT_EQ(xmalloc(&host.vector, pool, 1024, 0), nullptr);
  EXPECT_EQ(context->inUse, inUse);
  EXPECT_EQ(descriptors->chunks->next, nullptr);

  xmsetlimit(&host.vector, inUse + extensionBytes + 1023);
  EXPECT_EQ(xmalloc(&host.vector, pool, 1024, 0), nullptr);
  EXPECT_EQ(context->inUse, inUse + extensionBytes);
  ASSERT_NE(descriptors->chunks->next, nullptr);
  EXPECT_EQ(test::chunksOf(pool).size(), chunks);

  xmsetlimit(&host.vector, UINT32_C(0x7FFFFFFF));
  EXPECT_NE(xmalloc(&host.vector, pool, 1024, 0), nullptr);
  // The descriptor that was given back serves.
  EXPECT_EQ(test::chunksOf(pool).back(), descriptors->chunks->next + 1);
  EXPECT_NE(xmalloc(&host.vector, other, 1024, 0), nullptr);
  xmdestroy(&host.vector, pool);
  xmdestroy(&host.vector, other);
}

}  // namespace
