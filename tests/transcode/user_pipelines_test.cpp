// User characters end to end: lists of a host, pipelines made with them, and what these convert.
#include <cstring>

#include "faults/failing_memory.h"
#include "transcode/built_user_tables.h"

namespace transcode_test {

namespace {

using faults_test::FailingMemory;
using faults_test::Failure;

// Codes without a meaning of their own in the three encodings, and the characters that users gave them.
constexpr uint16_t ibmCode = 0x41FD;
constexpr uint16_t sjisCode = 0x8540;
constexpr uint16_t eucCode = 0xA9A1;
constexpr uint16_t character = 0xF8A0;

class UserCharacters : public testing::Test {
 protected:
  void SetUp() override {
    // The module stays once it is loaded.
    const Pipeline first(U_SHIFTJIS_CE, unicode);
    ASSERT_NE(first, nullptr);
  }
  void TearDown() override {
    UserCharacterTable* head = nls()->userCharacterTables;
    nls()->userCharacterTables = nullptr;
    nls()->freeUserCharacterTables(nls(), head);
  }

  void set(UserList& list) { ASSERT_NE(nls()->setUserCharacterTables(nls(), list.head()), nullptr); }

  // Three encodings and Unicode, each with a table that has all.
  void setWithUnicode() {
    UserList list;
    const UserList::OfEncoding columns[] = {
        {ibm, {ibmCode}}, {sjis, {sjisCode}}, {eucJp, {eucCode}}, {unicode, {character}}};
    for (size_t own = 0; own < 4; ++own) {
      std::vector<UserList::OfEncoding> table = {columns[own]};
      for (size_t i = 0; i < 4; ++i) {
        if (i != own) table.push_back(columns[i]);
      }
      if (own == 0) table.assign(std::begin(columns), std::end(columns));
      list.add(table);
    }
    set(list);
  }

  // The same without Unicode.
  void setWithoutUnicode() {
    UserList list;
    list.add({{ibm, {ibmCode}}, {sjis, {sjisCode}}});
    list.add({{sjis, {sjisCode}}, {ibm, {ibmCode}}});
    set(list);
  }
};

const Outcome unmapped16{.status = nlsSubstituted, .bytes = hex("00 30")};

TEST_F(UserCharacters, WithoutAListTheCodesHaveNoMeaning) {
  EXPECT_EQ(run(Pipeline(sjis, unicode), hex("85 40"), 8), unmapped16);
  EXPECT_EQ(run(Pipeline(eucJp, unicode), hex("A9 A1"), 8), unmapped16);
  EXPECT_EQ(run(Pipeline(ibm, unicode), hex("0E 41 FD 0F"), 8), unmapped16);
  EXPECT_EQ(run(Pipeline(unicode, sjis), hex("A0 F8"), 8), (Outcome{.status = nlsSubstituted, .bytes = hex("81 40")}));
  EXPECT_EQ(run(Pipeline(unicode, eucJp), hex("A0 F8"), 8), (Outcome{.status = nlsSubstituted, .bytes = hex("A1 A1")}));
  EXPECT_EQ(Pipeline(sjis, unicode)->source.overlay, nullptr);
  EXPECT_EQ(Pipeline(sjis, unicode)->flags, 0u);
}

TEST_F(UserCharacters, ToUnicodeForms) {
  setWithUnicode();
  for (const CEI target : {U_L_UNICODE_CE, U_B_UNICODE_CE, U_L_UCS4_CE, U_B_UCS4_CE, U_UTF8_CE, U_UTFE_CE}) {
    const Pipeline fromSjis(sjis, target);
    const Pipeline fromIbm(ibm, target);
    EXPECT_EQ(fromSjis->flags, NLS_PIPELINE_OWNS_SOURCE_OVERLAY | NLS_PIPELINE_OWNS_TARGET_OVERLAY);
    ASSERT_NE(fromSjis->source.overlay, nullptr);
    EXPECT_EQ(fromSjis->source.overlay->count, 1u);
    const Pipeline fromUtf8(U_UTF8_CE, target);
    const Outcome wanted = run(fromUtf8, utf8(U"a\uF8A0b"), 32);
    EXPECT_EQ(run(fromSjis, hex("61 85 40 62"), 32), wanted) << target;
    EXPECT_EQ(run(fromIbm, hex("81 0E 41 FD 0F 82"), 32), wanted) << target;
    TranscodeProgress progress{};
    EXPECT_EQ(resume(fromSjis, hex("61 85"), 32, progress).status, nlsIncompleteInput);
    EXPECT_EQ(resume(fromSjis, hex("40"), 32, progress),
              (Outcome{.status = 0, .bytes = run(fromUtf8, utf8(U"\uF8A0"), 32).bytes, .consumed = 1}));
  }
}

TEST_F(UserCharacters, FromUtf16) {
  setWithUnicode();
  for (const CEI source : {U_L_UNICODE_CE, U_B_UNICODE_CE}) {
    const Pipeline toSjis(source, sjis);
    EXPECT_EQ(toSjis->flags, NLS_PIPELINE_OWNS_TARGET_OVERLAY);
    EXPECT_NE(toSjis->source.overlay, nullptr) << "on the side that the stage reads";
    EXPECT_EQ(toSjis->target.overlay, nullptr);
    const Bytes text = utf16(U"a\uF8A0\u3042b", source == U_B_UNICODE_CE);
    EXPECT_EQ(run(toSjis, text, 32), (Outcome{.status = 0, .bytes = hex("61 85 40 82 A0 62")}));
    EXPECT_EQ(run(Pipeline(source, eucJp), text, 32), (Outcome{.status = 0, .bytes = hex("61 A9 A1 A4 A2 62")}));
    EXPECT_EQ(run(Pipeline(source, ibm), text, 32), (Outcome{.status = 0, .bytes = hex("81 0E 41 FD 44 81 0F 82")}));
  }
}

// The overlay stands on the target side, which these routes don't read.
TEST_F(UserCharacters, AreLostFromTheOtherUnicodeForms) {
  setWithUnicode();
  for (const CEI source : {U_UTF8_CE, U_UTFE_CE, U_L_UCS4_CE, U_B_UCS4_CE}) {
    const Pipeline pipeline(source, eucJp);
    EXPECT_EQ(pipeline->flags, NLS_PIPELINE_OWNS_TARGET_OVERLAY);
    EXPECT_EQ(pipeline->source.overlay, nullptr);
    EXPECT_NE(pipeline->target.overlay, nullptr);
    const Bytes text = run(Pipeline(U_UTF8_CE, source), utf8(U"a\uF8A0b"), 32).bytes;
    EXPECT_EQ(run(pipeline, text, 32), (Outcome{.status = nlsSubstituted, .bytes = hex("61 A1 A1 62")})) << source;
  }
}

TEST_F(UserCharacters, BetweenMultiByteEncodings) {
  setWithUnicode();
  EXPECT_EQ(run(Pipeline(sjis, eucJp), hex("61 85 40 82 A0 62"), 32),
            (Outcome{.status = 0, .bytes = hex("61 A9 A1 A4 A2 62")}));
  EXPECT_EQ(run(Pipeline(ibm, sjis), hex("81 0E 41 FD 44 81 0F 82"), 32),
            (Outcome{.status = 0, .bytes = hex("61 85 40 82 A0 62")}));
  const Pipeline toIbm(eucJp, ibm);
  EXPECT_EQ(run(toIbm, hex("61 A9 A1 A4 A2 62"), 32), (Outcome{.status = 0, .bytes = hex("81 0E 41 FD 44 81 0F 82")}));
  TranscodeProgress progress{};
  EXPECT_EQ(resume(toIbm, hex("61 A9"), 32, progress).bytes, hex("81"));
  EXPECT_EQ(resume(toIbm, hex("A1 62"), 32, progress),
            (Outcome{.status = 0, .bytes = hex("0E 41 FD 0F 82"), .consumed = 2}));
}

// Private-use characters stand in between, their bytes exchanged: U+E000 is U+00E0, and that character, which is a
// letter, becomes the user's in turn.
TEST_F(UserCharacters, PrivateUseCharactersHideLetters) {
  setWithoutUnicode();
  const Pipeline pipeline(ibm, sjis);
  ASSERT_EQ(pipeline->source.overlay->count, 1u);
  EXPECT_EQ(pipeline->source.overlay->pairs[0].value, 0x00E0);
  EXPECT_EQ(pipeline->target.overlay->pairs[0].key, 0x00E0);
  EXPECT_EQ(run(pipeline, hex("0E 41 FD 0F"), 32), (Outcome{.status = 0, .bytes = hex("85 40")}));
  EXPECT_EQ(Pipeline(ibm, unicode)->source.overlay, nullptr) << "the list knows no Unicode";
}

// With their bytes exchanged eight in 256 of them are surrogates, which no text may hold: these characters are lost.
TEST_F(UserCharacters, SomePrivateUseCharactersAreSurrogates) {
  constexpr size_t count = 0xE0;
  Codes own;
  Codes other;
  for (size_t i = 0; i < count; ++i) {
    own.push_back(static_cast<uint16_t>(0x7F41 + (i / 0xBE) * 0x100 + i % 0xBE));
    other.push_back(static_cast<uint16_t>(0xF040 + (i / 0x3F) * 0x100 + i % 0x3F));
  }
  UserList list;
  list.add({{ibm, own}, {sjis, other}});
  set(list);
  const Pipeline pipeline(ibm, sjis);
  for (size_t i = 0; i < count; ++i) {
    Bytes text = hex("0E");
    const Bytes code = bytesOf({own[i]});
    text.insert(text.end(), code.begin(), code.end());
    text.push_back(0x0F);
    const Outcome outcome = run(pipeline, text, 32);
    if (i < 0xD8) {
      EXPECT_EQ(outcome, (Outcome{.status = 0, .bytes = bytesOf({other[i]})})) << i;
    } else {
      EXPECT_EQ(outcome, (Outcome{.status = nlsSubstituted, .bytes = hex("81 40")})) << i;
    }
  }
}

// A row of Unicode's table whose code the head doesn't have: the ideographic space's number is taken for the bytes.
TEST_F(UserCharacters, ACharacterThatTheHeadLacksIsTwoOddBytes) {
  UserList list;
  list.add({{ibm, {ibmCode, 0x41FE}}, {sjis, {sjisCode, 0x8541}}, {unicode, {character, 0xF8A1}}});
  list.add({{sjis, {sjisCode, 0x8541}}, {ibm, {ibmCode, 0x41FE}}});
  list.add({{unicode, {character, 0xF8A2}}, {ibm, {ibmCode, 0x41FC}}});
  set(list);
  const Pipeline pipeline(unicode, sjis);
  EXPECT_EQ(run(pipeline, utf16(U"a\uF8A0b"), 32), (Outcome{.status = 0, .bytes = hex("61 85 40 62")}));
  EXPECT_EQ(run(pipeline, utf16(U"a\uF8A2b"), 32), (Outcome{.status = 0, .bytes = hex("61 30 00 62")}));
}

// gb18030 has stages of its own, which ask no overlay.
TEST_F(UserCharacters, Gb18030HasOverlaysThatNothingReads) {
  const auto convert = [](const Pipeline& to, const Pipeline& from) {
    return std::pair{run(to, hex("61 A2 A1 62"), 32), run(from, utf16(U"a\u2170b"), 32)};
  };
  const auto without = convert(Pipeline(U_GB18030_CE, unicode), Pipeline(unicode, U_GB18030_CE));
  UserList list;
  list.add({{U_GB18030_CE, {0xA2A1}}, {unicode, {character}}});
  list.add({{unicode, {0x2170}}, {U_GB18030_CE, {0xA2A2}}});
  set(list);
  const Pipeline to(U_GB18030_CE, unicode);
  const Pipeline from(unicode, U_GB18030_CE);
  ASSERT_NE(to->source.overlay, nullptr);
  EXPECT_EQ(to->source.overlay->pairs[0].value, character);
  ASSERT_NE(from->source.overlay, nullptr);
  EXPECT_EQ(from->source.overlay->pairs[0].key, 0x2170);
  EXPECT_EQ(convert(to, from), without);
}

// Kindred encodings: the plain run copies, the resumable one converts.
TEST_F(UserCharacters, PairsWithoutConversion) {
  UserList list;
  list.add({{U_MS932_CE, {0x8540}}, {sjis, {0x8541}}});
  list.add({{sjis, {0x8541}}, {U_MS932_CE, {0x8540}}});
  set(list);
  const Pipeline pipeline(U_MS932_CE, sjis);
  ASSERT_NE(pipeline->source.overlay, nullptr);
  ASSERT_NE(pipeline->target.overlay, nullptr);
  EXPECT_EQ(plain(pipeline, hex("61 85 40"), 8), (Outcome{.status = 0, .bytes = hex("61 85 40")}));
  EXPECT_EQ(run(pipeline, hex("61 85 40"), 8), (Outcome{.status = 0, .bytes = hex("61 85 41")}));
}

TEST_F(UserCharacters, EncodingsOutsideOfTheList) {
  setWithoutUnicode();
  for (const auto& [source, target] : {std::pair{ibm, eucJp},
                                       {eucJp, sjis},
                                       {sjis, unicode},
                                       {unicode, ibm},
                                       {U_UTF8_CE, sjis},
                                       {ibm, U_WLATIN1_CE}}) {
    const Pipeline pipeline(source, target);
    EXPECT_EQ(pipeline->flags, 0u);
    EXPECT_EQ(pipeline->source.overlay, nullptr);
    EXPECT_EQ(pipeline->target.overlay, nullptr);
  }
}

// Single-byte routes ask no list, even when it names the encoding.
TEST_F(UserCharacters, SingleByteRoutesHaveNone) {
  UserList list;
  list.add({{U_WLATIN1_CE, {0x8540}}, {sjis, {0x8541}}});
  list.add({{sjis, {0x8541}}, {U_WLATIN1_CE, {0x8540}}});
  set(list);
  EXPECT_EQ(Pipeline(U_WLATIN1_CE, sjis)->flags, 0u);
  EXPECT_EQ(Pipeline(sjis, U_WLATIN1_CE)->flags, 0u);
}

TEST_F(UserCharacters, PipelinesKeepWhatTheyWereMadeWith) {
  const Pipeline before(sjis, unicode);
  setWithUnicode();
  const Pipeline pipeline(sjis, unicode);
  UserCharacterTable* head = nls()->userCharacterTables;
  nls()->userCharacterTables = nullptr;
  nls()->freeUserCharacterTables(nls(), head);
  EXPECT_EQ(run(pipeline, hex("85 40"), 8), (Outcome{.status = 0, .bytes = hex("A0 F8")}));
  EXPECT_EQ(run(before, hex("85 40"), 8), unmapped16);
  EXPECT_EQ(run(Pipeline(sjis, unicode), hex("85 40"), 8), unmapped16);
}

// Every route that takes overlays, those from UTF-16 included, gives them back.
TEST_F(UserCharacters, DestroyedPipelinesLeaveNothing) {
  setWithUnicode();
  const uint64_t before = used();
  for (const auto& [source, target] : {std::pair{sjis, unicode},
                                       {unicode, sjis},
                                       {U_B_UNICODE_CE, ibm},
                                       {U_UTF8_CE, sjis},
                                       {U_L_UCS4_CE, sjis},
                                       {sjis, U_UTFE_CE},
                                       {sjis, eucJp},
                                       {ibm, ibm}}) {
    {
      const Pipeline pipeline(source, target);
      ASSERT_NE(pipeline->flags, 0u);
    }
    EXPECT_EQ(used(), before) << source << " to " << target;
  }
}

// Without memory for its overlays a pipeline works as without a list, and nothing is reported.
TEST_F(UserCharacters, PipelinesWithoutMemoryForOverlays) {
  setWithUnicode();
  const uint64_t before = used();
  for (const Failure failure : faults_test::failures) {
    for (int n = 1;; ++n) {
      ASSERT_LT(n, 12);
      TranscodingPipeline* pipeline = nullptr;
      {
        const FailingMemory memory(host().memory, failure, n);
        pipeline = nls()->createPipeline(nls(), sjis, eucJp, nullptr, nullptr);
      }
      if (n == 1) {
        EXPECT_EQ(pipeline, nullptr) << "no memory for itself";
        continue;
      }
      ASSERT_NE(pipeline, nullptr);
      const bool whole = pipeline->flags != 0;
      if (!whole) {
        EXPECT_EQ(pipeline->source.overlay, nullptr);
        EXPECT_EQ(pipeline->target.overlay, nullptr);
      }
      EXPECT_EQ(run(pipeline, hex("85 40"), 8).bytes, whole ? hex("A9 A1") : hex("A1 A1"));
      pipeline->destroy(pipeline);
      EXPECT_EQ(used(), before) << n;
      if (whole) break;
    }
  }
}

}  // namespace

}  // namespace transcode_test
