// Look-up without a search: rows of units by first byte, and ranks of units. What they hold is that of a pair table, in
// no more room.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "sets_table.h"

namespace gen::sets {

constexpr size_t rowCount = 0x201;
constexpr size_t blockCount = 0x100;
constexpr size_t groupsPerBlock = 16;

struct Row {
  uint16_t start = 0;
  uint8_t first = 0;
  uint8_t span = 0;
};

// Units by two-byte code. The first unit is 0, and rows without codes are that unit.
struct Rows {
  std::array<Row, rowCount> rows{};
  std::vector<uint16_t> units{0};
  size_t bytes() const { return rowCount * sizeof(Row) + units.size() * sizeof(uint16_t); }
};

// Fails at a mapping with a second byte below 20.
Rows makeRows(const Mappings& to);

struct Group {
  uint16_t bits = 0;
  uint16_t rank = 0;
};

// Which units have a value, sixteen to a group, and the number of values ahead of each group. The first block has none.
struct Ranks {
  std::array<uint8_t, blockCount> blocks{};
  std::vector<Group> groups;
  size_t values;
  size_t bytes() const { return blockCount + groups.size() * sizeof(Group) + values * sizeof(uint16_t); }
};

Ranks makeRanks(const Mappings& from);

}  // namespace gen::sets
