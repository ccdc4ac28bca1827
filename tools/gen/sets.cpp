// Makes the tables of the multi-byte encodings: pair tables and look-ups of the double-byte sets, single-byte tables,
// half-width katakana and euro signs of single-byte routes, and those of GB18030.
#include "sets_emit.h"
#include "sets_facts.h"
#include "sets_gb18030.h"

namespace gen::sets {

namespace {

constexpr size_t lookUpBytes = 952'252;

std::string arrays(const std::string& prefix, const Set& set) {
  std::string name = set.table.empty() ? "none" : set.table;
  for (char& c : name) {
    if (c == '-') c = '_';
  }
  return prefix + name;
}

std::string pairTable(const std::string& prefix, const Set& set, size_t count) {
  return "{" + std::to_string(count) + ", " + (count == 0 ? "nullptr" : arrays(prefix, set)) + "}";
}

void writeSets(const std::string& out, const std::vector<Set>& sets) {
  Output to(out + "/sets/to_sets.inc");
  Output from(out + "/sets/from_sets.inc");
  for (const Set& set : sets) {
    to << "{" << pairTable("to_", set, set.to) << ", {" << arrays("rows_", set) << ", " << arrays("units_", set)
       << "}},\n";
    from << "{" << pairTable("from_", set, set.from) << ", {" << arrays("blocks_", set) << ", "
         << arrays("groups_", set) << ", " << arrays("values_", set) << "}},\n";
  }
  to.save();
  from.save();
}

void writeKatakana(Output& output, const std::string& name, Katakana codes) {
  for (uint16_t& code : codes) code = inMemory(code);
  writeNumbers(output, "uint16_t", name, codes);
}

void writeSingles(const std::string& path, const std::vector<Single>& singles) {
  Output output(path);
  for (size_t set = 0; set < singles.size(); ++set) {
    const std::string number = std::to_string(set);
    writeNumbers(output, "char16_t", "singleTo" + number, singles[set].to);
    writeNumbers(output, "uint8_t", "singleFrom" + number, singles[set].from);
    writeKatakana(output, "katakana" + number, singles[set].katakana);
  }
  writeKatakana(output, "katakanaEuc", eucKatakana());
  output.save();
}

void writeBytes(const std::string& path, const Bytes& bytes) {
  Output output(path);
  output.list(bytes.size(), [&](size_t i) { return hex(bytes[i], 2); });
  output.save();
}

void writeEuros(const std::string& path, const std::vector<Euro>& euros) {
  Output output(path);
  for (const Euro& euro : euros) {
    output << "{" << static_cast<int64_t>(euro.cei) << ", " << hex(euro.code, 2) << "},\n";
  }
  output.save();
}

// What the text holds, checked.
struct Texts {
  Tables tables;
  std::vector<Set> sets;
  std::vector<Single> singles;
  std::vector<Euro> euroBytes;
  std::vector<Euro> euroCodes;
  Gb18030 gb;
};

Texts readTexts(const std::string& data) {
  const std::string folder = data + "/modules/qznlsmb";
  const std::vector<Line> rows = readLines(data + "/encodings/rows.tsv");
  const std::vector<Profile> profiles = readProfiles(data + "/encodings/profiles.tsv");
  Texts texts{Tables(folder + "/sets"),
              readSets(folder + "/sets.tsv"),
              readSingles(folder, data + "/modules/qznlssb/pages"),
              readEuros(folder + "/euro_bytes.tsv", lastSingleByte),
              readEuros(folder + "/euro_codes.tsv", 0xFFFF),
              readGb18030(data + "/modules/qznlsgb/gb18030.tsv")};
  checkSingles({folder + "/singles.tsv", 0}, texts.singles);
  checkEuroBytes({folder + "/euro_bytes.tsv", 0}, texts.euroBytes, rows);
  checkEuroCodes({folder + "/euro_codes.tsv", 0}, texts.euroCodes, rows, profiles, texts.sets, texts.tables);
  checkKatakana({folder + "/katakana.tsv", 0}, texts.singles, texts.sets, texts.tables);
  checkSets({folder + "/sets.tsv", 0}, texts.sets, texts.tables);
  texts.tables.requireAllRead();
  for (const auto& [name, table] : texts.tables.all()) checkTable(table);
  for (const Profile& profile : profiles) checkRanges(profile, texts.sets, texts.tables);
  return texts;
}

void writeSetTables(const std::string& out, const Texts& texts) {
  Output output(out + "/sets/tables.inc");
  size_t bytes = 0;
  for (const auto& [name, table] : texts.tables.all()) bytes += writeTable(output, table);
  requireCount(texts.sets.front().place.file, bytes, lookUpBytes, "bytes in its look-ups");
  writeNoTable(output);
  output.save();
  writeSets(out, texts.sets);
  writeSingles(out + "/sets/singles.inc", texts.singles);
  constexpr size_t host = 2;
  writeBytes(out + "/sets/identity.inc", identityMap());
  writeBytes(out + "/sets/ascii_passthrough.inc", asciiPassthrough());
  writeBytes(out + "/sets/ascii_to_ebcdic.inc", asciiToHost(texts.singles[host]));
  writeBytes(out + "/sets/ebcdic_to_ascii.inc", hostToAscii(texts.singles[host]));
  writeEuros(out + "/sets/euro_bytes.inc", texts.euroBytes);
  writeEuros(out + "/sets/euro_codes.inc", texts.euroCodes);
}

template <class Mapped>
void writeRows(const std::string& path, const Mapped& rows) {
  Output output(path);
  output.list(rows.size(), [next = rows.begin()](size_t) mutable {
    const auto& [key, value] = *next++;
    return "{" + std::to_string(key) + "," + std::to_string(value) + "}";
  });
  output.save();
}

void writeGb18030(const std::string& out, const Gb18030& gb) {
  Output output(out + "/sets/gb18030.inc");
  const GbFromIndex from = makeGbFromIndex(gb);
  writeNumbers(output, "uint16_t", "fromBlocks", from.blocks.starts);
  writeNumbers(output, "uint16_t", "fromCells", from.blocks.cells);
  writeNumbers(output, "uint32_t", "longCodes", from.longCodes);
  const GbToIndex to = makeGbToIndex(gb);
  writeRows(output, "doubles", to.doubles);
  writeNumbers(output, "uint16_t", "fourBlocks", to.fours.starts);
  writeNumbers(output, "char16_t", "fourUnits", to.fours.cells);
  output.save();
  writeRows(out + "/sets/gb18030_from.inc", gb.from);
  writeRows(out + "/sets/gb18030_to.inc", gb.to);
}

}  // namespace

}  // namespace gen::sets

int main(int count, char** values) {
  const gen::Arguments arguments = gen::parseArguments(count, values);
  const gen::sets::Texts texts = gen::sets::readTexts(arguments.data);
  gen::sets::writeSetTables(arguments.out, texts);
  gen::sets::writeGb18030(arguments.out, texts.gb);
}
