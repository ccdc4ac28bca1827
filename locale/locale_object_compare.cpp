// The plain comparison of texts.
#include <algorithm>
#include <cstring>

#include "locale/locale_object.h"

namespace veldnls {
namespace {

constexpr char16_t blank = u' ';

// Bytes as they stand in memory, the low one of a unit first.
int32_t compareBytes(const char16_t* a, const char16_t* b, int32_t length) {
  if (length == 0) return 0;
  const int order = std::memcmp(a, b, static_cast<size_t>(length) * sizeof(char16_t));
  return order < 0 ? -1 : order > 0 ? 1 : 0;
}

// The order of a text that goes on with `rest` and one that ends there.
int32_t compareRest(const char16_t* rest, const char16_t* end, int32_t blankMode) {
  if (blankMode != NLS_COMPARE_IGNORES_BLANKS) return 1;
  const char16_t* decisive = std::find_if(rest, end, [](char16_t unit) { return unit != blank; });
  if (decisive == end) return 0;
  return *decisive < blank ? -1 : 1;
}

}  // namespace

int32_t compareText(QZLocale* /*locale*/, const char16_t* textA, int32_t lengthA, const char16_t* textB,
                    int32_t lengthB, int32_t blankMode) {
  if (textA == nullptr || lengthA < 0) lengthA = 0;
  if (textB == nullptr || lengthB < 0) lengthB = 0;
  const int32_t common = std::min(lengthA, lengthB);
  const int32_t order = compareBytes(textA, textB, common);
  if (order != 0 || lengthA == lengthB) return order;
  return lengthA > lengthB ? compareRest(textA + common, textA + lengthA, blankMode)
                           : -compareRest(textB + common, textB + lengthB, blankMode);
}

}  // namespace veldnls
