// Emits the locale tables: names, language defaults, languages by code and by Windows number, codesets of the
// environment, the relation of locales and encodings, and the data of the locales. Each output is the inside of an
// array's braces, or a literal.
#include "locales.h"

#include <map>

#include "locale_data.h"

namespace {

using namespace gen;

std::string wide(const std::string& text) { return "u\"" + text + "\", " + std::to_string(text.size()); }

std::string units(const std::string& code) {
  return std::string("{u'") + code[0] + "', u'" + code[1] + "'}, " + std::to_string(code.size());
}

void emitLocaleNames(const std::string& path, const std::vector<LocaleName>& rows) {
  Output out(path);
  for (const LocaleName& row : rows) {
    out << "{" << wide(row.posixName) << ", " << units(row.languageCode()) << ", " << units(row.countryCode) << ", "
        << wide(row.longName()) << ", " << wide(row.languageName) << ", " << static_cast<int64_t>(row.localeId) << ", "
        << hex(row.windowsLcid, 4) << "},\n";
  }
  out.save();
}

void emitLanguageCodes(const std::string& path, const std::vector<LanguageName>& rows) {
  Output out(path);
  for (const LanguageName& row : rows) out << "{" << units(row.code) << ", " << wide(row.name) << "},\n";
  out.save();
}

void emitWindowsLanguages(const std::string& path, const std::vector<LanguageName>& rows) {
  Output out(path);
  for (const LanguageName& row : rows) out << "{" << hex(row.number, 2) << ", " << wide(row.name) << "},\n";
  out.save();
}

void emitCodesets(const std::string& path, const std::vector<Codeset>& rows) {
  Output out(path);
  for (const Codeset& row : rows) out << "{\"" << row.name << "\", " << row.number << "},\n";
  out.save();
}

// All lists, one behind the other; equal lists stand once.
class ListPool {
 public:
  // The pointer and the count of a list, as text.
  std::string place(const std::vector<size_t>& list) {
    if (list.empty()) return "nullptr, 0";
    const auto [entry, isNew] = offsets_.emplace(list, numbers_.size());
    if (isNew) numbers_.insert(numbers_.end(), list.begin(), list.end());
    return "listedNumbers + " + std::to_string(entry->second) + ", " + std::to_string(list.size());
  }
  void save(const std::string& path) const {
    Output out(path);
    out.list(numbers_.size(), [&](size_t i) { return std::to_string(numbers_[i]); });
    out.save();
  }

 private:
  std::map<std::vector<size_t>, size_t> offsets_;
  std::vector<size_t> numbers_;
};

void emitLists(const std::string& path, const std::vector<Lists>& rows, ListPool& pool) {
  Output out(path);
  for (size_t i = 0; i < rows.size(); ++i) {
    out << "{" << static_cast<int64_t>(i) << ", " << pool.place(rows[i].primary) << ", "
        << pool.place(rows[i].secondary) << "},\n";
  }
  out.save();
}

}  // namespace

int main(int count, char** values) {
  const Arguments arguments = parseArguments(count, values);
  const std::string out = arguments.out + "/locales/";

  const std::vector<LocaleName> names = readLocaleNames(arguments.data);
  const std::vector<Lists> encodings = readLocaleEncodings(arguments.data, names);

  emitLocaleNames(out + "names.inc", names);
  emitLocaleNames(out + "language_defaults.inc", readLanguageDefaults(arguments.data, names));
  emitLanguageCodes(out + "language_codes.inc", readLanguageCodes(arguments.data));
  emitWindowsLanguages(out + "windows_languages.inc", readWindowsLanguages(arguments.data));
  emitCodesets(out + "codesets.inc", readCodesets(arguments.data));

  ListPool pool;
  emitLists(out + "encodings.inc", encodings, pool);
  emitLists(out + "encoding_locales.inc", invertLocaleEncodings(arguments.data, encodings), pool);
  pool.save(out + "listed_numbers.inc");

  const std::vector<LocaleFacts> facts = readLocaleFacts(arguments.data, names);
  std::vector<LocaleData> rows;
  for (const LocaleFacts& row : facts) rows.push_back(deriveLocaleData(row));
  checkLocaleData(arguments.data, rows);
  emitLocaleData(out, rows);
  return 0;
}
