#include <algorithm>
#include <set>

#include "encodings_model.h"

namespace gen {

namespace {

constexpr size_t rowFields = 18;
constexpr uint32_t asciiBlank = 0x20;
constexpr uint32_t asciiSubstitute = 0x1A;
constexpr uint32_t ebcdicBlank = 0x40;
constexpr uint32_t ebcdicSubstitute = 0x3F;
constexpr uint32_t utf8Replacement = 0xEFBFBD;

// Figures of the table.
constexpr std::array<int, 6> classCounts = {149, 2, 3, 2, 41, 33};
const std::set<int> rowsWithoutFlag = {0, 17, 19, 24, 25, 26, 27, 94, 107, 161};
const std::set<int> vacantRows = {17, 94, 107};

void checkText(const Row& row, size_t column) {
  const std::string& text = row.texts[column];
  const TextColumn& facts = textColumns[column];
  require(text.size() < facts.capacity, row.place,
          std::string(facts.name) + " has " + std::to_string(text.size()) + " units; shorten it to " +
              std::to_string(facts.capacity - 1));
  if (column == shortName && text == "    ") return;
  if (!text.empty()) requirePlainText(row.place, text);
  if (column == ccsid || column == codePage) {
    require(std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; }), row.place,
            std::string(facts.name) + " must be decimal digits: \"" + text + "\"");
  }
  if (column == identifier && !text.empty()) {
    const bool plain = std::all_of(text.begin(), text.end(),
                                   [](char c) { return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_'; });
    require(plain && text.starts_with("U_") && text.ends_with("_CE"), row.place,
            "identifier must be U_..._CE of capitals, digits and underscores: \"" + text + "\"");
  }
}

Row parseRow(const Line& line, int cei) {
  requireFields(line, rowFields);
  require(parseDecimal(line, line.field(0), 0, rowCount - 1) == cei, line.place,
          "rows stand in the order of their CEI; expected " + std::to_string(cei));
  Row row;
  row.place = line.place;
  row.encodingClass = static_cast<int>(parseDecimal(line, line.field(1), classSingleByte, classMultiByte));
  row.flags = parseHex(line, line.field(2), flagAscii | flagEbcdic | flagDirectional);
  row.padChar = parseHex(line, line.field(3), 0xFFFFFFFF);
  row.substitution = parseHex(line, line.field(4), 0xFFFFFFFF);
  row.unitSize = static_cast<int>(parseDecimal(line, line.field(5), 1, 8));
  for (size_t i = 0; i < columnCount; ++i) {
    row.texts[i] = line.field(textColumns[i].field);
    row.lengths[i] = row.texts[i].size();
    checkText(row, i);
  }
  row.baseCei = static_cast<int>(parseDecimal(line, line.field(15), 1, rowCount - 1));
  row.mibEnum = static_cast<int>(parseDecimal(line, line.field(16), 0, 9999));
  return row;
}

void checkFlags(const Row& row, int cei) {
  require((row.flags & ~(flagAscii | flagEbcdic | flagDirectional)) == 0, row.place,
          "flags are of the bits 0x1, 0x8 and 0x10");
  const bool none = (row.flags & (flagAscii | flagEbcdic)) == 0;
  require(none == rowsWithoutFlag.contains(cei), row.place,
          none ? "the row needs flag 0x1 or 0x8" : "this row has neither flag 0x1 nor 0x8; set flags to 0x0");
  const bool both = (row.flags & flagAscii) != 0 && (row.flags & flagEbcdic) != 0;
  require(both == (cei == anyCei), row.place, "flags 0x1 and 0x8 stand together in row 204 and nowhere else");
  const std::string& name = row.texts[primaryName];
  require(((row.flags & flagDirectional) != 0) == (name == "whebrew" || name == "warabic"), row.place,
          "flag 0x10 belongs to whebrew and warabic and to no other row");
}

void checkBlanks(const Row& row, int cei) {
  uint32_t pad = asciiBlank;
  uint32_t substitute = asciiSubstitute;
  if (cei == anyCei) {
    pad = substitute = 0;
  } else if (row.encodingClass == classUtf16 || row.encodingClass == classUtf32) {
    const bool big = row.texts[primaryName].ends_with("be");
    const bool wide = row.encodingClass == classUtf32;
    pad = big ? wide ? 0x20000000 : 0x2000 : asciiBlank;
    substitute = big ? wide ? 0xFDFF0000 : 0xFDFF : 0xFFFD;
  } else if ((row.flags & flagEbcdic) != 0 || cei == 107 || cei == 161) {
    pad = ebcdicBlank;
    substitute = ebcdicSubstitute;
  } else if (cei == utf8Cei) {
    substitute = utf8Replacement;
  }
  require(row.padChar == pad, row.place, "padChar of this row is " + hex(pad, 2));
  require(row.substitution == substitute, row.place, "substitution of this row is " + hex(substitute, 2));
}

// Class 4 depends on the shift sequences and is checked with the profiles.
void checkUnitSize(const Row& row, int cei) {
  static const std::set<int> fourByteRows = {10, 11, 119, 134, 140, 159, 160, 205};
  int size = row.unitSize;
  switch (row.encodingClass) {
    case classSingleByte:
      size = 1;
      break;
    case classUtf8:
      size = cei == utf8Cei ? 4 : 3;
      break;
    case classUtf16:
      size = 2;
      break;
    case classUtf32:
      size = 4;
      break;
    case classMultiByte:
      size = row.texts[primaryName] == "ucsu" ? 3 : fourByteRows.contains(cei) ? 4 : 2;
      break;
    default:
      break;
  }
  require(row.unitSize == size, row.place, "unitSize of this row is " + std::to_string(size));
}

void checkNames(const Encodings& model) {
  std::set<std::string> shortNames, names, identifiers;
  for (size_t cei = 0; cei < model.rows.size(); ++cei) {
    const Row& row = model.rows[cei];
    const std::string& text = row.texts[shortName];
    require(text.empty() == vacantRows.contains(static_cast<int>(cei)), row.place,
            "vacant rows have an empty shortName, all other rows one of four units");
    require(text.empty() || text.size() == 4, row.place, "shortName has four units; pad it with blanks");
    if (!text.empty() && text != "    ") {
      require(shortNames.insert(upperCase(text)).second, row.place,
              "shortName \"" + text + "\" is taken; choose another");
    }
    const std::string& name = row.texts[primaryName];
    require(name.empty() == row.texts[identifier].empty(), row.place, "a row has both name and identifier, or neither");
    if (name.empty()) continue;
    require(names.insert(upperCase(name)).second, row.place, "name \"" + name + "\" is taken; choose another");
    require(identifiers.insert(row.texts[identifier]).second, row.place,
            "identifier " + row.texts[identifier] + " is taken; two rows would share a macro");
  }
}

void loadLengthExceptions(Encodings& model) {
  const std::string path = model.folder + "length-exceptions.tsv";
  std::set<std::pair<int, size_t>> seen;
  for (const Line& line : readLines(path)) {
    requireFields(line, 3);
    const int cei = parseCei(line, line.field(0));
    Row& row = model.rows[static_cast<size_t>(cei)];
    const auto column = std::find_if(textColumns.begin(), textColumns.end(),
                                     [&](const TextColumn& c) { return line.field(1) == c.name; });
    require(column != textColumns.end(), line.place, "no such column: " + line.field(1));
    const auto index = static_cast<size_t>(column - textColumns.begin());
    require(seen.emplace(cei, index).second, line.place,
            "the length of " + line.field(1) + " in row " + line.field(0) + " stands twice; remove one");
    const auto length =
        static_cast<size_t>(parseDecimal(line, line.field(2), 0, static_cast<int64_t>(column->capacity) - 1));
    require(length != row.texts[index].size(), line.place, "this length agrees with the text; remove the line");
    row.lengths[index] = length;
  }
}

}  // namespace

void loadRows(Encodings& model) {
  const std::string path = model.folder + "rows.tsv";
  const std::vector<Line> lines = readLines(path);
  requireCount(path, lines.size(), rowCount, "rows");
  std::array<int, classCounts.size()> counts{};
  for (int cei = 0; cei < rowCount; ++cei) {
    const Row row = parseRow(lines[static_cast<size_t>(cei)], cei);
    checkFlags(row, cei);
    checkBlanks(row, cei);
    checkUnitSize(row, cei);
    ++counts[static_cast<size_t>(row.encodingClass)];
    model.rows.push_back(row);
  }
  for (size_t i = 0; i < counts.size(); ++i) {
    require(counts[i] == classCounts[i], {path, 0},
            "class " + std::to_string(i) + " has " + std::to_string(counts[i]) + " rows; it must have " +
                std::to_string(classCounts[i]));
  }
  checkNames(model);
  for (const Row& row : model.rows) {
    require(model.rows[static_cast<size_t>(row.baseCei)].baseCei == row.baseCei, row.place,
            "baseCei must name a row that is its own base");
  }
  loadLengthExceptions(model);
}

int parseCei(const Line& line, std::string_view text) {
  return static_cast<int>(parseDecimal(line, text, 0, rowCount - 1));
}

void requirePlainText(const Place& place, const std::string& text) {
  const bool plain = std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
  require(plain && !text.empty() && text.front() != ' ' && text.back() != ' ', place,
          "\"" + text + "\" must be printable ASCII without blanks around it");
}

}  // namespace gen
