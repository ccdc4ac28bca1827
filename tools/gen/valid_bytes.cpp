// Makes the maps of valid bytes, by which encoded text is tested: one for each single-byte page and each named set of
// bytes, to which a host row with shifts adds what conversion writes. Maps of one content are one array.
#include <algorithm>
#include <map>
#include <set>

#include "pages_row.h"
#include "valid_bytes_written.h"

namespace {

using gen::Line;
using gen::Output;
using gen::Place;
using gen::require;
using gen::pages::byteCount;

constexpr size_t ceiCount = 230;
constexpr int64_t lastCei = ceiCount - 1;
constexpr size_t firstCei = 24;  // those below are aliases, and a form of Unicode
constexpr size_t rowsWithMap = 156;
constexpr size_t rowsWithoutMap = 45;
constexpr size_t sourceCount = 79;
constexpr size_t contentCount = 36;

using Bytes = gen::BytesOfRow;

struct Encoding {
  int64_t encodingClass;
  std::string name;  // "-" if it has none

  bool singleByte() const { return encodingClass == 0; }
  bool multiByte() const { return encodingClass >= 4; }
  bool shifted() const { return encodingClass == 4; }
};

std::vector<Encoding> readEncodings(const std::string& path) {
  std::vector<Encoding> encodings;
  for (const Line& line : gen::readLines(path)) {
    const std::string& name = line.field(7);
    encodings.push_back({parseDecimal(line, line.field(1), 0, 5), name.empty() ? "-" : name});
  }
  gen::requireCount(path, encodings.size(), ceiCount, "rows");
  return encodings;
}

// The CEI of a line, whose name must be that of the row. CEIs must rise.
size_t parseCei(const Line& line, const std::vector<Encoding>& encodings, size_t& last) {
  const auto cei = static_cast<size_t>(parseDecimal(line, line.field(0), firstCei, lastCei));
  require(cei > last, line.place, "CEIs must rise; sort the rows");
  require(line.field(1) == encodings[cei].name, line.place,
          "encoding " + std::to_string(cei) + " is named " + encodings[cei].name + ", not " + line.field(1));
  last = cei;
  return cei;
}

void addRange(const Line& line, const std::string& text, Bytes& bytes) {
  const std::vector<std::string> ends = gen::split(text, '-');
  require(!ends.empty() && ends.size() <= 2, line.place, "a range is a byte, or two with \"-\" between them");
  const uint32_t first = parseHex(line, ends.front(), byteCount - 1);
  const uint32_t last = parseHex(line, ends.back(), byteCount - 1);
  require(first <= last, line.place, "range " + text + " runs backward");
  for (uint32_t byte = first; byte <= last; ++byte) {
    require(!bytes[byte], line.place, "byte " + gen::hex(byte, 2) + " stands in two ranges");
    bytes[byte] = true;
  }
}

std::map<std::string, Bytes> readSets(const std::string& path) {
  std::map<std::string, Bytes> sets;
  for (const Line& line : gen::readLines(path)) {
    requireFields(line, 3);
    Bytes bytes{};
    for (const std::string& range : gen::split(line.field(2), ' ')) addRange(line, range, bytes);
    const auto count = std::count(bytes.begin(), bytes.end(), true);
    require(count == parseDecimal(line, line.field(1), 1, byteCount), line.place,
            "the set has " + std::to_string(count) + " bytes, not " + line.field(1));
    require(sets.emplace(line.field(0), bytes).second, line.place, "the set " + line.field(0) + " stands here twice");
  }
  return sets;
}

struct Sources {
  std::map<size_t, std::string> sets;  // by CEI
  std::set<size_t> without;
};

Sources readSources(const std::string& folder, const std::vector<Encoding>& encodings,
                    const std::map<std::string, Bytes>& sets) {
  Sources sources;
  std::set<std::string> unused;
  for (const auto& [name, bytes] : sets) unused.insert(name);
  size_t last = 0;
  for (const Line& line : gen::readLines(folder + "/rows.tsv")) {
    requireFields(line, 3);
    require(sets.contains(line.field(2)), line.place, "there is no set " + line.field(2));
    sources.sets[parseCei(line, encodings, last)] = line.field(2);
    unused.erase(line.field(2));
  }
  require(unused.empty(), {folder + "/sets.tsv", 0}, "no row uses the set " + (unused.empty() ? "" : *unused.begin()));
  last = 0;
  for (const Line& line : gen::readLines(folder + "/without.tsv")) {
    requireFields(line, 2);
    const size_t cei = parseCei(line, encodings, last);
    require(encodings[cei].singleByte() || encodings[cei].multiByte(), line.place,
            "rows of a Unicode form need no line here");
    require(!sources.sets.contains(cei), line.place, "the row has a set in rows.tsv");
    require(!encodings[cei].shifted(), line.place,
            "rows with shifts are read by their map; give them a set in rows.tsv");
    sources.without.insert(cei);
  }
  return sources;
}

Bytes joined(Bytes bytes, const Bytes& more) {
  for (size_t byte = 0; byte < byteCount; ++byte) bytes[byte] = bytes[byte] || more[byte];
  return bytes;
}

Bytes withMeaning(const gen::pages::Page& page) {
  Bytes bytes{};
  for (size_t byte = 0; byte < byteCount; ++byte) bytes[byte] = page.to[byte] != gen::pages::undefinedUnit;
  return bytes;
}

class Maps {
 public:
  explicit Maps(const std::string& path) : path_(path), output_(path) {}

  // A map made of a page or set. The name of its array is that of the first map with these bytes.
  const std::string& add(const std::string& name, const Bytes& bytes) {
    names_.insert(name);
    const auto [found, isNew] = arrays_.emplace(bytes, "valid_" + std::to_string(arrays_.size()));
    if (isNew) {
      output_ << "// " << name << "\nconstexpr uint8_t " << found->second << "[] = {\n";
      output_.list(byteCount, [&](size_t byte) { return bytes[byte] ? "1" : "0"; });
      output_ << "};\n";
    }
    return found->second;
  }

  void save() const {
    gen::requireCount(path_, names_.size(), sourceCount, "pages and sets");
    gen::requireCount(path_, arrays_.size(), contentCount, "maps of different content");
    output_.save();
  }

 private:
  std::string path_;
  Output output_;
  std::set<std::string> names_;
  std::map<Bytes, std::string> arrays_;
};

void makeMaps(const std::string& data, const std::string& out) {
  const std::string folder = data + "/validation";
  const std::vector<Encoding> encodings = readEncodings(data + "/encodings/rows.tsv");
  const std::map<std::string, Bytes> sets = readSets(folder + "/sets.tsv");
  const Sources sources = readSources(folder, encodings, sets);
  gen::requireCount(folder + "/without.tsv", sources.without.size(), rowsWithoutMap, "rows");

  std::map<size_t, gen::pages::Row> pageRows;
  for (const gen::pages::Row& row : gen::pages::readRows(data + "/modules/qznlssb/rows.tsv")) {
    pageRows.emplace(row.cei, row);
  }
  std::map<size_t, Bytes> written = gen::readWrittenBytes(data);
  gen::pages::Folder pages(data + "/modules/qznlssb/pages");
  Maps maps(out + "/valid_bytes/maps.inc");
  std::map<size_t, std::string> arrays;
  for (size_t cei = firstCei; cei < ceiCount; ++cei) {
    if (sources.without.contains(cei)) continue;
    const auto set = sources.sets.find(cei);
    if (set != sources.sets.end()) {
      arrays[cei] = maps.add("set " + set->second, joined(sets.at(set->second), written[cei]));
    } else if (encodings[cei].singleByte()) {
      const auto row = pageRows.find(cei);
      require(row != pageRows.end() && row->second.hasTo(), {folder + "/rows.tsv", 0},
              "encoding " + std::to_string(cei) + " has no page; give it a set here or a line in without.tsv");
      arrays[cei] = maps.add("page " + row->second.page, withMeaning(pageOf(row->second, pages)));
    } else {
      require(!encodings[cei].multiByte(), {folder + "/rows.tsv", 0},
              "encoding " + std::to_string(cei) + " needs a set here or a line in without.tsv");
    }
  }
  gen::requireCount(folder + "/rows.tsv", arrays.size(), rowsWithMap, "rows with those of the pages");
  maps.save();

  Output byCei(out + "/valid_bytes/by_cei.inc");
  byCei.list(ceiCount, [&](size_t cei) {
    const auto found = arrays.find(cei);
    return found == arrays.end() ? "nullptr" : found->second;
  });
  byCei.save();
}

}  // namespace

int main(int count, char** values) {
  const gen::Arguments arguments = gen::parseArguments(count, values);
  makeMaps(arguments.data, arguments.out);
}
