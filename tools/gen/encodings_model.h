// The facts of data/encodings in memory, and the steps that load them. Each step checks what it loads and stops at the
// first breach; later steps may rely on the earlier ones.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "encodings_trie.h"
#include "text.h"

namespace gen {

inline constexpr int rowCount = 230;
inline constexpr int anyCei = 204;
inline constexpr int utf16Cei = 19;
inline constexpr int utf8Cei = 20;
inline constexpr int aliasEnd = 24;  // aliases are the CEIs below it but for 0 and utf8Cei

inline bool isAlias(int cei) { return cei > 0 && cei < aliasEnd && cei != utf8Cei; }

// Values of the columns `encodingClass` and `flags`.
inline constexpr int classSingleByte = 0;
inline constexpr int classUtf8 = 1;
inline constexpr int classUtf16 = 2;
inline constexpr int classUtf32 = 3;
inline constexpr int classShifted = 4;
inline constexpr int classMultiByte = 5;
inline constexpr uint32_t flagAscii = 1;
inline constexpr uint32_t flagEbcdic = 8;
inline constexpr uint32_t flagDirectional = 0x10;

// A text column: its name, its field in rows.tsv, the units of its array (with the terminator).
struct TextColumn {
  const char* name;
  size_t field;
  size_t capacity;
};

enum ColumnIndex : size_t {
  shortName,
  primaryName,
  description,
  identifier,
  longDescription,
  ianaName,
  javaName,
  ccsid,
  codePage,
  preferredName,
  columnCount
};

inline constexpr std::array<TextColumn, columnCount> textColumns = {{
    {"shortName", 6, 5},
    {"name", 7, 14},
    {"description", 8, 34},
    {"identifier", 9, 18},
    {"longDescription", 10, 42},
    {"ianaName", 11, 32},
    {"javaName", 12, 32},
    {"ccsid", 13, 6},
    {"codePage", 14, 6},
    {"preferredName", 17, 32},
}};

struct Range {
  uint32_t low = 0;
  uint32_t high = 0;
};

struct Profile {
  int structure = 0;
  int doubleByteSet = 0;
  int singleByteSet = 0;
  std::vector<uint32_t> shiftOut;
  std::vector<uint32_t> shiftIn;
  std::vector<uint32_t> doubleBlank;
  std::vector<Range> lead;
  std::vector<Range> trail;
  bool present = false;
};

struct Row {
  Place place;
  int encodingClass = 0;
  uint32_t flags = 0;
  uint32_t padChar = 0;
  uint32_t substitution = 0;
  int unitSize = 0;
  std::array<std::string, columnCount> texts;
  std::array<size_t, columnCount> lengths{};
  Profile profile;
  int baseCei = 0;
  int mibEnum = 0;
};

inline constexpr int dbcsColumnCount = 6;

struct DbcsType {
  std::string name;
  uint32_t flags = 0;
  std::array<int, dbcsColumnCount> cells{};
};

struct DbcsLanguage {
  std::string name;
  std::string alternate;
  uint32_t code = 0;
};

struct Family {
  int head = 0;
  std::vector<int> members;
  int language = 0;
  int type = 0;
};

struct Literal {
  int kind = 0;
  std::string text;
  int cei = 0;
};

struct Encodings {
  std::string folder;  // data/encodings/
  std::vector<Row> rows;
  std::vector<DbcsType> types;
  std::vector<DbcsLanguage> languages;
  std::map<int, int> aliasModels;           // the row that an alias is like
  std::vector<std::pair<int, int>> groups;  // CEI, group
  std::vector<std::pair<int, int>> mibs;    // MIBenum, CEI
  std::vector<Family> families;
  std::vector<Literal> literals;
  std::map<std::string, int> keys;  // upper case
};

void loadRows(Encodings& model);
void loadDbcs(Encodings& model);
void loadProfiles(Encodings& model);
void checkAliases(const Encodings& model);
void loadRelations(Encodings& model);
void loadKeys(Encodings& model);
void checkFixedFacts(const Encodings& model);

// Writes cei.h and the bodies of the constant tables.
void emitEncodings(const Encodings& model, const Trie& trie, const std::string& folder);

// A CEI that stands in a field.
int parseCei(const Line& line, std::string_view text);
// Fails unless `text` is printable ASCII that neither begins nor ends with a blank.
void requirePlainText(const Place& place, const std::string& text);

}  // namespace gen
