// Pairs that keep the form of the text: copies, checks, swaps, round trips.
#include "transcode/harness.h"

namespace transcode_test {

namespace {

TEST(Copy, PairsWithoutConversionCopyInBothRuns) {
  const Pipeline pipeline(U_WLATIN1_CE, U_LATIN1_CE);
  const Bytes text = hex("41 80 FF 00");
  EXPECT_EQ(plain(pipeline, text, 8), (Outcome{.status = 0, .bytes = text}));
  EXPECT_EQ(run(pipeline, text, 8), (Outcome{.status = 0, .bytes = text}));
  for (size_t capacity = 0; capacity < 4; ++capacity) {
    TranscodeProgress progress{};
    const Outcome part = resume(pipeline, text, capacity, progress);
    EXPECT_EQ(part.status, nlsOutputTruncated);
    EXPECT_EQ(part.consumed, capacity);
    EXPECT_EQ(part.bytes, Bytes(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(capacity)));
  }
}

TEST(Copy, LeavesHeldBytesAlone) {
  const Pipeline pipeline(U_WLATIN1_CE, U_LATIN1_CE);
  TranscodeProgress progress{};
  progress.flags = NLS_PROGRESS_SUBSTITUTED | NLS_PROGRESS_DOUBLE_MODE;
  progress.pending = 1;
  progress.heldCount = 1;
  progress.held[0] = 'h';
  EXPECT_EQ(resume(pipeline, hex("41"), 8, progress),
            (Outcome{.status = 0, .bytes = hex("41"), .consumed = 1, .pending = true, .held = hex("68")}));
  EXPECT_EQ(progress.flags, NLS_PROGRESS_DOUBLE_MODE);
}

// `transcode` copies what `transcodeResumable` looks at.
TEST(Copy, OnlyTheResumableRunChecks) {
  const Bytes bad = hex("41 80 E2 82");
  const Pipeline utf8Pair(U_UTF8_CE, U_UTF8_CE);
  EXPECT_EQ(plain(utf8Pair, bad, 16), (Outcome{.status = 0, .bytes = bad}));
  EXPECT_EQ(run(utf8Pair, bad, 16).bytes, hex("41 EF BF BD"));
  const Pipeline wide(U_L_UNICODE_CE, U_L_UNICODE_CE);
  EXPECT_EQ(plain(wide, hex("41 00 42"), 16), (Outcome{.status = 0, .bytes = hex("41 00 42")}));
  EXPECT_EQ(run(wide, hex("41 00 42"), 16), (Outcome{.status = nlsOutputTruncated, .bytes = hex("41 00")}));
  const Pipeline wider(U_B_UCS4_CE, U_B_UCS4_CE);
  EXPECT_EQ(plain(wider, hex("00 00 00 41 00"), 16).bytes, hex("00 00 00 41 00"));
  EXPECT_EQ(run(wider, hex("00 00 00 41 00"), 16).bytes, hex("00 00 00 41"));
}

TEST(Check16, WithoutProgress) {
  const Pipeline pipeline(U_L_UNICODE_CE, U_L_UNICODE_CE);
  // Lone surrogates pass.
  EXPECT_EQ(run(pipeline, hex("00 D8 00 DC D8 D8"), 6), (Outcome{.status = 0, .bytes = hex("00 D8 00 DC D8 D8")}));
  for (size_t capacity = 0; capacity < 6; ++capacity) {
    const Outcome part = run(pipeline, hex("41 00 42 00 43 00"), capacity);
    EXPECT_EQ(part.status, nlsOutputTruncated);
    EXPECT_EQ(part.bytes.size(), capacity / 2 * 2);
  }
}

TEST(Check16, OddEndIsHeld) {
  for (const CEI cei : {U_L_UNICODE_CE, U_B_UNICODE_CE}) {
    const Pipeline pipeline(cei, cei);
    TranscodeProgress progress{};
    EXPECT_EQ(
        resume(pipeline, hex("41 00 42"), 16, progress),
        (Outcome{
            .status = nlsIncompleteInput, .bytes = hex("41 00"), .consumed = 3, .pending = true, .held = hex("42")}));
    EXPECT_EQ(resume(pipeline, hex("00 43 00"), 16, progress),
              (Outcome{.status = 0, .bytes = hex("42 00 43 00"), .consumed = 3}));
    EXPECT_EQ(resume(pipeline, hex("44"), 16, progress),
              (Outcome{.status = nlsIncompleteInput, .consumed = 1, .pending = true, .held = hex("44")}));
  }
}

TEST(Check16, LastUnitIsTestedAsBigEndian) {
  TranscodeProgress progress{};
  EXPECT_EQ(
      resume(Pipeline(U_B_UNICODE_CE, U_B_UNICODE_CE), hex("00 41 D8 3D"), 16, progress),
      (Outcome{
          .status = nlsIncompleteInput, .bytes = hex("00 41"), .consumed = 4, .pending = true, .held = hex("D8 3D")}));
  // With the odd byte behind it: all three are held.
  progress = {};
  EXPECT_EQ(resume(Pipeline(U_B_UNICODE_CE, U_B_UNICODE_CE), hex("D8 3D DE"), 16, progress),
            (Outcome{.status = nlsIncompleteInput, .consumed = 3, .pending = true, .held = hex("D8 3D DE")}));
  // A split pair of little-endian text isn't seen, and U+3DD8 is taken for one.
  progress = {};
  EXPECT_EQ(resume(Pipeline(U_L_UNICODE_CE, U_L_UNICODE_CE), hex("3D D8"), 16, progress),
            (Outcome{.status = 0, .bytes = hex("3D D8"), .consumed = 2}));
  EXPECT_EQ(resume(Pipeline(U_L_UNICODE_CE, U_L_UNICODE_CE), hex("D8 3D"), 16, progress),
            (Outcome{.status = nlsIncompleteInput, .consumed = 2, .pending = true, .held = hex("D8 3D")}));
}

TEST(Check16, ShortOutputWithProgress) {
  const Pipeline pipeline(U_L_UNICODE_CE, U_L_UNICODE_CE);
  TranscodeProgress progress{};
  EXPECT_EQ(resume(pipeline, hex("41 00 42 00 43 00"), 2, progress),
            (Outcome{.status = nlsOutputTruncated, .bytes = hex("41 00"), .consumed = 2}));
  // One unit outside is a short output, one unit and a half are an incomplete end.
  EXPECT_EQ(resume(pipeline, hex("41 00 42 00"), 2, progress),
            (Outcome{.status = nlsOutputTruncated, .bytes = hex("41 00"), .consumed = 2}));
  EXPECT_EQ(resume(pipeline, hex("41 00 42 00 43"), 2, progress), (Outcome{.status = nlsIncompleteInput,
                                                                           .bytes = hex("41 00"),
                                                                           .consumed = 5,
                                                                           .pending = true,
                                                                           .held = hex("42 00 43")}));
  // Held bytes that find no room are held again.
  EXPECT_EQ(
      resume(pipeline, hex("00 44 00 45 00"), 2, progress),
      (Outcome{
          .status = nlsOutputTruncated, .bytes = hex("42 00"), .consumed = 0, .pending = true, .held = hex("43")}));
  EXPECT_EQ(resume(pipeline, hex("00 44 00 45 00"), 16, progress),
            (Outcome{.status = 0, .bytes = hex("43 00 44 00 45 00"), .consumed = 5}));
  // No room and no whole unit.
  EXPECT_EQ(resume(pipeline, hex("41"), 0, progress),
            (Outcome{.status = nlsIncompleteInput, .consumed = 1, .pending = true, .held = hex("41")}));
}

TEST(Check32, HoldsPartsOfUnits) {
  for (const CEI cei : {U_L_UCS4_CE, U_B_UCS4_CE}) {
    const Pipeline pipeline(cei, cei);
    const Bytes text = hex("41 00 00 00 00 D8 00 00 FF FF FF FF");
    EXPECT_EQ(run(pipeline, text, 12), (Outcome{.status = 0, .bytes = text}));
    for (size_t cut = 0; cut <= text.size(); ++cut) {
      const size_t lengths[] = {cut, 0};
      EXPECT_EQ(inPieces(pipeline, text, lengths), (Outcome{.status = 0, .bytes = text, .consumed = 12}));
    }
    TranscodeProgress progress{};
    EXPECT_EQ(resume(pipeline, text, 4, progress),
              (Outcome{.status = nlsOutputTruncated, .bytes = hex("41 00 00 00"), .consumed = 4}));
    EXPECT_EQ(resume(pipeline, Span(text).first(6), 7, progress), (Outcome{.status = nlsIncompleteInput,
                                                                           .bytes = hex("41 00 00 00"),
                                                                           .consumed = 6,
                                                                           .pending = true,
                                                                           .held = hex("00 D8")}));
    EXPECT_EQ(run(pipeline, Span(text).first(6), 7),
              (Outcome{.status = nlsOutputTruncated, .bytes = hex("41 00 00 00")}));
  }
}

TEST(Swap16, BothDirections) {
  for (const bool big : {false, true}) {
    const Pipeline pipeline(big ? U_B_UNICODE_CE : U_L_UNICODE_CE, big ? U_L_UNICODE_CE : U_B_UNICODE_CE);
    EXPECT_EQ(pipeline->source.swapOutput, 0);
    EXPECT_EQ(pipeline->source.swapInput, big ? 1 : 0);
    EXPECT_EQ(plain(pipeline, hex("12 34 D8 00"), 8), (Outcome{.status = 0, .bytes = hex("34 12 00 D8")}));
    for (size_t capacity = 0; capacity < 8; ++capacity) {
      TranscodeProgress progress{};
      const Outcome part = resume(pipeline, hex("12 34 56 78 9A"), capacity, progress);
      EXPECT_EQ(part.status, nlsOutputTruncated);
      EXPECT_EQ(part.consumed, std::min<size_t>(capacity, 4) / 2 * 2);
      EXPECT_EQ(part.bytes.size(), part.consumed);
      EXPECT_FALSE(part.pending);
    }
  }
}

TEST(Swap32, BothDirectionsWithHolding) {
  for (const bool big : {false, true}) {
    const Pipeline pipeline(big ? U_B_UCS4_CE : U_L_UCS4_CE, big ? U_L_UCS4_CE : U_B_UCS4_CE);
    const Bytes text = hex("12 34 56 78 9A BC DE F0");
    const Bytes turned = hex("78 56 34 12 F0 DE BC 9A");
    EXPECT_EQ(plain(pipeline, text, 8), (Outcome{.status = 0, .bytes = turned}));
    for (size_t cut = 0; cut <= text.size(); ++cut) {
      const size_t lengths[] = {cut, 0};
      EXPECT_EQ(inPieces(pipeline, text, lengths), (Outcome{.status = 0, .bytes = turned, .consumed = 8}));
    }
    EXPECT_EQ(run(pipeline, Span(text).first(7), 8).status, nlsOutputTruncated);
    EXPECT_EQ(run(pipeline, text, 7), (Outcome{.status = nlsOutputTruncated, .bytes = hex("78 56 34 12")}));
    TranscodeProgress progress{};
    EXPECT_EQ(resume(pipeline, Span(text).first(3), 8, progress).status, nlsIncompleteInput);
    EXPECT_EQ(resume(pipeline, Span(text).subspan(3), 3, progress),
              (Outcome{.status = nlsOutputTruncated, .pending = true, .held = hex("12 34 56")}));
    EXPECT_EQ(resume(pipeline, Span(text).subspan(3), 8, progress).bytes, turned);
  }
}

TEST(RoundTrip, NormalisesUtf8) {
  const Pipeline pipeline(U_UTF8_CE, U_UTF8_CE);
  const Bytes good = utf8(U"a\u00E9\u20AC\U0001F600");
  EXPECT_EQ(run(pipeline, good, 32), (Outcome{.status = 0, .bytes = good}));
  // Without a record a substitution by the first stage shows in the text only, with one in the status too.
  const Outcome silent = run(pipeline, hex("41 80 42"), 32);
  EXPECT_EQ(silent, (Outcome{.status = 0, .bytes = hex("41 EF BF BD 42")}));
  TranscodeProgress progress{};
  EXPECT_EQ(resume(pipeline, hex("41 80 42"), 32, progress),
            (Outcome{.status = nlsSubstituted, .bytes = hex("41 EF BF BD 42"), .consumed = 3, .substituted = true}));
}

TEST(RoundTrip, AsciiToUtf8IsARoundTripToo) {
  const Pipeline pipeline(U_ASCII_CE, U_UTF8_CE);
  EXPECT_EQ(plain(pipeline, hex("41 80"), 8).bytes, hex("41 80"));
  EXPECT_EQ(run(pipeline, hex("41 80"), 8).bytes, hex("41 EF BF BD"));
  // Any encoding: the intermediate text still has room for all of it.
  EXPECT_EQ(run(Pipeline(U_ANY_CE, U_UTF8_CE), Bytes(3000, 'a'), 3000),
            (Outcome{.status = 0, .bytes = Bytes(3000, 'a')}));
}

TEST(RoundTrip, UtfEbcdic) {
  const Pipeline pipeline(U_UTFE_CE, U_UTFE_CE);
  EXPECT_EQ(run(pipeline, hex("C1 C2 40"), 8), (Outcome{.status = 0, .bytes = hex("C1 C2 40")}));
}

TEST(Through, BetweenTheEightBitForms) {
  const std::u32string_view text = U"A\u0085\u20AC\U0001F600";
  const Bytes ebcdic = run(Pipeline(U_L_UNICODE_CE, U_UTFE_CE), utf16(text), 32).bytes;
  EXPECT_EQ(run(Pipeline(U_UTF8_CE, U_UTFE_CE), utf8(text), 32), (Outcome{.status = 0, .bytes = ebcdic}));
  EXPECT_EQ(run(Pipeline(U_UTFE_CE, U_UTF8_CE), ebcdic, 32), (Outcome{.status = 0, .bytes = utf8(text)}));
  EXPECT_EQ(plain(Pipeline(U_UTF8_CE, U_UTFE_CE), utf8(text), 32).bytes, ebcdic);
}

TEST(Through, CutsGiveTheWhole) {
  const std::u32string_view text = U"A\u0085\u20AC\U0001F600 z";
  const Bytes input = utf8(text);
  for (const CEI target : {U_UTF8_CE, U_UTFE_CE}) {
    const Pipeline pipeline(U_UTF8_CE, target);
    const Outcome whole = run(pipeline, input, 64);
    for (size_t cut = 0; cut <= input.size(); ++cut) {
      const size_t lengths[] = {cut, 0};
      const Outcome joined = inPieces(pipeline, input, lengths);
      EXPECT_EQ(joined.status, 0u);
      EXPECT_EQ(joined.bytes, whole.bytes) << "cut at " << cut;
    }
    EXPECT_EQ(inPieces(pipeline, input, std::vector<size_t>(input.size(), 1)).bytes, whole.bytes);
  }
}

TEST(Through, IncompleteEndIsHeld) {
  const Pipeline pipeline(U_UTF8_CE, U_UTF8_CE);
  for (const size_t capacity : {0u, 1u, 16u}) {
    TranscodeProgress progress{};
    EXPECT_EQ(resume(pipeline, hex("E2 82"), capacity, progress),
              (Outcome{.status = nlsIncompleteInput, .consumed = 2, .pending = true, .held = hex("E2 82")}));
  }
  TranscodeProgress progress{};
  EXPECT_EQ(
      resume(pipeline, hex("41 E2 82"), 16, progress),
      (Outcome{
          .status = nlsIncompleteInput, .bytes = hex("41"), .consumed = 3, .pending = true, .held = hex("E2 82")}));
  // No room for the held character: it stays held.
  EXPECT_EQ(resume(pipeline, hex("AC 42"), 2, progress),
            (Outcome{.status = nlsOutputTruncated, .pending = true, .held = hex("E2 82")}));
  EXPECT_EQ(resume(pipeline, hex("AC 42"), 16, progress),
            (Outcome{.status = 0, .bytes = hex("E2 82 AC 42"), .consumed = 2}));
}

// Stages beyond the first see no end of input, so that an empty call looks at the held bytes again.
TEST(Through, AnEmptyCallFindsTheHeldBytesIncomplete) {
  const Pipeline pipeline(U_UTF8_CE, U_UTFE_CE);
  TranscodeProgress progress{};
  resume(pipeline, hex("E2 82"), 16, progress);
  EXPECT_EQ(resume(pipeline, {}, 16, progress),
            (Outcome{.status = nlsIncompleteInput, .pending = true, .held = hex("E2 82")}));
}

// Half a surrogate pair at the end of the intermediate text can't wait for its other half: it is replaced by nothing.
TEST(Through, LoneSurrogateAtTheEndIsASubstitution) {
  const Bytes lone = run(Pipeline(U_L_UCS4_CE, U_UTFE_CE), hex("61 00 00 00 3D D8 00 00"), 64).bytes;
  const Pipeline pipeline(U_UTFE_CE, U_UTF8_CE);
  EXPECT_EQ(plain(pipeline, lone, 64), (Outcome{.status = nlsSubstituted, .bytes = hex("61")}));
  EXPECT_EQ(run(pipeline, lone, 64), (Outcome{.status = nlsSubstituted, .bytes = hex("61")}));
  const auto length = static_cast<uint32_t>(lone.size());
  TranscodeProgress progress{};
  EXPECT_EQ(resume(pipeline, lone, 64, progress),
            (Outcome{.status = nlsSubstituted, .bytes = hex("61"), .consumed = length, .substituted = true}));
  // Outweighed by an input that itself ends inside a character.
  Bytes cut = lone;
  const Bytes euro = run(Pipeline(U_L_UNICODE_CE, U_UTFE_CE), utf16(U"\u20AC"), 8).bytes;
  cut.push_back(euro[0]);
  EXPECT_EQ(resume(pipeline, cut, 64, progress), (Outcome{.status = nlsIncompleteInput,
                                                          .bytes = hex("61"),
                                                          .consumed = length + 1,
                                                          .substituted = true,
                                                          .pending = true,
                                                          .held = {euro[0]}}));
}

// U+10D800 is the unit D800 in the intermediate text and makes a pair with the unit behind it, so that the room can end
// inside the pair of the next character. That character is replaced, and what follows is still to come.
TEST(Through, RoomThatEndsInsideAPair) {
  const Pipeline pipeline(U_UTF8_CE, U_UTF8_CE);
  TranscodeProgress progress{};
  EXPECT_EQ(resume(pipeline, hex("F4 8D A0 80 F0 9F 98 80 62"), 4, progress),
            (Outcome{.status = nlsOutputTruncated, .bytes = hex("F0 90 80 BD"), .consumed = 8, .substituted = true}));
  EXPECT_EQ(resume(pipeline, hex("62"), 4, progress), (Outcome{.status = 0, .bytes = hex("62"), .consumed = 1}));
  EXPECT_EQ(resume(pipeline, hex("F4 8D A0 80 F0 9F 98 80"), 4, progress),
            (Outcome{.status = nlsSubstituted, .bytes = hex("F0 90 80 BD"), .consumed = 8, .substituted = true}));
}

TEST(Through, ShortOutputAheadOfAnIncompleteEnd) {
  const Pipeline pipeline(U_UTF8_CE, U_UTF8_CE);
  const Bytes text = hex("41 42 43 44 45 46 47 48 49 4A E2 82");
  for (const size_t capacity : {0u, 1u, 2u}) {
    TranscodeProgress progress{};
    EXPECT_EQ(resume(pipeline, text, capacity, progress),
              (Outcome{.status = nlsOutputTruncated,
                       .bytes = Bytes(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(capacity)),
                       .consumed = static_cast<uint32_t>(capacity)}));
  }
}

TEST(Through, ShortOutputTellsHowFarTheInputGot) {
  const std::u32string_view text = U"A\u0085\u20AC\U0001F600 z";
  const Bytes input = utf8(text);
  for (const CEI target : {U_UTF8_CE, U_UTFE_CE}) {
    const Pipeline pipeline(U_UTF8_CE, target);
    const Bytes whole = run(pipeline, input, 64).bytes;
    for (size_t capacity = 0; capacity < whole.size(); ++capacity) {
      TranscodeProgress progress{};
      const Outcome first = resume(pipeline, input, capacity, progress);
      ASSERT_EQ(first.status, nlsOutputTruncated) << capacity;
      ASSERT_FALSE(first.pending);
      const Outcome second = resume(pipeline, Span(input).subspan(first.consumed), 64, progress);
      Bytes joined = first.bytes;
      joined.insert(joined.end(), second.bytes.begin(), second.bytes.end());
      ASSERT_EQ(joined, whole) << capacity;
    }
  }
}

TEST(Through, LongTexts) {
  std::u32string text;
  for (char32_t c = 0x20; c < 0x2000; c += 3) text.push_back(c);
  const Bytes input = utf8(text);
  const Pipeline there(U_UTF8_CE, U_UTFE_CE);
  const Outcome ebcdic = run(there, input, 5 * text.size());
  EXPECT_EQ(ebcdic.status, 0u);
  EXPECT_EQ(ebcdic.bytes, run(Pipeline(U_L_UNICODE_CE, U_UTFE_CE), utf16(text), 5 * text.size()).bytes);
  TranscodeProgress progress{};
  const Outcome resumed = resume(there, input, 5 * text.size(), progress);
  EXPECT_EQ(resumed.bytes, ebcdic.bytes);
  EXPECT_EQ(resumed.consumed, input.size());
}

}  // namespace

}  // namespace transcode_test
