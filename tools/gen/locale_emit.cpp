// Writes the rows of locale data: every text stands once, and rows hold numbers of texts.
#include <map>

#include "locale_data.h"

namespace gen {

namespace {

// Texts of one kind, numbered as they come; number 0 is the empty one.
template <class String>
class TextPool {
 public:
  size_t number(const String& text) {
    const auto [entry, isNew] = numbers_.emplace(text, texts_.size());
    if (isNew) texts_.push_back(text);
    return entry->second;
  }
  const std::vector<String>& texts() const { return texts_; }

 private:
  std::map<String, size_t> numbers_ = {{String(), 0}};
  std::vector<String> texts_ = {String()};
};

// The inside of a literal.
std::string quoted(const Text& text) {
  std::string out;
  for (const char16_t unit : text) {
    if (unit >= 0x7F) {
      out += "\\u" + hex(unit, 4).substr(2);
    } else {
      if (unit == u'"' || unit == u'\\') out += '\\';
      out += static_cast<char>(unit);
    }
  }
  return out;
}

std::string quoted(const std::string& text) { return quoted(widen(text)); }

// Two files: the characters of all texts as one literal, and the place and length of each text in it.
template <class String>
void emitPool(const std::string& out, const std::string& name, const std::string& prefix,
              const TextPool<String>& pool) {
  Output characters(out + name + "_characters.inc");
  Output places(out + name + "_texts.inc");
  size_t offset = 0;
  for (const String& text : pool.texts()) {
    require(offset <= 0xFFFF, {out + name + "_texts.inc", 0}, "places have 16 bits; widen them where they are read");
    characters << prefix << "\"" << quoted(text) << "\"\n";
    places << "{" << static_cast<int64_t>(offset) << ", " << static_cast<int64_t>(text.size()) << "},\n";
    offset += text.size();
  }
  characters.save();
  places.save();
}

std::string unitPair(const std::string& code) { return std::string("{u'") + code[0] + "', u'" + code[1] + "'}"; }

void emitRecords(const std::string& out, const std::vector<LocaleData>& rows) {
  TextPool<Text> pool;
  Output file(out + "record_rows.inc");
  for (const LocaleData& row : rows) {
    file << "{" << unitPair(languageOf(row.key())) << ", " << unitPair(countryOf(row.key()));
    for (const RecordField& field : kTextFields) {
      file << (field.count > 1 ? ", {" : ", ");
      const char* separator = "";
      for (const Text& text : row.record.at(field.name)) {
        file << separator << static_cast<int64_t>(pool.number(text));
        separator = ", ";
      }
      if (field.count > 1) file << "}";
    }
    for (const std::string& field : kUnitFields) file << ", " << hex(row.text(field)[0], 4);
    for (const std::string& field : kNumberFields) {
      const Text& number = row.text(field);
      file << ", " << std::string(number.begin(), number.end());
    }
    file << "},\n";
  }
  file.save();
  emitPool(out, "record", "u", pool);
}

void emitItems(const std::string& out, const std::vector<LocaleData>& rows) {
  TextPool<std::string> pool;
  Output file(out + "item_rows.inc");
  for (const LocaleData& row : rows) {
    file << "{{\n";
    file.list(kItems, [&](size_t i) { return std::to_string(pool.number(row.items[i])); });
    file << "}},\n";
  }
  file.save();
  emitPool(out, "item", "", pool);
}

}  // namespace

void emitLocaleData(const std::string& out, const std::vector<LocaleData>& rows) {
  emitRecords(out, rows);
  emitItems(out, rows);
}

}  // namespace gen
