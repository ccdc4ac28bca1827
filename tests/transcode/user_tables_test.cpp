// User character tables: the copy of a host's list, and the overlays that are made from one.
#include "transcode/user_tables.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <random>
#include <stdexcept>

#include "core/qznlsstub.h"
#include "faults/failing_memory.h"
#include "transcode/private_use.h"
#include "transcode/user_columns.h"
#include "transcode/user_lists.h"

namespace transcode_test {

namespace {

using faults_test::FailingMemory;
using faults_test::Failure;
using faults_test::usedBytes;
using veldnls::builtFromSource;
using veldnls::builtToTarget;

uint64_t used() { return usedBytes(nls()->pool); }

// While it lives, the object has a list of its own.
class ListInUse {
 public:
  explicit ListInUse(const UserCharacterTable* list) : head_(nls()->setUserCharacterTables(nls(), list)) {}
  ~ListInUse() {
    nls()->userCharacterTables = nullptr;
    nls()->freeUserCharacterTables(nls(), head_);
  }
  ListInUse(const ListInUse&) = delete;
  ListInUse& operator=(const ListInUse&) = delete;
  UserCharacterTable* head() const { return head_; }

 private:
  UserCharacterTable* head_;
};

Bytes columnBytes(const UserCharacterTable& table, int column) {
  return {table.columns[column], table.columns[column] + table.columnBytes};
}

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

TEST(UserTables, CopyWithoutMemory) {
  UserList list;
  list.add({{U_IBM939_CE, {0x6941, 0x6942}}, {U_SHIFTJIS_CE, {0xF040, 0xF041}}});
  list.add({{U_SHIFTJIS_CE, {0xF040, 0xF041}}, {U_IBM939_CE, {0x6941, 0x6942}}});
  for (const Failure failure : faults_test::failures) {
    UserList good;
    good.add({{U_IBM939_CE, {0x6941}}});
    const ListInUse inUse(good.head());
    const uint64_t before = used();
    int n = 1;
    for (;; ++n) {
      ASSERT_LT(n, 10);
      UserCharacterTable* copy = nullptr;
      {
        const FailingMemory memory(host().memory, failure, n);
        copy = nls()->setUserCharacterTables(nls(), list.head());
      }
      if (copy != nullptr) {
        EXPECT_EQ(nls()->userCharacterTables, copy);
        nls()->freeUserCharacterTables(nls(), copy);
        break;
      }
      EXPECT_EQ(nls()->userCharacterTables, inUse.head());
      EXPECT_EQ(used(), before) << n;
    }
    EXPECT_EQ(n, 7) << "two records and four columns";
    EXPECT_EQ(used(), before);
  }
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

// A turn in 16-bit units: `surplus` units are taken from twice as far on, and a gap of zeros stays.
Codes turned(const Codes& codes, size_t surplus) {
  std::vector<int> scratch(codes.size() + 2 * surplus, 0);
  std::vector<int> old(codes.begin(), codes.end());
  old.resize(codes.size() + 3 * surplus, 0);
  for (size_t i = 0; i < surplus; ++i) scratch[i] = old[2 * surplus + i];
  for (size_t i = 0; i + surplus < codes.size(); ++i) scratch[2 * surplus + i] = old[i];
  Codes result;
  for (size_t i = 0; i < codes.size(); ++i) result.push_back(static_cast<uint16_t>(scratch[i]));
  return result;
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

using Pairs = std::vector<std::pair<uint16_t, uint16_t>>;

struct Built {
  uint32_t result = 0;
  Pairs fromSource;  // none when it wasn't built
  Pairs toTarget;
  bool operator==(const Built&) const = default;
};

void PrintTo(const Built& built, std::ostream* stream) {
  *stream << "result " << built.result << std::hex;
  for (const Pairs* pairs : {&built.fromSource, &built.toTarget}) {
    *stream << (pairs == &built.toTarget ? ", to target" : ", from source");
    for (const auto& [key, value] : *pairs) *stream << " " << key << ":" << value;
  }
}

Pairs pairsOf(CodeOverlay*& overlay) {
  Pairs pairs;
  if (overlay == nullptr) return pairs;
  for (uint32_t i = 0; i < overlay->count; ++i) pairs.emplace_back(overlay->pairs[i].key, overlay->pairs[i].value);
  veldnls::freeOverlay(nls()->pool, overlay);
  return pairs;
}

Built build(CEI source, CEI target, const UserCharacterTable* list) {
  const uint64_t before = used();
  CodeOverlay unset{};
  CodeOverlay* from = &unset;
  CodeOverlay* to = &unset;
  Built built;
  built.result = veldnls::buildUserTables(nls(), source, target, list, &from, &to);
  EXPECT_EQ(from != nullptr, (built.result & builtFromSource) != 0);
  EXPECT_EQ(to != nullptr, (built.result & builtToTarget) != 0);
  built.fromSource = pairsOf(from);
  built.toTarget = pairsOf(to);
  EXPECT_EQ(used(), before);
  return built;
}

// A target code as an overlay holds it: its bytes in memory, low address first.
constexpr uint16_t stored(uint16_t code) { return static_cast<uint16_t>(code << 8 | code >> 8); }
// A private-use character as it comes out of a fill.
constexpr uint16_t exchanged(uint16_t unit) { return stored(unit); }

constexpr CEI ibm = U_IBM939_CE;
constexpr CEI sjis = U_SHIFTJIS_CE;
constexpr CEI eucJp = U_EUCJP_CE;
constexpr CEI unicode = U_L_UNICODE_CE;

// The list knows no Unicode. Two tables of equal width: the source's own has all it needs.
TEST(BuildUserTables, PrivateUseWithinTheSourcesTable) {
  UserList list;
  list.add({{ibm, {0x6941, 0x6942}}, {sjis, {0xF041, 0xF040}}});
  list.add({{sjis, {0xF040, 0xF041}}, {ibm, {0x6942, 0x6941}}});
  EXPECT_EQ(build(ibm, sjis, list.head()),
            (Built{3, {{0x6941, 0x00E0}, {0x6942, 0x01E0}}, {{0x00E0, stored(0xF041)}, {0x01E0, stored(0xF040)}}}));
  EXPECT_EQ(build(sjis, ibm, list.head()),
            (Built{3,
                   {{0xF040, exchanged(0xE758)}, {0xF041, exchanged(0xE759)}},
                   {{exchanged(0xE758), stored(0x6942)}, {exchanged(0xE759), stored(0x6941)}}}));
  // The source's table lacks the target.
  list.table(1).ceis[1] = eucJp;
  EXPECT_EQ(build(sjis, ibm, list.head()), Built{});
}

// Tables of unequal width and the source first: the head has its codes and the target's.
TEST(BuildUserTables, PrivateUseFromTheHeadsOwnEncoding) {
  UserList list;
  list.add({{ibm, {0x6941, 0x6942}}, {sjis, {0xF041, 0xF040}}, {eucJp, {0xF5A1, 0xF5A2}}});
  list.add({{sjis, {0xF040, 0xF041}}, {ibm, {0x6942, 0x6941}}});
  EXPECT_EQ(build(ibm, eucJp, list.head()),
            (Built{3, {{0x6941, 0x00E0}, {0x6942, 0x01E0}}, {{0x00E0, stored(0xF5A1)}, {0x01E0, stored(0xF5A2)}}}));
}

// A head alone counts as one with a neighbour of another width.
TEST(BuildUserTables, AHeadWithoutANeighbour) {
  UserList list;
  list.add({{ibm, {0x6941}}, {sjis, {0xF040}}});
  EXPECT_EQ(build(ibm, sjis, list.head()), (Built{3, {{0x6941, 0x00E0}}, {{0x00E0, stored(0xF040)}}}));
  EXPECT_EQ(build(sjis, ibm, list.head()), Built{}) << "shift-jis has no table";
}

// Otherwise the code that the source's table has beside is looked up in the head.
TEST(BuildUserTables, PrivateUseByLookUp) {
  UserList list;
  list.add({{ibm, {0x6941, 0x6942, 0x6944}}, {sjis, {0xF041, 0xF040, 0xF043}}, {eucJp, {0xF5A1, 0xF5A2, 0xF5A4}}});
  list.add({{sjis, {0xF040, 0xF041, 0xF042}}, {ibm, {0x6942, 0x6941, 0x6943}}});
  const uint16_t fill[] = {exchanged(0xE758), exchanged(0xE759), exchanged(0xE75A)};
  EXPECT_EQ(build(sjis, eucJp, list.head()),
            (Built{3,
                   {{0xF040, fill[0]}, {0xF041, fill[1]}, {0xF042, fill[2]}},
                   // 6943 isn't in the head: the target's double-byte blank.
                   {{fill[0], stored(0xF5A2)}, {fill[1], stored(0xF5A1)}, {fill[2], stored(0xA1A1)}}}));
  EXPECT_EQ(build(sjis, ibm, list.head()).toTarget,
            (Pairs{{fill[0], stored(0x6942)}, {fill[1], stored(0x6941)}, {fill[2], stored(0x4040)}}));
  list.table(1).columnCount = 1;
  EXPECT_EQ(build(sjis, eucJp, list.head()), Built{}) << "no codes beside";
}

// More rows than the range has characters: the fill and the target's codes are turned, but not the source's codes, so
// that what the source's codes lead to is off.
TEST(BuildUserTables, ASurplusTurnsTheTable) {
  constexpr size_t count = 186;
  constexpr size_t surplus = 3;
  Codes big5;
  Codes ibmCodes;
  Codes fill;
  for (size_t i = 0; i < count; ++i) {
    big5.push_back(static_cast<uint16_t>(0xFA40 + i));
    ibmCodes.push_back(static_cast<uint16_t>(0xC240 + i));
    fill.push_back(exchanged(static_cast<uint16_t>(i < count - surplus ? 0xF849 + i : 0x3000)));
  }
  UserList list;
  list.add({{U_MS950_CE, big5}, {U_IBM937_CE, ibmCodes}});
  const Built built = build(U_MS950_CE, U_IBM937_CE, list.head());
  const Codes turnedFill = turned(fill, surplus);
  const Codes turnedCodes = turned(ibmCodes, surplus);
  Built wanted{3, {}, {}};
  for (size_t i = 0; i < count; ++i) {
    wanted.fromSource.emplace_back(big5[i], turnedFill[i]);
    wanted.toTarget.emplace_back(turnedFill[i], stored(turnedCodes[i]));
  }
  EXPECT_EQ(built, wanted);
  EXPECT_EQ(built.fromSource[0].second, exchanged(0xF84F)) << "not U+3000";
  EXPECT_EQ(built.fromSource[3].second, 0);
  EXPECT_EQ(built.fromSource[6].second, exchanged(0xF849));
  EXPECT_EQ(big5[0], 0xFA40);
  EXPECT_EQ(columnBytes(*list.head(), 1), bytesOf(ibmCodes)) << "the list stays";
}

// Unicode among the head's encodings, tables of equal width.
TEST(BuildUserTables, UnicodeInTablesOfOneWidth) {
  UserList list;
  list.add({{ibm, {0x6941, 0x6942}}, {sjis, {0xF041, 0xF040}}, {unicode, {0xE100, 0xE101}}});
  list.add({{sjis, {0xF040, 0xF041}}, {ibm, {0x6942, 0x6941}}, {unicode, {0xE101, 0xE100}}});
  list.add({{unicode, {0xE100, 0xE101}}, {ibm, {0x6941, 0x6942}}, {sjis, {0xF041, 0xF040}}});
  const Pairs toSjis = {{0xE100, stored(0xF041)}, {0xE101, stored(0xF040)}};
  const Pairs toIbm = {{0xE100, stored(0x6941)}, {0xE101, stored(0x6942)}};
  EXPECT_EQ(build(ibm, sjis, list.head()), (Built{3, {{0x6941, 0xE100}, {0x6942, 0xE101}}, toSjis}));
  EXPECT_EQ(build(sjis, ibm, list.head()), (Built{3, {{0xF040, 0xE101}, {0xF041, 0xE100}}, toIbm}));
  EXPECT_EQ(build(unicode, sjis, list.head()), (Built{2, {}, toSjis}));
  // To Unicode the table of the second step is the identity; routes of one step don't read it.
  EXPECT_EQ(build(sjis, unicode, list.head()),
            (Built{3, {{0xF040, 0xE101}, {0xF041, 0xE100}}, {{0xE100, stored(0xE100)}, {0xE101, stored(0xE101)}}}));
  list.table(1).ceis[2] = eucJp;
  EXPECT_EQ(build(sjis, ibm, list.head()), Built{}) << "no Unicode column in the source's table";
  list.table(2).ceis[2] = eucJp;
  EXPECT_EQ(build(ibm, sjis, list.head()), Built{}) << "no column of the target in Unicode's table";
  list.table(2).ceis[0] = eucJp;
  EXPECT_EQ(build(ibm, sjis, list.head()), Built{}) << "no table of Unicode";
}

// Tables of unequal width: by the codes of the head's own encoding.
TEST(BuildUserTables, UnicodeByLookUp) {
  UserList list;
  list.add({{ibm, {0x6941, 0x6942, 0x6944}}, {sjis, {0xF041, 0xF040, 0xF043}}, {unicode, {0xE100, 0xE101, 0xE103}}});
  list.add({{sjis, {0xF040, 0xF041, 0xF042}}, {ibm, {0x6942, 0x6941, 0x6943}}});
  list.add({{unicode, {0xE100, 0xE101, 0xE102}}, {ibm, {0x6941, 0x6942, 0x6943}}});
  const Pairs toSjis = {{0xE100, stored(0xF041)}, {0xE101, stored(0xF040)}, {0xE102, stored(0x3000)}};
  EXPECT_EQ(build(ibm, sjis, list.head()), (Built{3, {{0x6941, 0xE100}, {0x6942, 0xE101}, {0x6944, 0xE103}}, toSjis}));
  EXPECT_EQ(build(sjis, sjis, list.head()), (Built{3, {{0xF040, 0xE101}, {0xF041, 0xE100}, {0xF042, 0x3000}}, toSjis}));
  EXPECT_EQ(build(unicode, sjis, list.head()), (Built{2, {}, toSjis}));
  list.table(2).columnCount = 1;
  EXPECT_EQ(build(unicode, sjis, list.head()), Built{}) << "nothing beside Unicode";
  list.table(2).columnCount = 2;
  list.table(1).columnCount = 1;
  EXPECT_EQ(build(sjis, sjis, list.head()), Built{}) << "nothing beside the source";
  list.table(1).columnCount = 0;
  EXPECT_EQ(build(sjis, sjis, list.head()), Built{}) << "no source";
}

// Unicode first in the head, and each other table beside it.
TEST(BuildUserTables, UnicodeOnBothSides) {
  UserList list;
  list.add({{unicode, {0xE100, 0xE101}}, {ibm, {0x6941, 0x6942}}, {sjis, {0xF041, 0xF040}}});
  list.add({{ibm, {0x6941, 0x6942}}, {unicode, {0xE100, 0xE101}}});
  list.add({{sjis, {0xF040, 0xF041}}, {unicode, {0xE101, 0xE100}}});
  const Pairs toSjis = {{0xE100, stored(0xF041)}, {0xE101, stored(0xF040)}};
  EXPECT_EQ(build(ibm, sjis, list.head()), (Built{3, {{0x6941, 0xE100}, {0x6942, 0xE101}}, toSjis}));
  EXPECT_EQ(build(unicode, sjis, list.head()), (Built{2, {}, toSjis}));
  EXPECT_EQ(build(sjis, unicode, list.head()),
            (Built{3, {{0xF040, 0xE101}, {0xF041, 0xE100}}, {{0xF040, stored(0xE101)}, {0xF041, stored(0xE100)}}}));
  list.table(2).columnCount = 1;
  EXPECT_EQ(build(sjis, unicode, list.head()), Built{}) << "nothing beside the source";
}

// Each number that user character tables take for Unicode, and those next to them.
TEST(BuildUserTables, UnicodeCeis) {
  for (CEI cei = 0; cei < NLS_CEI_COUNT; ++cei) {
    const bool isUnicode = cei == 19 || cei == 20 || (cei >= 24 && cei <= 27);
    EXPECT_EQ(veldnls::isUnicodeCei(cei), isUnicode) << cei;
  }
}

TEST(BuildUserTables, OutputsThatARouteCantUse) {
  UserList list;
  list.add({{unicode, {0xE100}}, {ibm, {0x6941}}});
  list.add({{ibm, {0x6941}}, {unicode, {0xE100}}});
  CodeOverlay unset{};
  CodeOverlay* overlay = &unset;
  EXPECT_EQ(veldnls::buildUserTables(nls(), unicode, ibm, list.head(), nullptr, &overlay), builtToTarget);
  EXPECT_EQ(pairsOf(overlay), (Pairs{{0xE100, stored(0x6941)}}));
  overlay = &unset;
  EXPECT_EQ(veldnls::buildUserTables(nls(), ibm, unicode, list.head(), &overlay, nullptr), builtFromSource);
  EXPECT_EQ(pairsOf(overlay), (Pairs{{0x6941, 0xE100}}));
  EXPECT_EQ(veldnls::buildUserTables(nls(), ibm, unicode, list.head(), nullptr, nullptr), 0u);
  overlay = &unset;
  EXPECT_EQ(veldnls::buildUserTables(nls(), eucJp, unicode, list.head(), &overlay, nullptr), 0u);
  EXPECT_EQ(overlay, nullptr);
}

// The rows of the source's table count for its codes, those of the head for the target's; where a table is shorter, the
// shorter rules.
TEST(BuildUserTables, TablesOfUnequalLength) {
  UserList list;
  list.add({{unicode, {0xE100, 0xE101, 0xE102}}, {ibm, {0x6941, 0x6942, 0x6943}}});
  list.add({{ibm, {0x6941}}, {unicode, {0xE100}}});
  const Built built = build(ibm, unicode, list.head());
  EXPECT_EQ(built.fromSource, (Pairs{{0x6941, 0xE100}}));
  EXPECT_EQ(built.toTarget, (Pairs{{0x6941, stored(0xE100)}}));
  EXPECT_EQ(build(unicode, ibm, list.head()).toTarget.size(), 3u);

  UserList longer;
  longer.add({{ibm, {0x6941}}, {sjis, {0xF040}}});
  longer.add({{sjis, {0xF040, 0xF041}}, {ibm, {0x6941, 0x6942}}});
  EXPECT_EQ(build(sjis, ibm, longer.head()),
            (Built{3, {{0xF040, exchanged(0xE758)}}, {{exchanged(0xE758), stored(0x6941)}}}));
}

// The same rules once more, in plain steps over lists of codes. A column that is missing throws.
class SecondReading {
 public:
  SecondReading(CEI source, CEI target, const UserCharacterTable* list)
      : source_(source), target_(target), head_(*list) {}

  Built built() const {
    try {
      return build();
    } catch (const std::out_of_range&) {
      return {};
    }
  }

 private:
  static bool isUnicode(CEI cei) { return cei == 19 || cei == 20 || (cei >= 24 && cei <= 27); }

  static Codes column(const UserCharacterTable& table, int place) {
    if (place < 0 || place >= table.columnCount) throw std::out_of_range("column");
    Codes codes;
    for (int row = 0; row < table.characterCount; ++row) {
      const uint8_t* at = table.columns[place] + 2 * row;
      codes.push_back(static_cast<uint16_t>(at[0] << 8 | at[1]));
    }
    return codes;
  }
  static int place(const UserCharacterTable& table, CEI cei) {
    for (int i = 0; i < table.columnCount; ++i) {
      if (table.ceis[i] == cei) return i;
    }
    return -1;
  }
  static int unicodePlace(const UserCharacterTable& table) {
    for (int i = 0; i < table.columnCount; ++i) {
      if (isUnicode(table.ceis[i])) return i;
    }
    return -1;
  }

  size_t rows() const { return static_cast<size_t>(head_.characterCount); }
  Codes cut(Codes codes) const {
    codes.resize(std::min(codes.size(), rows()));
    return codes;
  }
  Codes lookedUp(const Codes& keys, const Codes& values, uint16_t otherwise) const {
    const Codes sorted = column(head_, 0);
    Codes result;
    for (const uint16_t key : cut(keys)) {
      const auto found = std::find(sorted.begin(), sorted.end(), key);
      result.push_back(found == sorted.end() ? otherwise : values.at(static_cast<size_t>(found - sorted.begin())));
    }
    return result;
  }

  static Pairs zip(const Codes& keys, const Codes& values, bool asStored) {
    Pairs pairs;
    for (size_t i = 0; i < std::min(keys.size(), values.size()); ++i) {
      pairs.emplace_back(keys[i], asStored ? stored(values[i]) : values[i]);
    }
    return pairs;
  }

  Built privateUse(const Codes& codes, Codes values) const {
    std::vector<uint16_t> units(rows());
    const uint32_t surplus = veldnls::fillPrivateUse(units.data(), static_cast<uint32_t>(rows()), source_);
    Codes fill;
    for (const uint16_t unit : units) fill.push_back(exchanged(unit));
    if (surplus != 0) {
      fill = turned(fill, surplus);
      values = turned(cut(values), surplus);
    }
    return {3, zip(codes, fill, false), zip(fill, values, true)};
  }

  Built build() const {
    const int s = place(head_, source_);
    const int t = place(head_, target_);
    if (s < 0 || t < 0) return {};
    const UserCharacterTable* own = &head_;
    for (int i = 0; i < s; ++i) {
      own = own->next;
      if (own == nullptr) return {};
    }
    const UserCharacterTable* second = head_.next;
    const bool sameWidth = second != nullptr && second->columnCount == head_.columnCount;
    const bool first = head_.ceis[0] == source_;
    if (unicodePlace(head_) < 0) {
      if (sameWidth) return privateUse(column(*own, 0), column(*own, place(*own, target_)));
      if (first) return privateUse(column(head_, 0), column(head_, t));
      const EncodingDescriptor* row = nullptr;
      nls()->getEncodingDescriptor(nls(), target_, &row);
      const auto blank = static_cast<uint16_t>(row->profile.doubleBlank[0] << 8 | row->profile.doubleBlank[1]);
      return privateUse(column(*own, 0), lookedUp(column(*own, 1), column(head_, t), blank));
    }
    Codes sourceCodes, sourceValues, targetCodes, targetValues;
    const bool both =
        isUnicode(head_.ceis[0]) && second != nullptr && second->columnCount == 2 && isUnicode(second->ceis[1]);
    if (both) {
      const bool toUnicode = isUnicode(target_);
      if (!isUnicode(source_)) sourceCodes = column(*own, 0), sourceValues = column(*own, 1);
      targetCodes = toUnicode ? column(*own, 0) : column(head_, 0);
      targetValues = toUnicode ? column(*own, 1) : column(head_, t);
    } else {
      const UserCharacterTable* table = &head_;
      while (table != nullptr && !(table->columnCount > 0 && isUnicode(table->ceis[0]))) table = table->next;
      if (table == nullptr) return {};
      targetCodes = column(*table, 0);
      if (!isUnicode(source_)) {
        sourceCodes = column(*own, 0);
        sourceValues =
            sameWidth ? column(*own, unicodePlace(*own))
                      : lookedUp(first ? column(*own, 0) : column(*own, 1), column(head_, unicodePlace(head_)), 0x3000);
      }
      targetValues =
          sameWidth ? column(*table, place(*table, target_)) : lookedUp(column(*table, 1), column(head_, t), 0x3000);
    }
    const uint32_t inward = isUnicode(source_) ? 0u : 1u;
    return {inward | 2u, zip(sourceCodes, sourceValues, false), zip(cut(targetCodes), targetValues, true)};
  }

  CEI source_;
  CEI target_;
  const UserCharacterTable& head_;
};

TEST(BuildUserTables, RandomListsAgainstASecondReading) {
  std::mt19937 random(23);
  const CEI ceis[] = {unicode, ibm, sjis, U_MS950_CE, U_B_UNICODE_CE};
  int kinds[4] = {};
  for (int round = 0; round < 12000; ++round) {
    UserList list;
    const size_t tables = 1 + random() % 4;
    for (size_t t = 0; t < tables; ++t) {
      std::vector<UserList::OfEncoding> columns(1 + random() % 4);
      size_t rows = random() % 5;
      if (round % 64 == 0) rows += 182;
      const auto base = static_cast<uint16_t>(0x4000 + random() % 3);
      for (size_t c = 0; c < columns.size(); ++c) {
        columns[c].cei = ceis[random() % std::size(ceis)];
        for (size_t i = 0; i < rows; ++i) {
          // The first column ascends, so that a search finds what a look through it does.
          const size_t code = c == 0 ? base + i : 0x4000 + random() % 8;
          columns[c].codes.push_back(static_cast<uint16_t>(code));
        }
      }
      list.add(columns);
    }
    const CEI source = ceis[random() % std::size(ceis)];
    const CEI target = ceis[random() % std::size(ceis)];
    const Built built = build(source, target, list.head());
    ASSERT_EQ(built, SecondReading(source, target, list.head()).built()) << source << " to " << target;
    ++kinds[built.result];
  }
  EXPECT_GT(kinds[0], 100);
  EXPECT_EQ(kinds[1], 0);
  EXPECT_GT(kinds[2], 100);
  EXPECT_GT(kinds[3], 100);
}

// A surplus of more than a third of the rows turns beyond the column's end, where a longer one goes on.
TEST(BuildUserTables, ALargeSurplusInAShortHead) {
  const auto codes = [](size_t count, size_t first) {
    Codes result;
    for (size_t i = 0; i < count; ++i) result.push_back(static_cast<uint16_t>(first + i));
    return result;
  };
  UserList list;
  list.add({{ibm, codes(300, 0x4141)}, {U_MS950_CE, codes(300, 0xFA40)}});
  list.add({{U_MS950_CE, codes(360, 0xFA40)}, {ibm, codes(360, 0x4141)}});
  const Built built = build(U_MS950_CE, ibm, list.head());
  EXPECT_EQ(built, SecondReading(U_MS950_CE, ibm, list.head()).built());
  constexpr size_t surplus = 117;
  EXPECT_EQ(built.toTarget.at(300 - 2 * surplus - 1).second, stored(0x4141 + 299));
  EXPECT_EQ(built.toTarget.at(300 - 2 * surplus).second, 0);
}

// A list that was put in place by hand may say anything. Nothing outside of its columns is read.
TEST(BuildUserTables, HostileFigures) {
  std::mt19937 random(7);
  const CEI ceis[] = {unicode, ibm, sjis, eucJp, U_MS950_CE, -1, 19};
  constexpr int32_t figures[] = {-2147483647 - 1, -1, 0, 1, 2, 3, 4, 5, 6, 24, 25, 2147483647};
  int built = 0;
  for (int round = 0; round < 8000; ++round) {
    UserList list;
    const size_t tables = 1 + random() % 3;
    for (size_t t = 0; t < tables; ++t) {
      std::vector<UserList::OfEncoding> columns(1 + random() % 3);
      const size_t rows = random() % 4;
      for (auto& column : columns) {
        column.cei = ceis[random() % std::size(ceis)];
        for (size_t i = 0; i < rows; ++i) column.codes.push_back(static_cast<uint16_t>(random() % 3 * 0x101));
      }
      list.add(columns);
      UserCharacterTable& table = list.table(t);
      if (random() % 4 == 0) table.characterCount = figures[random() % std::size(figures)];
      if (random() % 8 == 0) table.columnBytes = std::min(table.columnBytes, figures[random() % std::size(figures)]);
      if (random() % 8 == 0) table.columnCount = std::min(table.columnCount, figures[random() % std::size(figures)]);
    }
    const CEI source = ceis[random() % std::size(ceis)];
    const CEI target = ceis[random() % std::size(ceis)];
    if (build(source, target, list.head()).result != 0) ++built;
  }
  EXPECT_GT(built, 100);
}

// Whichever request fails, nothing is built and nothing is left behind.
TEST(BuildUserTables, WithoutMemory) {
  constexpr size_t count = 186;
  Codes big5(count);
  for (size_t i = 0; i < count; ++i) big5[i] = static_cast<uint16_t>(0xFA40 + i);
  UserList plain;
  plain.add({{ibm, {0x6941}}, {sjis, {0xF040}}, {eucJp, {0xF5A1}}});
  plain.add({{sjis, {0xF040}}, {ibm, {0x6941}}});
  UserList looking;
  looking.add({{ibm, {0x6941}}, {sjis, {0xF040}}, {unicode, {0xE100}}});
  looking.add({{sjis, {0xF040}}, {ibm, {0x6941}}});
  looking.add({{unicode, {0xE100}}, {ibm, {0x6941}}});
  UserList surplus;
  surplus.add({{U_MS950_CE, big5}, {ibm, big5}, {sjis, big5}});
  surplus.add({{ibm, big5}, {U_MS950_CE, big5}});
  UserList surplusLookUp;
  surplusLookUp.add({{ibm, big5}, {U_MS950_CE, big5}, {sjis, big5}});
  surplusLookUp.add({{U_MS950_CE, big5}, {ibm, big5}});
  struct Case {
    CEI source, target;
    UserCharacterTable* list;
    int requests;
  };
  for (const Case& each : {Case{sjis, ibm, plain.head(), 6},                // one look-up, the fill, two overlays
                           {sjis, ibm, looking.head(), 6},                  // two look-ups, two overlays
                           {U_MS950_CE, ibm, surplus.head(), 7},            // the fill, two turned, two overlays
                           {U_MS950_CE, sjis, surplusLookUp.head(), 8}}) {  // all of these
    for (const Failure failure : faults_test::failures) {
      const uint64_t before = used();
      for (int n = 1; n <= each.requests + 1; ++n) {
        CodeOverlay unset{};
        CodeOverlay* from = &unset;
        CodeOverlay* to = &unset;
        uint32_t result = 99;
        {
          const FailingMemory memory(host().memory, failure, n);
          result = veldnls::buildUserTables(nls(), each.source, each.target, each.list, &from, &to);
        }
        if (n <= each.requests) {
          EXPECT_EQ(result, 0u) << n;
          EXPECT_EQ(from, nullptr) << n;
          EXPECT_EQ(to, nullptr) << n;
        } else {
          EXPECT_EQ(result, 3u);
          pairsOf(from);
          pairsOf(to);
        }
        EXPECT_EQ(used(), before) << n;
      }
    }
  }
}

}  // namespace

}  // namespace transcode_test
