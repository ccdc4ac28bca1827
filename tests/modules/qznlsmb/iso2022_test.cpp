// ISO 2022 targets: characters of seven bits, and what has no such form.
#include "modules/qznlsmb/rows.h"

namespace transcode_test {
namespace {

TEST(Iso2022, KoreanInSevenBits) {
  const Pipeline pipeline(U_L_UNICODE_CE, U_ISO2022KR_CE);
  // No designator is written.
  EXPECT_EQ(run(pipeline, utf16(U"a\uAC00\u3000b"), 32), (Outcome{.bytes = hex("61 0E 30 21 21 20 0F 62")}));
}

TEST(Iso2022, CodesThatNeedTheHighBitBecomeTheBlank) {
  // U+AC02 has a code of the vendor's extension, 81 41.
  const Outcome wide = run(Pipeline(U_L_UNICODE_CE, U_EUCKR_CE), utf16(U"\uAC02"), 8);
  EXPECT_EQ(wide, (Outcome{.bytes = hex("81 41")}));
  const Pipeline pipeline(U_L_UNICODE_CE, U_ISO2022KR_CE);
  EXPECT_EQ(run(pipeline, utf16(U"\uAC02\uAC00"), 32),
            (Outcome{.status = nlsSubstituted, .bytes = hex("0E 21 20 30 21 0F")}));
  TranscodeProgress progress{};
  EXPECT_EQ(resume(pipeline, utf16(U"\uAC02"), 32, progress),
            (Outcome{.status = nlsSubstituted, .bytes = hex("0E 21 20 0F"), .consumed = 2, .substituted = true}));
}

// Then only the count of bytes read tells that room was missing.
TEST(Iso2022, WhatIsReplacedOutweighsMissingRoom) {
  const Pipeline pipeline(U_L_UNICODE_CE, U_ISO2022KR_CE);
  TranscodeProgress progress{};
  EXPECT_EQ(resume(pipeline, utf16(U"\uAC02\uAC00"), 4, progress),
            (Outcome{.status = nlsSubstituted, .bytes = hex("0E 21 20 0F"), .consumed = 2, .substituted = true}));
  // An incomplete end it doesn't.
  Bytes text = utf16(U"\uAC02");
  text.push_back(0x41);
  EXPECT_EQ(resume(pipeline, text, 32, progress), (Outcome{.status = nlsIncompleteInput,
                                                           .bytes = hex("0E 21 20 0F"),
                                                           .consumed = 3,
                                                           .substituted = true,
                                                           .pending = true,
                                                           .held = hex("41")}));
}

TEST(Iso2022, JapaneseSetsAreOfSevenBits) {
  for (const CEI cei : {U_ISO2022JP_CE, U_JIS7_CE}) {
    EXPECT_EQ(run(Pipeline(U_UTF8_CE, cei), utf8(U"a\u3042\uFF71\u3000b"), 32),
              (Outcome{.bytes = hex("61 1B 24 42 24 22 25 22 21 21 1B 28 4A 62")}));
  }
  // pcjis has the same characters and shifts of one byte.
  EXPECT_EQ(run(Pipeline(U_UTF8_CE, U_PCJIS_CE), utf8(U"a\u3042b"), 32), (Outcome{.bytes = hex("61 0E 24 22 0F 62")}));
}

// Single bytes that read as a shift sequence are taken for one: what follows is made seven bits.
TEST(Iso2022, ASequenceInTheTextActsAsOne) {
  EXPECT_EQ(run(Pipeline(U_L_UNICODE_CE, U_ISO2022JP_CE), utf16(U"\u001B$B\u0080\u0081\u001B(J\u0080"), 32).bytes,
            hex("1B 24 42 00 01 1B 28 4A 80"));
  // In a row whose set is wider they become the blank; one byte by itself stays.
  EXPECT_EQ(run(Pipeline(U_L_UNICODE_CE, U_ISO2022KR_CE), utf16(U"\u000Eabc\u000F\u000Ed"), 32),
            (Outcome{.status = nlsSubstituted, .bytes = hex("0E 21 20 21 20 0E 64")}));
}

TEST(Iso2022, RoundTrip) {
  for (const CEI cei : {158, 167, 168, 169, 172}) {
    const std::u32string text = cei == 168 ? U"a\uAC00b\u4F3Dc" : U"a\u4E00b\u4E8Cc";
    const Outcome there = run(Pipeline(U_L_UNICODE_CE, cei), utf16(text), 64);
    EXPECT_EQ(there.status, 0u) << cei;
    for (const uint8_t byte : there.bytes) EXPECT_LT(byte, 0x80);
    EXPECT_EQ(run(Pipeline(cei, U_L_UNICODE_CE), there.bytes, 64), (Outcome{.bytes = utf16(text)})) << cei;
  }
}

// A piece may end behind a shift-in and within the designator that follows it.
TEST(Iso2022, ADesignatorCutBehindAShift) {
  const Pipeline pipeline(U_ISO2022CNGB_CE, U_L_UNICODE_CE);
  const Bytes text = hex("0E 30 21 0F 1B 24 29 41 0E 30 21 0F");
  const Outcome whole = run(pipeline, text, 64);
  for (size_t cut = 0; cut <= text.size(); ++cut) {
    EXPECT_EQ(inPieces(pipeline, text, std::vector<size_t>{cut}).bytes, whole.bytes) << cut;
  }
  EXPECT_EQ(whole.bytes.size(), 4u);
}

// Without a record the end of the input is the end of the text, where a sequence isn't looked for any more.
TEST(Iso2022, SequencesAtTheEndOfAText) {
  EXPECT_EQ(run(Pipeline(U_ISO2022KR_CE, U_L_UNICODE_CE), hex("0E 30 21 0F 1B"), 64),
            (Outcome{.bytes = utf16(U"\uAC00\u001B")}));
  EXPECT_EQ(run(Pipeline(U_ISO2022KR_CE, U_L_UNICODE_CE), hex("61 0E 0F"), 64),
            (Outcome{.status = nlsSubstituted, .bytes = utf16(U"a")}));
  TranscodeProgress progress{};
  EXPECT_EQ(resume(Pipeline(U_ISO2022KR_CE, U_L_UNICODE_CE), hex("61 0E 0F"), 64, progress),
            (Outcome{.bytes = utf16(U"a"), .consumed = 3}));
}

}  // namespace
}  // namespace transcode_test
