// Makes the tables of the single-byte encodings and the byte permutation of UTF-EBCDIC. Rows of one page and form share
// their tables; all from-pages of one content are one page.
#include <array>
#include <map>
#include <set>

#include "pages_facts.h"
#include "pages_permutation.h"

namespace {

using gen::Output;
using gen::pages::byteCount;
using gen::pages::Folder;
using gen::pages::Form;
using gen::pages::Page;
using gen::pages::Row;

constexpr size_t ceiCount = 230;
constexpr size_t pageReferences = 459;
constexpr size_t distinctPages = 300;

std::string identifier(std::string name) {
  for (char& c : name) {
    if (c == '-') c = '_';
  }
  return name;
}

std::string tableName(const Row& row) { return identifier(row.page) + (row.form == Form::open ? "_open" : ""); }

using FromPage = std::array<uint8_t, byteCount>;  // by low byte; 0: no mapping, or U+0000

FromPage fromPage(const Page& page, uint8_t high) {
  FromPage bytes{};
  for (const auto& [unit, byte] : page.from) {
    if (unit >> 8 == high) bytes[unit & 0xFF] = byte;
  }
  return bytes;
}

class Tables {
 public:
  explicit Tables(const std::string& path) : output_(path) {}

  void add(const Row& row, const Page& page) {
    if (names_.insert(tableName(row)).second) {
      addTo(row, page);
      if (row.hasFrom()) addFrom(row, page);
    }
  }

  void save() const { output_.save(); }

  // How many from-pages there are.
  size_t pages() const { return fromPages_.size(); }

 private:
  void addTo(const Row& row, const Page& page) {
    output_ << "constexpr char16_t to_" << tableName(row) << "[] = {\n";
    output_.list(byteCount, [&](size_t byte) { return gen::hex(page.to[byte], 4); });
    output_ << "};\n";
  }

  void addFrom(const Row& row, const Page& page) {
    std::map<size_t, std::string> pageNames;
    for (const uint8_t high : page.highBytes()) pageNames[high] = addFromPage(row, fromPage(page, high), high);
    output_ << "constexpr const uint8_t* from_" << tableName(row) << "[] = {\n";
    output_.list(byteCount, [&](size_t high) {
      const auto found = pageNames.find(high);
      return found == pageNames.end() ? "nullptr" : found->second;
    });
    output_ << "};\n";
  }

  // The name of the page with these bytes, which is written when it is new.
  std::string addFromPage(const Row& row, const FromPage& bytes, uint8_t high) {
    const std::string name = "from_" + tableName(row) + "_" + gen::hex(high, 2).substr(2);
    const auto [found, isNew] = fromPages_.emplace(bytes, name);
    if (isNew) {
      output_ << "constexpr uint8_t " << name << "[] = {\n";
      output_.list(byteCount, [&](size_t low) { return gen::hex(bytes[low], 2); });
      output_ << "};\n";
    }
    return found->second;
  }

  Output output_;
  std::set<std::string> names_;
  std::map<FromPage, std::string> fromPages_;
};

void saveByCei(const std::string& path, const std::map<size_t, std::string>& names) {
  Output output(path);
  output.list(ceiCount, [&](size_t cei) {
    const auto found = names.find(cei);
    return found == names.end() ? "nullptr" : found->second;
  });
  output.save();
}

void makePages(const std::string& data, const std::string& out) {
  const std::string folder = data + "/modules/qznlssb";
  const std::vector<Row> rows = gen::pages::readRows(folder + "/rows.tsv");
  gen::pages::checkRows(rows, {folder + "/rows.tsv", 0});

  Folder pages(folder + "/pages");
  Tables tables(out + "/pages/tables.inc");
  std::map<size_t, std::string> toNames;
  std::map<size_t, std::string> fromNames;
  size_t references = 0;
  for (const Row& row : rows) {
    if (!row.hasTo()) continue;
    const Page page = pageOf(row, pages);
    checkRow(row, page);
    tables.add(row, page);
    toNames[row.cei] = "to_" + tableName(row);
    if (!row.hasFrom()) continue;
    fromNames[row.cei] = "from_" + tableName(row);
    references += row.pages;
  }
  gen::pages::checkNamedPages(pages);
  pages.requireAllRead();
  gen::requireCount(folder + "/rows.tsv", references, pageReferences, "references to from-pages");
  gen::requireCount(folder + "/rows.tsv", tables.pages(), distinctPages, "distinct from-pages");

  tables.save();
  saveByCei(out + "/pages/to_by_cei.inc", toNames);
  saveByCei(out + "/pages/from_by_cei.inc", fromNames);
}

}  // namespace

int main(int count, char** values) {
  const gen::Arguments arguments = gen::parseArguments(count, values);
  makePages(arguments.data, arguments.out);
  gen::pages::makePermutation(arguments.data, arguments.out);
}
