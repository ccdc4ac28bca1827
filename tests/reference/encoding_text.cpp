#include "reference/encoding_text.h"

#include <map>
#include <sstream>
#include <stdexcept>

#include "support/guard.h"
#include "support/tsv.h"

namespace transcode_test {

namespace {

using Line = std::map<std::string, std::string>;

constexpr CEI anyEncoding = 204;
constexpr CEI anyEbcdic = 203;
constexpr CEI usAscii = 28;

uint32_t number(const std::string& text) { return static_cast<uint32_t>(std::stoul(text, nullptr, 0)); }

std::vector<uint8_t> bytesOf(const std::string& text) {
  return text == "-" ? std::vector<uint8_t>() : test::fromHex(text);
}

std::vector<ByteRange> rangesOf(const std::string& text) {
  std::vector<ByteRange> ranges;
  std::istringstream stream(text);
  for (std::string range; text != "-" && stream >> range;) {
    const size_t dash = range.find('-');
    ranges.push_back({test::fromHex(range.substr(0, dash)).at(0), test::fromHex(range.substr(dash + 1)).at(0)});
  }
  return ranges;
}

// The encoding that a row without a name is like.
CEI modelOf(CEI alias) {
  for (const test::Fields& line : test::readTsv("encodings/alias-models.tsv")) {
    if (std::stoi(line.at(0)) == alias) return std::stoi(line.at(1));
  }
  for (const Line& line : test::readNamedTsv("encodings/dbcs-types.tsv")) {
    if (std::stoi(line.at("type")) != alias) continue;
    for (const char* language : {"JAPANESE", "KOREAN", "CHINESE", "TAIWANESE"}) {
      if (line.at(language) != "0") return std::stoi(line.at(language));
    }
  }
  throw std::runtime_error("row " + std::to_string(alias) + " has no model");
}

void addProfile(EncodingText& row, const Line& line) {
  row.doubleByteSet = std::stoi(line.at("doubleByteSet"));
  row.singleByteSet = std::stoi(line.at("singleByteSet"));
  row.shiftOut = bytesOf(line.at("shiftOut"));
  row.shiftIn = bytesOf(line.at("shiftIn"));
  if (line.at("doubleBlank") != "-") {
    const std::vector<uint8_t> blank = bytesOf(line.at("doubleBlank"));
    row.doubleBlank = {blank.at(0), blank.at(1)};
  }
  row.leadRanges = rangesOf(line.at("leadRanges"));
  row.trailRanges = rangesOf(line.at("trailRanges"));
}

std::map<CEI, Line> profileLines() {
  std::map<CEI, Line> lines;
  for (const Line& line : test::readNamedTsv("encodings/profiles.tsv")) {
    for (const int cei : test::numbers(line.at("ceis"))) lines[cei] = line;
  }
  return lines;
}

std::vector<EncodingText> readRows() {
  std::vector<EncodingText> rows;
  const std::map<CEI, Line> profiles = profileLines();
  for (const Line& line : test::readNamedTsv("encodings/rows.tsv")) {
    EncodingText row;
    row.cei = std::stoi(line.at("cei"));
    row.name = line.at("name");
    row.encodingClass = std::stoi(line.at("encodingClass"));
    row.flags = number(line.at("flags"));
    row.padChar = number(line.at("padChar"));
    row.unitSize = number(line.at("unitSize"));
    row.baseCei = std::stoi(line.at("baseCei"));
    row.ccsid = line.at("ccsid");
    if (isMultiByteClass(row.encodingClass)) {
      addProfile(row, profiles.at(row.cei < 24 ? modelOf(row.cei) : row.cei));
    }
    rows.push_back(row);
  }
  for (const test::Fields& line : test::readTsv("encodings/length-exceptions.tsv")) {
    if (line.at(1) == "ccsid") rows.at(number(line.at(0))).ccsid.resize(number(line.at(2)));
  }
  return rows;
}

const std::vector<EncodingText>& rows() {
  static const std::vector<EncodingText> all = readRows();
  return all;
}

// The encoding that stands for those which are taken for one.
CEI familyHead(CEI cei) {
  static const std::map<CEI, CEI> heads = [] {
    std::map<CEI, CEI> read;
    for (const Line& line : test::readNamedTsv("encodings/families.tsv")) {
      for (const int member : test::numbers(line.at("members"))) read[member] = std::stoi(line.at("head"));
    }
    return read;
  }();
  const auto found = heads.find(cei);
  return found != heads.end() ? found->second : cei;
}

constexpr unsigned asciiInvariants = 1;
constexpr unsigned ebcdicInvariants = 8;

bool needsAmongOthers(const EncodingText& source, const EncodingText& target) {
  const auto either = [&](CEI cei) { return source.cei == cei || target.cei == cei; };
  if (source.encodingClass == target.encodingClass && (source.encodingClass == 2 || source.encodingClass == 3) &&
      source.padChar != target.padChar) {
    return true;
  }
  if ((source.flags & target.flags & asciiInvariants) != 0) return !either(usAscii) && !(either(62) && either(29));
  if ((source.flags & target.flags & ebcdicInvariants) != 0) {
    return !either(anyEbcdic) && (source.ccsid.empty() || source.ccsid != target.ccsid);
  }
  return true;
}

bool needsWithOneMultiByte(const EncodingText& source, const EncodingText& target) {
  const auto either = [&](CEI cei) { return source.cei == cei || target.cei == cei; };
  const auto isWide = [](const EncodingText& row) { return row.encodingClass == 2 || row.encodingClass == 3; };
  if (isWide(source) || isWide(target)) return true;
  if ((source.flags & target.flags & asciiInvariants) != 0) return !either(usAscii);
  return (source.flags & target.flags & ebcdicInvariants) == 0 || !either(anyEbcdic);
}

}  // namespace

const EncodingText& encodingText(CEI cei) { return rows().at(static_cast<size_t>(cei)); }

bool needsConversion(CEI sourceCei, CEI targetCei) {
  if (sourceCei == targetCei || sourceCei == anyEncoding || targetCei == anyEncoding) return false;
  const EncodingText& source = encodingText(sourceCei);
  const EncodingText& target = encodingText(targetCei);
  if (source.isMultiByte() && target.isMultiByte()) return familyHead(sourceCei) != familyHead(targetCei);
  if (source.isMultiByte() || target.isMultiByte()) return needsWithOneMultiByte(source, target);
  return needsAmongOthers(source, target);
}

bool isWithin(const std::vector<ByteRange>& ranges, uint8_t byte) {
  for (const ByteRange& range : ranges) {
    if (byte >= range.low && byte <= range.high) return true;
  }
  return false;
}

}  // namespace transcode_test
