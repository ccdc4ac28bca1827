// UTF-8 to single byte.
#include <algorithm>
#include <cstring>

#include "modules/qznlssb/route.h"
#include "modules/qznlssb/utf8_sequence.h"

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
  EXPECT_EQ(transcode("C0 80").output, fromHex("1A"));
  EXPECT_EQ(transcode("C0 80").status, nlsSubstituted);
  EXPECT_EQ(transcode("ED A0 80").output, fromHex("1A"));
  EXPECT_EQ(transcode("E0 80 80").output, fromHex("1A"));
  EXPECT_EQ(transcode("F0 80 80 80").output, fromHex("1A"));
  EXPECT_EQ(transcode("F5 80 80 80 41").output, fromHex("1A 41"));
  EXPECT_EQ(transcode("F8 88 80 80 80 41").output, fromHex("1A 41"));
  EXPECT_EQ(transcode("FC 84 80 80 80 80 41").output, fromHex("1A 41"));
  EXPECT_EQ(transcode("80 41").output, fromHex("1A 41"));
  // The first byte that continues nothing is looked at again.
  EXPECT_EQ(transcode("E2 28 A1").output, fromHex("1A 28 1A"));
  EXPECT_EQ(transcode("E2 82 41").output, fromHex("1A 41"));
  EXPECT_EQ(transcode("F0 9F 98 41").output, fromHex("1A 41"));
  EXPECT_EQ(transcode("FC 84 80 41 80 80").output, fromHex("1A 41 1A 1A"));
  EXPECT_EQ(transcode("C3 C3 A9").output, fromHex("1A E9"));
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

TEST(Utf8Sequence, BytesPromisedByTheLead) {
  const auto wanted = [](uint32_t lead) {
    return lead < 0xC0 ? 0u : lead < 0xE0 ? 1u : lead < 0xF0 ? 2u : lead < 0xF8 ? 3u : lead < 0xFC ? 4u : 5u;
  };
  for (uint32_t lead = 0; lead < 256; ++lead) {
    EXPECT_EQ(veldnls::utf8ExtraBytes(static_cast<uint8_t>(lead)), wanted(lead)) << lead;
  }
}

// Every pair of a lead and a second byte, with good bytes behind them.
TEST(Utf8Sequence, SecondBytes) {
  for (uint32_t lead = 0; lead < 256; ++lead) {
    for (uint32_t second = 0; second < 256; ++second) {
      const uint8_t text[6] = {static_cast<uint8_t>(lead), static_cast<uint8_t>(second), 0x80, 0x80, 0x80, 0x80};
      const uint32_t length = veldnls::utf8ExtraBytes(text[0]) + 1;
      bool valid = lead < 0x80 || (lead >= 0xC2 && lead <= 0xF4);
      if (length > 1) {
        const uint32_t low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
        const uint32_t high = lead == 0xED ? 0x9F : 0xBF;
        if (second < low || second > high) valid = false;
      }
      const bool continues = length == 1 || (second >= 0x80 && second <= 0xBF);
      uint32_t advance = 0;
      const uint32_t code = veldnls::readUtf8(text, sizeof text, advance);
      EXPECT_EQ(code != veldnls::invalidUtf8, valid) << lead << " " << second;
      EXPECT_EQ(advance, continues ? length : 1) << lead << " " << second;
    }
  }
}

}  // namespace
}  // namespace test
