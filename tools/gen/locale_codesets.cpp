// The codesets of the environment, and the numbers of code pages that stand for them.
#include "encodings_model.h"
#include "locales.h"

namespace gen {

namespace {

constexpr size_t kCodesetCapacity = 32;

std::string normalCodeset(const std::string& name) {
  std::string normal;
  for (const char c : name) {
    if (c != '-' && c != '_') normal += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  }
  return normal;
}

// The name of the encoding that the index of encoding names has for a number; empty if it has none.
std::string encodingByNumber(const Encodings& model, const std::string& number) {
  const auto key = model.keys.find(number);
  if (key == model.keys.end() || key->second >= rowCount) return "";
  return model.rows[static_cast<size_t>(key->second)].texts[primaryName];
}

}  // namespace

std::vector<Codeset> readCodesets(const std::string& data) {
  Encodings model;
  model.folder = data + "/encodings/";
  loadRows(model);
  loadKeys(model);

  std::vector<Codeset> rows;
  for (const Line& line : readLines(data + "/locale/codesets.tsv")) {
    requireFields(line, 3);
    const Codeset row{line.field(0), parseDecimal(line, line.field(1), 1, 0xFFFF)};
    requireText(line.place, row.name, kCodesetCapacity);
    require(normalCodeset(row.name) == row.name, line.place, "a codeset stands in lower case without \"-\" and \"_\"");
    require(rows.empty() || rows.back().name < row.name, line.place, "rows ascend by codeset");
    const std::string encoding = encodingByNumber(model, line.field(1));
    require(!encoding.empty(), line.place, "the number " + line.field(1) + " is no name of an encoding");
    require(encoding == line.field(2), line.place, "the number " + line.field(1) + " is a name of " + encoding);
    rows.push_back(row);
  }
  return rows;
}

}  // namespace gen
