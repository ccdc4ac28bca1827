#include "sets_facts.h"

#include <algorithm>
#include <set>

namespace gen::sets {

namespace {

constexpr size_t setCount = 21;
constexpr size_t emptySets[] = {0, 10, 11, 12};
constexpr struct {
  size_t set;
  size_t model;
} sharingSets[] = {{8, 7}, {14, 13}, {20, 18}};

// Sides whose known size no published table has.
constexpr size_t otherToSizes[] = {1, 3, 16, 19};
constexpr size_t otherFromSizes[] = {1, 18, 19, 20};

constexpr uint16_t ideographicSpace = 0x3000;
constexpr uint16_t euroSign = 0x20AC;
constexpr uint16_t firstSurrogate = 0xD800;
constexpr uint16_t lastSurrogate = 0xDFFF;
constexpr uint16_t replacement = 0xFFFD;
constexpr uint32_t eucKatakanaLead = 0x8E;

// Codes that are written and not read, and how a table treats U+3000, which rows convert by their own blank.
struct Expectation {
  std::string_view table;
  size_t writtenOnly;
  bool spaceTo;
  bool spaceFrom;
};
constexpr Expectation expectations[] = {{"ibm-939", 0, true, true},
                                        {"ibm-933", 0, true, true},
                                        {"ms-949", 0, true, true},
                                        {"ibm-935", 1, false, true},
                                        {"jis-x-0208", 74, false, false}};

Expectation expectationOf(const std::string& table) {
  for (const Expectation& expectation : expectations) {
    if (expectation.table == table) return expectation;
  }
  return {table, 0, false, false};
}

template <class List>
bool has(const List& list, size_t number) {
  return std::find(std::begin(list), std::end(list), number) != std::end(list);
}

void checkSize(const Set& set, const char* side, size_t size, size_t stated, size_t known, bool reachable) {
  const std::string what = "mappings " + std::string(side) + " Unicode";
  require(size == stated, set.place,
          "table " + set.table + " has " + std::to_string(size) + " " + what + ", not " + std::to_string(stated));
  require((stated == known) == reachable, set.place,
          reachable ? "the known size of " + what + " is " + std::to_string(known) + "; the table must have it"
                    : "the known size of " + what + " is reached; take the set off the list of those that don't");
}

void checkUnits(const Table& table) {
  const auto check = [](uint16_t unit, const Place& place) {
    require(unit != 0 && unit != replacement && (unit < firstSurrogate || unit > lastSurrogate), place,
            "U+0000, U+FFFD and surrogates have no code");
  };
  for (const auto& [code, mapping] : table.to) check(mapping.value, mapping.place);
  for (const auto& [unit, mapping] : table.from) check(unit, mapping.place);
}

void checkWrittenOnly(const Table& table) {
  std::set<uint16_t> unread;
  Place last = table.place;
  for (const auto& [unit, mapping] : table.from) {
    if (mapping.value <= lastSingleByte || table.to.contains(mapping.value)) continue;
    unread.insert(mapping.value);
    last = mapping.place;
  }
  const size_t expected = expectationOf(table.name).writtenOnly;
  require(unread.size() == expected, last,
          std::to_string(unread.size()) + " codes are written and have no unit, as that of this line; there must be " +
              std::to_string(expected));
}

bool isWithin(uint32_t byte, const std::vector<Profile::Range>& ranges) {
  return std::any_of(ranges.begin(), ranges.end(),
                     [&](const Profile::Range& range) { return byte >= range.low && byte <= range.high; });
}

std::vector<Profile::Range> parseRanges(const Line& line, const std::string& text) {
  std::vector<Profile::Range> ranges;
  if (text == "-") return ranges;
  for (const std::string& part : split(text, ' ')) {
    const std::vector<std::string> ends = split(part, '-');
    require(ends.size() == 2, line.place, "a range is low-high: \"" + part + "\"");
    ranges.push_back({parseHex(line, ends[0], 0xFF), parseHex(line, ends[1], 0xFF)});
  }
  return ranges;
}

void checkCode(const Profile& profile, const Set& set, uint16_t code, const Place& place) {
  const std::string row = "row " + std::to_string(profile.ceis[0]);
  const uint32_t lead = code >> 8;
  const bool katakana = set.table == "euc-jp" && lead == eucKatakanaLead;
  require(isWithin(lead, profile.lead) || katakana, place, "the first byte is no lead byte of " + row);
  require(isWithin(code & 0xFFu, profile.trail), place, "the second byte is no trail byte of " + row);
}

// By set, units below unaskedUnit that are written as a byte which is read otherwise: the page of katakana in the
// places of small letters is written as the host page.
constexpr size_t changedUnits[] = {0, 0, 0, 0, 0, 63, 0};

void checkSingle(const Single& single, size_t changed) {
  std::set<uint8_t> bytes;
  size_t found = 0;
  for (uint16_t unit = 0; unit < unaskedUnit; ++unit) {
    const uint8_t byte = single.from[unit];
    require(bytes.insert(byte).second, single.place,
            "unit " + hex(unit, 4) + " shares its byte with another, or has none");
    if (single.to[byte] != unit) ++found;
  }
  require(found == changed, single.place,
          std::to_string(found) + " units don't come back; there must be " + std::to_string(changed));
}

void requireByte(const Single& single, uint8_t byte, uint16_t unit) {
  require(single.to[byte] == unit && single.from[unit] == byte, single.place,
          "byte " + hex(byte, 2) + " must be " + hex(unit, 4) + " in both directions");
}

void requireBlanks(const Single& single, size_t expected) {
  const auto blanks = static_cast<size_t>(std::count(single.to.begin(), single.to.end(), blankUnit));
  require(blanks == expected, single.place,
          std::to_string(blanks) + " bytes are U+0020; there must be " + std::to_string(expected));
}

void checkEncoding(const Euro& euro, const std::vector<Line>& rows, bool multiByte) {
  for (const Line& line : rows) {
    if (line.field(0) != std::to_string(euro.cei)) continue;
    require(line.field(7) == euro.name, euro.place, "row " + line.field(0) + " has the name " + line.field(7));
    require((line.field(1) >= "4") == multiByte, euro.place,
            multiByte ? "this encoding is no multi-byte one" : "this encoding is no single-byte one");
    return;
  }
  fail(euro.place, "there is no such row");
}

}  // namespace

std::vector<Profile> readProfiles(const std::string& path) {
  std::vector<Profile> profiles;
  for (const Line& line : readLines(path)) {
    Profile profile{line.place,
                    {},
                    line.field(1) == "1",
                    static_cast<size_t>(parseDecimal(line, line.field(2), 0, setCount - 1)),
                    parseRanges(line, line.field(7)),
                    parseRanges(line, line.field(8))};
    for (const std::string& cei : split(line.field(0), ' ')) {
      profile.ceis.push_back(static_cast<size_t>(parseDecimal(line, cei, 0, 229)));
    }
    profiles.push_back(std::move(profile));
  }
  return profiles;
}

void checkSets(const Place& file, const std::vector<Set>& sets, Tables& tables) {
  requireCount(file.file, sets.size(), setCount, "sets");
  for (size_t number = 0; number < setCount; ++number) {
    const Set& set = sets[number];
    require(set.table.empty() == has(emptySets, number), set.place,
            set.table.empty() ? "this set has a table" : "this set is empty; its table is \"-\"");
    const bool empty = set.table.empty();
    const size_t to = empty ? 0 : tables.table(set.place, set.table).to.size();
    const size_t from = empty ? 0 : tables.table(set.place, set.table).from.size();
    checkSize(set, "to", to, set.to, set.knownTo, !has(otherToSizes, number));
    checkSize(set, "from", from, set.from, set.knownFrom, !has(otherFromSizes, number));
  }
  for (const auto& [set, model] : sharingSets) {
    require(sets[set].table == sets[model].table, sets[set].place,
            "this set shares the table of set " + std::to_string(model));
  }
}

void checkTable(const Table& table) {
  checkUnits(table);
  checkWrittenOnly(table);
  const Expectation expected = expectationOf(table.name);
  const bool spaceTo = std::any_of(table.to.begin(), table.to.end(),
                                   [](const auto& entry) { return entry.second.value == ideographicSpace; });
  require(spaceTo == expected.spaceTo, table.place,
          expected.spaceTo ? "a code must be U+3000" : "no code may be U+3000, which rows read from their own blank");
  require(table.from.contains(ideographicSpace) == expected.spaceFrom, table.place,
          expected.spaceFrom ? "U+3000 must have a code" : "U+3000 may have no code, as rows write their own blank");
}

void checkRanges(const Profile& profile, const std::vector<Set>& sets, Tables& tables) {
  // Rows that read and write codes ANDed with 7F7F, and host rows that use less of a set than its own encoding.
  constexpr size_t maskedSets[] = {8, 14, 20};
  constexpr size_t koreanSet = 7;
  if (has(maskedSets, profile.doubleByteSet) || (profile.doubleByteSet == koreanSet && profile.shifted)) return;
  const Set& set = sets[profile.doubleByteSet];
  if (set.table.empty()) return;
  const Table& table = tables.table(set.place, set.table);
  for (const auto& [code, mapping] : table.to) checkCode(profile, set, code, mapping.place);
  for (const auto& [unit, mapping] : table.from) {
    if (mapping.value > lastSingleByte) checkCode(profile, set, mapping.value, mapping.place);
  }
}

void checkSingles(const Place& file, const std::vector<Single>& singles) {
  constexpr size_t host = 2;
  constexpr size_t katakanaHost = 5;
  constexpr size_t katakanaBlanks = 61;
  requireCount(file.file, singles.size(), std::size(changedUnits), "sets");
  for (size_t set = 0; set < singles.size(); ++set) checkSingle(singles[set], changedUnits[set]);
  requireByte(singles[host], 0x40, 0x0020);
  requireByte(singles[host], 0x15, 0x000A);
  requireByte(singles[host], 0x81, 'a');
  requireBlanks(singles[host], 1);
  requireBlanks(singles[katakanaHost], katakanaBlanks);
  require(singles[1].to == singles[0].to && singles[1].from == singles[0].from, singles[1].place,
          "sets 0 and 1 are one");
  require(singles[6].to == singles[2].to && singles[6].from == singles[2].from, singles[6].place,
          "sets 2 and 6 are one");
}

void checkKatakana(const Place& file, const std::vector<Single>& singles, const std::vector<Set>& sets,
                   Tables& tables) {
  const auto unitOf = [&](size_t set, uint16_t code) {
    const Table& table = tables.table(sets[set].place, sets[set].table);
    const auto found = table.to.find(code);
    require(found != table.to.end(), file, "code " + hex(code, 4) + " has no unit in set " + std::to_string(set));
    return found->second.value;
  };
  constexpr size_t hostSet = 1;
  constexpr size_t eucSet = 2;
  constexpr size_t jisSet = 4;
  const Katakana euc = eucKatakana();
  for (size_t i = 0; i < katakanaCount; ++i) {
    const auto unit = static_cast<uint16_t>(firstKatakana + i);
    require(unitOf(jisSet, singles[1].katakana[i]) == unitOf(hostSet, singles[2].katakana[i]), file,
            "the two-byte codes for " + hex(unit, 4) + " are of different characters");
    require(unitOf(eucSet, euc[i]) == unit, file, "code " + hex(euc[i], 4) + " of set 2 must be " + hex(unit, 4));
    for (const size_t set : {size_t{3}, size_t{4}, size_t{5}}) {
      const uint16_t byte = singles[set].katakana[i];
      require(byte <= lastSingleByte && singles[set].to[byte] == unit, file,
              "byte " + hex(byte, 2) + " of single-byte set " + std::to_string(set) + " must be " + hex(unit, 4));
    }
  }
}

void checkEuroBytes(const Place& file, const std::vector<Euro>& euros, const std::vector<Line>& rows) {
  requireCount(file.file, euros.size(), 12, "encodings");
  for (const Euro& line : euros) checkEncoding(line, rows, false);
}

void checkEuroCodes(const Place& file, const std::vector<Euro>& euros, const std::vector<Line>& rows,
                    const std::vector<Profile>& profiles, const std::vector<Set>& sets, Tables& tables) {
  requireCount(file.file, euros.size(), 15, "encodings");
  for (const Euro& line : euros) {
    checkEncoding(line, rows, true);
    const auto profile =
        std::find_if(profiles.begin(), profiles.end(), [&](const Profile& one) { return has(one.ceis, line.cei); });
    require(profile != profiles.end(), line.place, "there is no profile of this encoding");
    const Set& set = sets[profile->doubleByteSet];
    const Table& table = tables.table(set.place, set.table);
    const auto found = table.from.find(euroSign);
    require(found != table.from.end() && found->second.value == line.code, line.place,
            "table " + set.table + " takes the euro sign to another code, or to none");
  }
}

}  // namespace gen::sets
