// The Unicode forms to multi-byte text: reading each form, statuses, counts, blanks.
#include "modules/qznlsmb/rows.h"

namespace transcode_test {
namespace {

Outcome from(CEI source, CEI target, Span text, size_t capacity = 64, const TranscodeOptions* options = nullptr) {
  return run(Pipeline(source, target), text, capacity, options);
}

TEST(FromUnicode, FormsOfTheSource) {
  const std::u32string_view text = U"a\u3042\uFF71\u3000\U0001F600";
  const Outcome expected{.status = nlsSubstituted, .bytes = hex("61 82 A0 B1 81 40 81 40")};
  EXPECT_EQ(from(U_L_UNICODE_CE, U_SHIFTJIS_CE, utf16(text)), expected);
  EXPECT_EQ(from(U_B_UNICODE_CE, U_SHIFTJIS_CE, utf16(text, true)), expected);
  EXPECT_EQ(from(U_L_UCS4_CE, U_SHIFTJIS_CE, utf32(text)), expected);
  EXPECT_EQ(from(U_B_UCS4_CE, U_SHIFTJIS_CE, utf32(text, true)), expected);
  EXPECT_EQ(from(U_UTF8_CE, U_SHIFTJIS_CE, utf8(text)), expected);
  const Bytes ebcdic = run(Pipeline(U_UTF8_CE, U_UTFE_CE), utf8(text), 64).bytes;
  EXPECT_EQ(from(U_UTFE_CE, U_SHIFTJIS_CE, ebcdic), expected);
}

// The Unicode stages leave the lead's bits of a two-byte sequence out; here they count.
TEST(FromUnicode, TwoByteSequencesOfUtfEbcdic) {
  const Bytes ebcdic = run(Pipeline(U_UTF8_CE, U_UTFE_CE), utf8(U"\u00A7"), 8).bytes;
  EXPECT_EQ(run(Pipeline(U_UTFE_CE, U_L_UNICODE_CE), ebcdic, 8).bytes, utf16(U"\u0007"));
  EXPECT_EQ(from(U_UTFE_CE, U_EUCKR_CE, ebcdic), from(U_L_UNICODE_CE, U_EUCKR_CE, utf16(U"\u00A7")));
  EXPECT_EQ(from(U_UTFE_CE, U_EUCKR_CE, ebcdic).status, 0u);
}

// A byte that begins no sequence is U+0000, as in the Unicode stages; trailing bytes aren't tested.
TEST(FromUnicode, DamagedUtfEbcdic) {
  const Bytes two = run(Pipeline(U_UTF8_CE, U_UTFE_CE), utf8(U"\u00A7"), 8).bytes;
  EXPECT_EQ(from(U_UTFE_CE, U_EUCKR_CE, Bytes{two[1], 0x81}), (Outcome{.bytes = hex("00 61")}));
  EXPECT_EQ(from(U_UTFE_CE, U_EUCKR_CE, Bytes{two[0]}), (Outcome{.status = nlsSubstituted}));
  TranscodeProgress progress{};
  EXPECT_EQ(
      resume(Pipeline(U_UTFE_CE, U_EUCKR_CE), Bytes{0x81, two[0]}, 8, progress),
      (Outcome{.status = nlsIncompleteInput, .bytes = hex("61"), .consumed = 2, .pending = true, .held = {two[0]}}));
}

struct Damaged {
  const char* text;
  const char* converted;
};

TEST(FromUnicode, DamagedUtf8) {
  for (const Damaged& each : {Damaged{"C0 80 61", "A1 A1 61"},
                              {"C1 BF", "A1 A1"},
                              {"E0 80 80 61", "A1 A1 61"},
                              {"ED A0 80 61", "A1 A1 61"},
                              {"E2 28 A1 61", "A1 A1 28 A1 A1 61"},
                              {"F5 80 80 80", "A1 A1"},
                              {"F4 90 80 80", "A1 A1"},
                              {"F8 88 80 80 80", "A1 A1"},
                              {"FC 84 80 80 80 80 61", "A1 A1 61"},
                              {"F0 8F BF BF", "A1 A1"},
                              {"C3 61 61", "A1 A1 61 61"},
                              {"E4 B8 61", "A1 A1 61"}}) {
    EXPECT_EQ(from(U_UTF8_CE, U_EUCKR_CE, hex(each.text)),
              (Outcome{.status = nlsSubstituted, .bytes = hex(each.converted)}))
        << each.text;
  }
}

// A lead byte promises its sequence, whatever the bytes that are there.
TEST(FromUnicode, Utf8ThatEndsEarly) {
  for (const char* text : {"C3", "E4", "E4 B8", "E4 61", "F0 9F 98", "F8 88 80 80", "FC 84 80 80 80", "FE"}) {
    EXPECT_EQ(from(U_UTF8_CE, U_EUCKR_CE, hex(text)), (Outcome{.status = nlsSubstituted})) << text;
    TranscodeProgress progress{};
    const Outcome held = resume(Pipeline(U_UTF8_CE, U_EUCKR_CE), hex(text), 8, progress);
    EXPECT_EQ(held.status, nlsIncompleteInput) << text;
    EXPECT_EQ(held.held, hex(text));
  }
}

TEST(FromUnicode, OddEnds) {
  EXPECT_EQ(from(U_L_UNICODE_CE, U_EUCKR_CE, hex("61 00 62")), (Outcome{.status = nlsSubstituted, .bytes = hex("61")}));
  EXPECT_EQ(from(U_L_UCS4_CE, U_EUCKR_CE, hex("61 00 00 00 62 00 00")),
            (Outcome{.status = nlsSubstituted, .bytes = hex("61")}));
  TranscodeProgress progress{};
  EXPECT_EQ(
      resume(Pipeline(U_B_UCS4_CE, U_EUCKR_CE), hex("00 00 00 61 00 00"), 8, progress),
      (Outcome{
          .status = nlsIncompleteInput, .bytes = hex("61"), .consumed = 6, .pending = true, .held = hex("00 00")}));
  EXPECT_EQ(resume(Pipeline(U_B_UCS4_CE, U_EUCKR_CE), hex("00 62"), 8, progress),
            (Outcome{.bytes = hex("62"), .consumed = 2}));
}

TEST(FromUnicode, MissingRoomOutweighsAReplacementOnlyWithARecord) {
  const Pipeline pipeline(U_L_UNICODE_CE, U_EUCKR_CE);
  const Bytes text = utf16(U"\uFFFDab");
  EXPECT_EQ(run(pipeline, text, 3), (Outcome{.status = nlsSubstituted, .bytes = hex("A1 A1 61")}));
  TranscodeProgress progress{};
  EXPECT_EQ(resume(pipeline, text, 3, progress),
            (Outcome{.status = nlsOutputTruncated, .bytes = hex("A1 A1 61"), .consumed = 4, .substituted = true}));
  EXPECT_EQ(run(pipeline, utf16(U"ab"), 1), (Outcome{.status = nlsOutputTruncated, .bytes = hex("61")}));
}

TEST(FromUnicode, DroppedBlanks) {
  for (const CEI source : unicodeForms) {
    SCOPED_TRACE(source);
    const auto text = [source](std::u32string_view of) {
      if (source == U_UTF8_CE) return utf8(of);
      if (source == U_UTFE_CE) return run(Pipeline(U_UTF8_CE, U_UTFE_CE), utf8(of), 64).bytes;
      const bool big = source == U_B_UNICODE_CE || source == U_B_UCS4_CE;
      return row(source).encodingClass == NLS_CLASS_UTF16 ? utf16(of, big) : utf32(of, big);
    };
    EXPECT_EQ(from(source, U_EUCKR_CE, text(U"ab  "), 2, &dropBlanks), (Outcome{.bytes = hex("61 62")}));
    EXPECT_EQ(from(source, U_EUCKR_CE, text(U"ab  "), 2).status, nlsOutputTruncated);
    EXPECT_EQ(from(source, U_EUCKR_CE, text(U"ab @"), 2, &dropBlanks).status, nlsOutputTruncated);
    EXPECT_EQ(from(source, U_EUCKR_CE, text(U"ab\u3000"), 2, &dropBlanks).status, nlsOutputTruncated);
    EXPECT_EQ(run(Pipeline(source, U_EUCKR_CE, &dropBlanks), text(U"ab "), 2).status, 0u);
    // With a record they wipe a replacement's status, though not its bit.
    TranscodeProgress progress{};
    const Outcome outcome = resume(Pipeline(source, U_EUCKR_CE), text(U"\uFFFD "), 2, progress, &dropBlanks);
    EXPECT_EQ(outcome.status, 0u);
    EXPECT_TRUE(outcome.substituted);
    EXPECT_EQ(from(source, U_EUCKR_CE, text(U"\uFFFD "), 2, &dropBlanks).status, nlsSubstituted);
  }
}

// A rest that is no whole unit is no blank.
TEST(FromUnicode, HalfABlankStays) {
  const Bytes text = hex("61 00 20 00 20");
  EXPECT_EQ(from(U_L_UNICODE_CE, U_EUCKR_CE, text, 1, &dropBlanks).status, nlsOutputTruncated);
}

TEST(FromUnicode, OutputOfOneByteFromThePairs) {
  // U+00A5 has no code in Shift-JIS' set, U+0080 and U+00A0 are below and above the pairs' start.
  EXPECT_EQ(from(U_L_UNICODE_CE, U_SHIFTJIS_CE, utf16(U"\u0080\u00A0")).bytes[0], 0x80);
  EXPECT_EQ(from(U_L_UNICODE_CE, U_IBM939_CE, utf16(U"\u3042\u20ACa")), (Outcome{.bytes = hex("0E 44 81 0F E1 81")}));
}

TEST(FromUnicode, TheIdeographicSpaceIsTheRowsBlank) {
  for (const CEI cei : multiByteRows()) {
    StageRoute route(U_L_UNICODE_CE, cei);
    const MultiByteProfile& profile = row(cei).profile;
    const Outcome outcome = run(route, utf16(U"\u3000"), 64);
    EXPECT_EQ(outcome.status, 0u) << cei;
    if (cei == U_GB18030_CE) continue;
    Bytes expected(profile.shiftOut, profile.shiftOut + profile.shiftLength);
    expected.insert(expected.end(), profile.doubleBlank, profile.doubleBlank + 2);
    expected.insert(expected.end(), profile.shiftIn, profile.shiftIn + profile.shiftLength);
    EXPECT_EQ(outcome.bytes, expected) << cei;
  }
}

TEST(FromUnicode, HalfWidthKatakanaAreOfJapaneseRowsOnly) {
  for (const CEI cei : multiByteRows()) {
    if (cei == U_GB18030_CE) continue;
    StageRoute route(U_L_UNICODE_CE, cei);
    const bool japanese = row(cei).baseCei == U_SHIFTJIS_CE;
    EXPECT_EQ(route->source.kanaPairs != nullptr, japanese) << cei;
    for (const char32_t kana : {U'\uFF61', U'\uFF71', U'\uFF9F'}) {
      EXPECT_EQ(run(route, utf16({&kana, 1}), 64).status, japanese ? 0u : NlsStatus{nlsSubstituted}) << cei;
    }
  }
}

}  // namespace
}  // namespace transcode_test
