// Single byte to the Unicode forms.
#include <algorithm>
#include <cstring>

#include "modules/qznlssb/route.h"

namespace test {
namespace {

using ByteToUnicode = SingleByteTest;
constexpr CEI unicodeTargets[] = {U_UTF8_CE, U_L_UNICODE_CE, U_B_UNICODE_CE, U_L_UCS4_CE, U_B_UCS4_CE, U_UTFE_CE};

TEST_F(ByteToUnicode, LatinHasTheEuroSign) {
  const Bytes euro = fromHex("80");
  EXPECT_EQ(Route(nls, U_LATIN1_CE, U_L_UNICODE_CE).transcode(euro).output, fromHex("AC 20"));
  EXPECT_EQ(Route(nls, U_LATIN1_CE, U_B_UNICODE_CE).transcode(euro).output, fromHex("20 AC"));
  EXPECT_EQ(Route(nls, U_LATIN1_CE, U_L_UCS4_CE).transcode(euro).output, fromHex("AC 20 00 00"));
  EXPECT_EQ(Route(nls, U_LATIN1_CE, U_B_UCS4_CE).transcode(euro).output, fromHex("00 00 20 AC"));
  EXPECT_EQ(Route(nls, U_LATIN1_CE, U_UTF8_CE).transcode(euro).output, fromHex("E2 82 AC"));
}

TEST_F(ByteToUnicode, UtfEbcdic) {
  Route route(nls, U_WLATIN1_CE, U_UTFE_CE);
  EXPECT_EQ(route.transcode(bytesOf("A")).output, fromHex("C1"));
  EXPECT_EQ(route.transcode(fromHex("A0")).output, fromHex("80 41"));
}

// Bytes without a meaning come out as U+FFFD, and no one hears of it.
TEST_F(ByteToUnicode, UndefinedBytesAreSilent) {
  for (const CEI target : unicodeTargets) {
    Route route(nls, U_ASCII_CE, target);
    TranscodeProgress progress{};
    EXPECT_EQ(route.resume(fromHex("A0 FF"), progress).status, 0u) << target;
    EXPECT_EQ(progress.flags, 0u);
  }
  EXPECT_EQ(Route(nls, U_ASCII_CE, U_L_UNICODE_CE).transcode(fromHex("A0 80")).output, fromHex("FD FF 80 00"));
  EXPECT_EQ(Route(nls, U_ASCII_CE, U_UTF8_CE).transcode(fromHex("A0")).output, fromHex("EF BF BD"));
}

// The bit that tells a stage of its input's byte order means nothing here, and reaches no inner stage.
TEST_F(ByteToUnicode, SwappedInputOfTheCallerIsIgnored) {
  constexpr TranscodeOptions swappedInput{{NLS_SWAPPED_INPUT, 0, 0, 0}};
  for (const CEI target : unicodeTargets) {
    Route route(nls, U_WLATIN1_CE, target);
    const Outcome outcome = route.transcode(bytesOf("abc"), 64, &swappedInput);
    EXPECT_EQ(outcome.status, 0u) << target;
    EXPECT_EQ(outcome.output, route.transcode(bytesOf("abc")).output) << target;
  }
}

TEST_F(ByteToUnicode, EmptyInput) {
  for (const CEI target : unicodeTargets) {
    Route route(nls, U_WLATIN1_CE, target);
    uint32_t length = 7;
    TranscodeProgress progress{};
    progress.consumed = 7;
    progress.flags = NLS_PROGRESS_SUBSTITUTED;
    TranscodingPipeline* pipeline = &route.pipeline;
    EXPECT_EQ(pipeline->transcodeResumable(pipeline, nullptr, 0, nullptr, 0, &length, &progress, nullptr), 0u);
    EXPECT_EQ(length, 0u);
    EXPECT_EQ(progress.consumed, 0u);
    EXPECT_EQ(progress.flags, 0u);
  }
}

TEST_F(ByteToUnicode, OutputBelowOneUnitIsRefused) {
  EXPECT_EQ(Route(nls, U_WLATIN1_CE, U_L_UNICODE_CE).transcode(bytesOf(" "), 1, &dropBlanks).status,
            nlsOutputTruncated);
  EXPECT_EQ(Route(nls, U_WLATIN1_CE, U_L_UCS4_CE).transcode(bytesOf(" "), 3, &dropBlanks).status, nlsOutputTruncated);
  EXPECT_EQ(Route(nls, U_WLATIN1_CE, U_UTFE_CE).transcode(bytesOf(" "), 0, &dropBlanks).status, nlsOutputTruncated);
  // UTF-8 refuses nothing at once: blanks may be dropped to the last.
  EXPECT_EQ(Route(nls, U_WLATIN1_CE, U_UTF8_CE).transcode(bytesOf(" "), 0, &dropBlanks).status, 0u);
  EXPECT_EQ(Route(nls, U_WLATIN1_CE, U_UTF8_CE).transcode(bytesOf(" "), 0).status, nlsOutputTruncated);
}

TEST_F(ByteToUnicode, ShortUtf16) {
  Route route(nls, U_ASCII_CE, U_L_UNICODE_CE);
  const Bytes two = utf16(u"ab");
  const Outcome cut = route.transcode(bytesOf("abc"), 4);
  EXPECT_EQ(cut.status, nlsOutputTruncated);
  EXPECT_EQ(cut.output, two);
  const Outcome dropped = route.transcode(bytesOf("ab "), 4, &dropBlanks);
  EXPECT_EQ(dropped.status, 0u);
  EXPECT_EQ(dropped.output, two);
  EXPECT_EQ(route.transcode(bytesOf("ab "), 4).status, nlsOutputTruncated);
  // An odd size is cut to even; the blank behind it is then no whole unit.
  const Outcome odd = route.transcode(bytesOf("ab "), 5, &dropBlanks);
  EXPECT_EQ(odd.status, nlsOutputTruncated);
  EXPECT_EQ(odd.output, two);
}

TEST_F(ByteToUnicode, BlanksAreJudgedByTheirMeaning) {
  const Bytes text = fromHex("81 40 40");
  for (const CEI target : unicodeTargets) {
    Route route(nls, U_EBCDIC1047_CE, target);
    const Bytes one = Route(nls, U_EBCDIC1047_CE, target).transcode(fromHex("81")).output;
    const auto size = static_cast<uint32_t>(one.size());
    const Outcome outcome = route.transcode(text, size, &dropBlanks);
    EXPECT_EQ(outcome.status, 0u) << target;
    EXPECT_EQ(outcome.output, one) << target;
    EXPECT_EQ(route.transcode(text, size).status, nlsOutputTruncated) << target;
    EXPECT_EQ(route.transcode(fromHex("81 40 20"), size, &dropBlanks).status, nlsOutputTruncated) << target;
    route.pipeline.options.words[0] = NLS_ALLOW_BLANK_TRUNCATION;
    EXPECT_EQ(route.transcode(text, size).status, 0u) << target;
  }
}

TEST_F(ByteToUnicode, ConsumedCountsBytes) {
  for (const CEI target : unicodeTargets) {
    Route route(nls, U_ASCII_CE, target);
    const Bytes whole = route.transcode(bytesOf("abcdef")).output;
    TranscodeProgress progress{};
    const Outcome outcome = route.resume(bytesOf("abcdef"), static_cast<uint32_t>(whole.size() / 2), progress);
    EXPECT_EQ(outcome.status, nlsOutputTruncated) << target;
    EXPECT_EQ(progress.consumed, 3u) << target;
    EXPECT_EQ(outcome.output, Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(whole.size() / 2)));
  }
}

TEST_F(ByteToUnicode, NoPartOfACharacter) {
  Route route(nls, U_WLATIN1_CE, U_UTF8_CE);
  const Outcome one = route.transcode(fromHex("80"), 1);
  EXPECT_EQ(one.status, nlsOutputTruncated);
  EXPECT_TRUE(one.output.empty());
  TranscodeProgress progress{};
  const Outcome two = route.resume(fromHex("41 E9 42"), 2, progress);
  EXPECT_EQ(two.status, nlsOutputTruncated);
  EXPECT_EQ(two.output, bytesOf("A"));
  EXPECT_EQ(progress.consumed, 1u);
}

// Bytes that another conversion left in the record belong to no single-byte text.
TEST_F(ByteToUnicode, StaleHeldBytesAreIgnored) {
  for (const CEI target : unicodeTargets) {
    Route route(nls, U_WLATIN1_CE, target);
    TranscodeProgress progress{};
    progress.pending = 1;
    progress.heldCount = 1;
    progress.held[0] = 0x41;
    EXPECT_EQ(route.resume(bytesOf("xyz"), progress).output, route.transcode(bytesOf("xyz")).output) << target;
    EXPECT_EQ(progress.consumed, 3u) << target;
  }
}

TEST_F(ByteToUnicode, OptionalArgumentsMayBeNull) {
  for (const CEI target : unicodeTargets) {
    Route route(nls, U_WLATIN1_CE, target);
    const Bytes wanted = route.transcode(bytesOf("abc")).output;
    Bytes output(wanted.size());
    TranscodingPipeline* pipeline = &route.pipeline;
    EXPECT_EQ(
        pipeline->transcode(pipeline, "abc", 3, output.data(), static_cast<uint32_t>(output.size()), nullptr, nullptr),
        0u);
    EXPECT_EQ(output, wanted) << target;
  }
}

// "Any other" encoding of the UTF-8 class than UTF-EBCDIC is written as UTF-8.
TEST_F(ByteToUnicode, OtherRowsOfTheUtf8Class) {
  EncodingDescriptor other = row(U_UTF8_CE);
  other.cei = 23;
  Route route(nls, row(U_WLATIN1_CE), other);
  EXPECT_EQ(route.transcode(fromHex("41 E9 80")).output, fromHex("41 C3 A9 E2 82 AC"));
}

TEST_F(ByteToUnicode, OverlapAtAnyDistance) {
  for (const CEI target : unicodeTargets) {
    Route route(nls, U_WLATIN1_CE, target);
    for (const uint32_t size : {30u, 512u, 513u, 2049u}) {
      Bytes text;
      for (uint32_t i = 0; i < size; ++i) text.push_back(static_cast<uint8_t>(0x20 + i % 0xDF));
      Bytes wanted(size * 4);
      uint32_t length = 0;
      TranscodingPipeline* pipeline = &route.pipeline;
      pipeline->transcode(pipeline, text.data(), size, wanted.data(), size * 4, &length, nullptr);
      wanted.resize(length);
      for (const int distance : {-17, -2, -1, 0, 1, 3, 16}) {
        Bytes memory(size * 5 + 64);
        uint8_t* in = memory.data() + 32;
        uint8_t* out = in + distance;
        std::ranges::copy(text, in);
        uint32_t written = 0;
        TranscodeProgress progress{};
        EXPECT_EQ(pipeline->transcodeResumable(pipeline, in, size, out, size * 4, &written, &progress, nullptr), 0u);
        EXPECT_EQ(Bytes(out, out + written), wanted) << "target " << target << ", distance " << distance;
        EXPECT_EQ(progress.consumed, size);
      }
    }
  }
}

}  // namespace
}  // namespace test
