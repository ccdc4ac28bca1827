#include "hs/src/range.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <new>

#include "hs/src/platform/platform.h"
#include "hs/src/poison.h"
#include "hs/src/rounding.h"
#include "veldnls/hostlib/xm.h"

namespace veldnls::hs {

namespace {

constexpr size_t rangeBytes = size_t{64} << 20;
// Pages become accessible in such steps, to save calls of the system.
constexpr size_t commitStep = size_t{1} << 20;
// Memory given back keeps its pages up to this amount, so that short-lived pools don't fault them in each time.
constexpr size_t idleLimit = size_t{4} << 20;

constexpr size_t wordBits = 64;

size_t granulesOf(uint32_t size) { return (size_t{size} + XM_GRANULE - 1) / XM_GRANULE; }

// One bit for each granule, set when it is handed out.
uint64_t* mapOf(XmRange* range) { return reinterpret_cast<uint64_t*>(range + 1); }

// The first bit of this value in [from, to), or `to`.
size_t nextBit(const uint64_t* map, size_t from, size_t to, bool value) {
  while (from < to) {
    const uint64_t word = (value ? map[from / wordBits] : ~map[from / wordBits]) >> (from % wordBits);
    if (word != 0) return std::min(to, from + static_cast<size_t>(std::countr_zero(word)));
    from = (from / wordBits + 1) * wordBits;
  }
  return to;
}

void setBits(uint64_t* map, size_t from, size_t to, bool value) {
  while (from < to) {
    const size_t bit = from % wordBits;
    const size_t count = std::min(wordBits - bit, to - from);
    const uint64_t mask = (~uint64_t{0} >> (wordBits - count)) << bit;
    uint64_t& word = map[from / wordBits];
    word = value ? word | mask : word & ~mask;
    from += count;
  }
}

// The lowest run of free granules, or the number of granules when there is none.
size_t findRun(XmRange* range, size_t count) {
  if (range->freeGranules < count) return range->granules;
  const uint64_t* map = mapOf(range);
  range->firstFree = nextBit(map, range->firstFree, range->granules, false);
  size_t from = range->firstFree;
  while (range->granules - from >= count) {
    const size_t taken = nextBit(map, from, from + count, true);
    if (taken == from + count) return from;
    from = nextBit(map, taken, range->granules, false);
  }
  return range->granules;
}

uint8_t* endOf(const XmRange* range) { return range->memory + range->granules * XM_GRANULE; }

bool commitTo(XmRange* range, uint8_t* end) {
  if (end <= range->committed) return true;
  const auto missing = static_cast<size_t>(end - range->committed);
  auto* rangeEnd = reinterpret_cast<uint8_t*>(range) + range->mappedSize;
  const size_t step = std::min(static_cast<size_t>(rangeEnd - range->committed), roundUp(missing, commitStep));
  if (!platform::commitPages(range->committed, step)) return false;
  range->committed += step;
  return true;
}

uint8_t* takeRun(XmRange* range, size_t first, size_t count, bool zeroed) {
  uint8_t* start = range->memory + first * XM_GRANULE;
  uint8_t* end = start + count * XM_GRANULE;
  if (!commitTo(range, end)) return nullptr;
  setBits(mapOf(range), first, first + count, true);
  range->freeGranules -= count;
  openMemory(start, count * XM_GRANULE);
  if (start < range->fresh) {
    const auto used = static_cast<size_t>(std::min(end, range->fresh) - start);
    range->idle -= std::min(range->idle, used);
    if (zeroed) std::memset(start, 0, used);
  }
  range->fresh = std::max(range->fresh, end);
  return start;
}

// A range with room for `count` granules.
XmRange* makeRange(size_t count) {
  const size_t granules = std::max(count, rangeBytes / XM_GRANULE);
  const size_t page = platform::pageSize();
  const size_t head = roundUp(sizeof(XmRange) + roundUp(granules, wordBits) / 8, page);
  const size_t mappedSize = roundUp(head + granules * XM_GRANULE, page);
  auto* address = static_cast<uint8_t*>(platform::reservePages(mappedSize));
  if (address == nullptr) return nullptr;
  if (!platform::commitPages(address, head)) {
    platform::releasePages(address, mappedSize);
    return nullptr;
  }
  auto* range = new (address) XmRange{};
  range->memory = range->fresh = range->committed = address + head;
  range->granules = range->freeGranules = granules;
  range->mappedSize = mappedSize;
  return range;
}

void endRange(XmRange* range) {
  // The addresses may serve others afterwards.
  openMemory(range->memory, static_cast<size_t>(range->fresh - range->memory));
  platform::releasePages(range, range->mappedSize);
}

void decommitFree(XmRange* range) {
  const size_t page = platform::pageSize();
  const auto used = static_cast<size_t>(range->fresh - range->memory) / XM_GRANULE;
  const uint64_t* map = mapOf(range);
  size_t end = 0;
  for (size_t from = nextBit(map, 0, used, false); from < used; from = nextBit(map, end, used, false)) {
    end = nextBit(map, from, used, true);
    const size_t firstByte = roundUp(from * XM_GRANULE, page);
    const size_t endByte = end * XM_GRANULE / page * page;
    if (firstByte < endByte) platform::decommitPages(range->memory + firstByte, endByte - firstByte);
  }
  range->idle = 0;
}

// A range that can't serve isn't kept: it would be asked in vain, and another added, each time.
uint8_t* takeFromNewRange(XmRange** ranges, size_t count, bool zeroed) {
  XmRange** tail = ranges;
  while (*tail != nullptr) tail = &(*tail)->next;
  XmRange* range = makeRange(count);
  if (range == nullptr) return nullptr;
  uint8_t* memory = takeRun(range, 0, count, zeroed);
  if (memory == nullptr) {
    endRange(range);
    return nullptr;
  }
  *tail = range;
  return memory;
}

}  // namespace

uint8_t* takeFromRanges(XmRange** ranges, uint32_t size, bool zeroed) {
  const size_t count = granulesOf(size);
  for (XmRange* range = *ranges; range != nullptr; range = range->next) {
    const size_t first = findRun(range, count);
    if (first != range->granules) return takeRun(range, first, count, zeroed);
  }
  return takeFromNewRange(ranges, count, zeroed);
}

bool giveToRanges(XmRange** ranges, uint8_t* address, uint32_t size) {
  XmRange** link = ranges;
  while (*link != nullptr && (address < (*link)->memory || address >= endOf(*link))) link = &(*link)->next;
  XmRange* range = *link;
  if (range == nullptr) return false;
  const auto offset = static_cast<size_t>(address - range->memory);
  if (offset % XM_GRANULE != 0) return false;
  const size_t first = offset / XM_GRANULE;
  const size_t count = granulesOf(size);
  if (count > range->granules - first || nextBit(mapOf(range), first, first + count, false) != first + count) {
    return false;
  }
  setBits(mapOf(range), first, first + count, false);
  range->firstFree = std::min(range->firstFree, first);
  range->freeGranules += count;
  range->idle += count * XM_GRANULE;
  closeMemory(address, count * XM_GRANULE);
  // The only range stays, ready for the next chunk.
  if (range->freeGranules == range->granules && (range != *ranges || range->next != nullptr)) {
    *link = range->next;
    endRange(range);
  } else if (range->idle > idleLimit) {
    decommitFree(range);
  }
  return true;
}

void endRanges(XmRange** ranges) {
  while (*ranges != nullptr) {
    XmRange* range = *ranges;
    *ranges = range->next;
    endRange(range);
  }
}

}  // namespace veldnls::hs
