// User character tables: the copy of a host's list.
#include "transcode/user_tables.h"

#include <cstring>

#include "transcode/built_user_tables.h"

namespace transcode_test {

namespace {

TEST(UserTables, AreCopiedDeep) {
  UserList list;
  list.add({{U_IBM939_CE, {0x6941, 0x6942}}, {U_SHIFTJIS_CE, {0xF040, 0xF041}}});
  list.add({{U_SHIFTJIS_CE, {0xF041}}});
  for (size_t i = 0; i < 24; ++i) {
    list.head()->heading[i] = static_cast<uint8_t>(i + 1);
    list.head()->subheading[i] = static_cast<uint8_t>(i + 101);
  }
  std::memcpy(list.head()->codeA, "ab", 2);
  std::memcpy(list.head()->codeB, "cd", 2);
  const uint64_t before = used();
  {
    const ListInUse set(list.head());
    const UserCharacterTable* copy = set.head();
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(nls()->userCharacterTables, copy);
    EXPECT_NE(copy, list.head());
    EXPECT_EQ(std::memcmp(copy->heading, list.head()->heading, 24), 0);
    EXPECT_EQ(std::memcmp(copy->subheading, list.head()->subheading, 24), 0);
    EXPECT_EQ(std::memcmp(copy->codeA, "ab", 2), 0);
    EXPECT_EQ(std::memcmp(copy->codeB, "cd", 2), 0);
    EXPECT_EQ(copy->columnCount, 2);
    EXPECT_EQ(copy->characterCount, 2);
    EXPECT_EQ(copy->columnBytes, 4);
    EXPECT_NE(copy->columns[0], list.head()->columns[0]);
    EXPECT_EQ(columnBytes(*copy, 0), hex("69 41 69 42"));
    EXPECT_EQ(columnBytes(*copy, 1), hex("F0 40 F0 41"));
    EXPECT_EQ(copy->columns[2], nullptr);
    ASSERT_NE(copy->next, nullptr);
    EXPECT_NE(copy->next, list.head()->next);
    EXPECT_EQ(copy->next->columnCount, 1);
    EXPECT_EQ(columnBytes(*copy->next, 0), hex("F0 41"));
    EXPECT_EQ(copy->next->next, nullptr);
    EXPECT_GT(used(), before);
  }
  EXPECT_EQ(used(), before);
}

TEST(UserTables, OnlySixEncodingsAreTakenOver) {
  UserList list;
  std::vector<UserList::OfEncoding> columns;
  for (CEI cei = 100; cei < 124; ++cei) columns.push_back({cei, {static_cast<uint16_t>(cei)}});
  list.add(columns);
  const ListInUse set(list.head());
  ASSERT_NE(set.head(), nullptr);
  EXPECT_EQ(set.head()->columnCount, 24);
  for (int i = 0; i < 24; ++i) {
    EXPECT_EQ(set.head()->ceis[i], i < 6 ? 100 + i : -1) << i;
    EXPECT_EQ(columnBytes(*set.head(), i), bytesOf({static_cast<uint16_t>(100 + i)})) << i;
  }
  EXPECT_TRUE(veldnls::userTablesCover(nls(), 100, 105, set.head()));
  EXPECT_FALSE(veldnls::userTablesCover(nls(), 100, 106, set.head()));
  EXPECT_FALSE(veldnls::userTablesCover(nls(), -1, -1, set.head()));
  EXPECT_FALSE(veldnls::userTablesCover(nls(), 100, -1, set.head()));
}

TEST(UserTables, NoListIsNoCopy) {
  UserList list;
  list.add({{U_IBM939_CE, {0x6941}}});
  const ListInUse set(list.head());
  EXPECT_EQ(nls()->setUserCharacterTables(nls(), nullptr), nullptr);
  EXPECT_EQ(nls()->userCharacterTables, set.head());
  EXPECT_EQ(nls()->freeUserCharacterTables(nls(), nullptr), 0u);
}

TEST(UserTables, UnsoundListsAreRefusedWhole) {
  struct Case {
    const char* what;
    void (*spoil)(UserCharacterTable&);
  };
  for (const Case& each : {
           Case{"fewer columns than none", [](UserCharacterTable& t) { t.columnCount = -1; }},
           {"more columns than there is room for", [](UserCharacterTable& t) { t.columnCount = 25; }},
           {"a column that isn't there", [](UserCharacterTable& t) { t.columnCount = 3; }},
           {"fewer rows than none", [](UserCharacterTable& t) { t.characterCount = -1; }},
           {"more rows than a column holds", [](UserCharacterTable& t) { t.characterCount = 3; }},
           {"a column that lacks a byte", [](UserCharacterTable& t) { t.columnBytes = 3; }},
           {"a column of less than nothing", [](UserCharacterTable& t) { t.columnBytes = -1, t.characterCount = 0; }},
       }) {
    for (const size_t number : {0u, 1u}) {
      UserList good;
      good.add({{U_IBM939_CE, {0x6941}}});
      const ListInUse inUse(good.head());
      UserList list;
      list.add({{U_IBM939_CE, {0x6941, 0x6942}}, {U_SHIFTJIS_CE, {0xF040, 0xF041}}});
      list.add({{U_SHIFTJIS_CE, {0xF040, 0xF041}}, {U_IBM939_CE, {0x6941, 0x6942}}});
      each.spoil(list.table(number));
      const uint64_t before = used();
      EXPECT_EQ(nls()->setUserCharacterTables(nls(), list.head()), nullptr) << each.what;
      EXPECT_EQ(nls()->userCharacterTables, inUse.head()) << each.what;
      EXPECT_EQ(used(), before) << each.what;
    }
  }
}

TEST(UserTables, TablesWithoutRowsOrColumnsAreSound) {
  UserCharacterTable none{};
  UserCharacterTable empty{};
  uint8_t nothing = 0;
  empty.columnCount = 2;
  empty.columns[0] = empty.columns[1] = &nothing;
  empty.ceis[0] = U_IBM939_CE;
  empty.ceis[1] = U_SHIFTJIS_CE;
  empty.next = &none;
  const uint64_t before = used();
  {
    const ListInUse set(&empty);
    ASSERT_NE(set.head(), nullptr);
    CodeOverlay* from = nullptr;
    CodeOverlay* to = nullptr;
    EXPECT_EQ(veldnls::buildUserTables(nls(), U_IBM939_CE, U_SHIFTJIS_CE, set.head(), &from, &to), 3u);
    for (CodeOverlay* overlay : {from, to}) {
      EXPECT_EQ(overlay->count, 0u);
      veldnls::freeOverlay(nls()->pool, overlay);
    }
  }
  EXPECT_EQ(used(), before);
}
TEST(UserTables, Cover) {
  UserList list;
  list.add({{U_IBM939_CE, {0x6941}}, {U_L_UNICODE_CE, {0xE000}}});
  using veldnls::userTablesCover;
  EXPECT_TRUE(userTablesCover(nls(), 129, 25, list.head()));
  EXPECT_TRUE(userTablesCover(nls(), 25, 129, list.head()));
  EXPECT_TRUE(userTablesCover(nls(), 129, 129, list.head()));
  EXPECT_FALSE(userTablesCover(nls(), 138, 25, list.head()));
  EXPECT_FALSE(userTablesCover(nls(), 129, 24, list.head()));
  EXPECT_FALSE(userTablesCover(nls(), 129, 25, nullptr));
  list.head()->columnCount = 1;
  EXPECT_FALSE(userTablesCover(nls(), 129, 25, list.head()));
}

}  // namespace

}  // namespace transcode_test
