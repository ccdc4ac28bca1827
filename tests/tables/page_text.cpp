#include "page_text.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "support/tsv.h"

namespace test {

namespace {

// The lines of a page behind those of its base, so that later lines win.
std::vector<Fields> linesWithBases(const std::string& page, int depth) {
  std::vector<Fields> lines;
  if (depth == 0) {
    ADD_FAILURE() << page << " has no end of bases";
    return lines;
  }
  for (const Fields& line : readTsv(pageDataPath("pages/" + page + ".tsv"))) {
    if (line.at(0) == "base") {
      lines = linesWithBases(line.at(1), depth - 1);
    } else {
      lines.push_back(line);
    }
  }
  EXPECT_FALSE(lines.empty()) << page;
  return lines;
}

void exchangeLineEnds(PageText& text) {
  std::swap(text.to[0x15], text.to[0x25]);
  std::swap(text.from[0x0085], text.from[0x000A]);
}

}  // namespace

std::string pageDataPath(const std::string& name) { return VELDNLS_SOURCE_DIR "/data/modules/qznlssb/" + name; }
std::string tablesTestPath(const std::string& name) { return VELDNLS_SOURCE_DIR "/tests/tables/" + name; }

int32_t parseUnit(const std::string& text) { return text == "-" ? nothing : std::stoi(text, nullptr, 16); }

std::string unitText(int32_t unit) {
  char text[16] = "-";
  if (unit != nothing) std::snprintf(text, sizeof text, unit > 0xFF ? "%04X" : "%02X", static_cast<unsigned>(unit));
  return text;
}

std::vector<RowText> readRowTexts() {
  std::vector<RowText> rows;
  for (const Fields& line : readTsv(pageDataPath("rows.tsv"))) {
    RowText row{std::stoi(line.at(0)), line.at(1), line.at(2), line.at(3), line.at(4), 0, 0};
    if (line.at(5) != "-") row.undefined = std::stoi(line.at(5));
    if (line.at(6) != "-") row.pages = std::stoi(line.at(6));
    rows.push_back(row);
  }
  return rows;
}

PageText readPageText(const std::string& page, const std::string& form) {
  constexpr int mostBases = 8;
  std::array<Fields, 256> lineOfByte;
  PageText text;
  text.to.fill(nothing);
  text.from.assign(0x10000, nothing);
  for (const Fields& line : linesWithBases(page, mostBases)) {
    const auto byte = static_cast<size_t>(parseUnit(line.at(0)));
    if (line.size() == 3 && line.at(2) == "from") {
      text.from.at(static_cast<size_t>(parseUnit(line.at(1)))) = static_cast<int32_t>(byte);
    } else {
      lineOfByte.at(byte) = line;
    }
  }
  for (size_t byte = 0; byte < lineOfByte.size(); ++byte) {
    const Fields& line = lineOfByte[byte];
    if (line.empty() || line.at(1) == "-") continue;
    text.to[byte] = parseUnit(line.at(1));
    if (line.size() == 3) continue;
    int32_t& back = text.from.at(static_cast<size_t>(text.to[byte]));
    EXPECT_EQ(back, nothing) << page << ": two bytes claim " << line.at(1);
    back = static_cast<int32_t>(byte);
  }
  if (form == "open") exchangeLineEnds(text);
  return text;
}

}  // namespace test
