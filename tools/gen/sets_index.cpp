#include "sets_index.h"

namespace gen::sets {

namespace {

constexpr uint32_t lowestSecondByte = 0x20;
constexpr uint32_t halfRow = 0x80;
constexpr uint32_t firstHalf = 0x20;
constexpr size_t groupSize = 16;

// 20 to 9F and A0 to FF of a first byte are two rows.
size_t rowOf(uint32_t code) { return (code + halfRow - firstHalf) / halfRow; }

}  // namespace

Rows makeRows(const Mappings& to) {
  Rows made;
  uint32_t lastCode = 0;
  size_t lastRow = rowCount;
  for (const auto& [code, mapping] : to) {
    const uint32_t second = code & 0xFF;
    require(second >= lowestSecondByte, mapping.place,
            "the second byte is below " + hex(lowestSecondByte, 2) + ", where rows begin");
    Row& row = made.rows[rowOf(code)];
    if (rowOf(code) != lastRow) {
      require(made.units.size() <= 0xFFFF, mapping.place, "the rows ahead have too many units; row starts are 16 bits");
      row = {static_cast<uint16_t>(made.units.size()), static_cast<uint8_t>(second), 0};
    } else {
      made.units.resize(made.units.size() + (code - lastCode - 1));
      row.span = static_cast<uint8_t>(second - row.first);
    }
    made.units.push_back(mapping.value);
    lastRow = rowOf(code);
    lastCode = code;
  }
  return made;
}

Ranks makeRanks(const Mappings& from) {
  Ranks made;
  made.groups.resize(groupsPerBlock);
  made.values = 0;
  for (size_t high = 0; high < blockCount; ++high) {
    const auto begin = from.lower_bound(static_cast<uint16_t>(high << 8));
    const auto end = from.upper_bound(static_cast<uint16_t>(high << 8 | 0xFF));
    if (begin == end) continue;
    const size_t block = made.groups.size() / groupsPerBlock;
    require(block < blockCount, begin->second.place, "too many blocks; the number of one is a byte");
    made.blocks[high] = static_cast<uint8_t>(block);
    auto next = begin;
    for (size_t group = 0; group < groupsPerBlock; ++group) {
      Group entry{0, static_cast<uint16_t>(made.values)};
      for (; next != end && (next->first & 0xFFu) / groupSize == group; ++next) {
        entry.bits = static_cast<uint16_t>(entry.bits | 1u << next->first % groupSize);
        ++made.values;
      }
      made.groups.push_back(entry);
    }
  }
  return made;
}

}  // namespace gen::sets
