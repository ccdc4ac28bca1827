// Single conversions whose result is known by heart.
#include "transcode/harness.h"

namespace transcode_test {

namespace {

TEST(Examples, EuroSignFromUtf8) {
  const Pipeline pipeline(U_UTF8_CE, U_L_UNICODE_CE);
  EXPECT_EQ(run(pipeline, hex("E2 82 AC"), 8), (Outcome{.status = 0, .bytes = hex("AC 20")}));

  TranscodeProgress progress{};
  const Outcome first = resume(pipeline, hex("E2 82"), 8, progress);
  EXPECT_EQ(first, (Outcome{.status = nlsIncompleteInput, .consumed = 2, .pending = true, .held = hex("E2 82")}));
  EXPECT_EQ(progress.heldCount, 2u);
  EXPECT_EQ(resume(pipeline, hex("AC"), 8, progress), (Outcome{.status = 0, .bytes = hex("AC 20"), .consumed = 1}));
}

TEST(Examples, CutUtf8WithoutProgressIsReplacedByNothing) {
  const Pipeline pipeline(U_UTF8_CE, U_L_UNICODE_CE);
  EXPECT_EQ(run(pipeline, hex("E2 82"), 8), (Outcome{.status = nlsSubstituted}));
  EXPECT_EQ(run(pipeline, hex("41 E2 82"), 8), (Outcome{.status = nlsSubstituted, .bytes = hex("41 00")}));
}

TEST(Examples, IncompleteIsDecidedByTheLeadAlone) {
  const Pipeline pipeline(U_UTF8_CE, U_L_UNICODE_CE);
  TranscodeProgress progress{};
  const Outcome cut = resume(pipeline, hex("E2 28"), 8, progress);
  EXPECT_EQ(cut, (Outcome{.status = nlsIncompleteInput, .consumed = 2, .pending = true, .held = hex("E2 28")}));
}

TEST(Examples, BadUtf8Sequences) {
  const Pipeline pipeline(U_UTF8_CE, U_L_UNICODE_CE);
  for (const char* bad : {"C0 80", "ED A0 80", "F8 88 80 80 80", "F4 90 80 80", "FC 84 80 80 80 80"}) {
    EXPECT_EQ(run(pipeline, hex(bad), 16), (Outcome{.status = nlsSubstituted, .bytes = hex("FD FF")})) << bad;
  }
  EXPECT_EQ(run(pipeline, hex("E2 28 A1"), 16), (Outcome{.status = nlsSubstituted, .bytes = hex("FD FF 28 00 FD FF")}));
}

TEST(Examples, UnboundedUtf8ValueReachesUtf32) {
  EXPECT_EQ(run(Pipeline(U_UTF8_CE, U_L_UCS4_CE), hex("F4 90 80 80"), 16),
            (Outcome{.status = 0, .bytes = hex("00 00 11 00")}));
}

TEST(Examples, TooSmallOutputs) {
  EXPECT_EQ(run(Pipeline(U_UTF8_CE, U_L_UNICODE_CE), hex("41"), 1), (Outcome{.status = nlsOutputTruncated}));
  TranscodeProgress progress{};
  EXPECT_EQ(resume(Pipeline(U_L_UNICODE_CE, U_UTF8_CE), hex("41 00 E9 00"), 2, progress),
            (Outcome{.status = nlsOutputTruncated, .bytes = hex("41"), .consumed = 2}));
}

TEST(Examples, LoneSurrogates) {
  EXPECT_EQ(run(Pipeline(U_L_UNICODE_CE, U_L_UCS4_CE), hex("00 D8 41 00"), 16),
            (Outcome{.status = nlsSubstituted, .bytes = hex("FD FF 00 00")}));
  EXPECT_EQ(run(Pipeline(U_L_UNICODE_CE, U_L_UCS4_CE), hex("00 DC 41 00"), 16),
            (Outcome{.status = nlsSubstituted, .bytes = hex("FD FF 00 00 41 00 00 00")}));
  EXPECT_EQ(run(Pipeline(U_L_UNICODE_CE, U_UTF8_CE), hex("00 DC"), 16),
            (Outcome{.status = 0, .bytes = hex("ED B0 80")}));
}

TEST(Examples, SecondUnitOfAPairIsReadLittleEndian) {
  // U+1F600 in big-endian order: the low unit DE00 reads as 00DE.
  EXPECT_EQ(run(Pipeline(U_B_UNICODE_CE, U_UTF8_CE), hex("D8 3D DE 00"), 16),
            (Outcome{.status = 0, .bytes = utf8(U"\U0001F4DE")}));
}

TEST(Examples, Utf32OutsideUnicode) {
  EXPECT_EQ(run(Pipeline(U_L_UCS4_CE, U_L_UNICODE_CE), hex("00 00 11 00"), 16),
            (Outcome{.status = nlsSubstituted, .bytes = hex("FD FF")}));
  EXPECT_EQ(run(Pipeline(U_L_UCS4_CE, U_UTF8_CE), hex("00 00 11 00"), 16),
            (Outcome{.status = 0, .bytes = hex("F4 90 80 80")}));
  EXPECT_EQ(run(Pipeline(U_L_UCS4_CE, U_UTF8_CE), hex("FF FF FF 7F"), 16),
            (Outcome{.status = 0, .bytes = hex("FD BF BF BF BF BF")}));
  EXPECT_EQ(run(Pipeline(U_L_UCS4_CE, U_UTF8_CE), hex("00 00 00 80"), 16),
            (Outcome{.status = nlsSubstituted, .bytes = hex("EF BF BD")}));
}

TEST(Examples, ReplacedValueIsNotedAheadOfItsRoomTest) {
  const Pipeline pipeline(U_L_UCS4_CE, U_UTF8_CE);
  TranscodeProgress progress{};
  EXPECT_EQ(resume(pipeline, hex("00 00 00 80"), 2, progress),
            (Outcome{.status = nlsOutputTruncated, .substituted = true}));
  EXPECT_EQ(resume(pipeline, hex("41 00 00 00 00 00 00 80"), 1, progress),
            (Outcome{.status = nlsOutputTruncated, .bytes = hex("41"), .consumed = 4}));
}

TEST(Examples, Plane16ComesOutOfDecodersAsOneUnit) {
  EXPECT_EQ(run(Pipeline(U_UTF8_CE, U_L_UNICODE_CE), hex("F4 8F BF BF"), 8),
            (Outcome{.status = 0, .bytes = hex("FF FF")}));
  EXPECT_EQ(run(Pipeline(U_UTF8_CE, U_L_UNICODE_CE), utf8(U"\U000FFFFF"), 8),
            (Outcome{.status = 0, .bytes = utf16(U"\U000FFFFF")}));
  EXPECT_EQ(run(Pipeline(U_UTF8_CE, U_UTF8_CE), hex("F4 8F BF BF"), 8),
            (Outcome{.status = 0, .bytes = hex("EF BF BF")}));
  EXPECT_EQ(run(Pipeline(U_L_UCS4_CE, U_L_UNICODE_CE), utf32(U"\U0010FFFF"), 8),
            (Outcome{.status = 0, .bytes = utf16(U"\U0010FFFF")}));
  const Bytes ebcdic = run(Pipeline(U_L_UNICODE_CE, U_UTFE_CE), utf16(U"\U0010FFFF"), 8).bytes;
  EXPECT_EQ(ebcdic.size(), 5u);
  EXPECT_EQ(run(Pipeline(U_UTFE_CE, U_L_UNICODE_CE), ebcdic, 8), (Outcome{.status = 0, .bytes = hex("FF FF")}));
  EXPECT_EQ(run(Pipeline(U_UTFE_CE, U_L_UCS4_CE), ebcdic, 8), (Outcome{.status = 0, .bytes = utf32(U"\U0010FFFF")}));
}

TEST(Examples, PairAtTheLastUnitOfRoom) {
  // The decoder of UTF-8 and UTF-32 gives the two bytes to U+FFFD and ends; that of UTF-EBCDIC doesn't begin it.
  TranscodeProgress progress{};
  EXPECT_EQ(resume(Pipeline(U_UTF8_CE, U_L_UNICODE_CE), utf8(U"a\U0001F600b"), 4, progress),
            (Outcome{.status = nlsSubstituted, .bytes = hex("61 00 FD FF"), .consumed = 5, .substituted = true}));
  progress = {};
  EXPECT_EQ(resume(Pipeline(U_L_UCS4_CE, U_L_UNICODE_CE), utf32(U"a\U0001F600b"), 5, progress),
            (Outcome{.status = nlsSubstituted, .bytes = hex("61 00 FD FF"), .consumed = 8, .substituted = true}));
  progress = {};
  const Bytes ebcdic = run(Pipeline(U_L_UNICODE_CE, U_UTFE_CE), utf16(U"a\U0001F600b"), 16).bytes;
  EXPECT_EQ(resume(Pipeline(U_UTFE_CE, U_L_UNICODE_CE), ebcdic, 5, progress),
            (Outcome{.status = nlsOutputTruncated, .bytes = hex("61 00"), .consumed = 1}));
}

TEST(Examples, UtfEbcdic) {
  const Pipeline to(U_L_UNICODE_CE, U_UTFE_CE);
  const Pipeline from(U_UTFE_CE, U_L_UNICODE_CE);
  EXPECT_EQ(run(to, utf16(U"A"), 8), (Outcome{.status = 0, .bytes = hex("C1")}));
  EXPECT_EQ(run(to, utf16(U"\u00A0"), 8), (Outcome{.status = 0, .bytes = hex("80 41")}));
  const Outcome nextLine = run(to, utf16(U"\u0085"), 8);
  EXPECT_EQ(nextLine.bytes, hex("25"));
  EXPECT_EQ(run(from, nextLine.bytes, 8), (Outcome{.status = 0, .bytes = hex("85 00")}));
  // A two-byte sequence loses the bits of its lead.
  const Outcome acute = run(to, utf16(U"\u00E9"), 8);
  EXPECT_EQ(acute.bytes, hex("8B 4A"));
  EXPECT_EQ(run(from, acute.bytes, 8), (Outcome{.status = 0, .bytes = hex("09 00")}));
}

TEST(Examples, StrayByteOfUtfEbcdicGivesZeroWithoutStatus) {
  // 41 is the byte of I8 A0, a trailing byte.
  TranscodeProgress progress{};
  EXPECT_EQ(resume(Pipeline(U_UTFE_CE, U_L_UNICODE_CE), hex("41 C1 41"), 16, progress),
            (Outcome{.status = 0, .bytes = hex("00 00 41 00 00 00"), .consumed = 3}));
}

TEST(Examples, ShortCopy) {
  const Pipeline pipeline(U_WLATIN1_CE, U_LATIN1_CE);
  TranscodeProgress progress{};
  EXPECT_EQ(resume(pipeline, hex("01 02 80 04 05"), 3, progress),
            (Outcome{.status = nlsOutputTruncated, .bytes = hex("01 02 80"), .consumed = 3}));
}

TEST(Examples, EmptyInputTouchesNothing) {
  for (const CEI source : {U_UTF8_CE, U_L_UNICODE_CE, U_B_UNICODE_CE, U_L_UCS4_CE, U_B_UCS4_CE, U_UTFE_CE}) {
    for (const CEI target : {U_UTF8_CE, U_L_UNICODE_CE, U_B_UNICODE_CE, U_L_UCS4_CE, U_B_UCS4_CE, U_UTFE_CE}) {
      const Pipeline pipeline(source, target);
      for (const size_t capacity : {0u, 1u, 9u}) {
        EXPECT_EQ(plain(pipeline, {}, capacity), Outcome{});
        EXPECT_EQ(run(pipeline, {}, capacity), Outcome{});
      }
    }
  }
}

TEST(Examples, EveryOptionalArgumentMayBeNull) {
  const Bytes text = hex("61 E2 82");
  for (const CEI target : {U_UTF8_CE, U_L_UNICODE_CE, U_L_UCS4_CE, U_UTFE_CE}) {
    const Pipeline pipeline(U_UTF8_CE, target);
    uint8_t output[32];
    pipeline->transcode(pipeline, text.data(), 3, output, sizeof output, nullptr, nullptr);
    pipeline->transcodeResumable(pipeline, text.data(), 3, output, sizeof output, nullptr, nullptr, nullptr);
    EXPECT_EQ(pipeline->transcode(pipeline, nullptr, 0, nullptr, 0, nullptr, nullptr), 0u);
    EXPECT_EQ(pipeline->transcodeResumable(pipeline, nullptr, 0, nullptr, 0, nullptr, nullptr, nullptr), 0u);
  }
}

}  // namespace

}  // namespace transcode_test
