// User character tables when memory fails: nothing is put in place, and nothing is left behind.
#include "faults/failing_memory.h"
#include "transcode/built_user_tables.h"
#include "transcode/user_tables.h"

namespace transcode_test {

namespace {

using faults_test::FailingMemory;
using faults_test::Failure;

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
