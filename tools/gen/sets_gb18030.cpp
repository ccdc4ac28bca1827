#include "sets_gb18030.h"

namespace gen::sets {

namespace {

constexpr size_t rows = 30861;
constexpr size_t shortCodes = 24068;  // of one or two bytes
constexpr size_t unitsWithoutRow = 34675;
constexpr uint16_t firstWithoutRow = 0x0452;
constexpr uint16_t highestUnit = 0xFFE5;
constexpr uint32_t lastRowCode = 0x8431A233;
constexpr size_t fromIndexBytes = 92'968;
constexpr size_t toIndexBytes = 66'866;
constexpr size_t tableBytes = rows * (sizeof(uint32_t) + sizeof(uint16_t));
static_assert(fromIndexBytes <= tableBytes && toIndexBytes <= tableBytes);

constexpr uint32_t singleCount = 0x80;
constexpr uint32_t firstDouble = 0x8140;
constexpr uint32_t lastDouble = 0xFEFE;
constexpr uint32_t lastUnit = 0xFFFF;

constexpr uint32_t firstLead = 0x81;
constexpr uint32_t lastLead = 0xFE;
constexpr uint32_t lastFourLead = 0x84;
constexpr uint32_t firstDigit = 0x30;
constexpr uint32_t digits = 10;
constexpr uint32_t leads = lastLead - firstLead + 1;
constexpr uint32_t places = (lastFourLead - firstLead + 1) * digits * leads * digits;

bool isFour(uint32_t code) { return code > 0xFFFF; }

bool isFourByteCode(uint32_t code) {
  const auto lead = [](uint32_t byte, uint32_t last) { return byte >= firstLead && byte <= last; };
  const auto digit = [](uint32_t byte) { return byte >= firstDigit && byte < firstDigit + digits; };
  return lead(code >> 24, lastFourLead) && digit(code >> 16 & 0xFF) && lead(code >> 8 & 0xFF, lastLead) &&
         digit(code & 0xFF);
}

// Four-byte codes in their order, the first being 0.
uint32_t placeOf(uint32_t code) {
  const uint32_t lead = (code >> 24) - firstLead;
  const uint32_t second = (code >> 16 & 0xFF) - firstDigit;
  const uint32_t third = (code >> 8 & 0xFF) - firstLead;
  return ((lead * digits + second) * leads + third) * digits + (code & 0xFF) - firstDigit;
}

void checkMapping(const Line& line, uint32_t code, uint16_t unit) {
  const bool isDouble = code >= firstDouble && code <= lastDouble;
  require(code < singleCount || isDouble || isFourByteCode(code), line.place,
          "no code of one byte below 80, of two from 8140 on, or of four from 81308130 on");
  require(code >= singleCount || code == unit, line.place, "a single byte stands for its own number");
}

void checkFigures(const Gb18030& gb) {
  const Place& place = gb.place;
  requireCount(place.file, gb.to.size(), rows, "rows");
  requireCount(place.file, static_cast<size_t>(std::distance(gb.to.begin(), gb.to.lower_bound(lastUnit + 1))),
               shortCodes, "codes of one or two bytes");
  require(gb.to.rbegin()->first == lastRowCode, place, "the last code must be " + hex(lastRowCode, 8));
  require(gb.from.rbegin()->first == highestUnit, place, "the highest unit must be " + hex(highestUnit, 4));
  uint32_t first = singleCount;
  while (gb.from.contains(static_cast<uint16_t>(first))) ++first;
  require(first == firstWithoutRow, place, "the first unit without a row must be " + hex(firstWithoutRow, 4));
  requireCount(place.file, lastUnit + 1 - gb.from.size(), unitsWithoutRow, "units without a row");
}

void requireCode(const Gb18030& gb, uint16_t unit, uint32_t code) {
  const auto found = gb.from.find(unit);
  require(found != gb.from.end() && found->second == code, gb.place,
          "unit " + hex(unit, 4) + " must have the code " + hex(code, 4));
}

// Sets the cells of keys; all others are `empty`.
Blocks makeBlocks(const std::map<uint32_t, uint16_t>& values, size_t keys, uint16_t empty) {
  Blocks made;
  made.cells.resize(gbBlockSize, empty);
  for (uint32_t start = 0; start < keys; start += gbBlockSize) {
    auto next = values.lower_bound(start);
    const auto end = values.lower_bound(start + gbBlockSize);
    made.starts.push_back(next == end ? uint16_t{0} : static_cast<uint16_t>(made.cells.size()));
    if (next == end) continue;
    const size_t base = made.cells.size();
    made.cells.resize(base + gbBlockSize, empty);
    for (; next != end; ++next) made.cells[base + next->first - start] = next->second;
  }
  return made;
}

}  // namespace

Gb18030 readGb18030(const std::string& path) {
  Gb18030 gb{{path, 0}, {}, {}};
  for (const Line& line : readLines(path)) {
    requireFields(line, 2);
    const uint32_t code = parseHex(line, line.field(0), 0xFFFFFFFF);
    const auto unit = static_cast<uint16_t>(parseHex(line, line.field(1), lastUnit));
    require(gb.to.empty() || code > gb.to.rbegin()->first, line.place, "lines ascend by code; move this one");
    checkMapping(line, code, unit);
    gb.to.emplace(code, unit);
    require(gb.from.emplace(unit, code).second, line.place, "a second code for this unit; keep one");
  }
  checkFigures(gb);
  requireCode(gb, 0x0080, 0x81308130);
  requireCode(gb, 0x20AC, 0xA2E3);
  requireCode(gb, 0xE000, 0xAAA1);
  requireCode(gb, 0xE7C7, 0xA8BC);
  return gb;
}

GbFromIndex makeGbFromIndex(const Gb18030& gb) {
  GbFromIndex made;
  std::map<uint32_t, uint16_t> cells;
  for (const auto& [unit, code] : gb.from) {
    const bool isLong = code < firstDouble || isFour(code);
    cells[unit] = static_cast<uint16_t>(isLong ? made.longCodes.size() : code);
    if (isLong) made.longCodes.push_back(code);
  }
  require(made.longCodes.size() <= 0x8000, gb.place, "places of other codes reach into the two-byte codes");
  made.blocks = makeBlocks(cells, lastUnit + 1, 0);
  requireCount(gb.place.file, made.bytes(), fromIndexBytes, "bytes in its look-up by unit");
  return made;
}

GbToIndex makeGbToIndex(const Gb18030& gb) {
  Mappings doubles;
  std::map<uint32_t, uint16_t> fours;
  for (const auto& [code, unit] : gb.to) {
    if (isFour(code)) {
      fours[placeOf(code)] = unit;
    } else if (code >= firstDouble) {
      doubles.emplace(static_cast<uint16_t>(code), Mapping{unit, gb.place});
    }
  }
  GbToIndex made{makeRows(doubles), makeBlocks(fours, places, gbNotFound)};
  requireCount(gb.place.file, made.bytes(), toIndexBytes, "bytes in its look-up by code");
  return made;
}

}  // namespace gen::sets
