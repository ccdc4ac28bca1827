#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "core/session.h"
#include "support/tsv.h"
#include "veldnls/cei.h"
#include "veldnls/status.h"

namespace {

using List = std::vector<int>;

struct Row {
  List primary, secondary;
};

List list(const int32_t* numbers, int32_t count) {
  List values;
  for (int32_t i = 0; i < count; ++i) values.push_back(numbers[i]);
  return values;
}

Row encodingsOf(int32_t localeId) {
  const LocaleEncodings* row = nullptr;
  EXPECT_EQ(veldnls::getLocaleEncodings(localeId, &row), 0u);
  EXPECT_EQ(row->index, localeId);
  return {list(row->primary, row->primaryCount), list(row->secondary, row->secondaryCount)};
}

Row localesOf(CEI cei) {
  const LocaleEncodings* row = nullptr;
  EXPECT_EQ(veldnls::getEncodingLocales(cei, &row), 0u);
  EXPECT_EQ(row->index, cei);
  return {list(row->primary, row->primaryCount), list(row->secondary, row->secondaryCount)};
}

bool servesNoLocale(CEI cei) {
  const Row row = localesOf(cei);
  return row.primary.empty() && row.secondary.empty();
}

bool has(const List& values, int value) { return std::find(values.begin(), values.end(), value) != values.end(); }

TEST(LocaleEncodings, RowsAreTheDataInOrderOfLocaleIds) {
  const auto data = test::readTsv("locale/encodings.tsv");
  ASSERT_EQ(data.size(), 132u);
  for (size_t id = 0; id < data.size(); ++id) {
    const Row row = encodingsOf(static_cast<int32_t>(id));
    EXPECT_EQ(row.primary, test::numbers(data[id][1])) << data[id][0];
    EXPECT_EQ(row.secondary, test::numbers(data[id][2])) << data[id][0];
  }
}

TEST(LocaleEncodings, DescendingAndOnOneListAtMost) {
  for (int32_t id = 0; id < 132; ++id) {
    const Row row = encodingsOf(id);
    EXPECT_TRUE(std::is_sorted(row.primary.rbegin(), row.primary.rend()));
    EXPECT_TRUE(std::is_sorted(row.secondary.rbegin(), row.secondary.rend()));
    for (const int cei : row.secondary) EXPECT_FALSE(has(row.primary, cei)) << id << " " << cei;
    for (const int cei : {20, 24, 25, 26, 27, 204}) EXPECT_TRUE(has(row.primary, cei)) << id << " " << cei;
  }
}

TEST(LocaleEncodings, LocalesAscend) {
  for (CEI cei = 0; cei < 230; ++cei) {
    const Row row = localesOf(cei);
    EXPECT_TRUE(std::is_sorted(row.primary.begin(), row.primary.end()));
    EXPECT_TRUE(std::is_sorted(row.secondary.begin(), row.secondary.end()));
  }
}

TEST(LocaleEncodings, TheTablesAreExactInverses) {
  std::set<std::pair<int, int>> primary, secondary, inversePrimary, inverseSecondary;
  int withSecondary = 0;
  for (int id = 0; id < 132; ++id) {
    const Row row = encodingsOf(id);
    for (const int cei : row.primary) primary.emplace(id, cei);
    for (const int cei : row.secondary) secondary.emplace(id, cei);
    withSecondary += row.secondary.empty() ? 0 : 1;
  }
  for (int cei = 0; cei < 230; ++cei) {
    const Row row = localesOf(cei);
    for (const int id : row.primary) inversePrimary.emplace(id, cei);
    for (const int id : row.secondary) inverseSecondary.emplace(id, cei);
  }
  EXPECT_EQ(primary, inversePrimary);
  EXPECT_EQ(secondary, inverseSecondary);
  EXPECT_EQ(primary.size(), 4803u);
  EXPECT_EQ(secondary.size(), 145u);
  EXPECT_EQ(withSecondary, 24);
}

TEST(LocaleEncodings, TellingRows) {
  EXPECT_EQ(encodingsOf(0).primary, (List{204, 27, 26, 25, 24, 20}));
  EXPECT_EQ(encodingsOf(0).secondary, (List{110, 97, 69, 62, 42, 29}));
  EXPECT_EQ(localesOf(25).primary.size(), 132u);
  EXPECT_EQ(localesOf(229).primary.size(), 19u);
  EXPECT_EQ(localesOf(229).secondary.size(), 2u);
}

TEST(LocaleEncodings, AliasesAndVacantRowsServeNoLocale) {
  for (CEI cei = 0; cei <= 18; ++cei) EXPECT_TRUE(servesNoLocale(cei)) << cei;
  for (const CEI cei : {21, 22, 23, 77, 94, 107, 171}) EXPECT_TRUE(servesNoLocale(cei)) << cei;
}

// Rows in which no locale keeps its texts: utf-16 as a row beside utf-16le, utf-e, ucsu, a page without tables, and the
// name of all EBCDIC pages.
TEST(LocaleEncodings, SpecialRowsServeNoLocale) {
  for (const CEI cei : {U_UNICODE_CE, U_UTFE_CE, U_UCSU_CE, U_QUO1047_CE, U_EBCDICANY_CE}) {
    EXPECT_TRUE(servesNoLocale(cei)) << cei;
  }
}

TEST(LocaleEncodings, OutsideTheTables) {
  static const LocaleEncodings sentinel{};
  for (const int32_t id : {-1, 132, INT32_MIN, INT32_MAX}) {
    const LocaleEncodings* row = &sentinel;
    EXPECT_EQ(veldnls::getLocaleEncodings(id, &row), nlsLocaleInvalid) << id;
    EXPECT_EQ(row, nullptr);
  }
  for (const CEI cei : {-1, 230, INT32_MIN, INT32_MAX}) {
    const LocaleEncodings* row = &sentinel;
    EXPECT_EQ(veldnls::getEncodingLocales(cei, &row), nlsUnknownEncoding) << cei;
    EXPECT_EQ(row, nullptr);
  }
  const LocaleEncodings* row = &sentinel;
  EXPECT_EQ(veldnls::getLocaleEncodings(131, &row), 0u);
  EXPECT_NE(row, &sentinel);
}

}  // namespace
