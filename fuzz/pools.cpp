// Pools as a sequence of calls against a model that knows which blocks are held, and what stands in them.
//
// Input: calls of one byte for what to do and a few for its arguments, until the input ends.
#include <cstring>
#include <deque>
#include <map>

#include "fuzz/support/input.h"
#include "fuzz/support/require.h"
#include "support/host.h"
#include "veldnls/hostlib/xm.h"

namespace fuzz {

namespace {

constexpr size_t mostPools = 8;
constexpr size_t mostCalls = 2000;
constexpr uint32_t ceiling = 4u << 20;
constexpr uint32_t largestOfPages = 1u << 16;  // in pools whose chunks don't count against the ceiling
constexpr size_t blockAlignment = 8;
constexpr uint32_t edge = 512;  // bytes of a long block that are stamped at either end

struct Block {
  uint8_t* at;
  uint32_t size;
  uint32_t flags;  // of the call and of the pool
  uint8_t stamp;
};

bool refused = false;
bool wasAsked = false;
NlsBool8 allowAllocation(uint32_t) {
  wasAsked = true;
  return refused ? 0 : 1;
}

template <class Visit>
void visitEdges(const Block& block, Visit visit) {
  const uint32_t front = std::min(block.size, edge);
  const uint32_t back = std::min(block.size - front, edge);
  visit(std::span(block.at, front));
  visit(std::span(block.at + block.size - back, back));
}

void requireAll(const Block& block, uint8_t value, const char* what) {
  visitEdges(block, [&](std::span<uint8_t> bytes) {
    require(std::ranges::all_of(bytes, [=](uint8_t byte) { return byte == value; }), what);
  });
}

void stamp(const Block& block) {
  visitEdges(block, [&](std::span<uint8_t> bytes) { std::ranges::fill(bytes, block.stamp); });
}

// Who holds which bytes, over all pools.
class Held {
 public:
  void add(const uint8_t* at, uint32_t size) {
    const auto behind = ends_.upper_bound(at);
    require(behind == ends_.end() || behind->second.first >= at + size, "a block overlaps another one");
    ends_[at + size] = {at, size};
  }
  void remove(const uint8_t* at, uint32_t size) {
    require(ends_.erase(at + size) == 1, "a block that the model holds");
  }

 private:
  // By the end of each block.
  std::map<const uint8_t*, std::pair<const uint8_t*, uint32_t>> ends_;
};

class Run {
 public:
  explicit Run(Input input) : input_(input) {
    host_.memory.allowAllocation = allowAllocation;
    xmsetlimit(&host_.vector, ceiling);
    foreign_ = ownBytes();
  }
  ~Run() { host_.memory.allowAllocation = nullptr; }
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

  void all() {
    using Call = void (Run::*)();
    constexpr Call calls[] = {&Run::create, &Run::allocate, &Run::allocate,    &Run::allocate,
                              &Run::free,   &Run::free,     &Run::freeNothing, &Run::reset,
                              &Run::end,    &Run::limit,    &Run::refuse,      &Run::lock};
    for (size_t i = 0; i < mostCalls && !input_.empty(); ++i) (this->*calls[input_.byte() % std::size(calls)])();
    refused = false;
    while (!pools_.empty()) endPool(0);
    require(host_.memory.context->pools == host_.memory.context->defaultPool || host_.memory.context->pools == nullptr,
            "a pool is left");
    require(ownBytes() == foreign_, "all memory is given back");
  }

 private:
  struct Pool {
    XmPool* handle;
    std::deque<Block> blocks;
  };

  // Bytes taken of the system that belong to no built-in pool.
  uint32_t ownBytes() const {
    const XmContext* context = host_.memory.context;
    uint32_t bytes = context->inUse;
    const XmPool* builtIn[] = {&context->poolHeaders, &context->chunkDescriptors, &context->supervisor,
                               context->defaultPool};
    for (const XmPool* pool : builtIn) {
      if (pool == nullptr) continue;
      for (const XmChunk* chunk = pool->chunks; chunk != nullptr; chunk = chunk->next) {
        bytes -= static_cast<uint32_t>(chunk->end - chunk->start);
      }
    }
    return bytes;
  }

  uint32_t size() {
    const uint8_t choice = input_.byte();
    if (choice < 160) return choice;
    if (choice < 200) return input_.byte() * 8u + choice % 8;
    if (choice < 240) return input_.word();
    return choice < 254 ? input_.longWord() % ceiling : input_.longWord();
  }

  Pool* choose() {
    const uint8_t choice = input_.byte();
    return pools_.empty() ? nullptr : &pools_[choice % pools_.size()];
  }

  static bool isOfPages(uint32_t flags) { return (flags & (XM_HIGH_MEMORY | XM_EXECUTABLE)) != 0; }

  void create() {
    constexpr uint32_t flagChoices[] = {XM_ZERO, XM_LENGTH_HEADER, XM_MARK_STYLE, XM_HIGH_MEMORY, XM_EXECUTABLE};
    const uint8_t choice = input_.byte();
    uint32_t flags = 0;
    for (size_t i = 0; i < std::size(flagChoices); ++i) flags |= (choice >> i & 1) != 0 ? flagChoices[i] : 0;
    uint32_t initial = size();
    uint32_t extension = size();
    if (pools_.size() == mostPools) return;
    if (isOfPages(flags)) {
      initial %= largestOfPages;
      extension %= largestOfPages;
    }
    XmPool* pool = nullptr;
    const uint32_t status = xmcreateChecked(&host_.vector, &pool, nullptr, initial, extension, flags);
    require((status == 0) == (pool != nullptr), "a status that goes with the pool");
    if (pool == nullptr) {
      require(status == xmCreateFailed, "the status of a pool that isn't made");
      return;
    }
    require(std::memcmp(pool->eyeCatcher, "POOL", sizeof pool->eyeCatcher) == 0, "a pool's eye-catcher");
    require(pool->kind == ((flags & XM_MARK_STYLE) != 0 ? XM_KIND_MARK : XM_KIND_VARIABLE), "a pool's kind");
    pools_.push_back({pool, {}});
  }

  // Whether an allocation has no reason to fail: nothing refuses it, and the pool may grow far below the limit.
  bool mustSucceed(const XmPool* pool, uint32_t bytes) const {
    const XmContext* context = host_.memory.context;
    const uint64_t step = pool->extensionSize;
    return !refused && step != 0 && context->inUse + uint64_t{bytes} + 2 * step + largestOfPages < context->limit;
  }

  void allocate() {
    Pool* pool = choose();
    const uint8_t choice = input_.byte();
    uint32_t bytes = size();
    if (pool == nullptr) {
      require(xmalloc(&host_.vector, nullptr, bytes, 0) == nullptr, "no pool gives nothing");
      return;
    }
    uint32_t flags = ((choice & 1) != 0 ? XM_ZERO : 0) | ((choice & 2) != 0 ? XM_LENGTH_HEADER : 0);
    if (isOfPages(pool->handle->flags)) bytes %= largestOfPages;
    wasAsked = false;
    const bool must = mustSucceed(pool->handle, bytes);
    auto* at = static_cast<uint8_t*>(xmalloc(&host_.vector, pool->handle, bytes, flags));
    if (bytes == 0) {
      require(at == XM_NO_BYTES, "no bytes have their own address");
      return;
    }
    require(wasAsked || at == nullptr, "the host is asked for what is given");
    require(!refused || at == nullptr, "what the host refuses fails");
    require(!must || at != nullptr, "what the limit allows is given");
    if (at == nullptr) return;
    require(reinterpret_cast<uintptr_t>(at) % blockAlignment == 0, "blocks are aligned");
    const Block block{at, bytes, flags | pool->handle->flags, static_cast<uint8_t>(choice | 0x80)};
    held_.add(at, bytes);
    if ((block.flags & XM_ZERO) != 0) requireAll(block, 0, "zeroed memory");
    stamp(block);
    pool->blocks.push_back(block);
  }

  void free() {
    Pool* pool = choose();
    const uint8_t choice = input_.byte();
    if (pool == nullptr || pool->blocks.empty()) return;
    const auto place = pool->blocks.begin() + static_cast<std::ptrdiff_t>(choice % pool->blocks.size());
    const Block block = *place;
    requireAll(block, block.stamp, "a block keeps its contents");
    const bool headed = (block.flags & XM_LENGTH_HEADER) != 0;
    xmfree(&host_.vector, pool->handle, block.at, headed ? XM_SIZE_IN_HEADER : static_cast<int32_t>(block.size));
    held_.remove(block.at, block.size);
    pool->blocks.erase(place);
  }

  // Addresses that are no blocks.
  void freeNothing() {
    Pool* pool = choose();
    static uint8_t outside[64];
    XmPool* handle = pool != nullptr ? pool->handle : nullptr;
    xmfree(&host_.vector, handle, nullptr, 8);
    xmfree(&host_.vector, handle, XM_NO_BYTES, 0);
    xmfree(&host_.vector, handle, outside + 16, 16);
  }

  void forget(Pool& pool) {
    for (const Block& block : pool.blocks) {
      requireAll(block, block.stamp, "a block keeps its contents");
      held_.remove(block.at, block.size);
    }
    pool.blocks.clear();
  }

  void reset() {
    Pool* pool = choose();
    if (pool == nullptr) {
      require(xmreset(&host_.vector, nullptr) == xmNullPool, "no pool can't be reset");
      return;
    }
    forget(*pool);
    require(xmreset(&host_.vector, pool->handle) == 0, "a pool is reset");
  }

  void endPool(size_t index) {
    forget(pools_[index]);
    xmdestroy(&host_.vector, pools_[index].handle);
    pools_.erase(pools_.begin() + static_cast<std::ptrdiff_t>(index));
  }

  void end() {
    Pool* pool = choose();
    if (pool != nullptr) endPool(static_cast<size_t>(pool - pools_.data()));
  }

  void limit() { xmsetlimit(&host_.vector, input_.byte() % 2 == 0 ? ceiling : input_.longWord() % ceiling); }

  void refuse() { refused = !refused; }

  // A holder of the lock may make any call.
  void lock() {
    Pool* pool = choose();
    if (pool == nullptr) return;
    XmPool* handle = pool->handle;
    xmpoollock(handle);
    allocate();
    free();
    xmpoolunlock(handle);
  }

  Input input_;
  test::HostRecords host_;
  std::vector<Pool> pools_;
  Held held_;
  uint32_t foreign_ = 0;
};

}  // namespace

void check(Input input) {
  refused = false;
  Run(input).all();
}

}  // namespace fuzz
