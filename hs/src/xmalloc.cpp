// Allocation and free: what is common to the kinds of pool.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "hs/src/poison.h"
#include "hs/src/pool.h"
#include "hs/src/rounding.h"
#include "veldnls/hostlib/hs.h"

namespace veldnls::hs {

namespace {

// Of whole blocks in a pool with length headers.
constexpr uint64_t headedAlignment = 16;

// In front of what the caller gets.
struct BlockHeader {
  uint32_t size;  // of the whole block
  uint32_t unused;
};
static_assert(sizeof(BlockHeader) == blockAlignment);

struct Request {
  uint64_t size;        // of the whole block
  uint32_t headerSize;  // 0 without a header
};

Request requestFor(const XmPool* pool, uint32_t size, uint32_t flags) {
  if (pool->kind == XM_KIND_CELLS) return {pool->cellSize, 0};
  if (pool->kind == XM_KIND_MARK) return {roundUp(size, blockAlignment), 0};
  const uint32_t headerSize = (flags & XM_LENGTH_HEADER) != 0 ? sizeof(BlockHeader) : 0;
  const uint64_t alignment = (pool->flags & XM_LENGTH_HEADER) != 0 ? headedAlignment : blockAlignment;
  return {roundUp(uint64_t{size} + headerSize, alignment), headerSize};
}

Taken take(const VeldInputVector* host, XmPool* pool, uint32_t size, uint32_t blockSize) {
  const PoolLock lock(pool);
  if (!mayAllocate(host, size)) return {nullptr, false};
  if (pool->kind == XM_KIND_CELLS) return takeCell(host, pool);
  if (pool->kind == XM_KIND_MARK) return takeMark(host, pool, blockSize);
  return takeBlock(host, pool, blockSize);
}

void* allocate(const VeldInputVector* host, XmPool* pool, uint32_t size, uint32_t flags) {
  if (pool->kind == XM_KIND_CELLS && size > pool->cellSize) return nullptr;
  const Request request = requestFor(pool, size, flags);
  if (request.size > std::numeric_limits<uint32_t>::max()) return nullptr;
  const auto blockSize = static_cast<uint32_t>(request.size);
  const Taken block = take(host, pool, size, blockSize);
  if (block.at == nullptr) return nullptr;
  if (request.headerSize != 0) writeClosed(block.at, BlockHeader{blockSize, 0});
  uint8_t* memory = block.at + request.headerSize;
  const uint32_t room = blockSize - request.headerSize;
  if ((flags & XM_ZERO) != 0 && !block.zero) {
    openMemory(memory, room);
    std::memset(memory, 0, room);
    closeMemory(memory, room);
  }
  openMemory(memory, size);
  return memory;
}

// A dump of the process then shows who freed what isn't a block.
[[noreturn]] void stopAtBadLength() {
  std::fputs("BAD LEN ****\n", stdout);
  std::fputs("BAD LEB ****\n", stdout);
  std::fflush(stdout);
  std::fflush(stderr);
  hsCrash(0);
}

// The largest sizes would round up past 32 bits; no chunk holds them anyway.
uint32_t roundedSize(int32_t size) {
  constexpr uint64_t largest = std::numeric_limits<uint32_t>::max() / blockAlignment * blockAlignment;
  return static_cast<uint32_t>(std::min(roundUp(static_cast<uint32_t>(size), blockAlignment), largest));
}

// What of a length an overwritten header gives counts as far as it could be one.
uint32_t lengthInHeader(const uint8_t* block) {
  const uint32_t size = readClosed<BlockHeader>(block).size;
  return size - size % blockAlignment;
}

// A header is read from the pool's own memory only.
void releaseHeadedBlock(XmPool* pool, uint8_t* block) {
  XmChunk* chunk = chunkOf(pool, block);
  if (chunk == nullptr || chunk->end - block < ptrdiff_t{sizeof(BlockHeader)}) return;
  const uint32_t length = lengthInHeader(block);
  if (length == 0) stopAtBadLength();
  giveBlock(pool, chunk, block, length);
}

void releaseBlock(XmPool* pool, uint8_t* address, int32_t size) {
  if (size == XM_SIZE_IN_HEADER || (pool->flags & XM_LENGTH_HEADER) != 0) {
    releaseHeadedBlock(pool, address - sizeof(BlockHeader));
    return;
  }
  if (size == 0) stopAtBadLength();
  if (XmChunk* chunk = chunkOf(pool, address); chunk != nullptr) giveBlock(pool, chunk, address, roundedSize(size));
}

}  // namespace

}  // namespace veldnls::hs

using namespace veldnls::hs;

void* xmalloc(const VeldInputVector* host, XmPool* handle, uint32_t size, uint32_t flags) {
  XmPool* pool = resolvePool(host, handle);
  if (pool == nullptr) return nullptr;
  if (size == 0) return XM_NO_BYTES;
  return allocate(host, pool, size, flags | pool->flags);
}

void* xmallocOrExit(const VeldInputVector* host, uint32_t size) {
  void* memory = xmalloc(host, XM_THREAD_POOL, size, XM_ZERO | XM_LENGTH_HEADER);
  if (memory == nullptr) std::exit(EXIT_FAILURE);
  return memory;
}

void xmfree(const VeldInputVector* host, XmPool* handle, void* address, int32_t size) {
  XmPool* pool = resolvePool(host, handle);
  if (pool == nullptr || address == nullptr || address == XM_NO_BYTES) return;
  auto* block = static_cast<uint8_t*>(address);
  const PoolLock lock(pool);
  if (pool->kind == XM_KIND_VARIABLE) releaseBlock(pool, block, size);
  if (pool->kind == XM_KIND_CELLS) giveCell(pool, block);
}
