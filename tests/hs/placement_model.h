// What placement must be: a model that keeps chunks and free intervals in plain lists, and runs of a pool beside it.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <vector>

#include "hs/pools_host.h"
#include "hs/second_copy.h"

namespace test {

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
    const auto actual = chunksOf(pool_);
    ASSERT_EQ(actual.size(), chunks_.size());
    for (size_t i = 0; i < actual.size(); ++i) {
      ASSERT_EQ(actual[i]->start, chunks_[i].start);
      ASSERT_EQ(actual[i]->end, chunks_[i].end);
      ASSERT_EQ(actual[i]->bump, chunks_[i].bump);
      std::vector<Block> free;
      for (const auto& [at, size] : chunks_[i].free) free.push_back({at, static_cast<uint32_t>(size)});
      ASSERT_EQ(freeBlocks(actual[i]), free);
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
    const Block region = learn(false);
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
  Block learn(bool first) {
    for (const XmChunk* chunk : chunksOf(pool_)) {
      uint8_t* at = chunk->start;
      const auto startsHere = [&at](const ModelChunk& known) { return known.start == at; };
      while (at != chunk->end) {
        const auto known = std::find_if(chunks_.begin(), chunks_.end(), startsHere);
        if (known == chunks_.end()) break;
        at = known->end;
      }
      if (at == chunk->end) continue;
      const Block region{at, static_cast<uint32_t>(chunk->end - at)};
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
  PoolRun(HostRecords& host, uint32_t initial, uint32_t extension, uint32_t flags)
      : host_(host), pool_(xmcreate(&host.vector, initial, extension, flags)), model_(pool_) {}
  ~PoolRun() { xmdestroy(&host_.vector, pool_); }
  PoolRun(const PoolRun&) = delete;
  PoolRun& operator=(const PoolRun&) = delete;

  void take(uint32_t size, uint32_t flags, uint8_t mark) {
    auto* block = static_cast<uint8_t*>(calls_.take(&host_.vector, pool_, size, flags));
    ASSERT_EQ(block, model_.take(size, flags));
    if (block == nullptr) return;
    if (((flags | pool_->flags) & XM_ZERO) != 0) {
      ASSERT_TRUE(allBytes(block, size, 0));
    }
    std::memset(block, mark, size);
    held_.push_back({block, size, flags, mark});
  }

  void give(size_t choice) {
    if (held_.empty()) return;
    const size_t index = choice % held_.size();
    const Held block = held_[index];
    held_.erase(held_.begin() + static_cast<ptrdiff_t>(index));
    ASSERT_TRUE(allBytes(block.at, block.size, block.mark));
    const bool headed = ((block.flags | pool_->flags) & XM_LENGTH_HEADER) != 0;
    calls_.give(&host_.vector, pool_, block.at, headed ? XM_SIZE_IN_HEADER : static_cast<int32_t>(block.size));
    if (pool_->kind == XM_KIND_MARK) return;
    uint64_t size = block.size + (headed ? 8u : 0u);
    while (size % ((pool_->flags & XM_LENGTH_HEADER) != 0 ? 16 : 8) != 0) ++size;
    model_.give(headed ? block.at - 8 : block.at, size);
  }

  void reset() {
    calls_.reset(&host_.vector, pool_);
    model_.reset();
    held_.clear();
  }

  void compare() const { model_.compare(); }

  // The copy of the host layer that the next calls go to.
  void use(const PoolCalls& calls) { calls_ = calls; }

  size_t heldCount() const { return held_.size(); }
  bool hasDirectory() const { return pool_->index != nullptr; }
  bool hasIndexedChunk() const {
    const auto chunks = chunksOf(pool_);
    return std::any_of(chunks.begin(), chunks.end(), [](const XmChunk* chunk) { return chunk->index != nullptr; });
  }

 private:
  HostRecords& host_;
  XmPool* pool_;
  Model model_;
  std::vector<Held> held_;
  PoolCalls calls_ = ownCopy;
};

}  // namespace test
