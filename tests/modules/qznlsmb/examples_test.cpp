// Texts that show what each kind of row does.
#include "modules/qznlsmb/rows.h"

namespace transcode_test {
namespace {

TEST(MultiByteExamples, TheBlankOfAHostPage) {
  EXPECT_EQ(run(Pipeline(U_IBM939_CE, U_L_UNICODE_CE), hex("0E 40 40 0F"), 16),
            (Outcome{.status = 0, .bytes = utf16(U"\u3000")}));
}

TEST(MultiByteExamples, ACallThatEndsBehindAShiftOut) {
  const Pipeline pipeline(U_IBM939_CE, U_L_UNICODE_CE);
  TranscodeProgress progress{};
  EXPECT_EQ(resume(pipeline, hex("81 0E"), 16, progress),
            (Outcome{.status = nlsIncompleteInput, .bytes = utf16(U"a"), .consumed = 2, .pending = true}));
  EXPECT_EQ(progress.flags, NLS_PROGRESS_DOUBLE_MODE);
  EXPECT_EQ(resume(pipeline, hex("44 81"), 16, progress),
            (Outcome{.status = 0, .bytes = utf16(U"\u3042"), .consumed = 2}));
  EXPECT_EQ(progress.flags, NLS_PROGRESS_DOUBLE_MODE);
  EXPECT_EQ(resume(pipeline, hex("0F 82"), 16, progress), (Outcome{.status = 0, .bytes = utf16(U"b"), .consumed = 2}));
  EXPECT_EQ(progress.flags, 0u);
}

TEST(MultiByteExamples, ShiftsOfAHostPage) {
  const Pipeline pipeline(U_L_UNICODE_CE, U_IBM939_CE);
  EXPECT_EQ(run(pipeline, utf16(U"a\u3042b"), 16), (Outcome{.status = 0, .bytes = hex("81 0E 44 81 0F 82")}));
  TranscodeProgress progress{};
  for (int call = 0; call < 2; ++call) {
    EXPECT_EQ(resume(pipeline, utf16(U"\u3042"), 16, progress),
              (Outcome{.status = 0, .bytes = hex("0E 44 81 0F"), .consumed = 2}));
    EXPECT_EQ(progress.flags, 0u);
  }
}

TEST(MultiByteExamples, WhatHasNoCodeIsTheBlank) {
  const Outcome blank{.status = nlsSubstituted, .bytes = hex("81 40")};
  EXPECT_EQ(run(Pipeline(U_L_UNICODE_CE, U_SHIFTJIS_CE), utf16(U"\uFFFD"), 8), blank);
  EXPECT_EQ(run(Pipeline(U_UTF8_CE, U_SHIFTJIS_CE), hex("FF"), 8), (Outcome{.status = nlsSubstituted}));
  EXPECT_EQ(run(Pipeline(U_UTF8_CE, U_SHIFTJIS_CE), hex("80"), 8), blank);
  EXPECT_EQ(run(Pipeline(U_UTF8_CE, U_SHIFTJIS_CE), hex("FF 61 61 61 61 61"), 8).bytes, hex("81 40 61 61 61 61 61"));
  EXPECT_EQ(run(Pipeline(U_UTF8_CE, U_SHIFTJIS_CE), utf8(U"\U0001F600"), 8), blank);
  EXPECT_EQ(run(Pipeline(U_L_UCS4_CE, U_SHIFTJIS_CE), hex("41 E3 FF FF"), 8), blank);
}

TEST(MultiByteExamples, HalfWidthKatakana) {
  const auto of = [](CEI target) { return run(Pipeline(U_L_UNICODE_CE, target), utf16(U"\uFF71"), 16); };
  EXPECT_EQ(of(U_EUCJP_CE), (Outcome{.status = 0, .bytes = hex("8E B1")}));
  EXPECT_EQ(of(U_DECJP_CE), (Outcome{.status = 0, .bytes = hex("8E B1")}));
  EXPECT_EQ(of(U_SHIFTJIS_CE), (Outcome{.status = 0, .bytes = hex("B1")}));
  EXPECT_EQ(of(U_ISO2022JP_CE), (Outcome{.status = 0, .bytes = hex("1B 24 42 25 22 1B 28 4A")}));
  EXPECT_EQ(of(U_IBM939_CE), (Outcome{.status = 0, .bytes = hex("0E 43 81 0F")}));
  EXPECT_EQ(of(U_IBM930_CE), (Outcome{.status = 0, .bytes = hex("81")}));
  EXPECT_EQ(of(U_EUCKR_CE), (Outcome{.status = nlsSubstituted, .bytes = hex("A1 A1")}));
  EXPECT_EQ(run(Pipeline(U_EUCJP_CE, U_L_UNICODE_CE), hex("8E B1"), 16),
            (Outcome{.status = 0, .bytes = utf16(U"\uFF71")}));
}

TEST(MultiByteExamples, SingleBytesGoThroughAMap) {
  EXPECT_EQ(run(Pipeline(U_WLATIN1_CE, U_IBM939_CE), hex("1A 61 20"), 8),
            (Outcome{.status = 0, .bytes = hex("3F 81 40")}));
  EXPECT_EQ(run(Pipeline(U_WLATIN1_CE, U_EUCCN_CE), hex("80"), 8), (Outcome{.status = 0, .bytes = hex("A2 E3")}));
  EXPECT_EQ(run(Pipeline(U_WCYRILLIC_CE, U_EUCCN_CE), hex("80"), 8),
            (Outcome{.status = nlsSubstituted, .bytes = hex("20")}));
}

TEST(MultiByteExamples, DesignatorsOfIso2022) {
  const Pipeline korean(U_ISO2022KR_CE, U_L_UNICODE_CE);
  EXPECT_EQ(run(korean, hex("1B 24 29 43 0E 30 21 0F"), 16), (Outcome{.status = 0, .bytes = utf16(U"\uAC00")}));
  EXPECT_EQ(run(korean, hex("61 1B 24 29 43 62 0E 30 21 1B 24 29 43 30 21 0F 63"), 16),
            (Outcome{.status = 0, .bytes = utf16(U"ab\uAC00\uAC00c")}));
}

TEST(MultiByteExamples, OtherEscapeSequencesAreData) {
  const Pipeline japanese(U_ISO2022JP_CE, U_L_UNICODE_CE);
  EXPECT_EQ(run(japanese, hex("1B 24 42 25 22 1B 28 4A 61"), 16), (Outcome{.status = 0, .bytes = utf16(U"\u30A2a")}));
  // ESC ( B doesn't shift in: three bytes of which two are no character, and then "B" and "a" are one.
  EXPECT_EQ(run(japanese, hex("1B 24 42 25 22 1B 28 42 61"), 16),
            (Outcome{.status = nlsSubstituted, .bytes = run(japanese, hex("1B 24 42 25 22 1B 28 42 61"), 16).bytes}));
  EXPECT_EQ(run(japanese, hex("1B 24 42 25 22 1B 28 42 61"), 16).bytes.size(), 6u);
  EXPECT_EQ(run(japanese, hex("1B 24 40 25"), 16), (Outcome{.status = 0, .bytes = utf16(U"\u001B$@%")}));
}

TEST(MultiByteExamples, AHighSurrogateThatIsLastIsIncomplete) {
  const Pipeline pipeline(U_L_UNICODE_CE, U_SHIFTJIS_CE);
  EXPECT_EQ(run(pipeline, hex("61 00 3D D8"), 8), (Outcome{.status = nlsSubstituted, .bytes = hex("61")}));
  EXPECT_EQ(run(pipeline, hex("61 00 3D D8 00"), 8), (Outcome{.status = nlsSubstituted, .bytes = hex("61")}));
  TranscodeProgress progress{};
  EXPECT_EQ(
      resume(pipeline, hex("61 00 3D D8"), 8, progress),
      (Outcome{
          .status = nlsIncompleteInput, .bytes = hex("61"), .consumed = 4, .pending = true, .held = hex("3D D8")}));
  EXPECT_EQ(resume(pipeline, hex("00 DE 62 00"), 8, progress),
            (Outcome{.status = nlsSubstituted, .bytes = hex("81 40 62"), .consumed = 4, .substituted = true}));
}

TEST(MultiByteExamples, SurrogatesByThemselves) {
  const Pipeline pipeline(U_L_UNICODE_CE, U_SHIFTJIS_CE);
  // The unit behind a high surrogate that isn't low is a character of its own; a low one has no code.
  EXPECT_EQ(run(pipeline, hex("3D D8 61 00"), 8), (Outcome{.status = nlsSubstituted, .bytes = hex("81 40 61")}));
  EXPECT_EQ(run(pipeline, hex("00 DE 61 00"), 8), (Outcome{.status = nlsSubstituted, .bytes = hex("81 40 61")}));
}

TEST(MultiByteExamples, ALeadByteIsHeldBetweenMultiByteEncodings) {
  const Pipeline pipeline(U_SHIFTJIS_CE, U_EUCJP_CE);
  TranscodeProgress progress{};
  EXPECT_EQ(
      resume(pipeline, hex("61 82 A0 82"), 16, progress),
      (Outcome{
          .status = nlsIncompleteInput, .bytes = hex("61 A4 A2"), .consumed = 4, .pending = true, .held = hex("82")}));
  EXPECT_EQ(resume(pipeline, hex("A2 62"), 16, progress),
            (Outcome{.status = 0, .bytes = hex("A4 A4 62"), .consumed = 2}));
}

TEST(MultiByteExamples, EmptyTexts) {
  for (const CEI form : unicodeForms) {
    for (const CEI cei : {U_SHIFTJIS_CE, U_IBM939_CE, U_ISO2022JP_CE, U_GB18030_CE}) {
      EXPECT_EQ(plain(Pipeline(form, cei), {}, 0), Outcome{});
      EXPECT_EQ(plain(Pipeline(cei, form), {}, 0), Outcome{});
    }
  }
}

// 0x9F is the first character that goes through the pairs.
TEST(MultiByteExamples, ControlsUpTo9E) {
  const Pipeline pipeline(U_L_UNICODE_CE, U_EUCKR_CE);
  EXPECT_EQ(run(pipeline, utf16(std::u32string(U"\0\u0080\u009E", 3)), 8),
            (Outcome{.status = 0, .bytes = hex("00 80 9E")}));
  EXPECT_EQ(run(pipeline, utf16(U"\u009F"), 8), (Outcome{.status = nlsSubstituted, .bytes = hex("A1 A1")}));
}

TEST(MultiByteExamples, TheOneByteEuro) {
  EXPECT_EQ(run(Pipeline(U_EUCCN_CE, U_L_UNICODE_CE), hex("80"), 8), (Outcome{.status = 0, .bytes = utf16(U"\u20AC")}));
  EXPECT_EQ(run(Pipeline(U_GB18030_CE, U_L_UNICODE_CE), hex("80"), 8),
            (Outcome{.status = 0, .bytes = utf16(U"\u20AC")}));
  EXPECT_EQ(run(Pipeline(U_MS936_CE, U_L_UNICODE_CE), hex("80"), 8), (Outcome{.status = 0, .bytes = utf16(U"\u0080")}));
  EXPECT_EQ(run(Pipeline(U_IBM939_CE, U_L_UNICODE_CE), hex("E1"), 8),
            (Outcome{.status = 0, .bytes = utf16(U"\u20AC")}));
  EXPECT_EQ(run(Pipeline(U_L_UNICODE_CE, U_IBM939_CE), utf16(U"\u20AC"), 8),
            (Outcome{.status = 0, .bytes = hex("E1")}));
  // Every row that isn't built on ASCII has it there.
  EXPECT_EQ(run(Pipeline(U_FUJITSUJP_CE, U_L_UNICODE_CE), hex("E1"), 8),
            (Outcome{.status = 0, .bytes = utf16(U"\u20AC")}));
}

}  // namespace
}  // namespace transcode_test
