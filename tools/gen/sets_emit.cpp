#include "sets_emit.h"

namespace gen::sets {

namespace {

constexpr size_t pairBytes = 4;

std::string identifier(std::string name) {
  for (char& c : name) {
    if (c == '-') c = '_';
  }
  return name;
}

std::string record(uint32_t first, uint32_t second) {
  return "{" + std::to_string(first) + "," + std::to_string(second) + "}";
}

void writePairs(Output& output, const std::string& name, const Mappings& mappings, uint16_t (*value)(uint16_t)) {
  auto next = mappings.begin();
  writeArray(output, "NlsCodePair", name, mappings.size(), [&](size_t) {
    const auto& [key, mapping] = *next++;
    return record(key, value(mapping.value));
  });
}

void requireNoMoreRoom(const Table& table, const char* side, size_t index, size_t mappings) {
  require(index <= mappings * pairBytes, table.place,
          "the look-up " + std::string(side) + " Unicode takes " + std::to_string(index) +
              " bytes, more than the pairs' " + std::to_string(mappings * pairBytes) + "; split its rows");
}

}  // namespace

void writeArray(Output& output, const std::string& type, const std::string& name, size_t count,
                const std::function<std::string(size_t)>& element) {
  output << "constexpr " << type << " " << name << "[] = {\n";
  output.list(count, element);
  output << "};\n";
}

void writeRows(Output& output, const std::string& name, const Rows& rows) {
  writeArray(output, "CodeRow", "rows_" + name, rows.rows.size(), [&](size_t i) {
    const Row& row = rows.rows[i];
    return "{" + std::to_string(row.start) + "," + std::to_string(row.first) + "," + std::to_string(row.span) + "}";
  });
  writeNumbers(output, "char16_t", "units_" + name, rows.units);
}

void writeRanks(Output& output, const std::string& name, const Ranks& ranks) {
  writeNumbers(output, "uint8_t", "blocks_" + name, ranks.blocks);
  writeArray(output, "UnitGroup", "groups_" + name, ranks.groups.size(),
             [&](size_t i) { return record(ranks.groups[i].bits, ranks.groups[i].rank); });
}

uint16_t inMemory(uint16_t code) { return static_cast<uint16_t>(code >> 8 | code << 8); }

size_t writeTable(Output& output, const Table& table) {
  const std::string name = identifier(table.name);
  writePairs(output, "to_" + name, table.to, [](uint16_t unit) { return unit; });
  const Rows rows = makeRows(table.to);
  requireNoMoreRoom(table, "to", rows.bytes(), table.to.size());
  writeRows(output, name, rows);

  writePairs(output, "from_" + name, table.from, inMemory);
  const Ranks ranks = makeRanks(table.from);
  requireNoMoreRoom(table, "from", ranks.bytes(), table.from.size());
  writeRanks(output, name, ranks);
  auto next = table.from.begin();
  writeArray(output, "uint16_t", "values_" + name, table.from.size(),
             [&](size_t) { return std::to_string(inMemory((next++)->second.value)); });
  return rows.bytes() + ranks.bytes();
}

void writeNoTable(Output& output) {
  // Two items, as kernels read an item together with its neighbour.
  Rows rows = makeRows({});
  rows.units.push_back(0);
  writeRows(output, "none", rows);
  writeRanks(output, "none", makeRanks({}));
  output << "constexpr uint16_t values_none[] = {0, 0};\n";
}

}  // namespace gen::sets
