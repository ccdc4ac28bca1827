// The mappings of GB18030 as they stand in data/modules/qznlsgb/, and the two ways to look them up without a search.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "sets_index.h"

namespace gen::sets {

struct Gb18030 {
  Place place;
  std::map<uint32_t, uint16_t> to;    // units by code
  std::map<uint16_t, uint32_t> from;  // codes by unit
};

// Fails where a line is malformed, where a mapping doesn't hold both ways, and where a known figure isn't reached.
Gb18030 readGb18030(const std::string& path);

constexpr size_t gbBlockSize = 64;
constexpr uint16_t gbNotFound = 0x20;

// Blocks of cells by the high bits of a key; blocks without a mapping are one.
struct Blocks {
  std::vector<uint16_t> starts;
  std::vector<uint16_t> cells;
  size_t bytes() const { return (starts.size() + cells.size()) * sizeof(uint16_t); }
};

// By unit: a two-byte code, or a place among the other codes, of which the first is gbNotFound.
struct GbFromIndex {
  Blocks blocks;
  std::vector<uint32_t> longCodes{gbNotFound};
  size_t bytes() const { return blocks.bytes() + longCodes.size() * sizeof(uint32_t); }
};

// By code: rows of those of two bytes, and units of those of four by their place.
struct GbToIndex {
  Rows doubles;
  Blocks fours;
  size_t bytes() const { return doubles.bytes() + fours.bytes(); }
};

// Both fail when they take more room than the table of six bytes a mapping.
GbFromIndex makeGbFromIndex(const Gb18030& gb);
GbToIndex makeGbToIndex(const Gb18030& gb);

}  // namespace gen::sets
