#include "sets_singles.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>

#include "pages_page.h"

namespace gen::sets {

namespace {

constexpr uint32_t lastUnit = 0xFFFF;
constexpr uint32_t lastByte = 0xFF;
constexpr uint16_t lastIdentical = 0xDF;
constexpr uint8_t firstKatakanaByte = 0xA1;
constexpr uint16_t eucLead = 0x8E00;
constexpr uint8_t asciiCount = 0x80;
constexpr uint8_t asciiBlank = 0x20;
constexpr uint8_t hostBlank = 0x40;
constexpr int64_t lastCei = 229;

// A page of single bytes, to be read in either direction.
struct Page {
  Units to;
  Bytes from;
};

Katakana ascending(uint16_t first) {
  Katakana codes;
  for (size_t i = 0; i < katakanaCount; ++i) codes[i] = static_cast<uint16_t>(first + i);
  return codes;
}

Page asciiPage() {
  Page page{};
  page.to.fill(blankUnit);
  for (uint16_t unit = 0; unit <= lastIdentical; ++unit) page.to[unit] = unit;
  for (uint8_t unit = 0; unit < unaskedUnit; ++unit) page.from[unit] = unit;
  return page;
}

Page asciiKatakanaPage() {
  Page page = asciiPage();
  for (size_t i = 0; i < katakanaCount; ++i) page.to[firstKatakanaByte + i] = static_cast<uint16_t>(firstKatakana + i);
  return page;
}

class Pages {
 public:
  Pages(std::string folder, const std::string& pages) : folder_(std::move(folder)), plain_(pages) {}

  const Page& page(const Place& asker, const std::string& name) {
    const auto known = pages_.find(name);
    if (known != pages_.end()) return known->second;
    if (name == "ascii") return pages_.emplace(name, asciiPage()).first->second;
    if (name == "ascii-katakana") return pages_.emplace(name, asciiKatakanaPage()).first->second;
    require(std::filesystem::exists(file(name)), asker, "there is no page " + name + "; add singles/" + name + ".tsv");
    require(reading_.insert(name).second, asker, "page " + name + " is its own base; break the ring");
    return pages_.emplace(name, read(name)).first->second;
  }

  void requireAllRead() const {
    for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
      const std::string name = entry.path().stem().string();
      require(pages_.contains(name), {entry.path().string(), 0}, "no set uses this page; remove the file or name it");
    }
  }

 private:
  std::string file(const std::string& name) const { return folder_ + "/" + name + ".tsv"; }

  Page read(const std::string& name) {
    Page page{};
    page.to.fill(blankUnit);
    std::set<uint8_t> seen;
    bool first = true;
    for (const Line& line : readLines(file(name))) {
      const std::string& head = line.field(0);
      const bool inherits = head == "base" || head == "page";
      require(first || !inherits, line.place, "the base stands ahead of all bytes");
      if (head == "base") {
        requireFields(line, 2);
        page = this->page(line.place, line.field(1));
      } else if (head == "page") {
        page = openPage(line);
      } else {
        readByte(line, page, seen);
      }
      first = false;
    }
    return page;
  }

  Page openPage(const Line& line) {
    requireFields(line, 3);
    require(line.field(2) == "open", line.place, "a host page is taken in its open form; write \"open\"");
    const pages::Page open = pages::openForm(plain_.page(line.place, line.field(1)));
    Page page{};
    for (size_t byte = 0; byte < byteCount; ++byte) {
      page.to[byte] = open.to[byte] == pages::undefinedUnit ? blankUnit : open.to[byte];
    }
    for (const auto& [unit, byte] : open.from) {
      if (unit < byteCount) page.from[unit] = byte;
    }
    return page;
  }

  static void readByte(const Line& line, Page& page, std::set<uint8_t>& seen) {
    requireFields(line, 2);
    const auto byte = static_cast<uint8_t>(parseHex(line, line.field(0), lastByte));
    const auto unit = static_cast<uint16_t>(parseHex(line, line.field(1), lastUnit));
    require(seen.insert(byte).second, line.place, "a second line for this byte; keep one");
    page.to[byte] = unit;
    if (unit < byteCount) page.from[unit] = byte;
  }

  std::string folder_;
  pages::Folder plain_;
  std::map<std::string, Page> pages_;
  std::set<std::string> reading_;
};

// The columns of katakana.tsv by name, which its comment line doesn't tell the program.
std::map<std::string, Katakana> readKatakana(const std::string& path) {
  const std::vector<std::string> names = {"jis", "ibm-939", "ibm-1027", "ibm-290"};
  const std::vector<Line> lines = readLines(path);
  requireCount(path, lines.size(), katakanaCount, "characters");
  std::map<std::string, Katakana> columns;
  for (size_t i = 0; i < katakanaCount; ++i) {
    const Line& line = lines[i];
    requireFields(line, 1 + names.size());
    require(parseHex(line, line.field(0), lastUnit) == firstKatakana + i, line.place,
            "expected " + hex(firstKatakana + i, 4) + "; the characters ascend without gaps");
    for (size_t k = 0; k < names.size(); ++k) {
      columns[names[k]][i] = static_cast<uint16_t>(parseHex(line, line.field(1 + k), lastUnit));
    }
  }
  columns["ascii-katakana"] = ascending(firstKatakanaByte);
  columns["blank"].fill(hostBlank);
  return columns;
}

}  // namespace

std::vector<Single> readSingles(const std::string& folder, const std::string& pagesFolder) {
  Pages pages(folder + "/singles", pagesFolder);
  const std::map<std::string, Katakana> columns = readKatakana(folder + "/katakana.tsv");
  std::vector<Single> singles;
  for (const Line& line : readLines(folder + "/singles.tsv")) {
    requireFields(line, 4);
    const auto number = static_cast<int64_t>(singles.size());
    require(parseDecimal(line, line.field(0), 0, lastByte) == number, line.place,
            "expected set " + std::to_string(number) + "; sets stand in the order of their numbers");
    const auto column = columns.find(line.field(3));
    require(column != columns.end(), line.place, "there is no column " + line.field(3) + " of katakana");
    singles.push_back({line.place, pages.page(line.place, line.field(1)).to, pages.page(line.place, line.field(2)).from,
                       column->second});
  }
  pages.requireAllRead();
  return singles;
}

Katakana eucKatakana() { return ascending(eucLead + firstKatakanaByte); }

Bytes identityMap() {
  Bytes map;
  for (size_t byte = 0; byte < byteCount; ++byte) map[byte] = static_cast<uint8_t>(byte);
  return map;
}

Bytes asciiPassthrough() {
  Bytes map = identityMap();
  std::fill(map.begin() + asciiCount, map.end(), asciiBlank);
  return map;
}

Bytes asciiToHost(const Single& host) {
  Bytes map;
  map.fill(hostBlank);
  for (uint8_t byte = 0; byte < asciiCount; ++byte) map[byte] = host.from[byte];
  return map;
}

Bytes hostToAscii(const Single& host) {
  Bytes map;
  for (size_t byte = 0; byte < byteCount; ++byte) {
    map[byte] = host.to[byte] < asciiCount ? static_cast<uint8_t>(host.to[byte]) : asciiBlank;
  }
  return map;
}

std::vector<Euro> readEuros(const std::string& path, uint16_t maximum) {
  std::vector<Euro> euros;
  for (const Line& line : readLines(path)) {
    requireFields(line, 3);
    const auto cei = static_cast<size_t>(parseDecimal(line, line.field(0), 0, lastCei));
    for (const Euro& other : euros) {
      require(other.cei != cei, line.place, "line " + std::to_string(other.place.line) + " has this CEI; keep one");
    }
    euros.push_back({line.place, cei, line.field(1), static_cast<uint16_t>(parseHex(line, line.field(2), maximum))});
  }
  return euros;
}

}  // namespace gen::sets
