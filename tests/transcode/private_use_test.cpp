// Private-use characters that stand between two encodings of users: their ranges, and the turn of a surplus.
#include "transcode/private_use.h"

#include <algorithm>
#include <map>

#include "transcode/built_user_tables.h"
#include "transcode/user_columns.h"

namespace transcode_test {

namespace {

TEST(PrivateUse, RangesByEncoding) {
  struct Range {
    std::vector<CEI> ceis;
    uint16_t first, last;
  };
  std::map<CEI, std::pair<uint16_t, uint16_t>> special;
  for (const Range& range : {Range{{117, 122, 124, 128, 129, 130, 137, 139, 142}, 0xE000, 0xF83C},
                             {{118, 123}, 0xF849, 0xF8FF},
                             {{121, 127, 135, 143}, 0xE000, 0xF6FF},
                             {{125, 126}, 0xEDE8, 0xF8FF},
                             {{136, 138}, 0xE758, 0xF8FF},
                             {{140, 141}, 0xE0BC, 0xF8FF}}) {
    for (const CEI cei : range.ceis) special[cei] = {range.first, range.last};
  }
  constexpr uint32_t count = 0x1A00;
  std::vector<uint16_t> buffer(count + 1);
  for (CEI cei = 0; cei < NLS_CEI_COUNT; ++cei) {
    const auto [first, last] = special.contains(cei) ? special[cei] : std::pair<uint16_t, uint16_t>{0xE000, 0xF8FF};
    const uint32_t length = last - first + 1u;
    std::fill(buffer.begin(), buffer.end(), 0xAAAA);
    EXPECT_EQ(veldnls::fillPrivateUse(buffer.data(), count, cei), count - length) << cei;
    for (uint32_t i = 0; i < count; ++i) {
      ASSERT_EQ(buffer[i], i < length ? first + i : 0x3000u) << cei << " " << i;
    }
    EXPECT_EQ(buffer[count], 0xAAAA);
    EXPECT_EQ(veldnls::fillPrivateUse(buffer.data(), length, cei), 0u);
    EXPECT_EQ(buffer[length - 1], last);
    EXPECT_EQ(veldnls::fillPrivateUse(nullptr, 0, cei), 0u);
  }
}

TEST(PrivateUse, WorkedExample) {
  uint16_t buffer[200];
  EXPECT_EQ(veldnls::fillPrivateUse(buffer, 200, 118), 17u);
  EXPECT_EQ(buffer[0], 0xF849);
  EXPECT_EQ(buffer[182], 0xF8FF);
  EXPECT_EQ(buffer[183], 0x3000);
  EXPECT_EQ(buffer[199], 0x3000);
}

TEST(PrivateUse, TheTurnCountsBytesForUnits) {
  const Bytes column = bytesOf({1, 2, 3, 4, 5, 6, 7});
  const auto turnedBy = [&](uint32_t surplus) {
    Bytes to(column.size(), 0xEE);
    veldnls::turnColumn({column.data(), 7}, surplus, to.data());
    return to;
  };
  EXPECT_EQ(turnedBy(1), bytesOf({3, 0, 1, 2, 3, 4, 5}));
  EXPECT_EQ(turnedBy(2), bytesOf({5, 6, 0, 0, 1, 2, 3}));
  EXPECT_EQ(turnedBy(3), bytesOf({7, 0, 0, 0, 0, 0, 1}));
  EXPECT_EQ(turnedBy(7), bytesOf({0, 0, 0, 0, 0, 0, 0}));
  for (uint32_t surplus = 1; surplus <= 7; ++surplus) {
    EXPECT_EQ(turnedBy(surplus), bytesOf(turned({1, 2, 3, 4, 5, 6, 7}, surplus))) << surplus;
  }
  veldnls::turnColumn({column.data(), 0}, 3, nullptr);
}

}  // namespace

}  // namespace transcode_test
