#include "hs/src/chain_index.h"

#include <new>

#include "hs/src/index_memory.h"
#include "hs/src/max_tree.h"
#include "hs/src/rounding.h"

namespace veldnls::hs {

// Stands at the head of its memory. Behind it: the tree's numbers, then the first and the last block of each group.
struct ChainIndex {
  MaxTree largest;  // for each group, the size of the largest block that begins there
  uint32_t groups;
  uint32_t bytes;  // of all its memory
  uint8_t* firsts;
  uint8_t* lasts;
};

namespace {

constexpr uint32_t groupBytes = 1024;
// In a smaller chunk no walk is long enough for the memory.
constexpr uint32_t fewestGroups = 8;
constexpr uint32_t placesOfGroup = groupBytes / blockAlignment;
// In `firsts` and `lasts` a block is told by its place in the group, counted from 1; 0 is none.
static_assert(placesOfGroup <= std::numeric_limits<uint8_t>::max());

// Stands in XmChunk.index for an index that mustn't be. A number, so that it is the same in every copy of this code.
constexpr uintptr_t forbidden = 1;

uint32_t groupOf(const XmChunk* chunk, const uint8_t* at) {
  return static_cast<uint32_t>(static_cast<size_t>(at - chunk->start) / groupBytes);
}

uint8_t markOf(const XmChunk* chunk, const uint8_t* at) {
  return static_cast<uint8_t>(static_cast<size_t>(at - chunk->start) % groupBytes / blockAlignment + 1);
}

uint8_t* blockOf(const XmChunk* chunk, uint32_t group, uint8_t mark) {
  return mark != 0 ? chunk->start + size_t{group} * groupBytes + (mark - 1) * size_t{blockAlignment} : nullptr;
}

uint8_t* firstOf(const XmChunk* chunk, const ChainIndex* index, uint32_t group) {
  return blockOf(chunk, group, index->firsts[group]);
}

// The last block of the groups before this one, or null.
uint8_t* lastBefore(const XmChunk* chunk, const ChainIndex* index, uint32_t group) {
  const uint32_t before = index->largest.lastBefore(group);
  return before != MaxTree::nowhere ? blockOf(chunk, before, index->lasts[before]) : nullptr;
}

// Takes a group's facts from the chain. `from` is its first block, or, for an empty group, null or one behind it.
void refresh(const XmChunk* chunk, ChainIndex* index, uint32_t group, uint8_t* from) {
  uint32_t largest = 0;
  uint8_t first = 0;
  uint8_t last = 0;
  for (uint8_t* at = from; at != nullptr && groupOf(chunk, at) == group;) {
    const FreeBlock block = readFree(at);
    largest = std::max(largest, block.size);
    last = markOf(chunk, at);
    if (first == 0) first = last;
    at = nextOf(chunk, at, block);
  }
  index->firsts[group] = first;
  index->lasts[group] = last;
  index->largest.set(group, largest);
}

// Room for the chunk, and for as much again if it may grow.
uint32_t groupsFor(const XmPool* pool, const XmChunk* chunk) {
  const auto groups =
      static_cast<uint32_t>(roundUp(static_cast<size_t>(chunk->end - chunk->start), groupBytes) / groupBytes);
  const bool grows = pool->extensionSize != 0 && (chunk->state & XM_CHUNK_FIRST) == 0;
  return grows ? 2 * groups : groups;
}

ChainIndex* makeIndex(XmContext* context, uint32_t groups) {
  const size_t numbers = MaxTree::bytesFor(groups);
  const size_t bytes = sizeof(ChainIndex) + numbers + 2 * size_t{groups};
  uint8_t* memory = takeIndexMemory(context, bytes);
  if (memory == nullptr) return nullptr;
  auto* index = new (memory) ChainIndex{};
  index->largest.open(reinterpret_cast<uint32_t*>(memory + sizeof(ChainIndex)), groups);
  index->groups = groups;
  index->bytes = static_cast<uint32_t>(bytes);
  index->firsts = memory + sizeof(ChainIndex) + numbers;
  index->lasts = index->firsts + groups;
  return index;
}

// False when the chain isn't one of blocks apart from each other at places of their own.
bool readChain(const XmChunk* chunk, ChainIndex* index) {
  const uint8_t* end = chunk->start;
  uint8_t* first = nullptr;
  for (uint8_t* at = chunk->freeChain; at != nullptr;) {
    const FreeBlock block = readFree(at);
    const bool isPlace = static_cast<size_t>(at - chunk->start) % blockAlignment == 0;
    if (!isPlace || at < end || block.size > static_cast<size_t>(chunk->end - at)) return false;
    end = at + block.size;
    if (first == nullptr) first = at;
    uint8_t* next = nextOf(chunk, at, block);
    if (next == nullptr || groupOf(chunk, next) != groupOf(chunk, first)) {
      refresh(chunk, index, groupOf(chunk, first), first);
      first = nullptr;
    }
    at = next;
  }
  return true;
}

}  // namespace

ChainIndex* chainIndexOf(const XmChunk* chunk) {
  return reinterpret_cast<uintptr_t>(chunk->index) != forbidden ? static_cast<ChainIndex*>(chunk->index) : nullptr;
}

void addChainIndex(const XmPool* pool, XmChunk* chunk) {
  const uint32_t groups = groupsFor(pool, chunk);
  if (chunk->index != nullptr || groups < fewestGroups) return;
  ChainIndex* index = makeIndex(pool->context, groups);
  if (index == nullptr) return;
  chunk->index = index;
  if (!readChain(chunk, index)) forbidChainIndex(pool->context, chunk);
}

void dropChainIndex(XmContext* context, XmChunk* chunk) {
  if (ChainIndex* index = chainIndexOf(chunk); index != nullptr) {
    giveIndexMemory(context, reinterpret_cast<uint8_t*>(index), index->bytes);
  }
  chunk->index = nullptr;
}

void forbidChainIndex(XmContext* context, XmChunk* chunk) {
  dropChainIndex(context, chunk);
  chunk->index = reinterpret_cast<void*>(forbidden);
}

void fitChainIndex(XmContext* context, XmChunk* chunk) {
  const ChainIndex* index = chainIndexOf(chunk);
  if (index == nullptr) return;
  if (static_cast<size_t>(chunk->end - chunk->start) > size_t{index->groups} * groupBytes)
    dropChainIndex(context, chunk);
}

ChainStep firstFit(const XmChunk* chunk, const ChainIndex* index, uint32_t size) {
  const uint32_t group = index->largest.firstFrom(size);
  if (group == MaxTree::nowhere) return {};
  ChainStep step{nullptr, firstOf(chunk, index, group)};
  FreeBlock block = readFree(step.at);
  if (block.size >= size) return {lastBefore(chunk, index, group), step.at};
  while (block.size < size) {
    step = {step.at, nextOf(chunk, step.at, block)};
    if (step.at == nullptr) return {};
    block = readFree(step.at);
  }
  return step;
}

ChainStep lastBlock(const XmChunk* chunk, const ChainIndex* index) {
  const uint32_t group = index->largest.last();
  if (group == MaxTree::nowhere) return {};
  uint8_t* last = blockOf(chunk, group, index->lasts[group]);
  uint8_t* at = firstOf(chunk, index, group);
  if (at == last) return {lastBefore(chunk, index, group), last};
  ChainStep step{nullptr, at};
  while (step.at != nullptr && step.at < last) step = {step.at, nextOf(chunk, step.at)};
  return step;
}

ChainStep placeOf(const XmChunk* chunk, const ChainIndex* index, const uint8_t* address) {
  const uint32_t group = groupOf(chunk, address);
  uint8_t* first = firstOf(chunk, index, group);
  if (first == nullptr || first > address) {
    uint8_t* before = lastBefore(chunk, index, group);
    return {before, nextAfter(chunk, before)};
  }
  ChainStep step{nullptr, first};
  while (step.at != nullptr && step.at <= address) step = {step.at, nextOf(chunk, step.at)};
  return step;
}

ChainSummary summaryOf(const XmChunk* chunk, const ChainIndex* index) {
  uint8_t* last = lastBefore(chunk, index, index->groups);
  return {index->largest.largest(), last, last != nullptr ? readFree(last).size : 0};
}

void noteTaken(const XmChunk* chunk, ChainIndex* index, const uint8_t* at, uint8_t* rest, uint8_t* next) {
  const uint32_t group = groupOf(chunk, at);
  uint8_t* first = firstOf(chunk, index, group);
  refresh(chunk, index, group, first != at ? first : rest != nullptr ? rest : next);
  if (rest != nullptr && groupOf(chunk, rest) != group) refresh(chunk, index, groupOf(chunk, rest), rest);
}

void noteGiven(const XmChunk* chunk, ChainIndex* index, uint8_t* block, const uint8_t* absorbed, uint8_t* next) {
  const uint32_t group = groupOf(chunk, block);
  uint8_t* first = firstOf(chunk, index, group);
  refresh(chunk, index, group, first != nullptr && first < block ? first : block);
  // Up to `absorbed` its group had no block of its own.
  if (absorbed != nullptr && groupOf(chunk, absorbed) != group) refresh(chunk, index, groupOf(chunk, absorbed), next);
}

}  // namespace veldnls::hs
