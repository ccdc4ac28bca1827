#include "hs/pools_host.h"

#include <algorithm>

#include "hs/src/poison.h"

namespace test {

namespace {

int refusedNumber = 0;
std::vector<uint32_t> askedSizes;

NlsBool8 refuseNth(uint32_t size) {
  askedSizes.push_back(size);
  return static_cast<int>(askedSizes.size()) != refusedNumber;
}

}  // namespace

RefuseNth::RefuseNth(VeldMemoryRecord& record, int n) : record_(record), n_(n) {
  refusedNumber = n;
  askedSizes.clear();
  record_.allowAllocation = refuseNth;
}

RefuseNth::~RefuseNth() { record_.allowAllocation = nullptr; }

const std::vector<uint32_t>& RefuseNth::sizes() { return askedSizes; }

bool RefuseNth::refused() const { return static_cast<int>(askedSizes.size()) >= n_; }

std::vector<Block> freeBlocks(const XmChunk* chunk) {
  struct Record {
    uint32_t size;
    uint32_t next;
  };
  std::vector<Block> blocks;
  for (uint8_t* at = chunk->freeChain; at != nullptr;) {
    const auto record = veldnls::hs::readClosed<Record>(at);
    blocks.push_back({at, record.size});
    at = record.next != 0 ? chunk->start + record.next : nullptr;
  }
  return blocks;
}

std::vector<XmChunk*> chunksOf(const XmPool* pool) {
  std::vector<XmChunk*> chunks;
  for (XmChunk* chunk = pool->chunks; chunk != nullptr; chunk = chunk->next) chunks.push_back(chunk);
  return chunks;
}

int poolCount(const XmContext* context) {
  int count = 0;
  for (const XmPool* pool = context->pools; pool != nullptr; pool = pool->next) ++count;
  return count;
}

bool allBytes(const void* memory, size_t size, uint8_t value) {
  const auto* bytes = static_cast<const uint8_t*>(memory);
  return std::all_of(bytes, bytes + size, [value](uint8_t byte) { return byte == value; });
}

}  // namespace test
