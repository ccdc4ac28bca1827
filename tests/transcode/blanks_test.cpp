// Blanks that don't fit: dropped without a status where the call or the pipeline allows it.
#include <algorithm>

#include "reference/reference.h"

namespace transcode_test {

namespace {

TEST(Blanks, DecodingUtf8) {
  const Pipeline pipeline(U_UTF8_CE, U_L_UNICODE_CE);
  EXPECT_EQ(run(pipeline, utf8(U"ab    "), 4, &dropBlanks), (Outcome{.status = 0, .bytes = utf16(U"ab")}));
  EXPECT_EQ(run(pipeline, utf8(U"ab    "), 4), (Outcome{.status = nlsOutputTruncated, .bytes = utf16(U"ab")}));
  TranscodeProgress progress{};
  EXPECT_EQ(resume(pipeline, utf8(U"ab    "), 4, progress, &dropBlanks),
            (Outcome{.status = 0, .bytes = utf16(U"ab"), .consumed = 2}));
}

TEST(Blanks, EveryDirectPairAtEveryCapacity) {
  const std::u32string_view texts[] = {U"ab    ", U"ab  c ", U"ab\u2000\u2000", U"      ", U"\u00E9 \U0001F600  ",
                                       U"ab\t "};
  for (const TextForm& source : textForms) {
    for (const TextForm& target : textForms) {
      if (!isDirect(source, target)) continue;
      const Pipeline pipeline(source.cei, target.cei);
      const Pipeline lenient(source.cei, target.cei, &dropBlanks);
      for (const std::u32string_view text : texts) {
        const Bytes input = textIn(source, text);
        for (size_t length = 0; length <= input.size(); ++length) {
          const Span piece = Span(input).first(length);
          for (size_t capacity = 0; capacity <= 28; ++capacity) {
            const Outcome wanted = expected(source, target, piece, capacity, false, true);
            ASSERT_EQ(run(pipeline, piece, capacity, &dropBlanks), wanted)
                << source.cei << " to " << target.cei << ", room " << capacity << ", input " << test::toHex(piece);
            ASSERT_EQ(run(lenient, piece, capacity), wanted);
            TranscodeProgress progress{};
            ASSERT_EQ(resume(lenient, piece, capacity, progress),
                      expected(source, target, piece, capacity, true, true));
          }
        }
      }
    }
  }
}

TEST(Blanks, OnlyTheFirstWordOfAPipelinesOptionsIsTaken) {
  const TranscodeOptions options{{NLS_ALLOW_BLANK_TRUNCATION, 1, 2, 3}};
  const Pipeline pipeline(U_UTF8_CE, U_L_UNICODE_CE, &options);
  EXPECT_EQ(pipeline->options.words[0], NLS_ALLOW_BLANK_TRUNCATION);
  for (int i = 1; i < 4; ++i) EXPECT_EQ(pipeline->options.words[i], 0u);
  EXPECT_EQ(pipeline->source.options, &pipeline->options);
  EXPECT_EQ(pipeline->target.options, &pipeline->options);
}

TEST(Blanks, NoUnreadInputNoRule) {
  // Too small for anything: the input isn't looked at, blank or not.
  EXPECT_EQ(run(Pipeline(U_UTF8_CE, U_L_UNICODE_CE), utf8(U"  "), 1, &dropBlanks).status, nlsOutputTruncated);
  // The whole input is read by the replaced pair: nothing remains.
  EXPECT_EQ(run(Pipeline(U_UTF8_CE, U_L_UNICODE_CE), utf8(U"\U0001F600 "), 2, &dropBlanks).status, nlsSubstituted);
}

TEST(Blanks, CopiesCompareByTheWidthOfTheSource) {
  const Pipeline bytes(U_WLATIN1_CE, U_LATIN1_CE);
  EXPECT_EQ(plain(bytes, hex("61 20 20"), 1, &dropBlanks).status, 0u);
  EXPECT_EQ(plain(bytes, hex("61 20 40"), 1, &dropBlanks).status, nlsOutputTruncated);
  EXPECT_EQ(plain(bytes, hex("61 20 20"), 1).status, nlsOutputTruncated);

  const Pipeline ebcdic(U_EBCDIC1047_CE, U_OPEN_ED1047_CE);
  EXPECT_EQ(plain(ebcdic, hex("81 40 40"), 1, &dropBlanks).status, 0u);
  EXPECT_EQ(plain(ebcdic, hex("81 20 20"), 1, &dropBlanks).status, nlsOutputTruncated);

  const Pipeline little(U_L_UNICODE_CE, U_L_UNICODE_CE);
  const Pipeline big(U_B_UNICODE_CE, U_B_UNICODE_CE);
  EXPECT_EQ(plain(little, utf16(U"a  "), 2, &dropBlanks).status, 0u);
  EXPECT_EQ(plain(big, utf16(U"a  ", true), 2, &dropBlanks).status, 0u);
  // Units are counted from where the copy ended: from an odd place they aren't blanks.
  EXPECT_EQ(plain(little, utf16(U"a  "), 3, &dropBlanks).status, nlsOutputTruncated);
  EXPECT_EQ(plain(little, hex("61 00 20 00 20"), 2, &dropBlanks).status, nlsOutputTruncated);

  EXPECT_EQ(plain(Pipeline(U_L_UCS4_CE, U_L_UCS4_CE), utf32(U"a  "), 4, &dropBlanks).status, 0u);
  EXPECT_EQ(plain(Pipeline(U_B_UCS4_CE, U_B_UCS4_CE), utf32(U"a  ", true), 4, &dropBlanks).status, 0u);
  EXPECT_EQ(plain(Pipeline(U_B_UCS4_CE, U_B_UCS4_CE), utf32(U"a b", true), 4, &dropBlanks).status, nlsOutputTruncated);
}

TEST(Blanks, ChecksReadLittleEndianUnits) {
  EXPECT_EQ(run(Pipeline(U_L_UNICODE_CE, U_L_UNICODE_CE), utf16(U"a  "), 2, &dropBlanks).status, 0u);
  EXPECT_EQ(run(Pipeline(U_L_UNICODE_CE, U_L_UNICODE_CE), utf16(U"a b"), 2, &dropBlanks).status, nlsOutputTruncated);
  EXPECT_EQ(run(Pipeline(U_B_UNICODE_CE, U_B_UNICODE_CE), utf16(U"a  ", true), 2, &dropBlanks).status,
            nlsOutputTruncated);
  EXPECT_EQ(run(Pipeline(U_L_UCS4_CE, U_L_UCS4_CE), utf32(U"a  "), 4, &dropBlanks).status, 0u);
  EXPECT_EQ(run(Pipeline(U_B_UCS4_CE, U_B_UCS4_CE), utf32(U"a  ", true), 4, &dropBlanks).status, nlsOutputTruncated);
}

TEST(Blanks, SwapsKnowTheBlankOfTheirSource) {
  for (const bool big : {false, true}) {
    const Pipeline narrow(big ? U_B_UNICODE_CE : U_L_UNICODE_CE, big ? U_L_UNICODE_CE : U_B_UNICODE_CE);
    EXPECT_EQ(run(narrow, utf16(U"a  ", big), 2, &dropBlanks), (Outcome{.status = 0, .bytes = utf16(U"a", !big)}));
    EXPECT_EQ(run(narrow, utf16(U"a  ", !big), 2, &dropBlanks).status, nlsOutputTruncated);
    EXPECT_EQ(run(narrow, utf16(U"a  ", big), 2).status, nlsOutputTruncated);
    const Pipeline wide(big ? U_B_UCS4_CE : U_L_UCS4_CE, big ? U_L_UCS4_CE : U_B_UCS4_CE);
    EXPECT_EQ(run(wide, utf32(U"a  ", big), 4, &dropBlanks), (Outcome{.status = 0, .bytes = utf32(U"a", !big)}));
    EXPECT_EQ(run(wide, utf32(U"a b", big), 4, &dropBlanks).status, nlsOutputTruncated);
  }
}

// Blanks that the call before left behind are dropped with those of the input; where they may not be, they are kept.
TEST(Blanks, HeldBlanksAreDroppedWithTheRest) {
  const TextForm utf16le{U_L_UNICODE_CE, Form::utf16, false};
  const TextForm utf16be{U_B_UNICODE_CE, Form::utf16, true};
  const TextForm utf32le{U_L_UCS4_CE, Form::utf32, false};
  const TextForm utf32be{U_B_UCS4_CE, Form::utf32, true};
  const TextForm eight{U_UTF8_CE, Form::utf8, false};
  for (const auto& [source, target] : {std::pair{utf16le, eight},
                                       {utf16be, eight},
                                       {utf32le, eight},
                                       {utf32be, eight},
                                       {eight, utf16le},
                                       {utf16le, utf32be},
                                       {utf32be, utf16le},
                                       {utf16le, utf16le},
                                       {utf32le, utf32le},
                                       {utf32le, utf32be},
                                       {eight, eight}}) {
    SCOPED_TRACE(testing::Message() << source.cei << " to " << target.cei);
    const Pipeline pipeline(source.cei, target.cei);
    const Bytes held = textIn(source, U"a ");
    TranscodeProgress before{};
    before.pending = 1;
    before.heldCount = static_cast<uint32_t>(held.size());
    std::copy(held.begin(), held.end(), before.held);
    const Bytes one = textIn(target, U"a");
    TranscodeProgress progress = before;
    EXPECT_EQ(resume(pipeline, textIn(source, U" "), one.size(), progress, &dropBlanks),
              (Outcome{.status = 0, .bytes = one}));
    EXPECT_EQ(progress.heldCount, 0u);
    progress = before;
    EXPECT_EQ(resume(pipeline, textIn(source, U" "), one.size(), progress),
              (Outcome{.status = nlsOutputTruncated, .bytes = one, .pending = true, .held = textIn(source, U" ")}));
  }
}

TEST(Blanks, TwoStages) {
  const Pipeline pipeline(U_UTF8_CE, U_UTFE_CE);
  EXPECT_EQ(run(pipeline, utf8(U"ab   "), 2, &dropBlanks).status, 0u);
  EXPECT_EQ(run(pipeline, utf8(U"ab  c"), 2, &dropBlanks).status, nlsOutputTruncated);
  TranscodeProgress progress{};
  const Outcome outcome = resume(pipeline, utf8(U"ab   "), 2, progress, &dropBlanks);
  EXPECT_EQ(outcome.status, 0u);
  EXPECT_EQ(outcome.consumed, 2u);
}

}  // namespace

}  // namespace transcode_test
