// Runs through a byte map, with and without direction marks.
#include <algorithm>
#include <cstring>

#include "modules/qznlssb/route.h"

namespace test {
namespace {

using ByteToByte = SingleByteTest;

Bytes mapped(const Route& route, std::span<const uint8_t> input) {
  Bytes bytes;
  for (const uint8_t byte : input) bytes.push_back(route.pipeline.source.byteMap[byte]);
  return bytes;
}

TEST_F(ByteToByte, MapsEveryByte) {
  Route route(nls, U_PCOEM850_CE, U_EBCDIC1047_CE);
  Bytes input;
  for (uint32_t byte = 0; byte < 256; ++byte) input.push_back(static_cast<uint8_t>(byte));
  TranscodeProgress progress{};
  progress.flags = NLS_PROGRESS_SUBSTITUTED | 0x40;
  const Outcome outcome = route.resume(input, progress);
  EXPECT_EQ(outcome.status, 0u);
  EXPECT_EQ(outcome.output, mapped(route, input));
  EXPECT_EQ(progress.consumed, 256u);
  EXPECT_EQ(progress.flags, 0x40u);
  EXPECT_EQ(route.transcode(input).output, mapped(route, input));
}

TEST_F(ByteToByte, LineEndsOfOpenEdition) {
  Route route(nls, U_EBCDIC1047_CE, U_OPEN_ED1047_CE);
  EXPECT_EQ(route.transcode(fromHex("15 25 C1")).output, fromHex("25 15 C1"));
}

TEST_F(ByteToByte, EmptyInputAndOutput) {
  Route route(nls, U_PCOEM850_CE, U_WLATIN1_CE);
  uint32_t length = 7;
  EXPECT_EQ(route.pipeline.transcode(&route.pipeline, nullptr, 0, nullptr, 0, &length, nullptr), 0u);
  EXPECT_EQ(length, 0u);
  EXPECT_EQ(route.transcode(bytesOf("a"), 0).status, nlsOutputTruncated);
  // An empty output is refused before anyone looks for blanks.
  EXPECT_EQ(route.transcode(bytesOf("  "), 0, &dropBlanks).status, nlsOutputTruncated);
}

TEST_F(ByteToByte, OptionalArgumentsMayBeNull) {
  Route route(nls, U_PCOEM850_CE, U_WLATIN1_CE);
  const Bytes input = bytesOf("abc");
  uint8_t output[3] = {};
  EXPECT_EQ(route.pipeline.transcode(&route.pipeline, input.data(), 3, output, 3, nullptr, nullptr), 0u);
  EXPECT_EQ(std::memcmp(output, "abc", 3), 0);
  EXPECT_EQ(route.pipeline.transcodeResumable(&route.pipeline, input.data(), 3, output, 2, nullptr, nullptr, nullptr),
            nlsOutputTruncated);
}

TEST_F(ByteToByte, ShortOutputReportsWhatFitted) {
  Route route(nls, U_PCOEM850_CE, U_WLATIN1_CE);
  const Bytes input = fromHex("61 84 62 94");
  for (uint32_t capacity = 1; capacity <= 12; ++capacity) {
    TranscodeProgress progress{};
    const Outcome outcome = route.resume(input, capacity, progress);
    const size_t count = std::min<size_t>(capacity, input.size());
    EXPECT_EQ(outcome.status, capacity < input.size() ? nlsOutputTruncated : 0u);
    EXPECT_EQ(outcome.output, mapped(route, std::span(input).first(count)));
    EXPECT_EQ(progress.consumed, count);
  }
}

TEST_F(ByteToByte, DropsTheSourcesBlanks) {
  Route ascii(nls, U_PCOEM850_CE, U_EBCDIC1047_CE);
  EXPECT_EQ(ascii.transcode(bytesOf("ab   "), 2, &dropBlanks).status, 0u);
  EXPECT_EQ(ascii.transcode(bytesOf("ab   "), 2, &dropBlanks).output, fromHex("81 82"));
  EXPECT_EQ(ascii.transcode(bytesOf("ab   "), 2).status, nlsOutputTruncated);
  EXPECT_EQ(ascii.transcode(bytesOf("ab  c"), 2, &dropBlanks).status, nlsOutputTruncated);
  EXPECT_EQ(ascii.transcode(bytesOf("abc  "), 2, &dropBlanks).status, nlsOutputTruncated);

  Route ebcdic(nls, U_EBCDIC1047_CE, U_WLATIN1_CE);
  EXPECT_EQ(ebcdic.transcode(fromHex("81 40 40"), 1, &dropBlanks).status, 0u);
  EXPECT_EQ(ebcdic.transcode(fromHex("81 20 20"), 1, &dropBlanks).status, nlsOutputTruncated);
}

TEST_F(ByteToByte, ThePipelinesOwnOptionCountsToo) {
  Route route(nls, U_PCOEM850_CE, U_WLATIN1_CE);
  route.pipeline.options.words[0] = NLS_ALLOW_BLANK_TRUNCATION;
  const TranscodeOptions none{};
  EXPECT_EQ(route.transcode(bytesOf("a "), 1, &none).status, 0u);
  EXPECT_EQ(route.transcode(bytesOf("a "), 1).status, 0u);
}

// The direction state is the last mark of this call alone, and replaces the whole word.
TEST_F(ByteToByte, DirectionalFlags) {
  Route route(nls, U_WHEBREW_CE, U_WLATIN1_CE);
  const auto flagsAfter = [&route](std::string_view hex, uint32_t capacity) {
    TranscodeProgress progress{};
    progress.flags = 0xFFFFFFFF;
    const Bytes input = fromHex(hex);
    const Outcome outcome = route.resume(input, capacity, progress);
    EXPECT_EQ(outcome.output.size(), std::min<size_t>(capacity, input.size()));
    return progress.flags;
  };
  EXPECT_EQ(flagsAfter("41 42", 8), 0u);
  EXPECT_EQ(flagsAfter("41 FE 42", 8), 1u);
  EXPECT_EQ(flagsAfter("FE 41 FD 42", 8), 0u);
  EXPECT_EQ(flagsAfter("FD 41 FE", 8), 1u);
  EXPECT_EQ(flagsAfter("FD 41 FE", 2), 0u);
  EXPECT_EQ(flagsAfter("FE 41 FD", 2), 1u);
  EXPECT_EQ(flagsAfter("", 8), 0u);
}

TEST_F(ByteToByte, DirectionalHasNoEarlyReturns) {
  Route route(nls, U_WARABIC_CE, U_WLATIN1_CE);
  uint32_t length = 7;
  TranscodeProgress progress{};
  NlsStatus status =
      route.pipeline.transcodeResumable(&route.pipeline, nullptr, 0, nullptr, 0, &length, &progress, nullptr);
  EXPECT_EQ(status, 0u);
  EXPECT_EQ(length, 0u);
  EXPECT_EQ(route.transcode(bytesOf("a"), 0).status, nlsOutputTruncated);
  EXPECT_EQ(route.transcode(bytesOf("  "), 0, &dropBlanks).status, 0u);
  EXPECT_EQ(route.transcode(bytesOf(" a"), 0, &dropBlanks).status, nlsOutputTruncated);
}

// The length isn't set ahead of the work, as it is elsewhere: a run without memory leaves it.
TEST_F(ByteToByte, DirectionalLengthWithoutMemory) {
  host.memory.allowAllocation = [](uint32_t) -> NlsBool8 { return 0; };
  for (const CEI source : {U_WHEBREW_CE, U_WARABIC_CE, U_PCOEM850_CE}) {
    host.memory.allowAllocation = nullptr;
    Route route(nls, source, U_WLATIN1_CE);
    host.memory.allowAllocation = [](uint32_t) -> NlsBool8 { return 0; };
    Bytes memory(2000);
    uint32_t length = 7;
    EXPECT_EQ(route.pipeline.transcode(&route.pipeline, memory.data(), 1025, memory.data(), 1025, &length, nullptr),
              nlsNoMemory);
    EXPECT_EQ(length, source == U_PCOEM850_CE ? 0u : 7u) << source;
  }
  host.memory.allowAllocation = nullptr;
}

TEST_F(ByteToByte, OverlapAtAnyDistance) {
  for (const CEI source : {U_PCOEM850_CE, U_WHEBREW_CE}) {
    Route route(nls, source, U_EBCDIC1047_CE);
    for (const uint32_t size : {40u, 1024u, 1025u, 3000u}) {
      Bytes text;
      for (uint32_t i = 0; i < size; ++i) text.push_back(static_cast<uint8_t>(i * 7 + i / 256));
      const Bytes wanted = mapped(route, text);
      for (const int distance : {-33, -9, -1, 0, 1, 2, 8, 31}) {
        Bytes memory(size + 128, 0xEE);
        uint8_t* in = memory.data() + 64;
        uint8_t* out = in + distance;
        std::ranges::copy(text, in);
        uint32_t length = 0;
        EXPECT_EQ(route.pipeline.transcode(&route.pipeline, in, size, out, size, &length, nullptr), 0u);
        EXPECT_EQ(length, size);
        EXPECT_TRUE(std::equal(wanted.begin(), wanted.end(), out)) << "distance " << distance << ", size " << size;
      }
    }
  }
}

}  // namespace
}  // namespace test
