// The trie itself: every key, every first unit, keys against guard pages, and a small trie made by hand.
#include "core/name_index.h"

#include <gtest/gtest.h>

#include <cstring>

#include "encoding_data.h"
#include "support/guard.h"
#include "support/wide.h"

using test::encodingFacts;

namespace veldnls {
namespace {

int32_t find(const std::u16string& key, const NameTrie& trie = encodingNameTrie) {
  return nlsTrieLookup(key.data(), static_cast<int32_t>(key.size()), &trie);
}

TEST(NameIndex, EveryKeyAndEveryPrefix) {
  const auto& keys = encodingFacts().keys;
  ASSERT_EQ(keys.size(), 1729u);
  for (const auto& [key, value] : keys) {
    for (size_t length = 0; length <= key.size(); ++length) {
      const auto expected = keys.find(key.substr(0, length));
      EXPECT_EQ(find(test::widen(key.substr(0, length))), expected == keys.end() ? 0 : expected->second) << key;
    }
  }
}

TEST(NameIndex, GroupKeysHaveValuesAboveTheTable) {
  const std::pair<const char16_t*, int32_t> groups[] = {{u"SYSTEM", 231},    {u"EBCDIC", 232},       {u"ISO", 233},
                                                        {u"MACINTOSH", 234}, {u"OPEN EDITION", 235}, {u"PCOEM", 236},
                                                        {u"WINDOWS", 237},   {u"ISO2022", 238}};
  for (const auto& [key, value] : groups) EXPECT_EQ(find(key), value);
}

TEST(NameIndex, KeysAreUpperCaseOnly) {
  EXPECT_EQ(find(u"WLATIN1"), 62);
  EXPECT_EQ(find(u"wlatin1"), 0);
  EXPECT_EQ(find(u"UTF-16"), 25);
  EXPECT_EQ(find(u"UTF-1"), 0);
}

TEST(NameIndex, AnyUnitAtAnyPlace) {
  for (uint32_t unit = 0; unit <= 0xFFFF; ++unit) {
    const auto u = static_cast<char16_t>(unit);
    EXPECT_EQ(find({u}), 0);
    EXPECT_EQ(find({u'E', u'B', u'C', u'D', u'I', u}), u == u'C' ? 232 : 0);
    EXPECT_EQ(find({u'U', u'T', u'F', u'8', u}), 0);
    EXPECT_EQ(find({u'W', u'L', u'A', u'T', u'I', u'N', u}), u == u'1' ? 62 : u == u'2' ? 60 : 0);
  }
}

TEST(NameIndex, ReadsTheKeyOnly) {
  for (const auto& [text, value] : encodingFacts().keys) {
    const std::u16string key = test::widen(text);
    for (size_t length = 0; length <= key.size(); ++length) {
      for (const auto at : {test::GuardedBuffer::At::end, test::GuardedBuffer::At::start}) {
        test::GuardedBuffer buffer(length * sizeof(char16_t), at);
        if (length > 0) std::memcpy(buffer.data(), key.data(), buffer.size());
        const int32_t answer = nlsTrieLookup(reinterpret_cast<const char16_t*>(buffer.data()),
                                             static_cast<int32_t>(length), &encodingNameTrie);
        if (length == key.size()) {
          EXPECT_EQ(answer, value) << text;
        }
      }
    }
  }
}

TEST(NameIndex, NothingToReadInAnEmptyKey) {
  EXPECT_EQ(nlsTrieLookup(nullptr, 0, &encodingNameTrie), 0);
  EXPECT_EQ(nlsTrieLookup(nullptr, -1, &encodingNameTrie), 0);
}

// Keys "A" 7, "AB" 8, "C" 9 and "CDE" 10: a node where a key ends and goes on, leaves with and without a tail.
// Root 1 has base 1; "A" at 66, "C" at 68; their children from 100 and 200. One node of a terminator is a leaf and one
// is not, and one tail is followed by a terminator: a key with that unit would find its way there.
class SmallTrie : public testing::Test {
 protected:
  void SetUp() override {
    set(1, 0, 1, 0);
    set(1 + u'A', 1, 100, 0);
    set(1 + u'C', 1, 200, 0);
    set(100 + trieTerminator, 1 + u'A', -1, 7);
    set(100 + u'B', 1 + u'A', -1, 8);
    set(200 + trieTerminator, 1 + u'C', 0, 9);
    set(200 + u'D', 1 + u'C', -3, 10);
  }

  void set(int32_t at, int32_t check, int32_t base, int32_t value) { nodes_[at] = {check, base, value, 0}; }

  static constexpr int32_t lastIndex = 200 + u'D';
  TrieNode nodes_[lastIndex + 1]{};
  const char16_t tails_[6] = {0, trieTerminator, trieTerminator, u'E', trieTerminator, u'F'};
  const NameTrie trie_{lastIndex, tails_, nodes_};
};

TEST_F(SmallTrie, Keys) {
  EXPECT_EQ(find(u"A", trie_), 7);
  EXPECT_EQ(find(u"AB", trie_), 8);
  EXPECT_EQ(find(u"C", trie_), 9);
  EXPECT_EQ(find(u"CDE", trie_), 10);
}

TEST_F(SmallTrie, NoKeys) {
  for (const char16_t* key : {u"", u"B", u"D", u"CD", u"CDEF", u"CDF", u"ABC", u"AA", u"CA", u"\xFFFF", u"AZ"}) {
    EXPECT_EQ(find(key, trie_), 0);
  }
}

TEST_F(SmallTrie, TheTerminatorIsNoUnitOfAKey) {
  for (const char16_t* key : {u"A\4", u"AB\4", u"C\4", u"CDE\4", u"CDE\4F", u"\4", u"C\4DE"}) {
    EXPECT_EQ(find(key, trie_), 0);
  }
}

}  // namespace
}  // namespace veldnls
