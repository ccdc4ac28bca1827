#include "valid_bytes_written.h"

#include <set>

#include "sets_table.h"

namespace gen {

namespace {

constexpr uint32_t shiftedClass = 4;
constexpr uint32_t ebcdicFlag = 0x8;
constexpr uint32_t mostFlags = 0xFFFF;

std::set<size_t> readHostRows(const std::string& path) {
  std::set<size_t> rows;
  size_t cei = 0;
  for (const Line& line : readLines(path)) {
    const bool shifted = parseDecimal(line, line.field(1), 0, shiftedClass + 1) == shiftedClass;
    if (shifted && (parseHex(line, line.field(2), mostFlags) & ebcdicFlag) != 0) rows.insert(cei);
    ++cei;
  }
  return rows;
}

BytesOfRow bytesOf(const sets::Single& single, const sets::Table* table) {
  BytesOfRow bytes{};
  for (uint16_t unit = 0; unit < sets::unaskedUnit; ++unit) bytes[single.from[unit]] = true;
  if (table == nullptr) return bytes;
  for (const auto& [unit, mapping] : table->from) {
    if (mapping.value <= sets::lastSingleByte) bytes[mapping.value] = true;
  }
  return bytes;
}

}  // namespace

std::map<size_t, BytesOfRow> readWrittenBytes(const std::string& data) {
  const std::string folder = data + "/modules/qznlsmb";
  const std::set<size_t> hostRows = readHostRows(data + "/encodings/rows.tsv");
  const std::vector<sets::Single> singles = sets::readSingles(folder, data + "/modules/qznlssb/pages");
  const std::vector<sets::Set> doubles = sets::readSets(folder + "/sets.tsv");
  sets::Tables tables(folder + "/sets");

  std::map<size_t, BytesOfRow> written;
  for (const Line& line : readLines(data + "/encodings/profiles.tsv")) {
    const auto numberOf = [&line](size_t field, size_t count) {
      return static_cast<size_t>(parseDecimal(line, line.field(field), 0, static_cast<int64_t>(count) - 1));
    };
    const sets::Set& set = doubles[numberOf(2, doubles.size())];
    const sets::Single& single = singles[numberOf(3, singles.size())];
    for (const std::string& text : split(line.field(0), ' ')) {
      const auto cei = static_cast<size_t>(parseDecimal(line, text, 0, mostFlags));
      if (!hostRows.contains(cei)) continue;
      written[cei] = bytesOf(single, set.table.empty() ? nullptr : &tables.table(set.place, set.table));
    }
  }
  return written;
}

}  // namespace gen
