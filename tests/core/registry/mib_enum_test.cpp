#include <gtest/gtest.h>

#include "core/registry.h"
#include "encoding_data.h"
#include "veldnls/status.h"

namespace veldnls {
namespace {

TEST(EncodingFromMibEnum, EveryNumber) {
  std::map<int, int> pairs;
  for (const auto& fields : test::readTsv("encodings/mib-enums.tsv")) {
    pairs[std::stoi(fields.at(0))] = std::stoi(fields.at(1));
  }
  ASSERT_EQ(pairs.size(), 55u);
  for (int32_t mib = -2; mib < 3000; ++mib) {
    CEI cei = -7;
    const NlsStatus status = encodingFromMibEnum(mib, &cei);
    const auto pair = pairs.find(mib);
    EXPECT_EQ(status, pair == pairs.end() ? nlsUnknownMibEnum : 0u) << mib;
    EXPECT_EQ(cei, pair == pairs.end() ? 0 : pair->second) << mib;
  }
}

TEST(EncodingFromMibEnum, SharedNumbersGoToOneRow) {
  const std::pair<int32_t, CEI> pairs[] = {{17, 136}, {18, 134}, {2101, 118}, {2102, 110}, {36, 142}};
  for (const auto& [mib, expected] : pairs) {
    CEI cei = 0;
    EXPECT_EQ(encodingFromMibEnum(mib, &cei), 0u);
    EXPECT_EQ(cei, expected);
  }
  EXPECT_EQ(encodingTable[138].mibEnum, 17);
}

TEST(EncodingFromMibEnum, UnknownNumbersAnswerZero) {
  for (const int32_t mib : {9999, 0, INT32_MAX, INT32_MIN}) {
    CEI cei = 62;
    EXPECT_EQ(encodingFromMibEnum(mib, &cei), nlsUnknownMibEnum);
    EXPECT_EQ(cei, 0);
  }
}

}  // namespace
}  // namespace veldnls
