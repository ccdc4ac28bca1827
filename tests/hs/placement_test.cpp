// Placement over long random runs, against a model that keeps chunks and free intervals in plain lists.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <random>

#include "hs/pools_host.h"

namespace {

struct ModelChunk {
  uint8_t* start;
  uint8_t* end;
  uint8_t* bump;  // null: nothing remains
  bool first;
  std::map<uint8_t*, uint64_t> free;  // intervals that don't touch
};

// What one pool must do. It learns from the pool only where new memory lies.
class Model {
 public:
  explicit Model(const XmPool* pool) : pool_(pool) { learn(true); }

  uint8_t* take(uint32_t size, uint32_t flags) {
    if (pool_->kind == XM_KIND_MARK) return takeMark((size + 7) / 8 * 8);
    flags |= pool_->flags;
    const bool headed = (flags & XM_LENGTH_HEADER) != 0;
    uint64_t n = size + (headed ? 8u : 0u);
    const uint64_t unit = (pool_->flags & XM_LENGTH_HEADER) != 0 ? 16 : 8;
    while (n % unit != 0) ++n;
    uint8_t* block = takeBlock(n);
    return block == nullptr ? nullptr : block + (headed ? 8 : 0);
  }

  void give(uint8_t* block, uint64_t size) {
    for (ModelChunk& chunk : chunks_) {
      if (block < chunk.start || block >= chunk.end) continue;
      chunk.free[block] = size;
      for (auto at = chunk.free.begin(); std::next(at) != chunk.free.end();) {
        const auto next = std::next(at);
        if (at->first + at->second == next->first) {
          at->second += next->second;
          chunk.free.erase(next);
        } else {
          at = next;
        }
      }
    }
  }

  void reset() {
    for (ModelChunk& chunk : chunks_) {
      chunk.bump = chunk.start;
      chunk.free.clear();
    }
  }

  // The pool's chunks look as the model's.
  void compare() const {
    const auto actual = test::chunksOf(pool_);
    ASSERT_EQ(actual.size(), chunks_.size());
    for (size_t i = 0; i < actual.size(); ++i) {
      ASSERT_EQ(actual[i]->start, chunks_[i].start);
      ASSERT_EQ(actual[i]->end, chunks_[i].end);
      ASSERT_EQ(actual[i]->bump, chunks_[i].bump);
      std::vector<test::Block> free;
      for (const auto& [at, size] : chunks_[i].free) free.push_back({at, static_cast<uint32_t>(size)});
      ASSERT_EQ(test::freeBlocks(actual[i]), free);
    }
  }

 private:
  static uint64_t room(const ModelChunk& chunk) {
    return chunk.bump == nullptr ? 0 : static_cast<uint64_t>(chunk.end - chunk.bump);
  }

  static uint8_t* cut(ModelChunk& chunk, uint64_t n) {
    uint8_t* block = chunk.bump;
    chunk.bump = room(chunk) == n ? nullptr : chunk.bump + n;
    return block;
  }

  static uint8_t* takeFree(ModelChunk& chunk, uint64_t n) {
    for (auto at = chunk.free.begin(); at != chunk.free.end(); ++at) {
      const auto [block, size] = *at;
      const bool last = std::next(at) == chunk.free.end();
      if (size >= n) {
        chunk.free.erase(at);
        if (size > n) chunk.free[block + n] = size - n;
        return block;
      }
      if (last && block + size == chunk.bump && n <= size + room(chunk)) {
        chunk.free.erase(at);
        chunk.bump = block + n == chunk.end ? nullptr : block + n;
        return block;
      }
    }
    return nullptr;
  }

  uint8_t* takeBlock(uint64_t n) {
    for (ModelChunk& chunk : chunks_) {
      if (uint8_t* block = takeFree(chunk, n); block != nullptr) return block;
      if (n <= room(chunk)) return cut(chunk, n);
    }
    ModelChunk* grown = grow(n);
    return grown == nullptr ? nullptr : cut(*grown, n);
  }

  uint8_t* takeMark(uint64_t n) {
    for (size_t i = 0; i < chunks_.size(); ++i) {
      if (n > room(chunks_[i])) continue;
      std::rotate(chunks_.begin(), chunks_.begin() + static_cast<ptrdiff_t>(i),
                  chunks_.begin() + static_cast<ptrdiff_t>(i) + 1);
      return cut(chunks_[0], n);
    }
    ModelChunk* grown = grow(n);
    return grown == nullptr ? nullptr : cut(*grown, n);
  }

  ModelChunk* grow(uint64_t n) {
    if (pool_->extensionSize == 0) return nullptr;
    uint64_t size = pool_->extensionSize;
    while (size < n) size += pool_->extensionSize;
    const test::Block region = learn(false);
    EXPECT_EQ(region.size, size);
    for (ModelChunk& chunk : chunks_) {
      if (chunk.first || chunk.end != region.at) continue;
      if (chunk.bump == nullptr) chunk.bump = region.at;
      chunk.end += size;
      return &chunk;
    }
    const ModelChunk chunk{region.at, region.at + size, region.at, false, {}};
    if (pool_->kind == XM_KIND_MARK) return &*chunks_.insert(chunks_.begin(), chunk);
    return &chunks_.emplace_back(chunk);
  }

  // The memory of the pool that the model doesn't know yet.
  test::Block learn(bool first) {
    for (const XmChunk* chunk : test::chunksOf(pool_)) {
      uint8_t* at = chunk->start;
      const auto startsHere = [&at](const ModelChunk& known) { return known.start == at; };
      while (at != chunk->end) {
        const auto known = std::find_if(chunks_.begin(), chunks_.end(), startsHere);
        if (known == chunks_.end()) break;
        at = known->end;
      }
      if (at == chunk->end) continue;
      const test::Block region{at, static_cast<uint32_t>(chunk->end - at)};
      if (first) chunks_.push_back({at, chunk->end, at, true, {}});
      return region;
    }
    return {};
  }

  const XmPool* pool_;
  std::vector<ModelChunk> chunks_;
};

struct Held {
  uint8_t* at;
  uint32_t size;
  uint32_t flags;
  uint8_t mark;
};

// One pool with its model, and the blocks that a caller holds of it.
class PoolRun {
 public:
  PoolRun(test::HostRecords& host, uint32_t initial, uint32_t extension, uint32_t flags)
      : host_(host), pool_(xmcreate(&host.vector, initial, extension, flags)), model_(pool_) {}
  ~PoolRun() { xmdestroy(&host_.vector, pool_); }
  PoolRun(const PoolRun&) = delete;
  PoolRun& operator=(const PoolRun&) = delete;

  void take(uint32_t size, uint32_t flags, uint8_t mark) {
    auto* block = static_cast<uint8_t*>(xmalloc(&host_.vector, pool_, size, flags));
    ASSERT_EQ(block, model_.take(size, flags));
    if (block == nullptr) return;
    if (((flags | pool_->flags) & XM_ZERO) != 0) {
      ASSERT_TRUE(test::allBytes(block, size, 0));
    }
    std::memset(block, mark, size);
    held_.push_back({block, size, flags, mark});
  }

  void give(size_t choice) {
    if (held_.empty()) return;
    const size_t index = choice % held_.size();
    const Held block = held_[index];
    held_.erase(held_.begin() + static_cast<ptrdiff_t>(index));
    ASSERT_TRUE(test::allBytes(block.at, block.size, block.mark));
    const bool headed = ((block.flags | pool_->flags) & XM_LENGTH_HEADER) != 0;
    xmfree(&host_.vector, pool_, block.at, headed ? XM_SIZE_IN_HEADER : static_cast<int32_t>(block.size));
    if (pool_->kind == XM_KIND_MARK) return;
    uint64_t size = block.size + (headed ? 8u : 0u);
    while (size % ((pool_->flags & XM_LENGTH_HEADER) != 0 ? 16 : 8) != 0) ++size;
    model_.give(headed ? block.at - 8 : block.at, size);
  }

  void reset() {
    xmreset(&host_.vector, pool_);
    model_.reset();
    held_.clear();
  }

  void compare() const { model_.compare(); }

 private:
  test::HostRecords& host_;
  XmPool* pool_;
  Model model_;
  std::vector<Held> held_;
};

class Placement : public testing::TestWithParam<uint32_t> {};

TEST_P(Placement, FollowsTheModel) {
  for (uint32_t seed = 0; seed < 8; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 generator(seed);
    const auto below = [&generator](uint32_t bound) { return static_cast<uint32_t>(generator() % bound); };
    test::HostRecords host;
    // Two pools, so that chunks don't all follow each other.
    PoolRun runs[] = {{host, seed % 3 * 1500, 1024 * (seed % 4), GetParam()}, {host, 1024, 2048, GetParam()}};
    for (int step = 0; step < 3000; ++step) {
      PoolRun& run = runs[below(4) == 0 ? 1 : 0];
      const uint32_t action = below(100);
      if (action < 55) {
        const uint32_t size = 1 + below(below(20) == 0 ? 6000 : 200);
        const uint32_t flags = (below(2) != 0 ? XM_ZERO : 0) | (below(4) == 0 ? XM_LENGTH_HEADER : 0);
        run.take(size, flags, static_cast<uint8_t>(1 + below(255)));
      } else if (action < 99 || step % 10 != 0) {
        run.give(generator());
      } else {
        run.reset();
      }
      if (step % 16 == 0) run.compare();
      if (testing::Test::HasFatalFailure()) return;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Flags, Placement,
                         testing::Values(0, XM_LENGTH_HEADER, XM_ZERO, XM_LENGTH_HEADER | XM_ZERO, XM_MARK_STYLE,
                                         XM_MARK_STYLE | XM_ZERO));

}  // namespace
