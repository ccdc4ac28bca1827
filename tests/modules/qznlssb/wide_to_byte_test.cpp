// UTF-16 and UTF-32 of both byte orders to single byte.
#include <algorithm>
#include <cstring>

#include "modules/qznlssb/oracle.h"
#include "modules/qznlssb/route.h"

namespace test {
namespace {

constexpr CEI wideSources[] = {U_L_UNICODE_CE, U_B_UNICODE_CE, U_L_UCS4_CE, U_B_UCS4_CE};

class WideToByte : public SingleByteTest {
 protected:
  Bytes textFor(CEI source, std::u32string_view text) const {
    Bytes bytes;
    for (const char32_t code : text) {
      const Bytes form = encode(row(source), code);
      bytes.insert(bytes.end(), form.begin(), form.end());
    }
    return bytes;
  }
};

TEST_F(WideToByte, Characters) {
  for (const CEI source : wideSources) {
    Route route(nls, source, U_WLATIN1_CE);
    TranscodeProgress progress{};
    progress.flags = 0xFFFFFFFF;
    const Bytes text = textFor(source, U"A\u00E9\u20AC\0z");
    const Bytes withNull = textFor(source, std::u32string_view(U"A\u00E9\u20AC\0z", 5));
    EXPECT_EQ(route.transcode(text).output, fromHex("41 E9 80")) << source;
    const Outcome outcome = route.resume(withNull, progress);
    EXPECT_EQ(outcome.status, 0u) << source;
    EXPECT_EQ(outcome.output, fromHex("41 E9 80 00 7A")) << source;
    EXPECT_EQ(progress.consumed, withNull.size()) << source;
    EXPECT_EQ(progress.flags, 0u) << "the word is replaced whole, " << source;
  }
}

TEST_F(WideToByte, WhatHasNoByteIsSubstituted) {
  for (const CEI source : wideSources) {
    Route route(nls, source, U_WLATIN1_CE);
    Route ebcdic(nls, source, U_EBCDIC037_CE);
    for (const char32_t code : {U'\u0416', U'\U0001F600', U'\U0010FFFF', U'\uFFFD'}) {
      TranscodeProgress progress{};
      progress.flags = 0xFFFFFFFF;
      const Bytes text = textFor(source, std::u32string(1, code));
      const Outcome outcome = route.resume(text, progress);
      EXPECT_EQ(outcome.status, nlsSubstituted) << source;
      EXPECT_EQ(outcome.output, fromHex("1A")) << source;
      EXPECT_EQ(progress.flags, NLS_PROGRESS_SUBSTITUTED) << source;
      EXPECT_EQ(progress.consumed, text.size()) << source;
      EXPECT_EQ(ebcdic.transcode(text).output, fromHex("3F")) << source;
    }
  }
}

TEST_F(WideToByte, LoneSurrogates) {
  for (const bool big : {false, true}) {
    Route route(nls, big ? U_B_UNICODE_CE : U_L_UNICODE_CE, U_WLATIN1_CE);
    const auto units = [big](std::initializer_list<char16_t> list) { return utf16(std::u16string(list), big); };
    EXPECT_EQ(route.transcode(units({0xD83D, u'A'})).output, fromHex("1A 41"));
    EXPECT_EQ(route.transcode(units({0xDE00, u'A'})).output, fromHex("1A 41"));
    EXPECT_EQ(route.transcode(units({0xDE00, 0xD83D})).output, fromHex("1A 1A"));
    EXPECT_EQ(route.transcode(units({0xD83D, 0xD83D, 0xDE00})).output, fromHex("1A 1A"));
    EXPECT_EQ(route.transcode(units({0xD83D})).output, fromHex("1A"));
  }
}

// A code page with bytes for surrogates would convert them one by one.
TEST_F(WideToByte, PageForSurrogates) {
  Route route(nls, U_L_UNICODE_CE, U_WLATIN1_CE);
  uint8_t page[256] = {};
  page[0x3D] = 'h';
  const uint8_t* pages[256] = {};
  pages[0xD8] = page;
  route.pipeline.source.fromUnicode = pages;
  EXPECT_EQ(route.transcode(utf16(std::u16string{0xD83D, 0xDE00})).output, fromHex("68 1A"));
  EXPECT_EQ(route.transcode(utf16(std::u16string{0xD83E, 0xDE00})).output, fromHex("1A 1A"));
  EXPECT_EQ(route.transcode(utf16(std::u16string{0xD93E, 0xDE00})).output, fromHex("1A"));
}

TEST_F(WideToByte, MalformedUtf32) {
  for (const bool big : {false, true}) {
    Route route(nls, big ? U_B_UCS4_CE : U_L_UCS4_CE, U_WLATIN1_CE);
    TranscodeProgress progress{};
    const Outcome outcome = route.resume(utf32(std::u32string({U'a', 0x110000, 0xD800, U'z'}), big), progress);
    EXPECT_EQ(outcome.status, nlsSubstituted);
    EXPECT_EQ(outcome.output, fromHex("61 1A 1A 7A"));
    EXPECT_EQ(progress.consumed, 16u);
  }
}

TEST_F(WideToByte, EmptyInputAndOutput) {
  for (const CEI source : wideSources) {
    Route route(nls, source, U_WLATIN1_CE);
    uint32_t length = 7;
    TranscodingPipeline* pipeline = &route.pipeline;
    EXPECT_EQ(pipeline->transcode(pipeline, nullptr, 0, nullptr, 0, &length, nullptr), 0u);
    EXPECT_EQ(length, 0u);
    EXPECT_EQ(route.transcode(textFor(source, U" "), 0, &dropBlanks).status, nlsOutputTruncated);
  }
}

TEST_F(WideToByte, ShortOutput) {
  for (const CEI source : wideSources) {
    Route route(nls, source, U_WLATIN1_CE);
    TranscodeProgress progress{};
    const Outcome outcome = route.resume(textFor(source, U"a\U0001F600bc"), 2, progress);
    EXPECT_EQ(outcome.status, nlsOutputTruncated) << source;
    EXPECT_EQ(outcome.output, fromHex("61 1A")) << source;
    EXPECT_EQ(progress.consumed, textFor(source, U"a\U0001F600").size()) << source;
    EXPECT_EQ(progress.flags, NLS_PROGRESS_SUBSTITUTED) << source;
  }
}

TEST_F(WideToByte, Blanks) {
  for (const CEI source : wideSources) {
    Route route(nls, source, U_WLATIN1_CE);
    EXPECT_EQ(route.transcode(textFor(source, U"ab   "), 2, &dropBlanks).status, 0u) << source;
    EXPECT_EQ(route.transcode(textFor(source, U"ab   "), 2).status, nlsOutputTruncated) << source;
    EXPECT_EQ(route.transcode(textFor(source, U"ab  c"), 2, &dropBlanks).status, nlsOutputTruncated) << source;
    EXPECT_EQ(route.transcode(textFor(source, U"abc  "), 2, &dropBlanks).status, nlsOutputTruncated) << source;
    // Dropping blanks wipes the report of a substitution, but not its flag.
    TranscodeProgress progress{};
    EXPECT_EQ(route.resume(textFor(source, U"a\u0416  "), 2, progress, &dropBlanks).status, 0u) << source;
    EXPECT_EQ(progress.flags, NLS_PROGRESS_SUBSTITUTED) << source;
    EXPECT_EQ(progress.consumed, textFor(source, U"ab").size()) << source;
    // Pairs make more units than bytes; what counts is what remains.
    EXPECT_EQ(route.transcode(textFor(source, U"\U0001F600x  "), 2, &dropBlanks).status, 0u) << source;
    EXPECT_EQ(route.transcode(textFor(source, U"\U0001F600x"), 2, &dropBlanks).status, nlsSubstituted) << source;
  }
}

TEST_F(WideToByte, HoldsAnIncompleteUnit) {
  for (const CEI source : wideSources) {
    Route route(nls, source, U_WLATIN1_CE);
    const Bytes text = textFor(source, U"a\u20ACz");
    const size_t unit = row(source).unitSize;
    for (size_t cut = 1; cut < text.size(); ++cut) {
      if (cut % unit == 0) continue;
      SCOPED_TRACE(testing::Message() << "source " << source << ", cut " << cut);
      TranscodeProgress progress{};
      const Outcome first = route.resume(std::span(text).first(cut), progress);
      EXPECT_EQ(first.status, nlsIncompleteInput);
      EXPECT_EQ(first.output.size(), cut / unit);
      EXPECT_EQ(progress.consumed, cut);
      EXPECT_EQ(progress.pending, 1);
      EXPECT_EQ(progress.heldCount, cut % unit);
      const Outcome second = route.resume(std::span(text).subspan(cut), progress);
      EXPECT_EQ(second.status, 0u);
      EXPECT_EQ(progress.consumed, text.size() - cut);
      EXPECT_EQ(progress.pending, 0);
      Bytes both = first.output;
      both.insert(both.end(), second.output.begin(), second.output.end());
      EXPECT_EQ(both, fromHex("61 80 7A"));
    }
  }
}

TEST_F(WideToByte, HoldsByteAfterByte) {
  for (const CEI source : wideSources) {
    Route route(nls, source, U_WLATIN1_CE);
    TranscodeProgress progress{};
    Bytes output;
    for (const uint8_t byte : textFor(source, U"\u20ACa")) {
      const Outcome outcome = route.resume({&byte, 1}, progress);
      EXPECT_EQ(outcome.status, progress.pending != 0 ? nlsIncompleteInput : 0u) << source;
      EXPECT_EQ(progress.consumed, 1u) << source;
      output.insert(output.end(), outcome.output.begin(), outcome.output.end());
    }
    EXPECT_EQ(output, fromHex("80 61")) << source;
  }
}

// A short output outweighs the incomplete end: nothing of it is held, and the caller goes on from `consumed`.
TEST_F(WideToByte, ShortOutputBeforeAnIncompleteEnd) {
  for (const CEI source : wideSources) {
    Route route(nls, source, U_WLATIN1_CE);
    Bytes text = textFor(source, U"abc");
    text.pop_back();
    TranscodeProgress progress{};
    const Outcome outcome = route.resume(text, 1, progress);
    EXPECT_EQ(outcome.status, nlsOutputTruncated) << source;
    EXPECT_EQ(progress.consumed, row(source).unitSize) << source;
    EXPECT_EQ(progress.pending, 0) << source;
  }
}

// Blanks that are dropped count as read when an incomplete unit behind them is held.
TEST_F(WideToByte, DroppedBlanksBeforeAnIncompleteEnd) {
  for (const CEI source : wideSources) {
    Route route(nls, source, U_WLATIN1_CE);
    Bytes text = textFor(source, U"a  b");
    text.pop_back();
    TranscodeProgress progress{};
    const Outcome outcome = route.resume(text, 1, progress, &dropBlanks);
    EXPECT_EQ(outcome.status, nlsIncompleteInput) << source;
    EXPECT_EQ(outcome.output, fromHex("61")) << source;
    EXPECT_EQ(progress.consumed, text.size()) << source;
    EXPECT_EQ(progress.heldCount, row(source).unitSize - 1u) << source;
  }
}

// Without a record an odd byte of UTF-16 is dropped; three bytes of UTF-32 count as replaced, by nothing.
TEST_F(WideToByte, IncompleteEndWithoutProgress) {
  const Outcome sixteen = Route(nls, U_L_UNICODE_CE, U_WLATIN1_CE).transcode(fromHex("61 00 62"));
  EXPECT_EQ(sixteen.status, 0u);
  EXPECT_EQ(sixteen.output, bytesOf("a"));
  for (const CEI source : {U_L_UCS4_CE, U_B_UCS4_CE}) {
    Bytes text = textFor(source, U"ab");
    text.pop_back();
    const Outcome outcome = Route(nls, source, U_WLATIN1_CE).transcode(text);
    EXPECT_EQ(outcome.status, nlsSubstituted);
    EXPECT_EQ(outcome.output, bytesOf("a"));
  }
}

TEST_F(WideToByte, IncompleteEndOutweighsASubstitution) {
  for (const CEI source : wideSources) {
    Route route(nls, source, U_WLATIN1_CE);
    Bytes text = textFor(source, U"\u0416a");
    text.pop_back();
    TranscodeProgress progress{};
    EXPECT_EQ(route.resume(text, progress).status, nlsIncompleteInput) << source;
    EXPECT_EQ(progress.flags, NLS_PROGRESS_SUBSTITUTED) << source;
  }
}

TEST_F(WideToByte, TooLittleRoomForHeldBytes) {
  for (const CEI source : wideSources) {
    Route route(nls, source, U_WLATIN1_CE);
    const Bytes text = textFor(source, U"ab");
    const size_t unit = row(source).unitSize;
    TranscodeProgress progress{};
    route.resume(std::span(text).first(unit - 1), progress);
    ASSERT_EQ(progress.pending, 1);
    const auto rest = std::span(text).subspan(unit - 1);
    EXPECT_EQ(route.resume(rest, 0, progress).status, nlsOutputTruncated) << source;
    EXPECT_EQ(progress.consumed, 0u) << source;
    EXPECT_EQ(progress.pending, 1) << source;
    EXPECT_EQ(route.resume(rest, progress).output, bytesOf("ab")) << source;
  }
}

// A record that holds whole units, as another conversion may leave it: what has no room is held again, as it came.
TEST_F(WideToByte, HeldUnitsWithoutRoomAreHeldAgain) {
  for (const CEI source : wideSources) {
    SCOPED_TRACE(source);
    Route route(nls, source, U_WLATIN1_CE);
    TranscodeProgress progress = holding(textFor(source, U"ab"));
    Outcome outcome = route.resume(textFor(source, U"c"), 1, progress);
    EXPECT_EQ(outcome.status, nlsOutputTruncated);
    EXPECT_EQ(outcome.output, bytesOf("a"));
    EXPECT_EQ(progress.consumed, 0u);
    EXPECT_EQ(progress.pending, 1);
    EXPECT_EQ(Bytes(progress.held, progress.held + progress.heldCount), textFor(source, U"b"));
    outcome = route.resume(textFor(source, U"c"), progress);
    EXPECT_EQ(outcome.output, bytesOf("bc"));
    EXPECT_EQ(progress.consumed, row(source).unitSize);
    EXPECT_EQ(progress.pending, 0);
  }
}

TEST_F(WideToByte, HeldBlanksAreDroppedWithTheRest) {
  for (const CEI source : wideSources) {
    SCOPED_TRACE(source);
    Route route(nls, source, U_WLATIN1_CE);
    TranscodeProgress progress = holding(textFor(source, U"a "));
    const Outcome outcome = route.resume(textFor(source, U" "), 1, progress, &dropBlanks);
    EXPECT_EQ(outcome.status, 0u);
    EXPECT_EQ(outcome.output, bytesOf("a"));
    EXPECT_EQ(progress.consumed, 0u);
    EXPECT_EQ(progress.pending, 0);
    EXPECT_EQ(progress.heldCount, 0u);
  }
}

// A count above the field's size is the caller's error; no byte outside of the field is read.
TEST_F(WideToByte, HeldCountIsNotTrusted) {
  for (const CEI source : wideSources) {
    SCOPED_TRACE(source);
    Route route(nls, source, U_WLATIN1_CE);
    const size_t units = sizeof(TranscodeProgress::held) / row(source).unitSize;
    TranscodeProgress progress = holding(textFor(source, std::u32string(units, U'x')));
    progress.heldCount = 0xFFFFFFF0;
    const Outcome outcome = route.resume(textFor(source, U"y"), progress);
    EXPECT_EQ(outcome.output, bytesOf(std::string(units, 'x') + "y"));
    EXPECT_EQ(progress.consumed, row(source).unitSize);
    EXPECT_EQ(progress.pending, 0);
  }
}

TEST_F(WideToByte, OptionalArgumentsMayBeNull) {
  for (const CEI source : wideSources) {
    Route route(nls, source, U_WLATIN1_CE);
    const Bytes text = textFor(source, U"abc");
    uint8_t output[3] = {};
    TranscodingPipeline* pipeline = &route.pipeline;
    const auto length = static_cast<uint32_t>(text.size());
    EXPECT_EQ(pipeline->transcodeResumable(pipeline, text.data(), length, output, 3, nullptr, nullptr, nullptr), 0u);
    EXPECT_EQ(std::memcmp(output, "abc", 3), 0) << source;
    Bytes inPlace = text;
    TranscodeProgress progress{};
    pipeline->transcodeResumable(pipeline, inPlace.data(), length, inPlace.data(), length, nullptr, &progress, nullptr);
    EXPECT_EQ(std::memcmp(inPlace.data(), "abc", 3), 0) << source;
  }
}

TEST_F(WideToByte, OverlapAtAnyDistance) {
  for (const CEI source : wideSources) {
    Route route(nls, source, U_WLATIN1_CE);
    for (const uint32_t characters : {5u, 200u, 600u, 1500u}) {
      std::u32string wide;
      Bytes wanted;
      for (uint32_t i = 0; i < characters; ++i) {
        wide += static_cast<char32_t>('0' + i % 64);
        wanted.push_back(static_cast<uint8_t>('0' + i % 64));
      }
      Bytes text = textFor(source, wide);
      const auto incomplete = static_cast<uint32_t>(text.size() + 1);
      for (const int distance : {-17, -4, -1, 0, 1, 2, 3, 7, 40}) {
        for (const bool progressing : {false, true}) {
          Bytes memory(text.size() * 2 + 128, 0x33);
          uint8_t* in = memory.data() + 64;
          uint8_t* out = in + distance;
          std::ranges::copy(text, in);
          TranscodeProgress progress{};
          uint32_t written = 0;
          TranscodingPipeline* pipeline = &route.pipeline;
          const uint32_t length = progressing ? incomplete : incomplete - 1;
          const NlsStatus status = pipeline->transcodeResumable(pipeline, in, length, out, length, &written,
                                                                progressing ? &progress : nullptr, nullptr);
          EXPECT_EQ(status, progressing ? nlsIncompleteInput : 0u);
          EXPECT_EQ(Bytes(out, out + written), wanted) << "source " << source << ", distance " << distance;
          if (progressing) {
            EXPECT_EQ(progress.heldCount, 1u);
            EXPECT_EQ(progress.held[0], 0x33);
          }
        }
      }
    }
  }
}

// With too small an output the input is read again for `consumed`, behind an output that overlaps it.
TEST_F(WideToByte, OverlapWithShortOutput) {
  for (const CEI source : wideSources) {
    Route route(nls, source, U_WLATIN1_CE);
    const Bytes text = textFor(source, U"abcdefgh");
    for (const int distance : {-3, 0, 2}) {
      Bytes memory(128);
      uint8_t* in = memory.data() + 16;
      std::ranges::copy(text, in);
      TranscodeProgress progress{};
      uint32_t written = 0;
      const NlsStatus status = route.pipeline.transcodeResumable(
          &route.pipeline, in, static_cast<uint32_t>(text.size()), in + distance, 5, &written, &progress, nullptr);
      EXPECT_EQ(status, nlsOutputTruncated);
      EXPECT_EQ(written, 5u);
      EXPECT_EQ(progress.consumed, 5u * row(source).unitSize) << source << " " << distance;
    }
  }
}

}  // namespace
}  // namespace test
