// The single-byte pages as a reader of its own finds them in data/modules/qznlssb: nothing here is shared with the
// generator that makes the library's tables from the same text.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace test {

// Stands for "no meaning" of a byte and "no byte" of a unit.
constexpr int32_t nothing = -1;

struct PageText {
  std::array<int32_t, 256> to;  // unit by byte
  std::vector<int32_t> from;    // byte by unit, 65,536 of them
};

struct RowText {
  int cei = 0;
  std::string name;
  std::string page;
  std::string form;  // none, plain, open, to
  std::string family;
  int undefined = 0;
  int pages = 0;
};

std::vector<RowText> readRowTexts();

// A page in a form. A page whose text makes no sense fails the running test and comes out without meanings.
PageText readPageText(const std::string& page, const std::string& form);

// A path under data/modules/qznlssb, and one under this folder.
std::string pageDataPath(const std::string& name);
std::string tablesTestPath(const std::string& name);

// Hexadecimal digits, or "-" for nothing.
int32_t parseUnit(const std::string& text);
std::string unitText(int32_t unit);

}  // namespace test
