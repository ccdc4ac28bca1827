// The overlays that are made from a list of user character tables, one rule after the other.
#include "transcode/built_user_tables.h"
#include "transcode/user_columns.h"
#include "transcode/user_tables.h"

namespace transcode_test {

namespace {

using veldnls::builtFromSource;
using veldnls::builtToTarget;

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

}  // namespace

}  // namespace transcode_test
