// Facts that no rule can tell: a slip in one would build like any other table and be noticed only by those whose texts
// it harms. Each list is held by its checksum, which `cksum` gives for the same lines in a shell (see the README of
// data/encodings).
#include <algorithm>

#include "encodings_model.h"

namespace gen {

namespace {

struct FixedFacts {
  const char* file;
  const char* what;
  std::vector<size_t> fields;     // those that count of every line; none: all of them
  std::vector<std::string> ceis;  // the lines that count, by their first field; none: all of them
  uint32_t checksum;
};

const std::vector<FixedFacts> fixedFacts = {
    {"rows.tsv", "class, flags, padChar, substitution and name of all rows", {0, 1, 2, 3, 4, 7}, {}, 3770032538},
    {"rows.tsv", "the bases of all rows", {0, 15}, {}, 2879938016},
    {"rows.tsv",
     "the rows that are fixed in full",
     {},
     {"0", "19", "20", "25", "27", "28", "62", "110", "129", "136", "161", "203", "204", "205"},
     1220143280},
    {"length-exceptions.tsv", "the lengths", {}, {}, 1221276802},
    {"profiles.tsv", "the profiles", {}, {}, 1375801082},
    {"narrow-rows.tsv", "the sizes", {}, {}, 3910971967},
    {"dbcs-types.tsv", "the types", {}, {}, 520423643},
    {"dbcs-languages.tsv", "the languages", {}, {}, 2540356484},
    {"families.tsv", "the families", {}, {}, 2421305872},
    {"ebcdic-groups.tsv", "the groups", {}, {}, 150845063},
    {"mib-enums.tsv", "the pairs", {}, {}, 450000411},
    {"lookup-literals.tsv", "the literal keys", {}, {}, 677518280},
    {"keys-extra.tsv", "the keys", {}, {}, 228027965},
    {"keys-shared.tsv", "the keys", {}, {}, 356735482},
    {"keys-groups.tsv", "the keys", {}, {}, 786364389},
    {"keys-left-out.txt", "the texts", {}, {}, 2739024778},
};

// The CRC of POSIX cksum.
uint32_t checksum(std::string_view text) {
  constexpr uint32_t polynomial = 0x04C11DB7;
  constexpr uint32_t topBit = 0x80000000;
  uint32_t crc = 0;
  const auto add = [&](size_t byte) {
    crc ^= static_cast<uint32_t>(byte) << 24;
    for (int bit = 0; bit < 8; ++bit) crc = (crc & topBit) != 0 ? crc << 1 ^ polynomial : crc << 1;
  };
  for (const char c : text) add(static_cast<unsigned char>(c));
  for (size_t length = text.size(); length != 0; length >>= 8) add(length & 0xFF);
  return ~crc;
}

// The facts as lines of text again, fields separated by tabs.
std::string factsText(const std::string& path, const FixedFacts& facts) {
  std::string text;
  for (const Line& line : readLines(path)) {
    const auto& ceis = facts.ceis;
    if (!ceis.empty() && std::find(ceis.begin(), ceis.end(), line.field(0)) == ceis.end()) continue;
    const size_t count = facts.fields.empty() ? line.fields.size() : facts.fields.size();
    for (size_t i = 0; i < count; ++i) {
      if (i > 0) text += '\t';
      text += line.field(facts.fields.empty() ? i : facts.fields[i]);
    }
    text += '\n';
  }
  return text;
}

}  // namespace

void checkFixedFacts(const Encodings& model) {
  for (const FixedFacts& facts : fixedFacts) {
    const std::string path = model.folder + facts.file;
    const uint32_t found = checksum(factsText(path, facts));
    require(found == facts.checksum, {path, 0},
            std::string(facts.what) + " are fixed and have changed: checksum " + std::to_string(found) + ", not " +
                std::to_string(facts.checksum) +
                "; undo the change, or, when it corrects a fact on purpose, tell the source in the README of this " +
                "folder and write the new checksum into tools/gen/encodings_fixed.cpp");
  }
}

}  // namespace gen
