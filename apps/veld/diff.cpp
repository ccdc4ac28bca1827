#include "diff.h"

#include <iomanip>
#include <iostream>

#include "failure.h"
#include "json_report.h"
#include "loss.h"
#include "names.h"
#include "repertoire.h"
#include "route.h"
#include "text.h"

namespace veld {

namespace {

// Characters in a row.
struct Range {
  char32_t first;
  char32_t last;
};

struct CodeDifference {
  std::string code;
  char32_t a;
  char32_t b;
};

struct Differences {
  std::vector<Range> onlyA;
  std::vector<Range> onlyB;
  std::vector<CodeDifference> codes;
};

std::vector<Range> onlyIn(const Repertoire& a, const Repertoire& b) {
  std::vector<Range> ranges;
  for (char32_t c = 0; c < characterCount; ++c) {
    if (!a.has(c) || b.has(c)) continue;
    if (!ranges.empty() && ranges.back().last + 1 == c) {
      ranges.back().last = c;
    } else {
      ranges.push_back({c, c});
    }
  }
  return ranges;
}

uint64_t countOf(const std::vector<Range>& ranges) {
  uint64_t count = 0;
  for (const Range& range : ranges) count += range.last - range.first + 1;
  return count;
}

void compareShortCodes(const Repertoire& a, const Repertoire& b, std::vector<CodeDifference>& found) {
  const auto add = [&found](Bytes code, char32_t inA, char32_t inB) {
    if (inA != inB) found.push_back({hexBytes(code), inA, inB});
  };
  for (size_t first = 0; first < byteValues; ++first) {
    const std::array<uint8_t, 1> code{static_cast<uint8_t>(first)};
    add(code, a.atByte(code[0]), b.atByte(code[0]));
  }
  for (size_t value = 0; value < byteValues * byteValues; ++value) {
    const std::array<uint8_t, 2> code{static_cast<uint8_t>(value >> 8), static_cast<uint8_t>(value)};
    add(code, a.atTwoBytes(code[0], code[1]), b.atTwoBytes(code[0], code[1]));
  }
}

void compareFourByteCodes(const Repertoire& a, const Repertoire& b, std::vector<CodeDifference>& found) {
  std::array<uint8_t, 4> code{0x81, 0x30, 0x81, 0x30};
  constexpr std::array<uint8_t, 4> firsts = {0x81, 0x30, 0x81, 0x30};
  constexpr std::array<uint8_t, 4> lasts = {0xFE, 0x39, 0xFE, 0x39};
  for (bool more = true; more;) {
    const char32_t inA = a.atFourBytes(code);
    const char32_t inB = b.atFourBytes(code);
    if (inA != inB) found.push_back({hexBytes(code), inA, inB});
    more = false;
    for (size_t i = code.size(); i-- > 0 && !more;) {
      more = code[i] != lasts[i];
      code[i] = more ? static_cast<uint8_t>(code[i] + 1) : firsts[i];
    }
  }
}

Differences compare(const Repertoire& a, const Repertoire& b) {
  Differences found{onlyIn(a, b), onlyIn(b, a), {}};
  if (a.isUnicode() || b.isUnicode()) return found;
  compareShortCodes(a, b, found.codes);
  if (a.hasFourByteCodes() || b.hasFourByteCodes()) compareFourByteCodes(a, b, found.codes);
  return found;
}

// A character as it looks, where it can be shown by itself.
std::string look(QZNLS& nls, char32_t c) {
  const bool isControl = c < 0x20 || (c >= 0x7F && c < 0xA0);
  const bool isPrivate = (c >= 0xE000 && c < 0xF900) || c >= 0xF0000;
  const bool isBlank = c == 0x20 || c == 0xA0 || c == 0x3000;
  if (isControl || isBlank || isPrivate) return "";
  if (c < 0x10000) return toUtf8(nls, std::u16string{static_cast<char16_t>(c)});
  const char32_t rest = c - 0x10000;
  return toUtf8(nls, std::u16string{static_cast<char16_t>(0xD800 + (rest >> 10)),
                                    static_cast<char16_t>(0xDC00 + (rest & 0x3FF))});
}

std::string described(QZNLS& nls, char32_t c) {
  if (c == noCharacter) return "-";
  const std::string shape = look(nls, c);
  return codePoint(c) + (shape.empty() ? "" : " " + shape);
}

void printRanges(QZNLS& nls, const std::string& name, const std::vector<Range>& ranges) {
  std::cout << "Characters that only " << name << " has: " << countOf(ranges) << '\n';
  for (const Range& range : ranges) {
    std::cout << "  " << described(nls, range.first);
    if (range.last != range.first) std::cout << " to " << described(nls, range.last);
    std::cout << '\n';
  }
}

// The columns of code points are wide enough for one and its shape, which is at most two columns wide.
void printCodes(QZNLS& nls, const Repertoire& a, const Repertoire& b, const std::vector<CodeDifference>& codes) {
  std::cout << "Codes that stand for different characters: " << codes.size() << '\n';
  if (codes.empty()) return;
  std::cout << "  code         " << a.name() << " | " << b.name() << '\n';
  for (const CodeDifference& code : codes) {
    std::cout << "  " << std::left << std::setw(13) << code.code << described(nls, code.a) << " | "
              << described(nls, code.b) << '\n';
  }
}

Json rangesObject(const std::vector<Range>& ranges) {
  Json list = Json::array();
  for (const Range& range : ranges)
    list.push_back({{"first", codePoint(range.first)}, {"last", codePoint(range.last)}});
  return {{"count", countOf(ranges)}, {"ranges", list}};
}

Json characterObject(char32_t c) { return c == noCharacter ? Json() : Json(codePoint(c)); }

void printObject(const Repertoire& a, const Repertoire& b, const Differences& found) {
  Json codes = Json::array();
  for (const CodeDifference& code : found.codes) {
    codes.push_back({{"code", code.code}, {"a", characterObject(code.a)}, {"b", characterObject(code.b)}});
  }
  const Json object{{"a", a.name()},
                    {"b", b.name()},
                    {"onlyA", rangesObject(found.onlyA)},
                    {"onlyB", rangesObject(found.onlyB)},
                    {"codes", codes}};
  std::cout << object.dump(2) << '\n';
}

}  // namespace

int diff(QZNLS& nls, const std::string& nameA, const std::string& nameB, Format format) {
  const Repertoire a(nls, resolveEncoding(nls, findEncoding(nls, nameA)));
  const Repertoire b(nls, resolveEncoding(nls, findEncoding(nls, nameB)));
  const Differences found = compare(a, b);
  if (format == Format::json) {
    printObject(a, b, found);
  } else {
    printRanges(nls, a.name(), found.onlyA);
    printRanges(nls, b.name(), found.onlyB);
    printCodes(nls, a, b, found.codes);
  }
  return found.onlyA.empty() && found.onlyB.empty() && found.codes.empty() ? exitWhole : exitLoss;
}

}  // namespace veld
