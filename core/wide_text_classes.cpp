// The class tables of 16-bit units.
#include <algorithm>
#include <array>

#include "core/wide_text.h"

namespace veldnls {
namespace {

struct CodeRange {
  uint32_t first;
  uint32_t last;
};

// Rows above U+FFFF stand in the tables too; no unit can match them.
struct ClassTables {
  std::array<CodeRange, 22> digit;
  std::array<CodeRange, 411> lower;
  std::array<CodeRange, 405> upper;
  std::array<CodeRange, 428> alpha;
  std::array<CodeRange, 10> space;
  std::array<CodeRange, 357> printable;
};

constexpr ClassTables tables = {
#include "unicode/class_tables.inc"
};

// An array with fewer rows than its size would end in zeros.
static_assert(tables.digit.back().last != 0 && tables.lower.back().last != 0 && tables.upper.back().last != 0 &&
              tables.alpha.back().last != 0 && tables.space.back().last != 0 && tables.printable.back().last != 0);

template <size_t N>
bool contains(const std::array<CodeRange, N>& rows, char16_t unit) {
  return std::any_of(rows.begin(), rows.end(),
                     [unit](const CodeRange& row) { return unit >= row.first && unit <= row.last; });
}

}  // namespace

bool isWideDigit(char16_t unit) { return contains(tables.digit, unit); }

bool isWideLower(char16_t unit) { return contains(tables.lower, unit); }

bool isWideUpper(char16_t unit) { return contains(tables.upper, unit); }

bool isWideAlpha(char16_t unit) { return contains(tables.alpha, unit); }

bool isWideSpace(char16_t unit) { return contains(tables.space, unit); }

bool isWideAlphaNumeric(char16_t unit) { return isWideAlpha(unit) || isWideDigit(unit); }

bool isWidePrintable(char16_t unit) { return contains(tables.printable, unit); }

}  // namespace veldnls
