#include <cstdlib>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/groups.h"
#include "veldnls/hostlib/xm.h"

namespace bench {

namespace {

constexpr uint32_t smallestBlock = 16;
constexpr uint32_t largestBlock = 512;
constexpr size_t callsOfPass = 4096;
constexpr uint32_t poolStep = 65536;

class PoolMemory {
 public:
  explicit PoolMemory(const Library& library)
      : host_(&library.host()),
        pool_(xmcreate(host_, poolStep, poolStep, 0), [host = host_](XmPool* pool) { xmdestroy(host, pool); }) {
    if (pool_ == nullptr) throw std::runtime_error("no memory for a pool");
  }
  void* take(uint32_t size) { return xmalloc(host_, pool_.get(), size, 0); }
  void giveBack(void* block, uint32_t size) { xmfree(host_, pool_.get(), block, static_cast<int32_t>(size)); }

 private:
  const VeldInputVector* host_;
  std::shared_ptr<XmPool> pool_;
};

class SystemMemory {
 public:
  void* take(uint32_t size) { return std::malloc(size); }
  void giveBack(void* block, uint32_t) { std::free(block); }
};

// Keeps a number of blocks alive; a step gives back a random one and takes one of a random size in its place.
template <class Memory>
class Blocks {
 public:
  Blocks(Memory memory, size_t live) : memory_(std::move(memory)), blocks_(live) {
    for (Block& block : blocks_) block = take();
  }
  ~Blocks() {
    for (const Block& block : blocks_) memory_.giveBack(block.address, block.size);
  }
  Blocks(const Blocks&) = delete;
  Blocks& operator=(const Blocks&) = delete;

  void pass() {
    for (size_t i = 0; i < callsOfPass; ++i) {
      Block& block = blocks_[random_() % blocks_.size()];
      memory_.giveBack(block.address, block.size);
      block = take();
    }
  }

 private:
  struct Block {
    void* address = nullptr;
    uint32_t size = 0;
  };

  Block take() {
    const auto size = static_cast<uint32_t>(smallestBlock + random_() % (largestBlock - smallestBlock + 1));
    void* address = memory_.take(size);
    if (address == nullptr) throw std::runtime_error("no memory for a block");
    // A block that is never written to would cost less than it does in use.
    *static_cast<volatile uint8_t*>(address) = 1;
    return {address, size};
  }

  Memory memory_;
  std::mt19937_64 random_;
  std::vector<Block> blocks_;
};

template <class Memory>
Candidate candidate(const std::string& name, Memory memory, size_t live) {
  auto blocks = std::make_shared<Blocks<Memory>>(std::move(memory), live);
  return {name, [blocks] { blocks->pass(); }};
}

}  // namespace

void runPools(Runner& runner, const Library& library) {
  constexpr size_t few = 256;
  constexpr size_t many = 8192;
  const std::string op = "pool free and alloc";
  const std::string text = "16 to 512 bytes";
  for (const size_t live : {few, many}) {
    const Subject subject{"pool", op, text, std::to_string(live) + " live"};
    if (!runner.wants(subject)) continue;
    runner.run({subject,
                0,
                callsOfPass,
                {candidate("veldnls", PoolMemory(library), live), candidate("malloc", SystemMemory(), live)}});
  }
  const Subject growth{"pool-growth", op, text, "8192 live against 256"};
  if (!runner.wants(growth)) return;
  runner.run(
      {growth,
       0,
       callsOfPass,
       {candidate("veldnls", PoolMemory(library), many), candidate("veldnls, 256 live", PoolMemory(library), few)}});
}

}  // namespace bench
