#include <initializer_list>

#include "encodings_model.h"

namespace gen {

namespace {

constexpr std::string_view madeBy = "// Made by gen_encodings from data/encodings.\n";

std::string wide(const std::string& text) {
  std::string literal = "u\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') literal += '\\';
    literal += c;
  }
  return literal + "\"";
}

std::string number(int64_t value) { return std::to_string(value); }

// "{1,2}"
std::string braced(std::initializer_list<int64_t> values) {
  std::string list;
  for (const int64_t value : values) {
    list += list.empty() ? '{' : ',';
    list += number(value);
  }
  list += '}';
  return list;
}

std::string bytes(const std::vector<uint32_t>& values) {
  std::string list = "{";
  for (const uint32_t value : values) list += (list.size() > 1 ? ", " : "") + hex(value, 2);
  return list + "}";
}

std::string ranges(const std::vector<Range>& values) {
  std::string list = "{";
  for (const Range& range : values) {
    list += (list.size() > 1 ? ", {" : "{") + hex(range.low, 2) + ", " + hex(range.high, 2) + "}";
  }
  return list + "}";
}

std::string profileText(const Profile& profile) {
  return "{.structure = " + number(profile.structure) + ", .doubleByteSet = " + number(profile.doubleByteSet) +
         ", .singleByteSet = " + number(profile.singleByteSet) +
         ", .shiftLength = " + number(static_cast<int64_t>(profile.shiftOut.size())) +
         ", .shiftOut = " + bytes(profile.shiftOut) + ", .shiftIn = " + bytes(profile.shiftIn) +
         ", .doubleBlank = " + bytes(profile.doubleBlank) + ",\n  .leadRanges = " + ranges(profile.lead) +
         ", .trailRanges = " + ranges(profile.trail) + "}";
}

void emitHeader(const Encodings& model, const std::string& path) {
  Output out(path);
  out << "/* Names of the encodings: each is the CEI of its row in the encoding table. Made by gen_encodings. */\n"
      << "#ifndef VELDNLS_CEI_H\n#define VELDNLS_CEI_H\n\n";
  for (size_t cei = 0; cei < model.rows.size(); ++cei) {
    const Row& row = model.rows[cei];
    if (row.texts[identifier].empty()) continue;
    out << "#define " << row.texts[identifier] << " " << static_cast<int64_t>(cei) << " /* " << row.texts[primaryName]
        << " */\n";
  }
  out << "\n#endif\n";
  out.save();
}

void emitRows(const Encodings& model, const std::string& path) {
  Output out(path);
  out << madeBy;
  for (size_t cei = 0; cei < model.rows.size(); ++cei) {
    const Row& row = model.rows[cei];
    out << "{.cei = " << static_cast<int64_t>(cei) << ", .encodingClass = " << row.encodingClass
        << ", .flags = " << hex(row.flags, 1) << ", .padChar = " << hex(row.padChar, 2)
        << ", .substitution = " << hex(row.substitution, 2) << ", .unitSize = " << row.unitSize << ",\n";
    for (size_t i = 0; i < columnCount; ++i) {
      if (i == preferredName) {
        out << " .profile = " << profileText(row.profile) << ",\n .baseCei = " << row.baseCei
            << ", .mibEnum = " << row.mibEnum << ",\n";
      }
      out << " ." << textColumns[i].name << " = " << wide(row.texts[i]) << ", ." << textColumns[i].name
          << "Length = " << static_cast<int64_t>(row.lengths[i]) << ",\n";
    }
    out << "},\n";
  }
  out.save();
}

void emitTrie(const Trie& trie, const std::string& path) {
  Output out(path);
  out << madeBy << "constexpr TrieNode nodes[] = {\n";
  out.list(trie.nodes.size(), [&](size_t i) {
    const TrieNode& node = trie.nodes[i];
    return braced({node.check, node.base, node.value, 0});
  });
  out << "};\nconstexpr char16_t tails[] = {\n";
  out.list(trie.tails.size(), [&](size_t i) { return number(trie.tails[i]); });
  out << "};\n";
  out.save();
}

void emitPairs(const std::vector<std::pair<int, int>>& pairs, const std::string& path) {
  Output out(path);
  out << madeBy;
  out.list(pairs.size(), [&](size_t i) { return braced({pairs[i].first, pairs[i].second}); });
  out.save();
}

// One line for each member: a member leads to its family's head, language and type.
void emitFamilies(const Encodings& model, const std::string& path) {
  Output out(path);
  out << madeBy;
  for (const Family& family : model.families) {
    for (const int member : family.members) {
      out << "{" << member << ", " << family.head << ", " << family.language << ", " << family.type << "},\n";
    }
  }
  out.save();
}

void emitDbcs(const Encodings& model, const std::string& typePath, const std::string& languagePath) {
  Output types(typePath);
  types << madeBy;
  for (const DbcsType& type : model.types) {
    types << "{" << wide(type.name) << ", " << static_cast<int64_t>(type.name.size()) << ", " << hex(type.flags, 1)
          << ", {";
    for (size_t i = 0; i < type.cells.size(); ++i) types << (i == 0 ? "" : ", ") << type.cells[i];
    types << "}},\n";
  }
  types.save();

  Output languages(languagePath);
  languages << madeBy;
  for (const DbcsLanguage& language : model.languages) {
    languages << "{" << wide(language.name) << ", " << static_cast<int64_t>(language.name.size()) << ", "
              << wide(language.alternate) << ", " << static_cast<int64_t>(language.alternate.size()) << ", "
              << hex(language.code, 1) << "},\n";
  }
  languages.save();
}

void emitLiterals(const Encodings& model, const std::string& path) {
  Output out(path);
  out << madeBy;
  for (const Literal& literal : model.literals) {
    out << "{" << literal.kind << ", " << wide(literal.text) << ", " << static_cast<int64_t>(literal.text.size())
        << ", " << literal.cei << "},\n";
  }
  out.save();
}

}  // namespace

void emitEncodings(const Encodings& model, const Trie& trie, const std::string& folder) {
  emitHeader(model, folder + "/veldnls/cei.h");
  emitRows(model, folder + "/encodings/rows.inc");
  emitTrie(trie, folder + "/encodings/trie.inc");
  emitFamilies(model, folder + "/encodings/families.inc");
  emitLiterals(model, folder + "/encodings/literals.inc");
  emitPairs(model.groups, folder + "/encodings/ebcdic_groups.inc");
  emitPairs(model.mibs, folder + "/encodings/mib_enums.inc");
  emitDbcs(model, folder + "/encodings/dbcs_types.inc", folder + "/encodings/dbcs_languages.inc");
}

}  // namespace gen
