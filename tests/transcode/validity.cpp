#include "transcode/validity.h"

#include <map>
#include <string>

#include "page_text.h"
#include "support/tsv.h"

namespace transcode_test {

namespace {

int byteOf(const std::string& text) { return std::stoi(text, nullptr, 16); }

std::set<int> bytesOfRanges(const std::string& text) {
  std::set<int> bytes;
  size_t start = 0;
  while (start < text.size()) {
    const size_t end = std::min(text.find(' ', start), text.size());
    const std::string range = text.substr(start, end - start);
    const size_t dash = range.find('-');
    const int last = byteOf(dash == std::string::npos ? range : range.substr(dash + 1));
    for (int byte = byteOf(range); byte <= last; ++byte) bytes.insert(byte);
    start = end + 1;
  }
  return bytes;
}

// The bytes of characters below U+009F in a single-byte set of the host rows, by character.
std::map<int, int> bytesOfSingles(const std::string& name) {
  std::map<int, int> bytes;
  for (const test::Fields& line : test::readTsv("modules/qznlsmb/singles/" + name + ".tsv")) {
    if (line.at(0) == "base") {
      bytes = bytesOfSingles(line.at(1));
    } else if (line.at(0) == "page") {
      const test::PageText page = test::readPageText(line.at(1), line.at(2));
      for (int unit = 0; unit < 0x9F; ++unit) bytes[unit] = page.from[static_cast<size_t>(unit)];
    } else {
      bytes[byteOf(line.at(1))] = byteOf(line.at(0));
    }
  }
  return bytes;
}

// What conversion writes as one byte in the host rows with shifts.
void addWrittenBytes(std::map<CEI, std::set<int>>& found) {
  const std::vector<test::Fields> singles = test::readTsv("modules/qznlsmb/singles.tsv");
  const std::vector<test::Fields> doubles = test::readTsv("modules/qznlsmb/sets.tsv");
  const std::vector<test::Fields> rows = test::readTsv("encodings/rows.tsv");
  for (const test::Fields& profile : test::readTsv("encodings/profiles.tsv")) {
    for (const int cei : test::numbers(profile.at(0))) {
      const test::Fields& row = rows.at(static_cast<size_t>(cei));
      if (row.at(1) != "4" || (byteOf(row.at(2)) & 8) == 0) continue;
      const std::string& page = singles.at(std::stoul(profile.at(3))).at(2);
      for (const auto& [unit, byte] : bytesOfSingles(page)) found[cei].insert(byte);
      const std::string& table = doubles.at(std::stoul(profile.at(2))).at(1);
      if (table == "-") continue;
      for (const test::Fields& line : test::readTsv("modules/qznlsmb/sets/" + table + ".tsv")) {
        if (line.at(0).starts_with("00")) found[cei].insert(byteOf(line.at(0)));
      }
    }
  }
}

std::map<CEI, std::set<int>> readDefinedBytes() {
  std::map<CEI, std::set<int>> found;
  for (const test::RowText& row : test::readRowTexts()) {
    if (row.cei < 24 || row.form == "none") continue;
    const test::PageText page = test::readPageText(row.page, row.form);
    for (int byte = 0; byte < 256; ++byte) {
      if (page.to[static_cast<size_t>(byte)] != test::nothing) found[row.cei].insert(byte);
    }
  }
  std::map<std::string, std::set<int>> sets;
  for (const test::Fields& line : test::readTsv("validation/sets.tsv")) sets[line.at(0)] = bytesOfRanges(line.at(2));
  for (const test::Fields& line : test::readTsv("validation/rows.tsv")) found[std::stoi(line.at(0))] = sets[line.at(2)];
  addWrittenBytes(found);
  for (const test::Fields& line : test::readTsv("validation/without.tsv")) found.erase(std::stoi(line.at(0)));
  return found;
}

bool inList(int byte, const NlsByteRange* list) {
  for (int i = 0; i < 4 && list[i].low != 0; ++i) {
    if (byte >= list[i].low && byte <= list[i].high) return true;
  }
  return false;
}

bool graphic(int byte) { return byte >= 0xA1 && byte <= 0xFE; }
bool digit(int byte) { return byte >= 0x30 && byte <= 0x39; }

class Text {
 public:
  Text(const EncodingDescriptor& row, std::span<const uint8_t> bytes) : row_(row), bytes_(bytes) {}

  int64_t fault() const {
    switch (row_.encodingClass) {
      case NLS_CLASS_SINGLE_BYTE:
        return row_.cei == 203 || row_.cei == 204 ? wellFormed : walk([this](size_t p) { return single(p) ? 1 : 0; });
      case NLS_CLASS_UTF8:
        return walk([this](size_t p) { return utf8(p); });
      case NLS_CLASS_UTF16: {
        const int64_t surrogates = walk([this](size_t p) { return utf16(p); });
        if (surrogates != wellFormed || bytes_.size() % 2 == 0) return surrogates;
        return static_cast<int64_t>(bytes_.size()) - 1;
      }
      case NLS_CLASS_UTF32:
        return walk([this](size_t p) { return left(p) < 4 || value(p, 4) > 0x1018F ? 0 : 4; });
      case NLS_CLASS_SHIFTED:
        return shifted();
      default:
        return walk([this](size_t p) { return byte(p) < 0x80 ? 1 : multiByte(p); });
    }
  }

 private:
  size_t left(size_t p) const { return bytes_.size() - p; }
  int byte(size_t p) const { return p < bytes_.size() ? bytes_[p] : 0; }

  template <class Step>
  int64_t walk(Step&& step) const {
    for (size_t p = 0; p < bytes_.size();) {
      const int length = step(p);
      if (length == 0) return static_cast<int64_t>(p);
      p += static_cast<size_t>(length);
    }
    return wellFormed;
  }

  uint32_t value(size_t p, size_t size) const {
    const bool big = row_.cei == 24 || row_.cei == 26;
    uint32_t number = 0;
    for (size_t i = 0; i < size; ++i) number = number << 8 | bytes_[p + (big ? i : size - 1 - i)];
    return number;
  }

  bool single(size_t p) const {
    static std::map<CEI, std::set<int>> maps;
    if (!maps.contains(row_.cei)) maps[row_.cei] = definedBytes(row_.cei).value();
    return maps[row_.cei].contains(byte(p));
  }

  int utf8(size_t p) const {
    const int lead = byte(p);
    const int length = lead < 0x80 ? 1 : lead < 0xC0 ? 6 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF8 ? 4 : 6;
    if (length == 1) return 1;
    if (length > 4 || left(p) < static_cast<size_t>(length) || lead == 0xC0 || lead == 0xC1) return 0;
    for (int i = 1; i < length; ++i) {
      if ((byte(p + static_cast<size_t>(i)) & 0xC0) != 0x80) return 0;
    }
    const int second = byte(p + 1);
    if (lead == 0xF0 && (second & 0x30) == 0) return 0;
    if (lead == 0xED && second > 0x9F) return 0;
    if (lead == 0xE0 && second < 0xA0) return 0;
    return length;
  }

  int utf16(size_t p) const {
    if (left(p) < 2) return 2;
    const uint32_t unit = value(p, 2);
    if (unit >= 0xDC00 && unit <= 0xDFFF) return 0;
    if (unit < 0xD800 || unit > 0xDBFF) return 2;
    return left(p) >= 4 && value(p + 2, 2) >= 0xDC00 && value(p + 2, 2) <= 0xDFFF ? 4 : 0;
  }

  bool matches(size_t p, const uint8_t* sequence) const {
    const size_t length = row_.profile.shiftLength;
    if (length == 0 || left(p) < length) return false;
    for (size_t i = 0; i < length; ++i) {
      if (bytes_[p + i] != sequence[i]) return false;
    }
    return true;
  }

  int64_t shifted() const {
    const MultiByteProfile& profile = row_.profile;
    bool inDouble = false;
    for (size_t p = 0; p < bytes_.size();) {
      const auto here = static_cast<int64_t>(p);
      if (matches(p, profile.shiftOut)) {
        inDouble = true;
        p += profile.shiftLength;
      } else if (matches(p, profile.shiftIn)) {
        inDouble = false;
        p += profile.shiftLength;
      } else if (inDouble) {
        if (!inList(byte(p), profile.leadRanges)) return here;
        if (left(p) < 2) return here;
        if (!inList(byte(p + 1), profile.trailRanges)) return here + 1;
        p += 2;
      } else {
        if (!single(p)) return here;
        p += 1;
      }
    }
    return wellFormed;
  }

  int multiByte(size_t p) const {
    const int a = byte(p), b = byte(p + 1), c = byte(p + 2), d = byte(p + 3);
    switch (row_.cei) {
      case 119:
        if (a == 0x8E) return b >= 0xA2 && b <= 0xAD && graphic(c) && graphic(d) ? 4 : 0;
        return graphic(a) && graphic(b) ? 2 : 0;
      case 134:
        if (a == 0x8E) return b >= 0xA1 && b <= 0xDF ? 2 : 0;
        if (a == 0x8F) return graphic(b) && graphic(c) ? 3 : 0;
        return graphic(a) && graphic(b) ? 2 : 0;
      case 205:
        if (!graphic(a) || left(p) < 2) return 0;
        if (graphic(c)) return 2;
        return digit(b) && c >= 0x81 && c <= 0xFE && digit(d) ? 4 : 0;
      case 136:
      case 138:
        if (a > 0xA0 && a < 0xE0) return 1;
        [[fallthrough]];
      default:
        return inList(a, row_.profile.leadRanges) && left(p) >= 2 && inList(b, row_.profile.trailRanges) ? 2 : 0;
    }
  }

  const EncodingDescriptor& row_;
  std::span<const uint8_t> bytes_;
};

}  // namespace

std::optional<std::set<int>> definedBytes(CEI cei) {
  static const std::map<CEI, std::set<int>> all = readDefinedBytes();
  const auto found = all.find(cei);
  if (found == all.end()) return std::nullopt;
  return found->second;
}

int64_t firstFault(const EncodingDescriptor& row, std::span<const uint8_t> text) { return Text(row, text).fault(); }

}  // namespace transcode_test
