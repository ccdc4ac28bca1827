// Multi-byte text to the Unicode forms: statuses, counts, shift state, blanks.
#include "modules/qznlsmb/rows.h"

namespace transcode_test {
namespace {

Outcome toUtf16(CEI source, std::string_view text, size_t capacity = 64, const TranscodeOptions* options = nullptr) {
  return run(Pipeline(source, U_L_UNICODE_CE), hex(text), capacity, options);
}

TEST(ToUnicode, FormsOfTheTarget) {
  const Bytes text = hex("61 82 A0 B1");
  const std::u32string_view expected = U"a\u3042\uFF71";
  EXPECT_EQ(run(Pipeline(U_SHIFTJIS_CE, U_L_UNICODE_CE), text, 64), (Outcome{.bytes = utf16(expected)}));
  EXPECT_EQ(run(Pipeline(U_SHIFTJIS_CE, U_B_UNICODE_CE), text, 64), (Outcome{.bytes = utf16(expected, true)}));
  EXPECT_EQ(run(Pipeline(U_SHIFTJIS_CE, U_L_UCS4_CE), text, 64), (Outcome{.bytes = utf32(expected)}));
  EXPECT_EQ(run(Pipeline(U_SHIFTJIS_CE, U_B_UCS4_CE), text, 64), (Outcome{.bytes = utf32(expected, true)}));
  EXPECT_EQ(run(Pipeline(U_SHIFTJIS_CE, U_UTF8_CE), text, 64), (Outcome{.bytes = utf8(expected)}));
  const Outcome ebcdic = run(Pipeline(U_SHIFTJIS_CE, U_UTFE_CE), text, 64);
  EXPECT_EQ(run(Pipeline(U_UTFE_CE, U_UTF8_CE), ebcdic.bytes, 64), (Outcome{.bytes = utf8(expected)}));
}

TEST(ToUnicode, WhatIsUnmappedIsTheIdeographicSpace) {
  EXPECT_EQ(toUtf16(U_SHIFTJIS_CE, "FC FC 61"), (Outcome{.status = nlsSubstituted, .bytes = utf16(U"\u3000a")}));
  EXPECT_EQ(toUtf16(U_SHIFTJIS_CE, "81 40"), (Outcome{.bytes = utf16(U"\u3000")}));
  TranscodeProgress progress{};
  EXPECT_EQ(resume(Pipeline(U_SHIFTJIS_CE, U_UTF8_CE), hex("FC FC 61"), 64, progress),
            (Outcome{.status = nlsSubstituted, .bytes = utf8(U"\u3000a"), .consumed = 3, .substituted = true}));
  // Rows without a set of their own have their single bytes.
  for (const CEI empty : {128, 145, 151}) {
    const Bytes text = row(empty).encodingClass == NLS_CLASS_SHIFTED ? Bytes{0xB0, 0xA1} : Bytes{0x88, 0x9F};
    TranscodeProgress shifted{};
    shifted.flags = NLS_PROGRESS_DOUBLE_MODE;
    EXPECT_EQ(resume(Pipeline(empty, U_L_UNICODE_CE), text, 64, shifted).bytes, utf16(U"\u3000")) << empty;
  }
}

// Where a row's blank isn't its set's, the set's own code of it notes a substitution, unless the set lists it.
TEST(ToUnicode, BlanksOfTheSetThatArentTheRows) {
  TranscodeProgress progress{};
  progress.flags = NLS_PROGRESS_DOUBLE_MODE;
  EXPECT_EQ(resume(Pipeline(U_FUJITSUJP_CE, U_L_UNICODE_CE), hex("A1 A1"), 64, progress),
            (Outcome{.status = nlsSubstituted, .bytes = utf16(U"\u3000"), .consumed = 2, .substituted = true}));
  EXPECT_EQ(resume(Pipeline(U_ISO2022KR_CE, U_L_UNICODE_CE), hex("21 21"), 64, progress),
            (Outcome{.bytes = utf16(U"\u3000"), .consumed = 2}));
}

TEST(ToUnicode, SingleBytesAreNeverNoted) {
  EXPECT_EQ(toUtf16(U_EUCKR_CE, "80 FF"), (Outcome{.bytes = utf16(U"\u0080 ")}));
  EXPECT_EQ(toUtf16(U_EUCJP_CE, "7F"), (Outcome{.bytes = utf16(U"\u007F")}));
  EXPECT_EQ(toUtf16(U_SHIFTJIS_CE, "80 A0 FD"), (Outcome{.bytes = utf16(U"\u0080\u00A0 ")}));
}

// All of the text before the last character is written, and all of it is counted.
TEST(ToUnicode, RoomInTheMiddleOfAText) {
  const Pipeline pipeline(U_IBM939_CE, U_UTF8_CE);
  const Bytes text = hex("81 0E 44 81 44 81 0F 82");
  constexpr size_t written[] = {0, 1, 1, 1, 4, 4, 4, 7, 8};
  // A shift ahead of what has no room is taken.
  constexpr uint32_t consumed[] = {0, 2, 2, 2, 4, 4, 4, 7, 8};
  for (size_t capacity = 0; capacity <= 8; ++capacity) {
    TranscodeProgress progress{};
    const Outcome outcome = resume(pipeline, text, capacity, progress);
    EXPECT_EQ(outcome.status, capacity == 8 ? 0u : NlsStatus{nlsOutputTruncated});
    EXPECT_EQ(outcome.bytes.size(), written[capacity]);
    EXPECT_EQ(outcome.consumed, consumed[capacity]);
    EXPECT_EQ(progress.flags, consumed[capacity] == 2 || consumed[capacity] == 4 ? NLS_PROGRESS_DOUBLE_MODE : 0u);
  }
}

TEST(ToUnicode, AReplacementHidesMissingRoom) {
  TranscodeProgress progress{};
  EXPECT_EQ(resume(Pipeline(U_SHIFTJIS_CE, U_L_UNICODE_CE), hex("FC FC 61 62"), 4, progress),
            (Outcome{.status = nlsSubstituted, .bytes = utf16(U"\u3000a"), .consumed = 3, .substituted = true}));
}

TEST(ToUnicode, AnIncompleteEndOutweighsAReplacement) {
  TranscodeProgress progress{};
  EXPECT_EQ(resume(Pipeline(U_SHIFTJIS_CE, U_L_UNICODE_CE), hex("FC FC 82"), 4, progress),
            (Outcome{.status = nlsIncompleteInput,
                     .bytes = utf16(U"\u3000"),
                     .consumed = 3,
                     .substituted = true,
                     .pending = true,
                     .held = hex("82")}));
}

TEST(ToUnicode, DroppedBlanks) {
  EXPECT_EQ(toUtf16(U_SHIFTJIS_CE, "61 62 20 20", 4, &dropBlanks), (Outcome{.bytes = utf16(U"ab")}));
  EXPECT_EQ(toUtf16(U_SHIFTJIS_CE, "61 62 20 20", 5, &dropBlanks), (Outcome{.bytes = utf16(U"ab")}));
  EXPECT_EQ(toUtf16(U_SHIFTJIS_CE, "61 62 20 63", 4, &dropBlanks).status, nlsOutputTruncated);
  EXPECT_EQ(toUtf16(U_SHIFTJIS_CE, "61 62 20 20", 4).status, nlsOutputTruncated);
  EXPECT_EQ(toUtf16(U_IBM939_CE, "81 40 40", 2, &dropBlanks).status, 0u);
  EXPECT_EQ(toUtf16(U_IBM939_CE, "81 20 20", 2, &dropBlanks).status, nlsOutputTruncated);
  // Double-byte blanks aren't what may be dropped, nor is anything in double-byte mode.
  EXPECT_EQ(toUtf16(U_SHIFTJIS_CE, "61 81 40", 2, &dropBlanks).status, nlsOutputTruncated);
  EXPECT_EQ(toUtf16(U_IBM939_CE, "81 0E 40 40", 2, &dropBlanks).status, nlsOutputTruncated);
  EXPECT_EQ(toUtf16(U_IBM939_CE, "0E 44 81 0F 40 40", 2, &dropBlanks).status, 0u);
  // Behind a character of two bytes in a row without shifts no mode is left on.
  EXPECT_EQ(toUtf16(U_SHIFTJIS_CE, "82 A0 20 20", 2, &dropBlanks).status, 0u);
  // A replacement stays the status.
  EXPECT_EQ(toUtf16(U_SHIFTJIS_CE, "FC FC 20 20", 2, &dropBlanks).status, nlsSubstituted);
  // By the pipeline's own option.
  EXPECT_EQ(run(Pipeline(U_SHIFTJIS_CE, U_L_UNICODE_CE, &dropBlanks), hex("61 20"), 2).status, 0u);
}

// The state is of rows with shifts only; other bits of the word stay.
TEST(ToUnicode, TheShiftStateIsTheRecords) {
  for (const CEI cei : multiByteRows()) {
    const MultiByteProfile& profile = row(cei).profile;
    StageRoute route(cei, U_L_UNICODE_CE);
    TranscodeProgress progress{};
    progress.flags = 0x40;
    Bytes text(profile.shiftOut, profile.shiftOut + profile.shiftLength);
    text.insert(text.end(), {0xB0, 0xB0});
    resume(route, text, 64, progress);
    const bool shifted = row(cei).encodingClass == NLS_CLASS_SHIFTED && profile.shiftLength != 0;
    EXPECT_EQ(progress.flags & ~NLS_PROGRESS_SUBSTITUTED, shifted ? 0x41u : 0x40u) << cei;
    if (!shifted) continue;
    const Bytes in(profile.shiftIn, profile.shiftIn + profile.shiftLength);
    EXPECT_EQ(resume(route, in, 64, progress).status, 0u) << cei;
    EXPECT_EQ(progress.flags, 0x40u) << cei;
  }
  // A row without shifts doesn't touch the bit.
  TranscodeProgress progress{};
  progress.flags = NLS_PROGRESS_DOUBLE_MODE;
  EXPECT_EQ(resume(Pipeline(U_SHIFTJIS_CE, U_L_UNICODE_CE), hex("61"), 64, progress).bytes, utf16(U"a"));
  EXPECT_EQ(progress.flags, NLS_PROGRESS_DOUBLE_MODE);
}

TEST(ToUnicode, TheSubstitutionBitIsOfTheCall) {
  const Pipeline pipeline(U_SHIFTJIS_CE, U_L_UNICODE_CE);
  TranscodeProgress progress{};
  EXPECT_TRUE(resume(pipeline, hex("FC FC"), 64, progress).substituted);
  EXPECT_FALSE(resume(pipeline, hex("61"), 64, progress).substituted);
}

TEST(ToUnicode, AnEmptyCallInDoubleMode) {
  TranscodeProgress progress{};
  progress.flags = NLS_PROGRESS_DOUBLE_MODE;
  EXPECT_EQ(resume(Pipeline(U_IBM939_CE, U_L_UNICODE_CE), {}, 8, progress), Outcome{});
  EXPECT_EQ(progress.flags, NLS_PROGRESS_DOUBLE_MODE);
}

TEST(ToUnicode, ShiftsOfTwoBytesTakeWhatFollows) {
  // 0A by itself swallows the byte behind it.
  EXPECT_EQ(toUtf16(U_HITACHIJP_CE, "81 0A C1 A4 A2 0A 41 82"), (Outcome{.bytes = utf16(U"a\u3042b")}));
  EXPECT_EQ(toUtf16(U_HITACHIJP_CE, "81 0A"), (Outcome{.status = nlsSubstituted, .bytes = utf16(U"a")}));
  TranscodeProgress progress{};
  EXPECT_EQ(
      resume(Pipeline(U_HITACHIJP_CE, U_L_UNICODE_CE), hex("81 0A"), 64, progress),
      (Outcome{.status = nlsIncompleteInput, .bytes = utf16(U"a"), .consumed = 2, .pending = true, .held = hex("0A")}));
}

TEST(ToUnicode, RecordsAreOptional) {
  const Pipeline pipeline(U_SHIFTJIS_CE, U_L_UNICODE_CE);
  const Bytes text = hex("61 FC FC 62");
  uint8_t out[8];
  EXPECT_EQ(pipeline->transcodeResumable(pipeline, text.data(), 4, out, 8, nullptr, nullptr, nullptr), nlsSubstituted);
  EXPECT_EQ(Bytes(out, out + 6), utf16(U"a\u3000b"));
  // A side that knows no options of a pipeline.
  StageRoute route(U_SHIFTJIS_CE, U_L_UNICODE_CE);
  route->source.options = nullptr;
  EXPECT_EQ(run(route, hex("61 20"), 2).status, nlsOutputTruncated);
  EXPECT_EQ(run(route, hex("61 20"), 2, &dropBlanks).status, 0u);
}

}  // namespace
}  // namespace transcode_test
