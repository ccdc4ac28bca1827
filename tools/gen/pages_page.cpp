#include "pages_page.h"

#include <filesystem>

namespace gen::pages {

namespace {

constexpr uint32_t lastByte = 0xFF;
constexpr uint32_t lastUnit = 0xFFFF;
constexpr uint16_t nel = 0x0085;
constexpr uint16_t lineFeed = 0x000A;
constexpr uint8_t plainNel = 0x15;
constexpr uint8_t plainLineFeed = 0x25;

void readMapping(const Line& line, Page& page, std::set<uint8_t>& seen) {
  const auto byte = static_cast<uint8_t>(parseHex(line, line.field(0), lastByte));
  const bool undefined = line.field(1) == "-";
  const auto unit = undefined ? undefinedUnit : static_cast<uint16_t>(parseHex(line, line.field(1), lastUnit));
  require(undefined || unit != undefinedUnit, line.place, "U+FFFD stands for no meaning; write \"-\"");
  require(line.fields.size() <= 3, line.place, "too many fields; a line is byte, unit and direction");
  const std::string direction = line.fields.size() == 3 ? line.fields[2] : "";
  require(direction.empty() || (!undefined && (direction == "to" || direction == "from")), line.place,
          "the direction is \"to\", \"from\" or nothing, and an undefined byte has none");
  if (direction == "from") {
    require(page.encodeOnly.emplace(unit, byte).second, line.place, "a second byte for this unit; keep one");
    return;
  }
  require(seen.insert(byte).second, line.place, "a second line for this byte; keep one");
  page.to[byte] = unit;
  page.decodeOnly.erase(byte);
  if (direction == "to") page.decodeOnly.insert(byte);
}

void joinDirections(Page& page) {
  page.from = page.encodeOnly;
  for (size_t i = 0; i < byteCount; ++i) {
    const auto byte = static_cast<uint8_t>(i);
    if (page.to[i] == undefinedUnit || page.decodeOnly.contains(byte)) continue;
    require(page.from.emplace(page.to[i], byte).second, page.place,
            "byte " + hex(i, 2) + " shares its unit with another; mark one of them \"to\"");
  }
}

}  // namespace

std::set<uint8_t> Page::highBytes() const {
  std::set<uint8_t> high;
  for (const auto& [unit, byte] : from) high.insert(static_cast<uint8_t>(unit >> 8));
  return high;
}

Folder::Folder(std::string path) : path_(std::move(path)) {}

std::string Folder::file(const std::string& name) const { return path_ + "/" + name + ".tsv"; }

const Page& Folder::page(const Place& asker, const std::string& name) {
  const auto known = pages_.find(name);
  if (known != pages_.end()) return known->second;
  require(std::filesystem::exists(file(name)), asker, "there is no page " + name + "; add pages/" + name + ".tsv");
  require(reading_.insert(name).second, asker, "page " + name + " is its own base; break the ring");
  return pages_.emplace(name, read(name)).first->second;
}

Page Folder::read(const std::string& name) {
  Page page;
  page.to.fill(undefinedUnit);
  std::set<uint8_t> seen;
  bool first = true;
  for (const Line& line : readLines(file(name))) {
    if (line.field(0) == "base") {
      require(first, line.place, "the base stands ahead of all mappings");
      page = this->page(line.place, line.field(1));
    } else {
      readMapping(line, page, seen);
    }
    first = false;
  }
  page.name = name;
  page.place = {file(name), 0};
  joinDirections(page);
  return page;
}

void Folder::requireAllRead() const {
  for (const auto& entry : std::filesystem::directory_iterator(path_)) {
    const std::string name = entry.path().stem().string();
    require(pages_.contains(name), {entry.path().string(), 0}, "no row uses this page; remove the file or name it");
  }
}

Page openForm(const Page& plain) {
  require(plain.to[plainNel] == nel && plain.to[plainLineFeed] == lineFeed, plain.place,
          "only a page with NEL at 15 and LF at 25 has an open form");
  Page open = plain;
  std::swap(open.to[plainNel], open.to[plainLineFeed]);
  std::swap(open.from.at(nel), open.from.at(lineFeed));
  return open;
}

}  // namespace gen::pages
