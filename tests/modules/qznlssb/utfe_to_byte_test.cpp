// UTF-EBCDIC to single byte.
#include <algorithm>

#include "modules/qznlssb/oracle.h"
#include "modules/qznlssb/route.h"

namespace test {
namespace {

class UtfeToByte : public SingleByteTest {
 protected:
  Route latin{nls, U_UTFE_CE, U_WLATIN1_CE};

  Bytes text(std::u32string_view codes) const {
    Bytes bytes;
    for (const char32_t code : codes) {
      const Bytes form = encode(row(U_UTFE_CE), code);
      bytes.insert(bytes.end(), form.begin(), form.end());
    }
    return bytes;
  }
};

TEST_F(UtfeToByte, Characters) {
  const Outcome outcome = latin.transcode(text(U"Az\u20AC"));
  EXPECT_EQ(outcome.status, 0u);
  EXPECT_EQ(outcome.output, fromHex("41 7A 80"));
  EXPECT_EQ(latin.transcode(fromHex("C1")).output, bytesOf("A"));
}

TEST_F(UtfeToByte, WhatHasNoByteIsSubstituted) {
  for (const char32_t code : {U'\u0416', U'\U0001F600'}) {
    TranscodeProgress progress{};
    progress.flags = 0x41;
    const Bytes form = text(std::u32string(1, code));
    const Outcome outcome = latin.resume(form, progress);
    if (code == U'\u0416') {
      // U+0416 has the three-byte form, so that nothing of it is lost on the way.
      EXPECT_EQ(form.size(), 3u);
    }
    EXPECT_EQ(outcome.status, nlsSubstituted);
    EXPECT_EQ(outcome.output, fromHex("1A"));
    EXPECT_EQ(progress.flags, 0x41u | NLS_PROGRESS_SUBSTITUTED) << "other bits stay";
    EXPECT_EQ(progress.consumed, form.size());
  }
}

TEST_F(UtfeToByte, HoldsAnIncompleteSequence) {
  const Bytes euro = text(U"\u20AC");
  ASSERT_EQ(euro.size(), 3u);
  for (size_t cut = 1; cut < 3; ++cut) {
    TranscodeProgress progress{};
    const Outcome first = latin.resume(std::span(euro).first(cut), progress);
    EXPECT_EQ(first.status, nlsIncompleteInput);
    EXPECT_TRUE(first.output.empty());
    EXPECT_EQ(progress.consumed, cut);
    EXPECT_EQ(progress.heldCount, cut);
    EXPECT_EQ(progress.pending, 1);
    const Outcome second = latin.resume(std::span(euro).subspan(cut), progress);
    EXPECT_EQ(second.status, 0u);
    EXPECT_EQ(second.output, fromHex("80"));
    EXPECT_EQ(progress.consumed, 3 - cut);
    EXPECT_EQ(progress.pending, 0);
  }
  const Outcome plain = latin.transcode(std::span(euro).first(2));
  EXPECT_EQ(plain.status, nlsSubstituted);
  EXPECT_TRUE(plain.output.empty());
}

// A record that holds whole characters, as another conversion may leave it: what has no room is held again, but for
// blanks that may be dropped.
TEST_F(UtfeToByte, HeldCharactersWithoutRoom) {
  TranscodeProgress progress = holding(text(U"ab"));
  EXPECT_EQ(latin.resume(text(U"c"), 1, progress).status, nlsOutputTruncated);
  EXPECT_EQ(progress.consumed, 0u);
  EXPECT_EQ(progress.pending, 1);
  EXPECT_EQ(Bytes(progress.held, progress.held + progress.heldCount), text(U"b"));
  EXPECT_EQ(latin.resume(text(U"c"), progress).output, bytesOf("bc"));
  EXPECT_EQ(progress.consumed, 1u);

  progress = holding(text(U"a "));
  const Outcome outcome = latin.resume(text(U" "), 1, progress, &dropBlanks);
  EXPECT_EQ(outcome.status, 0u);
  EXPECT_EQ(outcome.output, bytesOf("a"));
  EXPECT_EQ(progress.pending, 0);
}

TEST_F(UtfeToByte, HeldCountIsNotTrusted) {
  TranscodeProgress progress = holding(text(U"xxxxxxxx"));
  progress.heldCount = 0xFFFFFFF0;
  EXPECT_EQ(latin.resume(text(U"y"), progress).output, bytesOf("xxxxxxxxy"));
  EXPECT_EQ(progress.consumed, 1u);
}

TEST_F(UtfeToByte, ShortOutput) {
  TranscodeProgress progress{};
  const Outcome outcome = latin.resume(text(U"\u20AC\U0001F600ab"), 2, progress);
  EXPECT_EQ(outcome.status, nlsOutputTruncated);
  EXPECT_EQ(outcome.output, fromHex("80 1A"));
  EXPECT_EQ(progress.consumed, text(U"\u20AC\U0001F600").size());
  EXPECT_EQ(latin.transcode(text(U" "), 0, &dropBlanks).status, nlsOutputTruncated);
}

TEST_F(UtfeToByte, Blanks) {
  EXPECT_EQ(latin.transcode(text(U"ab  "), 2, &dropBlanks).status, 0u);
  EXPECT_EQ(latin.transcode(text(U"ab  "), 2).status, nlsOutputTruncated);
  EXPECT_EQ(latin.transcode(text(U"ab c"), 2, &dropBlanks).status, nlsOutputTruncated);
  TranscodeProgress progress{};
  EXPECT_EQ(latin.resume(text(U"\u0416  "), 1, progress, &dropBlanks).status, 0u);
  EXPECT_EQ(progress.flags, NLS_PROGRESS_SUBSTITUTED);
  EXPECT_EQ(progress.consumed, 3u);
}

TEST_F(UtfeToByte, EmptyInput) {
  uint32_t length = 7;
  EXPECT_EQ(latin.pipeline.transcode(&latin.pipeline, nullptr, 0, nullptr, 0, &length, nullptr), 0u);
  EXPECT_EQ(length, 0u);
}

TEST_F(UtfeToByte, OverlapAtAnyDistance) {
  std::u32string codes;
  for (int i = 0; i < 900; ++i) codes += U"\u20ACx";
  const Bytes input = text(codes);
  const auto length = static_cast<uint32_t>(input.size());
  for (const int distance : {-5, 0, 1, 9}) {
    for (const uint32_t room : {length, 1000u}) {
      Bytes memory(input.size() + 64);
      uint8_t* in = memory.data() + 32;
      uint8_t* out = in + distance;
      std::ranges::copy(input, in);
      TranscodeProgress progress{};
      uint32_t written = 0;
      const NlsStatus status =
          latin.pipeline.transcodeResumable(&latin.pipeline, in, length, out, room, &written, &progress, nullptr);
      EXPECT_EQ(status, room == length ? 0u : nlsOutputTruncated);
      ASSERT_EQ(written, room == length ? 1800u : room);
      EXPECT_EQ(progress.consumed, written * 2);
      EXPECT_EQ(Bytes(out, out + 4), fromHex("80 78 80 78"));
    }
  }
}

// "Any other" encoding of the UTF-8 class than UTF-EBCDIC is read as UTF-8.
TEST_F(UtfeToByte, OtherRowsOfTheUtf8Class) {
  EncodingDescriptor other = row(U_UTF8_CE);
  other.cei = 23;
  Route route(nls, other, row(U_WLATIN1_CE));
  TranscodeProgress progress{};
  const Outcome outcome = route.resume(fromHex("41 C3 A9 E2 82 AC F0 9F 98 80 42"), 4, progress);
  EXPECT_EQ(outcome.status, nlsOutputTruncated);
  EXPECT_EQ(outcome.output, fromHex("41 E9 80 1A"));
  EXPECT_EQ(progress.consumed, 10u);
}

}  // namespace
}  // namespace test
