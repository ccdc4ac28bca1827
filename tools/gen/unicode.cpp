// Makes the Unicode tables: character records, and case and classes of 16-bit units. Each output is the initialiser of
// one table, without its braces.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "text.h"

namespace {

using gen::Line;
using gen::Output;
using gen::Place;
using gen::require;
using gen::requireCount;
using gen::requireFields;

constexpr uint32_t lastCodePoint = 0x10FFFF;
constexpr uint32_t lastUnit = 0xFFFF;

struct Range {
  uint32_t first;
  uint32_t last;
};

// "0041" or "0041..005A".
Range parseRange(const Line& line, const std::string& text) {
  const size_t dots = text.find("..");
  const uint32_t first = gen::parseHex(line, text.substr(0, dots), lastCodePoint);
  if (dots == std::string::npos) return {first, first};
  const uint32_t last = gen::parseHex(line, text.substr(dots + 2), lastCodePoint);
  require(first < last, line.place, "a range must rise; write a single code without \"..\"");
  return {first, last};
}

// ---- Character records ----

constexpr size_t recordCount = 17700;
constexpr size_t recordsAboveBmp = 4298;
constexpr uint32_t lastRecord = 0xE01EF;
constexpr size_t contiguousRecords = 880;  // from U+0000 on
constexpr size_t recordRuns = 426;         // maximal runs of consecutive code points

constexpr std::array categories = {"Lu", "Ll", "Lt", "Mn", "Mc", "Me", "Nd", "Nl", "No", "Zs",
                                   "Zl", "Zp", "Cc", "Cf", "Cs", "Co", "Lm", "Lo", "Pc", "Pd",
                                   "Ps", "Pe", "Pi", "Pf", "Po", "Sm", "Sc", "Sk", "So"};
constexpr std::array bidiClasses = {"L",  "LRE", "LRO", "R",   "AL", "RLE", "RLO", "PDF", "EN", "ES",
                                    "ET", "AN",  "CS",  "NSM", "BN", "B",   "S",   "WS",  "ON"};

template <class Names>
void requireName(const Line& line, const Names& names, const std::string& name) {
  require(std::find(names.begin(), names.end(), name) != names.end(), line.place, "unknown name: " + name);
}

std::string optionalCode(const Line& line, size_t field) {
  const std::string& text = line.field(field);
  return text == "-" ? "0" : gen::hex(gen::parseHex(line, text, lastCodePoint), 1);
}

struct RecordLine {
  Range range;
  std::string rest;  // all fields behind the code, as an initialiser
};

RecordLine parseRecord(const Line& line) {
  requireFields(line, 8);
  const Range range = parseRange(line, line.field(0));
  requireName(line, categories, line.field(1));
  requireName(line, bidiClasses, line.field(2));
  std::string rest = "NLS_CATEGORY_" + gen::upperCase(line.field(1)) + ",NLS_BIDI_" + line.field(2) + "," +
                     std::to_string(gen::parseDecimal(line, line.field(3), 0, 254));
  bool maps = false;
  for (size_t field = 4; field < 8; ++field) {
    rest += "," + optionalCode(line, field);
    maps = maps || line.field(field) != "-";
  }
  require(!maps || range.first == range.last, line.place, "a range can't have a mapping; give each code its line");
  return {range, rest};
}

void makeCharacterRecords(const gen::Arguments& arguments) {
  const std::string file = arguments.data + "/unicode/character_records.tsv";
  std::vector<uint32_t> codes;
  std::vector<std::string> rows;
  for (const Line& line : gen::readLines(file)) {
    const auto [range, rest] = parseRecord(line);
    require(codes.empty() || codes.back() < range.first, line.place, "codes must rise");
    for (uint32_t code = range.first; code <= range.last; ++code) {
      codes.push_back(code);
      rows.push_back("{" + gen::hex(code, 4) + "," + rest + "}");
    }
  }
  requireCount(file, codes.size(), recordCount, "records");
  require(codes.back() == lastRecord, {file, 0}, "the last record must be " + gen::hex(lastRecord, 4));
  require(codes[contiguousRecords - 1] == contiguousRecords - 1, {file, 0},
          "the first " + std::to_string(contiguousRecords) + " records run from U+0000 on without a gap");
  const auto above = std::count_if(codes.begin(), codes.end(), [](uint32_t code) { return code > lastUnit; });
  requireCount(file, static_cast<size_t>(above), recordsAboveBmp, "records above U+FFFF");
  size_t runs = 1;
  for (size_t i = 1; i < codes.size(); ++i) runs += codes[i] != codes[i - 1] + 1;
  requireCount(file, runs, recordRuns, "runs of records");

  Output out(arguments.out + "/unicode/character_records.inc");
  out.list(rows.size(), [&](size_t i) { return rows[i]; });
  out.save();
}

// ---- Case of 16-bit units ----

constexpr size_t blockSize = 128;
constexpr size_t blockCount = 512;
constexpr size_t casedBlocks = 19;
constexpr int maxDelta = 127;
constexpr int exceptionMark = -128;

struct CaseMapping {
  std::map<uint32_t, uint32_t> pairs;

  void add(const Line& line, uint32_t from, uint32_t to) {
    require(pairs.emplace(from, to).second, line.place, "a second mapping of " + gen::hex(from, 4));
  }
};

bool isException(uint32_t from, uint32_t to) {
  return std::abs(static_cast<int>(to) - static_cast<int>(from)) > maxDelta;
}

// Offset of each block of 128 units into the delta tables, -1 for a block without cased letters.
std::vector<int> indexBlocks(const std::string& file, const CaseMapping& lower, const CaseMapping& upper) {
  std::vector<int> offsets(blockCount, -1);
  for (const CaseMapping* mapping : {&lower, &upper}) {
    for (const auto& pair : mapping->pairs) offsets[pair.first / blockSize] = 0;
  }
  size_t used = 0;
  for (int& offset : offsets) {
    if (offset == 0) offset = static_cast<int>(blockSize * used++);
  }
  requireCount(file, used, casedBlocks, "blocks with cased letters");
  return offsets;
}

void writeMapping(Output& out, const std::string& name, const CaseMapping& mapping, const std::vector<int>& blocks) {
  std::vector<int> deltas(casedBlocks * blockSize, 0);
  std::vector<uint32_t> exceptions;
  for (const auto& [from, to] : mapping.pairs) {
    int& delta = deltas[static_cast<size_t>(blocks[from / blockSize]) + from % blockSize];
    if (isException(from, to)) {
      delta = exceptionMark;
      exceptions.insert(exceptions.end(), {from, to});
    } else {
      delta = static_cast<int>(to) - static_cast<int>(from);
    }
  }
  exceptions.push_back(0);
  out << "." << name << "Deltas = {\n";
  out.list(deltas.size(), [&](size_t i) { return std::to_string(deltas[i]); });
  out << "},\n." << name << "Exceptions = {\n";
  out.list(exceptions.size(), [&](size_t i) { return gen::hex(exceptions[i], 4); });
  out << "},\n";
}

void checkMapping(const std::string& file, const std::string& name, const CaseMapping& mapping, size_t pairs,
                  size_t exceptions) {
  requireCount(file, mapping.pairs.size(), pairs, "mappings to " + name);
  const auto found = std::count_if(mapping.pairs.begin(), mapping.pairs.end(),
                                   [](const auto& pair) { return isException(pair.first, pair.second); });
  requireCount(file, static_cast<size_t>(found), exceptions, "mappings to " + name + " over a distance above 127");
}

void makeCaseTables(const gen::Arguments& arguments) {
  const std::string file = arguments.data + "/unicode/case_pairs.tsv";
  CaseMapping lower;
  CaseMapping upper;
  for (const Line& line : gen::readLines(file)) {
    requireFields(line, 3);
    const uint32_t upperCode = gen::parseHex(line, line.field(0), lastUnit);
    const uint32_t lowerCode = gen::parseHex(line, line.field(2), lastUnit);
    const std::string& direction = line.field(1);
    require(direction == "<>" || direction == ">" || direction == "<", line.place,
            "the direction must be \"<>\", \">\" (only to lower) or \"<\" (only to upper)");
    require(upperCode != lowerCode && upperCode != 0 && lowerCode != 0, line.place, "not a pair of two letters");
    if (direction != "<") lower.add(line, upperCode, lowerCode);
    if (direction != ">") upper.add(line, lowerCode, upperCode);
  }
  checkMapping(file, "lower", lower, 706, 19);
  checkMapping(file, "upper", upper, 671, 20);
  const std::vector<int> blocks = indexBlocks(file, lower, upper);

  Output out(arguments.out + "/unicode/case_tables.inc");
  out << ".blocks = {\n";
  out.list(blocks.size(), [&](size_t i) { return std::to_string(blocks[i]); });
  out << "},\n";
  writeMapping(out, "lower", lower, blocks);
  writeMapping(out, "upper", upper, blocks);
  out.save();
}

// ---- Classes of 16-bit units ----

struct ClassFigure {
  const char* name;
  size_t rows;
};
constexpr std::array classFigures = {ClassFigure{"digit", 22},  ClassFigure{"lower", 411},
                                     ClassFigure{"upper", 405}, ClassFigure{"alpha", 428},
                                     ClassFigure{"space", 10},  ClassFigure{"printable", 357}};

void makeClassTables(const gen::Arguments& arguments) {
  const std::string file = arguments.data + "/unicode/class_ranges.tsv";
  std::map<std::string, std::vector<Range>> classes;
  for (const ClassFigure& figure : classFigures) classes[figure.name];
  for (const Line& line : gen::readLines(file)) {
    requireFields(line, 2);
    const auto found = classes.find(line.field(0));
    require(found != classes.end(), line.place, "unknown class: " + line.field(0));
    const Range range = parseRange(line, line.field(1));
    std::vector<Range>& rows = found->second;
    require(rows.empty() || rows.back().last < range.first, line.place, "the ranges of a class must rise");
    rows.push_back(range);
  }

  Output out(arguments.out + "/unicode/class_tables.inc");
  for (const ClassFigure& figure : classFigures) {
    const std::vector<Range>& rows = classes[figure.name];
    requireCount(file, rows.size(), figure.rows, "rows of class " + std::string(figure.name));
    out << "." << figure.name << " = {{\n";
    out.list(rows.size(),
             [&](size_t i) { return "{" + gen::hex(rows[i].first, 4) + "," + gen::hex(rows[i].last, 4) + "}"; });
    out << "}},\n";
  }
  out.save();
}

}  // namespace

int main(int count, char** values) {
  const gen::Arguments arguments = gen::parseArguments(count, values);
  makeCharacterRecords(arguments);
  makeCaseTables(arguments);
  makeClassTables(arguments);
  return 0;
}
