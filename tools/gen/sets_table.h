// Double-byte sets as they stand in data/modules/qznlsmb/: sets.tsv and the tables that it names.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "text.h"

namespace gen::sets {

constexpr uint16_t lastSingleByte = 0xFF;

// The value and the line of a mapping, by code or by unit.
struct Mapping {
  uint16_t value;
  Place place;
};
using Mappings = std::map<uint16_t, Mapping>;

// A code of one byte stands in `from` alone.
struct Table {
  std::string name;
  Place place;
  Mappings to;    // units by code
  Mappings from;  // codes by unit
};

// One line of sets.tsv.
struct Set {
  Place place;
  std::string table;  // empty for a set without mappings
  size_t to;
  size_t from;
  size_t knownTo;
  size_t knownFrom;
};

// In the order of the file, which must be that of the numbers.
std::vector<Set> readSets(const std::string& path);

// Tables by name, read on first use.
class Tables {
 public:
  explicit Tables(std::string folder);

  // The table. Fails at `asker` if there is no such table or its bases form a ring, and at the table's own lines where
  // these are malformed, out of order, or name one code or unit twice.
  const Table& table(const Place& asker, const std::string& name);

  // Fails for a file of the folder that was never asked for.
  void requireAllRead() const;

  const std::map<std::string, Table>& all() const { return tables_; }

 private:
  enum class Mark { both, to, from };
  struct Fact {
    Mark mark;
    Place place;
  };
  using Facts = std::map<std::pair<uint16_t, uint16_t>, Fact>;  // by code and unit

  std::string file(const std::string& name) const;
  const Facts& facts(const Place& asker, const std::string& name);
  Facts readFacts(const std::string& name);
  Facts inherited(const std::vector<Line>& lines, size_t& next);
  static void addFact(const Line& line, Facts& facts);

  std::string folder_;
  std::map<std::string, Facts> facts_;  // those still being read are empty
  std::map<std::string, Table> tables_;
};

}  // namespace gen::sets
