#include "transcode/verdicts.h"

#include <algorithm>
#include <set>

namespace transcode_test {

Verdict verdictOf(CEI cei, Span text) {
  constexpr size_t areaSize = 1 << 13;
  static test::GuardedBuffer area(areaSize);
  uint8_t* bytes = area.data() + areaSize - text.size();
  std::copy(text.begin(), text.end(), bytes);
  Verdict verdict{0xDEADBEEF, 99};
  verdict.status =
      nls()->validateEncodedText(nls(), bytes, static_cast<uint32_t>(text.size()), cei, nullptr, &verdict.offset);
  EXPECT_EQ(nls()->validateEncodedText(nls(), bytes, static_cast<uint32_t>(text.size()), cei, &area, nullptr),
            verdict.status)
      << "without an offset";
  return verdict;
}

bool isRefused(CEI cei) {
  const std::set<CEI> rows = {31,  32,  41,  69,  70,  71,  72,  73,  74,  75,  76,  77,  79,  80,  81,
                              82,  83,  84,  85,  86,  87,  88,  92,  94,  101, 102, 107, 114, 115, 116,
                              161, 162, 163, 170, 171, 174, 175, 176, 177, 178, 179, 180, 181, 182};
  return rows.contains(cei) || (cei < 24 && cei != 20);
}

}  // namespace transcode_test
