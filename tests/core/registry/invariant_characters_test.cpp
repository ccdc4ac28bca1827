#include <gtest/gtest.h>

#include "core/registry.h"
#include "encoding_data.h"
#include "session_host.h"
#include "veldnls/cei.h"

using test::encodingFacts;

namespace veldnls {
namespace {

bool shares(CEI a, CEI b) { return sharesInvariantCharacters(nullptr, a, b) != 0; }

std::map<int, int> groups() {
  std::map<int, int> byCei;
  for (const auto& fields : test::readTsv("encodings/ebcdic-groups.tsv")) {
    byCei[std::stoi(fields.at(0))] = std::stoi(fields.at(1));
  }
  return byCei;
}

bool restated(CEI a, CEI b, const std::map<int, int>& groupOf) {
  if (a == b || a == 204 || b == 204) return true;
  int flags[2] = {encodingFacts().number(a, "flags"), encodingFacts().number(b, "flags")};
  const CEI ceis[2] = {a, b};
  if (!((flags[0] == 1 || flags[0] == 8) && (flags[1] == 1 || flags[1] == 8))) {
    for (int i = 0; i < 2; ++i) {
      if (ceis[i] == 19 || (ceis[i] >= 24 && ceis[i] <= 27)) flags[i] = 1;
      if (ceis[i] == 161) flags[i] = 8;
    }
  }
  if ((flags[0] & flags[1] & 1) != 0) return true;
  if ((flags[0] & flags[1] & 8) == 0) return false;
  const auto groupA = groupOf.find(a);
  const auto groupB = groupOf.find(b);
  return groupA != groupOf.end() && groupB != groupOf.end() && groupA->second == groupB->second;
}

TEST(SharesInvariantCharacters, AllPairsFollowTheRules) {
  const std::map<int, int> groupOf = groups();
  ASSERT_EQ(groupOf.size(), 113u);
  for (CEI a = 1; a < NLS_CEI_COUNT; ++a) {
    for (CEI b = 1; b < NLS_CEI_COUNT; ++b) ASSERT_EQ(shares(a, b), restated(a, b, groupOf)) << a << " " << b;
  }
}

TEST(SharesInvariantCharacters, Examples) {
  EXPECT_TRUE(shares(62, 25));
  EXPECT_FALSE(shares(78, 97));
  EXPECT_TRUE(shares(78, 173));
  EXPECT_TRUE(shares(65, 62));
  EXPECT_TRUE(shares(19, 66));
  EXPECT_TRUE(shares(161, 97));
  EXPECT_FALSE(shares(161, 62));
  EXPECT_TRUE(shares(204, 97));
  EXPECT_FALSE(shares(17, 62));
  EXPECT_FALSE(shares(94, 107));
}

TEST(SharesInvariantCharacters, RowsInNoGroupShareWithThemselvesOnly) {
  for (const CEI lone : {170, 219, 220}) {
    for (CEI other = 1; other < NLS_CEI_COUNT; ++other) EXPECT_EQ(shares(lone, other), other == lone || other == 204);
  }
}

TEST(SharesInvariantCharacters, OutsideTheTable) {
  for (const CEI outside : {-1, 230, INT32_MAX, INT32_MIN}) {
    EXPECT_FALSE(shares(outside, 62));
    EXPECT_FALSE(shares(62, outside));
    EXPECT_FALSE(shares(outside, outside));
    EXPECT_FALSE(shares(outside, 204));
  }
}

TEST(SharesInvariantCharacters, SessionEncoding) {
  test::SessionOptions session(U_EBCDIC1047_CE);
  EXPECT_TRUE(sharesInvariantCharacters(session.nls(), 0, 0));
  EXPECT_TRUE(sharesInvariantCharacters(session.nls(), 0, 204));
  EXPECT_EQ(session.asked(), 0);
  EXPECT_TRUE(sharesInvariantCharacters(session.nls(), 0, 110));
  EXPECT_TRUE(sharesInvariantCharacters(session.nls(), 161, 0));
  EXPECT_FALSE(sharesInvariantCharacters(session.nls(), 62, 0));
  EXPECT_EQ(session.asked(), 3);
}

TEST(SharesInvariantCharacters, SessionEncodingOutsideTheTable) {
  for (const CEI outside : {-1, 230}) {
    test::SessionOptions session(outside);
    EXPECT_FALSE(sharesInvariantCharacters(session.nls(), 0, 62));
  }
}

}  // namespace
}  // namespace veldnls
