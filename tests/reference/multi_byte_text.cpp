#include "reference/multi_byte_text.h"

#include <algorithm>
#include <map>
#include <stdexcept>
#include <unordered_map>

#include "page_text.h"
#include "support/tsv.h"

namespace transcode_test {

namespace {

constexpr size_t codeCount = 0x10000;
const std::string folder = "modules/qznlsmb/";

uint32_t hex(const std::string& text) { return static_cast<uint32_t>(std::stoul(text, nullptr, 16)); }

// ---- Sets ----

struct Pair {
  bool to = true;
  bool from = true;
  uint16_t unit = 0;
};

// By code; a code may have a line for each direction.
using Pairs = std::multimap<uint32_t, Pair>;

void dropRange(Pairs& pairs, const std::string& range) {
  const size_t dash = range.find('-');
  const uint32_t first = hex(range);
  const uint32_t last = dash == std::string::npos ? first : hex(range.substr(dash + 1));
  pairs.erase(pairs.lower_bound(first), pairs.upper_bound(last));
}

bool stands(const Pairs& pairs, uint32_t code, uint16_t unit) {
  const auto [first, last] = pairs.equal_range(code);
  return std::any_of(first, last, [unit](const auto& entry) { return entry.second.unit == unit; });
}

// A file is a list of codes, or a base, what is left out of it, and more codes; the base's codes are then cut by a
// mask.
Pairs readPairs(const std::string& name) {
  Pairs base;
  Pairs own;
  uint32_t mask = 0xFFFF;
  for (const test::Fields& line : test::readTsv(folder + "sets/" + name + ".tsv")) {
    if (line.at(0) == "base") {
      base = readPairs(line.at(1));
      if (line.size() > 2) mask = hex(line.at(2));
    } else if (line.at(0) == "drop") {
      dropRange(base, line.at(1));
    } else {
      const std::string direction = line.size() > 2 ? line.at(2) : "";
      own.insert({hex(line.at(0)), {direction != "from", direction != "to", static_cast<uint16_t>(hex(line.at(1)))}});
    }
  }
  for (const auto& [code, pair] : base) {
    if (!stands(own, code & mask, pair.unit)) own.insert({code & mask, pair});
  }
  return own;
}

DoubleByteText makeSet(const std::string& name) {
  DoubleByteText text{std::vector<uint16_t>(codeCount), std::vector<std::optional<uint16_t>>(codeCount)};
  if (name == "-") return text;
  for (const auto& [code, pair] : readPairs(name)) {
    if (pair.to) {
      if (text.units[code] != 0) throw std::runtime_error(name + ": two units for one code");
      text.units[code] = pair.unit;
    }
    if (pair.from) {
      if (text.codes[pair.unit]) throw std::runtime_error(name + ": two codes for one unit");
      text.codes[pair.unit] = static_cast<uint16_t>(code);
    }
  }
  return text;
}

// ---- Single bytes ----

using Line = std::map<std::string, std::string>;

// The line of a file whose field has this value.
std::optional<Line> lineOf(const std::string& file, const std::string& field, int value) {
  for (const Line& line : test::readNamedTsv(folder + file)) {
    if (std::stoi(line.at(field)) == value) return line;
  }
  return std::nullopt;
}

std::array<uint16_t, katakanaCount> katakanaOf(const std::string& column) {
  std::array<uint16_t, katakanaCount> codes{};
  if (column == "blank") codes.fill(0x40);
  for (size_t i = 0; column == "ascii-katakana" && i < katakanaCount; ++i) codes[i] = static_cast<uint16_t>(0xA1 + i);
  if (column == "blank" || column == "ascii-katakana") return codes;
  for (const Line& line : test::readNamedTsv(folder + "katakana.tsv")) {
    codes.at(hex(line.at("unit")) - firstHalfKatakana) = static_cast<uint16_t>(hex(line.at(column)));
  }
  return codes;
}

using Page = std::map<uint8_t, uint16_t>;

Page asciiPage(bool hasKatakana) {
  Page page;
  for (uint16_t byte = 0; byte < 0xE0; ++byte) {
    const bool isKatakana = hasKatakana && byte >= 0xA1;
    page[static_cast<uint8_t>(byte)] = static_cast<uint16_t>(isKatakana ? byte - 0xA1 + firstHalfKatakana : byte);
  }
  return page;
}

// Another's page with the line ends of the open systems.
Page openPage(const std::string& name) {
  Page page;
  const test::PageText text = test::readPageText(name, "open");
  for (size_t byte = 0; byte < 0x100; ++byte) page[static_cast<uint8_t>(byte)] = static_cast<uint16_t>(text.to[byte]);
  return page;
}

Page readPage(const std::string& name) {
  if (name == "ascii" || name == "ascii-katakana") return asciiPage(name == "ascii-katakana");
  Page page;
  for (const test::Fields& line : test::readTsv(folder + "singles/" + name + ".tsv")) {
    if (line.at(0) == "page") {
      page = openPage(line.at(1));
    } else if (line.at(0) == "base") {
      page = readPage(line.at(1));
    } else {
      const auto unit = static_cast<uint16_t>(hex(line.at(1)));
      std::erase_if(page, [unit](const auto& entry) { return entry.second == unit; });
      page[static_cast<uint8_t>(hex(line.at(0)))] = unit;
    }
  }
  return page;
}

SingleByteText makeSingleBytes(int set) {
  const Line line = lineOf("singles.tsv", "singleByteSet", set).value();
  SingleByteText text{};
  text.units.fill(0x20);
  for (const auto& [byte, unit] : readPage(line.at("toUnicode"))) text.units[byte] = unit;
  for (const auto& [byte, unit] : readPage(line.at("fromUnicode"))) {
    if (unit < text.bytes.size()) text.bytes[unit] = byte;
  }
  text.katakana = katakanaOf(line.at("katakana"));
  return text;
}

template <class Table>
const Table& remembered(int set, Table (*make)(int)) {
  static std::map<int, Table> made;
  const auto found = made.find(set);
  return found != made.end() ? found->second : made[set] = make(set);
}

// What ASCII and the host's page have in common.
ByteMapText makeByteMap(ByteMapKind kind) {
  const SingleByteText& host = singleByteText(2);
  ByteMapText map{};
  map.fill(kind == ByteMapKind::asciiToEbcdic ? 0x40 : 0x20);
  for (size_t i = 0; i < map.size(); ++i) {
    const auto same = static_cast<uint8_t>(i);
    if (kind == ByteMapKind::identity || (kind == ByteMapKind::asciiPassthrough && i < 0x80)) map[i] = same;
    if (kind == ByteMapKind::asciiToEbcdic && i < 0x80) map[i] = host.bytes[i];
    if (kind == ByteMapKind::ebcdicToAscii && host.units[i] < 0x80) map[i] = static_cast<uint8_t>(host.units[i]);
  }
  return map;
}

std::map<CEI, uint16_t> readEuros(const std::string& file, const std::string& field) {
  std::map<CEI, uint16_t> euros;
  for (const Line& line : test::readNamedTsv(folder + file)) {
    euros[std::stoi(line.at("cei"))] = static_cast<uint16_t>(hex(line.at(field)));
  }
  return euros;
}

}  // namespace

const DoubleByteText& doubleByteText(int set) {
  return remembered<DoubleByteText>(
      set, [](int number) { return makeSet(lineOf("sets.tsv", "doubleByteSet", number).value().at("table")); });
}

const SingleByteText& singleByteText(int set) { return remembered<SingleByteText>(set, makeSingleBytes); }

const std::array<uint16_t, katakanaCount>& eucKatakana() {
  static const std::array<uint16_t, katakanaCount> codes = [] {
    std::array<uint16_t, katakanaCount> made{};
    for (size_t i = 0; i < katakanaCount; ++i) made[i] = static_cast<uint16_t>(0x8EA1 + i);
    return made;
  }();
  return codes;
}

const ByteMapText& byteMapText(ByteMapKind kind) {
  static const std::array<ByteMapText, 4> maps = {
      makeByteMap(ByteMapKind::identity), makeByteMap(ByteMapKind::asciiPassthrough),
      makeByteMap(ByteMapKind::ebcdicToAscii), makeByteMap(ByteMapKind::asciiToEbcdic)};
  return maps[static_cast<size_t>(kind)];
}

std::optional<uint8_t> euroByte(CEI singleByte) {
  static const std::map<CEI, uint16_t> euros = readEuros("euro_bytes.tsv", "byte");
  const auto found = euros.find(singleByte);
  if (found == euros.end()) return std::nullopt;
  return static_cast<uint8_t>(found->second);
}

std::optional<Code> euroCode(CEI multiByte) {
  static const std::map<CEI, uint16_t> euros = readEuros("euro_codes.tsv", "code");
  const auto found = euros.find(multiByte);
  if (found == euros.end()) return std::nullopt;
  return found->second;
}

namespace {

struct GbText {
  std::vector<std::optional<uint32_t>> codes = std::vector<std::optional<uint32_t>>(codeCount);
  std::unordered_map<uint32_t, uint16_t> units;
};

const GbText& gbText() {
  static const GbText text = [] {
    GbText read;
    for (const test::Fields& line : test::readTsv("modules/qznlsgb/gb18030.tsv")) {
      const uint32_t code = hex(line.at(0));
      const auto unit = static_cast<uint16_t>(hex(line.at(1)));
      read.codes.at(unit) = code;
      if (!read.units.insert({code, unit}).second) throw std::runtime_error("two units for one code of GB18030");
    }
    return read;
  }();
  return text;
}

}  // namespace

std::optional<uint32_t> gbCode(uint16_t unit) { return gbText().codes[unit]; }

std::optional<uint16_t> gbUnit(uint32_t code) {
  const auto found = gbText().units.find(code);
  if (found == gbText().units.end()) return std::nullopt;
  return found->second;
}

}  // namespace transcode_test
