// UTF-8 to single byte.
#include <algorithm>
#include <cstring>

#include "modules/qznlssb/route.h"

namespace test {
namespace {

class Utf8ToByte : public SingleByteTest {
 protected:
  Route latin{nls, U_UTF8_CE, U_WLATIN1_CE};

  Outcome transcode(std::string_view hex) { return latin.transcode(fromHex(hex)); }
};

TEST_F(Utf8ToByte, Characters) {
  const Outcome outcome = transcode("41 C3 A9 E2 82 AC 7A");
  EXPECT_EQ(outcome.status, 0u);
  EXPECT_EQ(outcome.output, fromHex("41 E9 80 7A"));
}

TEST_F(Utf8ToByte, NullIsAByte) {
  TranscodeProgress progress{};
  const Outcome outcome = latin.resume(fromHex("00 41"), progress);
  EXPECT_EQ(outcome.status, 0u);
  EXPECT_EQ(outcome.output, fromHex("00 41"));
  EXPECT_EQ(progress.flags, 0u);
}

TEST_F(Utf8ToByte, WhatHasNoByteIsSubstituted) {
  for (const std::string_view hex : {"D0 96", "F0 9F 98 80", "EF BF BD", "F4 8F BF BF", "F4 90 80 80"}) {
    TranscodeProgress progress{};
    const Outcome outcome = latin.resume(fromHex(hex), progress);
    EXPECT_EQ(outcome.status, nlsSubstituted) << hex;
    EXPECT_EQ(outcome.output, fromHex("1A")) << hex;
    EXPECT_EQ(progress.flags, NLS_PROGRESS_SUBSTITUTED) << hex;
  }
  EXPECT_EQ(Route(nls, U_UTF8_CE, U_EBCDIC037_CE).transcode(fromHex("D0 96 41")).output, fromHex("3F C1"));
}

TEST_F(Utf8ToByte, InvalidSequences) {
  struct Case {
    std::string_view input;
    std::string_view output;
  };
  constexpr Case cases[] = {
      {"C0 80", "1A"},
      {"ED A0 80", "1A"},
      {"E0 80 80", "1A"},
      {"F0 80 80 80", "1A"},
      {"F5 80 80 80 41", "1A 41"},
      {"F8 88 80 80 80 41", "1A 41"},
      {"FC 84 80 80 80 80 41", "1A 41"},
      {"80 41", "1A 41"},
      // The first byte that continues nothing is looked at again.
      {"E2 28 A1", "1A 28 1A"},
      {"E2 82 41", "1A 41"},
      {"F0 9F 98 41", "1A 41"},
      {"FC 84 80 41 80 80", "1A 41 1A 1A"},
      {"C3 C3 A9", "1A E9"},
  };
  for (const Case& each : cases) {
    TranscodeProgress progress{};
    const Outcome outcome = latin.resume(fromHex(each.input), progress);
    EXPECT_EQ(outcome.status, nlsSubstituted) << each.input;
    EXPECT_EQ(outcome.output, fromHex(each.output)) << each.input;
    EXPECT_EQ(progress.flags, NLS_PROGRESS_SUBSTITUTED) << each.input;
    EXPECT_EQ(transcode(each.input).status, nlsSubstituted) << each.input;
    EXPECT_EQ(transcode(each.input).output, fromHex(each.output)) << each.input;
  }
}

TEST_F(Utf8ToByte, EmptyInputAndOutput) {
  uint32_t length = 7;
  TranscodeProgress progress{};
  progress.consumed = 7;
  progress.flags = NLS_PROGRESS_SUBSTITUTED;
  TranscodingPipeline* pipeline = &latin.pipeline;
  EXPECT_EQ(pipeline->transcode(pipeline, nullptr, 0, nullptr, 0, &length, nullptr), 0u);
  EXPECT_EQ(length, 0u);
  EXPECT_EQ(pipeline->transcodeResumable(pipeline, nullptr, 0, nullptr, 0, nullptr, &progress, nullptr), 0u);
  EXPECT_EQ(progress.consumed, 0u);
  EXPECT_EQ(progress.flags, 0u);
}

TEST_F(Utf8ToByte, TruncatedWithoutProgress) {
  for (const std::string_view hex : {"E2", "E2 82", "F0 9F 98", "FC 84 80", "C3"}) {
    const Outcome outcome = transcode(hex);
    EXPECT_EQ(outcome.status, nlsSubstituted) << hex;
    EXPECT_EQ(outcome.output, fromHex("1A")) << hex;
  }
}

TEST_F(Utf8ToByte, HoldsAnIncompleteSequence) {
  TranscodeProgress progress{};
  Outcome outcome = latin.resume(fromHex("41 E2 82"), progress);
  EXPECT_EQ(outcome.status, nlsIncompleteInput);
  EXPECT_EQ(outcome.output, fromHex("41"));
  EXPECT_EQ(progress.consumed, 1u);
  EXPECT_EQ(progress.pending, 1);
  EXPECT_EQ(progress.heldCount, 2u);
  outcome = latin.resume(fromHex("AC"), progress);
  EXPECT_EQ(outcome.status, 0u);
  EXPECT_EQ(outcome.output, fromHex("80"));
  EXPECT_EQ(progress.consumed, 1u);
  EXPECT_EQ(progress.pending, 0);
}

TEST_F(Utf8ToByte, HoldsByteAfterByte) {
  TranscodeProgress progress{};
  for (const std::string_view hex : {"F0", "9F", "98"}) {
    const Outcome outcome = latin.resume(fromHex(hex), progress);
    EXPECT_EQ(outcome.status, nlsIncompleteInput) << hex;
    EXPECT_EQ(progress.consumed, 0u) << hex;
  }
  EXPECT_EQ(progress.heldCount, 3u);
  const Outcome outcome = latin.resume(fromHex("80 42"), progress);
  EXPECT_EQ(outcome.status, nlsSubstituted);
  EXPECT_EQ(outcome.output, fromHex("1A 42"));
  EXPECT_EQ(progress.consumed, 2u);
}

// An incomplete end is seen even when the output is full, and outweighs a substitution.
TEST_F(Utf8ToByte, IncompleteEndComesFirst) {
  TranscodeProgress progress{};
  const Outcome outcome = latin.resume(fromHex("80 E2 82"), 1, progress);
  EXPECT_EQ(outcome.status, nlsIncompleteInput);
  EXPECT_EQ(outcome.output, fromHex("1A"));
  EXPECT_EQ(progress.flags, NLS_PROGRESS_SUBSTITUTED);
  EXPECT_EQ(progress.heldCount, 2u);
}

TEST_F(Utf8ToByte, AnEmptyCallKeepsWhatIsHeld) {
  TranscodeProgress progress{};
  latin.resume(fromHex("E2 82"), progress);
  EXPECT_EQ(latin.resume({}, progress).status, 0u);
  EXPECT_EQ(latin.resume(fromHex("AC"), 0, progress).status, nlsOutputTruncated);
  EXPECT_EQ(progress.consumed, 0u);
  const Outcome outcome = latin.resume(fromHex("AC"), progress);
  EXPECT_EQ(outcome.output, fromHex("80"));
}

// Two held bytes turn out to be two characters and there is room for one: the other is held again.
TEST_F(Utf8ToByte, TooLittleRoomForHeldBytes) {
  TranscodeProgress progress{};
  EXPECT_EQ(latin.resume(fromHex("F0 28"), progress).status, nlsIncompleteInput);
  Outcome outcome = latin.resume(fromHex("41 42"), 1, progress);
  EXPECT_EQ(outcome.status, nlsOutputTruncated);
  EXPECT_EQ(outcome.output, fromHex("1A"));
  EXPECT_EQ(progress.consumed, 0u);
  EXPECT_EQ(progress.pending, 1);
  EXPECT_EQ(progress.heldCount, 1u);
  EXPECT_EQ(progress.held[0], 0x28);
  outcome = latin.resume(fromHex("41 42"), progress);
  EXPECT_EQ(outcome.status, 0u);
  EXPECT_EQ(outcome.output, fromHex("28 41 42"));
  EXPECT_EQ(progress.consumed, 2u);
}

// The same with blanks that may be dropped: the held one goes with the others.
TEST_F(Utf8ToByte, HeldBlanksAreDroppedWithTheRest) {
  TranscodeProgress progress{};
  EXPECT_EQ(latin.resume(fromHex("F0 20"), progress).status, nlsIncompleteInput);
  const Outcome outcome = latin.resume(fromHex("20 20"), 1, progress, &dropBlanks);
  EXPECT_EQ(outcome.status, nlsSubstituted);
  EXPECT_EQ(outcome.output, fromHex("1A"));
  EXPECT_EQ(progress.consumed, 0u);
  EXPECT_EQ(progress.pending, 0);
  EXPECT_EQ(progress.heldCount, 0u);
}

// A count above the field's size is the caller's error; no byte outside of the field is read.
TEST_F(Utf8ToByte, HeldCountIsNotTrusted) {
  TranscodeProgress progress{};
  progress.pending = 1;
  progress.heldCount = 0xFFFFFFF0;
  std::memset(progress.held, 'x', sizeof progress.held);
  const Outcome outcome = latin.resume(bytesOf("y"), progress);
  EXPECT_EQ(outcome.output, bytesOf("xxxxxxxxy"));
  EXPECT_EQ(progress.consumed, 1u);
}

TEST_F(Utf8ToByte, ShortOutput) {
  TranscodeProgress progress{};
  const Outcome outcome = latin.resume(fromHex("41 C3 A9 42"), 2, progress);
  EXPECT_EQ(outcome.status, nlsOutputTruncated);
  EXPECT_EQ(outcome.output, fromHex("41 E9"));
  EXPECT_EQ(progress.consumed, 3u);
  EXPECT_EQ(latin.transcode(fromHex("80 42"), 1).status, nlsOutputTruncated);
}

// A blank is the byte 0x20, whatever the target; dropping blanks leaves a substitution reported.
TEST_F(Utf8ToByte, Blanks) {
  EXPECT_EQ(latin.transcode(bytesOf("ab  "), 2, &dropBlanks).status, 0u);
  EXPECT_EQ(latin.transcode(bytesOf("ab  "), 2).status, nlsOutputTruncated);
  EXPECT_EQ(latin.transcode(bytesOf("ab c"), 2, &dropBlanks).status, nlsOutputTruncated);
  EXPECT_EQ(latin.transcode(bytesOf("abc "), 2, &dropBlanks).status, nlsOutputTruncated);
  EXPECT_EQ(latin.transcode(fromHex("80 61 20 20"), 2, &dropBlanks).status, nlsSubstituted);
  EXPECT_EQ(latin.transcode(fromHex("61 C2 A0"), 1, &dropBlanks).status, nlsOutputTruncated);
  EXPECT_EQ(latin.transcode(bytesOf("  "), 0, &dropBlanks).status, nlsOutputTruncated);
  Route ebcdic(nls, U_UTF8_CE, U_EBCDIC037_CE);
  EXPECT_EQ(ebcdic.transcode(bytesOf("a@"), 1, &dropBlanks).status, nlsOutputTruncated);
  EXPECT_EQ(ebcdic.transcode(bytesOf("a "), 1, &dropBlanks).status, 0u);
}

// Blanks are dropped only where all of the rest is blanks, wherever in it another byte stands.
TEST_F(Utf8ToByte, EveryByteOfTheRestMustBeABlank) {
  for (const uint32_t blanks : {1u, 2u, 3u, 7u}) {
    const std::string rest(blanks, ' ');
    EXPECT_EQ(latin.transcode(bytesOf("ab" + rest), 2, &dropBlanks).status, 0u);
    for (uint32_t place = 0; place < blanks; ++place) {
      std::string other = rest;
      other[place] = 'x';
      EXPECT_EQ(latin.transcode(bytesOf("ab" + other), 2, &dropBlanks).status, nlsOutputTruncated)
          << place << " of " << blanks;
    }
  }
}

TEST_F(Utf8ToByte, OnlyTheSubstitutionBitOfFlagsIsTouched) {
  TranscodeProgress progress{};
  progress.flags = 0x41 | NLS_PROGRESS_SUBSTITUTED;
  latin.resume(bytesOf("a"), progress);
  EXPECT_EQ(progress.flags, 0x41u);
  latin.resume(fromHex("80"), progress);
  EXPECT_EQ(progress.flags, 0x41u | NLS_PROGRESS_SUBSTITUTED);
}

TEST_F(Utf8ToByte, OverlapAtAnyDistance) {
  for (const uint32_t size : {9u, 2046u, 2049u, 6000u}) {
    Bytes text;
    while (text.size() + 3 <= size) {
      for (const uint8_t byte : fromHex("E2 82 AC C3 A9 41")) text.push_back(byte);
    }
    const auto length = static_cast<uint32_t>(text.size());
    Bytes wanted(text.size());
    uint32_t written = 0;
    TranscodingPipeline* pipeline = &latin.pipeline;
    pipeline->transcode(pipeline, text.data(), length, wanted.data(), length, &written, nullptr);
    wanted.resize(written);
    for (const int distance : {-9, -1, 0, 1, 2, 5, 30}) {
      Bytes memory(text.size() + 128);
      uint8_t* in = memory.data() + 64;
      uint8_t* out = in + distance;
      std::ranges::copy(text, in);
      TranscodeProgress progress{};
      EXPECT_EQ(pipeline->transcodeResumable(pipeline, in, length, out, length, &written, &progress, nullptr), 0u);
      EXPECT_EQ(Bytes(out, out + written), wanted) << distance;
      EXPECT_EQ(progress.consumed, length);
    }
  }
}

}  // namespace
}  // namespace test
