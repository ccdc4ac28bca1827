#include <algorithm>
#include <set>

#include "encodings_model.h"

namespace gen {

namespace {

constexpr size_t typeCount = 24;
constexpr size_t languageCount = 9;
constexpr size_t groupPairCount = 113;
constexpr size_t mibPairCount = 55;
constexpr size_t familyCount = 5;
constexpr int utfEbcdicCei = 161;  // in a group without the flag: its invariant characters are EBCDIC's
constexpr int typeUcs2 = 19;
constexpr int typeUtf8 = 20;
constexpr int columnNone = 0;
constexpr int columnUnknown = 5;

const Row& rowOf(const Encodings& model, int cei) { return model.rows[static_cast<size_t>(cei)]; }

void loadTypes(Encodings& model) {
  const std::string path = model.folder + "dbcs-types.tsv";
  std::set<std::string> names;
  for (const Line& line : readLines(path)) {
    requireFields(line, 3 + dbcsColumnCount);
    const auto number = static_cast<int>(model.types.size());
    require(parseDecimal(line, line.field(0), 0, static_cast<int64_t>(typeCount) - 1) == number, line.place,
            "types stand in the order of their numbers; expected " + std::to_string(number));
    DbcsType type;
    type.name = line.field(1);
    requirePlainText(line.place, type.name);
    require(names.insert(type.name).second, line.place, "the name " + type.name + " is taken");
    type.flags = parseHex(line, line.field(2), 0xFFFF);
    for (size_t i = 0; i < type.cells.size(); ++i) {
      const int cell = type.cells[i] = parseCei(line, line.field(3 + i));
      require(cell == 0 || !isAlias(cell), line.place, "a cell is an encoding and not an alias");
    }
    require(type.cells[columnNone] == 0, line.place, "the column NONE holds 0");
    require((type.cells[columnUnknown] != 0) == (number == typeUcs2 || number == typeUtf8), line.place,
            "the column UNKNOWN holds 0 but for the types UCS2 and UTF8");
    model.types.push_back(type);
  }
  requireCount(path, model.types.size(), typeCount, "types");
}

void loadLanguages(Encodings& model) {
  const std::string path = model.folder + "dbcs-languages.tsv";
  std::set<std::string> names;
  std::set<uint32_t> codes;
  for (const Line& line : readLines(path)) {
    requireFields(line, 3);
    const DbcsLanguage language{line.field(0), line.field(1), parseHex(line, line.field(2), 0xFFFF)};
    requirePlainText(line.place, language.name);
    require(names.insert(language.name).second, line.place, "the name " + language.name + " is taken");
    if (!language.alternate.empty()) {
      requirePlainText(line.place, language.alternate);
      require(names.insert(language.alternate).second, line.place, "the name " + language.alternate + " is taken");
    }
    require((language.code & 0xFF) < dbcsColumnCount && codes.insert(language.code).second, line.place,
            "a code is unique and its low byte is a column of dbcs-types.tsv");
    model.languages.push_back(language);
  }
  requireCount(path, model.languages.size(), languageCount, "languages");
}

void loadGroups(Encodings& model) {
  const std::string path = model.folder + "ebcdic-groups.tsv";
  std::set<int> seen;
  for (const Line& line : readLines(path)) {
    requireFields(line, 2);
    const int cei = parseCei(line, line.field(0));
    require(seen.insert(cei).second, line.place, "an encoding is in one group; row " + line.field(0) + " is in two");
    require((rowOf(model, cei).flags & flagEbcdic) != 0 || cei == utfEbcdicCei, line.place,
            "an encoding of a group has flag 0x8");
    model.groups.emplace_back(cei, static_cast<int>(parseDecimal(line, line.field(1), 1, 20)));
  }
  requireCount(path, model.groups.size(), groupPairCount, "pairs");
}

void loadMibs(Encodings& model) {
  const std::string path = model.folder + "mib-enums.tsv";
  std::set<int> indexed;
  for (const Line& line : readLines(path)) {
    requireFields(line, 2);
    const int mib = static_cast<int>(parseDecimal(line, line.field(0), 1, 9999));
    const int cei = parseCei(line, line.field(1));
    require(model.mibs.empty() || model.mibs.back().first < mib, line.place,
            "pairs are sorted by MIBenum and no number stands twice");
    require(rowOf(model, cei).mibEnum == mib, line.place,
            "the column mibEnum of row " + line.field(1) + " has another number");
    model.mibs.emplace_back(mib, cei);
    indexed.insert(mib);
  }
  requireCount(path, model.mibs.size(), mibPairCount, "pairs");
  for (const Row& row : model.rows) {
    require(row.mibEnum == 0 || indexed.contains(row.mibEnum), row.place,
            "mibEnum " + std::to_string(row.mibEnum) + " has no line in mib-enums.tsv");
  }
}

void loadFamilies(Encodings& model) {
  const std::string path = model.folder + "families.tsv";
  std::set<int> seen;
  for (const Line& line : readLines(path)) {
    requireFields(line, 4);
    Family family;
    family.head = parseCei(line, line.field(0));
    for (const std::string& text : split(line.field(1), ' ')) {
      family.members.push_back(parseCei(line, text));
      require(seen.insert(family.members.back()).second, line.place, "row " + text + " is in two families");
      require(rowOf(model, family.members.back()).encodingClass == classMultiByte, line.place,
              "members of a family are of class 5");
    }
    require(std::count(family.members.begin(), family.members.end(), family.head) == 1, line.place,
            "the head is a member of its family");
    family.language = static_cast<int>(parseDecimal(line, line.field(2), 1, dbcsColumnCount - 1));
    family.type = static_cast<int>(parseDecimal(line, line.field(3), 0, static_cast<int64_t>(typeCount) - 1));
    require(model.types[static_cast<size_t>(family.type)].cells[static_cast<size_t>(family.language)] == family.head,
            line.place, "the cell of this language and type in dbcs-types.tsv is not the head");
    model.families.push_back(family);
  }
  requireCount(path, model.families.size(), familyCount, "families");
}

// Kinds 1 to 3 are the first columns of text.
void loadLiterals(Encodings& model) {
  constexpr std::array<size_t, 4> columnOfKind = {columnCount, shortName, primaryName, description};
  for (const Line& line : readLines(model.folder + "lookup-literals.tsv")) {
    requireFields(line, 3);
    const Literal literal{static_cast<int>(parseDecimal(line, line.field(0), 1, 3)), line.field(1),
                          parseCei(line, line.field(2))};
    requirePlainText(line.place, literal.text);
    require(upperCase(literal.text) == literal.text, line.place, "literal keys are upper case");
    for (const Row& row : model.rows) {
      require(upperCase(row.texts[columnOfKind[static_cast<size_t>(literal.kind)]]) != literal.text, line.place,
              "a row has this text, so the literal key is never reached; remove it");
    }
    model.literals.push_back(literal);
  }
}

}  // namespace

void loadDbcs(Encodings& model) {
  loadTypes(model);
  loadLanguages(model);
}

void loadRelations(Encodings& model) {
  loadGroups(model);
  loadMibs(model);
  loadFamilies(model);
  loadLiterals(model);
}

}  // namespace gen
