#include <algorithm>

#include "encodings_model.h"

namespace gen {

namespace {

constexpr size_t maximumShift = 4;
constexpr size_t maximumRanges = 4;
constexpr int structureShifted = 1;
constexpr int structureEuc = 2;
constexpr int maximumDoubleByteSet = 20;
constexpr int maximumSingleByteSet = 6;
constexpr int aliasWithoutFlags = 17;
const std::vector<uint32_t> markShiftOut = {0xFD};
const std::vector<uint32_t> markShiftIn = {0xFE};

// "0E", "0A42"; "-" is none.
std::vector<uint32_t> parseBytes(const Line& line, const std::string& text, size_t maximum) {
  std::vector<uint32_t> bytes;
  if (text == "-") return bytes;
  require(!text.empty() && text.size() % 2 == 0 && text.size() / 2 <= maximum, line.place,
          "expected pairs of hexadecimal digits for up to " + std::to_string(maximum) + " bytes, or \"-\"");
  for (size_t i = 0; i < text.size(); i += 2) bytes.push_back(parseHex(line, text.substr(i, 2), 0xFF));
  return bytes;
}

// "81-9F E0-FC"; "-" is none.
std::vector<Range> parseRanges(const Line& line, const std::string& text) {
  std::vector<Range> ranges;
  if (text == "-") return ranges;
  for (const std::string& part : split(text, ' ')) {
    const std::vector<std::string> ends = split(part, '-');
    require(ends.size() == 2, line.place, "a range is low-high: \"" + part + "\"");
    const Range range{parseHex(line, ends[0], 0xFF), parseHex(line, ends[1], 0xFF)};
    require(range.low != 0 && range.low <= range.high, line.place,
            "a range runs from a byte above 0 to one not below it: \"" + part + "\"");
    ranges.push_back(range);
  }
  require(ranges.size() <= maximumRanges, line.place, "at most four ranges fit");
  return ranges;
}

Profile parseProfile(const Line& line) {
  requireFields(line, 9);
  Profile profile;
  profile.present = true;
  profile.structure = static_cast<int>(parseDecimal(line, line.field(1), 0, structureEuc));
  profile.doubleByteSet = static_cast<int>(parseDecimal(line, line.field(2), 0, maximumDoubleByteSet));
  profile.singleByteSet = static_cast<int>(parseDecimal(line, line.field(3), 0, maximumSingleByteSet));
  profile.shiftOut = parseBytes(line, line.field(4), maximumShift);
  profile.shiftIn = parseBytes(line, line.field(5), maximumShift);
  require(profile.shiftOut.size() == profile.shiftIn.size(), line.place, "both shift sequences have one length");
  profile.doubleBlank = parseBytes(line, line.field(6), 2);
  profile.lead = parseRanges(line, line.field(7));
  profile.trail = parseRanges(line, line.field(8));
  return profile;
}

void checkProfile(const Row& row) {
  const Profile& profile = row.profile;
  const bool shifted = row.encodingClass == classShifted;
  const bool multiByte = shifted || row.encodingClass == classMultiByte;
  if (!multiByte) {
    const bool directional = (row.flags & flagDirectional) != 0;
    require(profile.present == directional, row.place,
            "of the rows outside of the classes 4 and 5, those with flag 0x10 and no others have a profile");
    require(!directional || (profile.doubleByteSet == 0 && profile.shiftOut == markShiftOut &&
                             profile.shiftIn == markShiftIn && profile.doubleBlank.empty() && profile.lead.empty()),
            row.place, "the profile of a row with flag 0x10 holds the marks FD and FE and nothing else");
    return;
  }
  require(profile.present, row.place, "the row is multi-byte; give it a line in profiles.tsv");
  require(profile.doubleByteSet > 0, row.place, "a multi-byte row has a doubleByteSet above 0");
  require(profile.doubleBlank.size() == 2 && !profile.lead.empty() && !profile.trail.empty(), row.place,
          "a multi-byte row has a two-byte blank, lead ranges and trail ranges");
  require((profile.structure == structureShifted) == shifted, row.place,
          "structure 1 belongs to class 4 and to no other");
  require(profile.shiftOut.empty() != shifted, row.place, "shift sequences belong to class 4 and to no other");
}

std::map<int, int> readNarrowRows(const Encodings& model) {
  std::map<int, int> narrow;
  for (const Line& line : readLines(model.folder + "narrow-rows.tsv")) {
    requireFields(line, 2);
    const int cei = parseCei(line, line.field(0));
    require(cei >= aliasEnd && model.rows[static_cast<size_t>(cei)].encodingClass == classShifted, line.place,
            "only rows of class 4 that are no aliases are narrow; remove the line");
    const auto size = static_cast<int>(parseDecimal(line, line.field(1), 1, 8));
    require(narrow.emplace(cei, size).second, line.place, "row " + line.field(0) + " stands twice; remove one");
  }
  return narrow;
}

// The room of one double-byte character between its shifts, but for the rows listed as narrow.
void checkShiftedUnitSizes(const Encodings& model) {
  const std::map<int, int> narrow = readNarrowRows(model);
  for (int cei = aliasEnd; cei < rowCount; ++cei) {
    const Row& row = model.rows[static_cast<size_t>(cei)];
    if (row.encodingClass != classShifted) continue;
    const int room = static_cast<int>(2 + 2 * row.profile.shiftOut.size());
    const auto exception = narrow.find(cei);
    const int size = exception == narrow.end() ? room : exception->second;
    require(row.unitSize == size, row.place, "unitSize of this row is " + std::to_string(size));
    require(exception == narrow.end() || size < room, row.place,
            "the row has room for its shifts; remove it from narrow-rows.tsv");
  }
}

// An alias is like the row that is listed for it, or like the first cell of its type.
void loadAliasModels(Encodings& model) {
  for (int alias = 1; alias < aliasEnd; ++alias) {
    if (!isAlias(alias) || alias == utf16Cei) continue;
    const auto& cells = model.types[static_cast<size_t>(alias)].cells;
    const auto cell = std::find_if(cells.begin(), cells.end(), [](int cei) { return cei != 0; });
    if (cell != cells.end()) model.aliasModels[alias] = *cell;
  }
  for (const Line& line : readLines(model.folder + "alias-models.tsv")) {
    requireFields(line, 2);
    const int alias = parseCei(line, line.field(0));
    require(isAlias(alias) && alias != utf16Cei, line.place, "not the CEI of a double-byte type");
    require(model.aliasModels.emplace(alias, parseCei(line, line.field(1))).second, line.place,
            "the alias has a model, the first cell of its type; remove the line");
  }
}

}  // namespace

void loadProfiles(Encodings& model) {
  for (const Line& line : readLines(model.folder + "profiles.tsv")) {
    const Profile profile = parseProfile(line);
    for (const std::string& text : split(line.field(0), ' ')) {
      const int cei = parseCei(line, text);
      require(cei >= aliasEnd, line.place, "aliases take the profile of their model; remove " + text);
      Row& row = model.rows[static_cast<size_t>(cei)];
      require(!row.profile.present, line.place, "row " + text + " has a profile already");
      row.profile = profile;
    }
  }
  loadAliasModels(model);
  for (const auto& [alias, like] : model.aliasModels) {
    model.rows[static_cast<size_t>(alias)].profile = model.rows[static_cast<size_t>(like)].profile;
  }
  for (const Row& row : model.rows) checkProfile(row);
  checkShiftedUnitSizes(model);
}

void checkAliases(const Encodings& model) {
  for (const auto& [alias, like] : model.aliasModels) {
    const Row& row = model.rows[static_cast<size_t>(alias)];
    const Row& other = model.rows[static_cast<size_t>(like)];
    require(row.encodingClass == other.encodingClass && row.unitSize == other.unitSize && row.baseCei == other.baseCei,
            row.place, "an alias has the class, unitSize and baseCei of row " + std::to_string(like));
    require(row.flags == (alias == aliasWithoutFlags ? 0 : other.flags), row.place,
            "an alias has the flags of row " + std::to_string(like) + ", but row 17 has none");
    for (const size_t column :
         {primaryName, description, identifier, longDescription, ianaName, javaName, ccsid, codePage, preferredName}) {
      require(row.texts[column].empty(), row.place, "an alias has no text but its blank shortName");
    }
  }
}

}  // namespace gen
