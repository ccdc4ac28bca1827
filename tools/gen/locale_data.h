// The data of locales: facts of rows.tsv and overrides.tsv, what follows from them, and what must hold.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "locales.h"

namespace gen {

inline constexpr size_t kDataRows = 135;
inline constexpr size_t kItems = 143;

using Text = std::u16string;

// A field as a table gives it: one text, or the parts of a list.
struct Fact {
  Place place;
  std::vector<Text> texts;
  bool known = false;  // by its origin: a value that callers rely on
};

// All facts of one row of locale data. Only fields that are derived can be missing.
struct LocaleFacts {
  std::string key;  // "en_US"
  std::map<std::string, Fact> fields;

  bool has(const std::string& field) const { return fields.contains(field); }
  const Fact& fact(const std::string& field) const { return fields.at(field); }
  const Text& text(const std::string& field) const { return fact(field).texts[0]; }
  const std::vector<Text>& list(const std::string& field) const { return fact(field).texts; }
};

// The tables as a place of what stands in no single line.
inline std::string localeTables(const std::string& data) { return data + "/locale/rows.tsv and overrides.tsv"; }

// The rows in the order of locale identifiers, behind them those that have no identifier.
std::vector<LocaleFacts> readLocaleFacts(const std::string& data, const std::vector<LocaleName>& names);

// A row as it is built: the fields of the record with their texts, and the items in ASCII, with escapes.
struct LocaleData {
  const LocaleFacts* facts = nullptr;
  std::map<std::string, std::vector<Text>> record;
  std::vector<std::string> items;

  const std::string& key() const { return facts->key; }
  const Text& text(const std::string& field) const { return record.at(field)[0]; }
};

// A field of the record: how many texts it has and how many units one of them can have.
struct RecordField {
  const char* name;
  size_t count;
  size_t capacity;
};
// Fields that hold texts, and behind them fields that hold one unit or number, in the order of the generated rows.
extern const std::vector<RecordField> kTextFields;
extern const std::vector<std::string> kUnitFields;
extern const std::vector<std::string> kNumberFields;

LocaleData deriveLocaleData(const LocaleFacts& facts);
// The line that gives a field, or that of which the field is made.
Place placeOf(const LocaleData& row, const std::string& field);
std::vector<std::string> deriveItems(const LocaleData& row);

// Lower case as the library's parsers see it, which read names without regard to case.
class LowerCase {
 public:
  explicit LowerCase(const std::string& data);
  Text operator()(Text text) const;

 private:
  std::map<char16_t, char16_t> lower_;
};

// Fails at the first breach of a constraint, a figure or a value that is fixed.
void checkLocaleData(const std::string& data, const std::vector<LocaleData>& rows);

// Writes the generated files of the rows.
void emitLocaleData(const std::string& out, const std::vector<LocaleData>& rows);

// The language or country part of a key.
inline std::string languageOf(const std::string& key) { return key.substr(0, 2); }
inline std::string countryOf(const std::string& key) { return key.substr(3); }
// ASCII to UTF-16.
inline Text widen(const std::string& ascii) { return {ascii.begin(), ascii.end()}; }
// Any other unit than ASCII as "<U5E74>", the currency sign as "<u00a4>".
std::string escape(const Text& text);

}  // namespace gen
