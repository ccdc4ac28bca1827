#include "sets_table.h"

#include <filesystem>
#include <optional>

namespace gen::sets {

namespace {

constexpr uint32_t lastCode = 0xFFFF;
constexpr int64_t mostMappings = 0xFFFF;

size_t parseCount(const Line& line, size_t field) {
  return static_cast<size_t>(parseDecimal(line, line.field(field), 0, mostMappings));
}

uint16_t parse16(const Line& line, std::string_view text) {
  return static_cast<uint16_t>(parseHex(line, text, lastCode));
}

// Codes of a base that a variant leaves out.
struct Dropped {
  uint16_t first;
  uint16_t last;
};

Dropped parseDropped(const Line& line) {
  requireFields(line, 2);
  const std::vector<std::string> ends = split(line.field(1), '-');
  require(ends.size() == 2, line.place, "a range is first-last: \"" + line.field(1) + "\"");
  const Dropped dropped{parse16(line, ends[0]), parse16(line, ends[1])};
  require(dropped.first <= dropped.last, line.place,
          "a range doesn't end ahead of its start: \"" + line.field(1) + "\"");
  return dropped;
}

void add(Mappings& mappings, uint16_t key, uint16_t value, const Place& place, const std::string& what) {
  const auto [found, isNew] = mappings.emplace(key, Mapping{value, place});
  require(isNew, place,
          "a second line for " + what + " " + hex(key, 4) + ", which line " + std::to_string(found->second.place.line) +
              " maps; mark one of them for the other direction");
}

}  // namespace

std::vector<Set> readSets(const std::string& path) {
  std::vector<Set> sets;
  for (const Line& line : readLines(path)) {
    requireFields(line, 6);
    const auto number = static_cast<int64_t>(sets.size());
    require(parseDecimal(line, line.field(0), 0, mostMappings) == number, line.place,
            "expected set " + std::to_string(number) + "; sets stand in the order of their numbers");
    const std::string table = line.field(1) == "-" ? "" : line.field(1);
    sets.push_back(
        {line.place, table, parseCount(line, 2), parseCount(line, 3), parseCount(line, 4), parseCount(line, 5)});
  }
  return sets;
}

Tables::Tables(std::string folder) : folder_(std::move(folder)) {}

std::string Tables::file(const std::string& name) const { return folder_ + "/" + name + ".tsv"; }

const Table& Tables::table(const Place& asker, const std::string& name) {
  const auto known = tables_.find(name);
  if (known != tables_.end()) return known->second;
  Table table{name, {file(name), 0}, {}, {}};
  for (const auto& [pair, fact] : facts(asker, name)) {
    const auto [code, unit] = pair;
    if (fact.mark != Mark::from) add(table.to, code, unit, fact.place, "code");
    if (fact.mark != Mark::to) add(table.from, unit, code, fact.place, "unit");
  }
  return tables_.emplace(name, std::move(table)).first->second;
}

const Tables::Facts& Tables::facts(const Place& asker, const std::string& name) {
  const auto known = facts_.find(name);
  if (known == facts_.end()) {
    require(std::filesystem::exists(file(name)), asker, "there is no table " + name + "; add sets/" + name + ".tsv");
    facts_[name] = {};
    facts_[name] = readFacts(name);
  }
  require(!facts_[name].empty(), asker, "table " + name + " is empty, or its own base; break the ring");
  return facts_[name];
}

Tables::Facts Tables::readFacts(const std::string& name) {
  const std::vector<Line> lines = readLines(file(name));
  size_t next = 0;
  Facts facts = inherited(lines, next);
  std::optional<std::pair<uint16_t, uint16_t>> last;
  for (; next < lines.size(); ++next) {
    const Line& line = lines[next];
    const std::pair pair{parse16(line, line.field(0)), parse16(line, line.field(1))};
    require(!last || *last < pair, line.place, "lines ascend by code and unit; move this one");
    last = pair;
    addFact(line, facts);
  }
  return facts;
}

// What the lines from `next` on take over from a base; leaves `next` at the first mapping.
Tables::Facts Tables::inherited(const std::vector<Line>& lines, size_t& next) {
  if (lines.empty() || lines[0].field(0) != "base") return {};
  const Line& head = lines[next++];
  requireFields(head, 3);
  const Facts& base = facts(head.place, head.field(1));
  const uint16_t mask = parse16(head, head.field(2));
  std::vector<Dropped> dropped;
  for (; next < lines.size() && lines[next].field(0) == "drop"; ++next) dropped.push_back(parseDropped(lines[next]));
  Facts facts;
  for (const auto& [pair, fact] : base) {
    const auto [code, unit] = pair;
    bool kept = true;
    for (const Dropped& range : dropped) kept = kept && (code < range.first || code > range.last);
    if (kept) facts.emplace(std::pair{static_cast<uint16_t>(code & mask), unit}, fact);
  }
  return facts;
}

void Tables::addFact(const Line& line, Facts& facts) {
  require(line.fields.size() <= 3, line.place, "too many fields; a line is code, unit and mark");
  const std::string mark = line.fields.size() == 3 ? line.fields[2] : "";
  require(mark.empty() || mark == "to" || mark == "from", line.place, "the mark is \"to\", \"from\" or nothing");
  const uint16_t code = parse16(line, line.field(0));
  const uint16_t unit = parse16(line, line.field(1));
  require(code > lastSingleByte || mark == "from", line.place, "a single byte is a result only; mark it \"from\"");
  facts[{code, unit}] = {mark.empty() ? Mark::both : mark == "to" ? Mark::to : Mark::from, line.place};
}

void Tables::requireAllRead() const {
  for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
    const std::string name = entry.path().stem().string();
    require(facts_.contains(name), {entry.path().string(), 0}, "no set uses this table; remove the file or name it");
  }
}

}  // namespace gen::sets
